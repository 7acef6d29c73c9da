// SPDX-License-Identifier: MIT
/// \file
/// The event loop of commands that work on connections.
#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QSocketNotifier>

#include <chrono>
#include <exception>
#include <functional>
#include <memory>
#include <type_traits>

namespace routermsg {

/// Runs until it is told to quit, or until the user or the system wants to end the program: by Ctrl-C, or by
/// the signals TERM or HUP. A second Ctrl-C ends the program at once. There can be one at a time.
class WireLoop
{
public:
    /// \throws std::system_error
    WireLoop();
    WireLoop(const WireLoop&) = delete;
    WireLoop& operator=(const WireLoop&) = delete;
    ~WireLoop();

    /// Rethrows the exception that ended it. Has no effect after quit(). When it has returned, guarded
    /// actions do nothing any more.
    void run();
    void quit();
    /// Whether a signal has ended it.
    bool isInterrupted() const { return m_isInterrupted; }

    /// For everything that the event loop calls: an exception must not reach it. The first one ends the loop.
    template <class Action>
    void guard(const Action& action)
    {
        if (m_exception || m_isOver)
            return;
        try {
            action();
        } catch (...) {
            m_exception = std::current_exception();
            quit();
        }
    }

    /// The action, guarded. The loop must live as long as what calls it.
    template <class Action>
    auto guarded(Action action)
    {
        WireLoop* const loop = this;
        return [loop, action](const auto&... arguments) { loop->guard([&] { call(action, arguments...); }); };
    }

private:
    // A slot may leave out the arguments of its signal.
    template <class Action, class... Arguments>
    static void call(const Action& action, const Arguments&... arguments)
    {
        if constexpr (std::is_invocable_v<const Action&, const Arguments&...>)
            action(arguments...);
        else
            action();
    }

    void interrupt();

    // Lives as long as the application, as it must.
    int m_argc = 1;
    char m_name[10] = "routermsg";
    char* m_argv[2] = {m_name, nullptr};
    QCoreApplication m_application;
    int m_signals[2] = {-1, -1};
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::exception_ptr m_exception;
    bool m_hasQuit = false;
    bool m_isOver = false;
    bool m_isInterrupted = false;
};

/// Has the event loop call the action once after that time, unless the context is gone by then.
void callAfter(std::chrono::milliseconds time, QObject& context, const std::function<void()>& action);

} // namespace routermsg
