// SPDX-License-Identifier: MIT
#include "wire/WireLoop.h"

#include <QtCore/QTimer>

#include <cerrno>
#include <clocale>
#include <csignal>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace routermsg {

namespace {

constexpr int loopSignals[] = {SIGINT, SIGTERM, SIGHUP};

// Where the signals are told.
volatile std::sig_atomic_t signalsEnd = -1;

void tellSignal(int)
{
    const int before = errno;
    const char one = 1;
    // When the pipe is full, enough has been told.
    [[maybe_unused]] const auto written = ::write(static_cast<int>(signalsEnd), &one, 1);
    errno = before;
}

void setHandler(int number, void (*handler)(int), int flags)
{
    struct sigaction action = {};
    struct sigaction before = {};
    action.sa_handler = handler;
    action.sa_flags = flags;
    // A program that was started to ignore a signal goes on ignoring it.
    if (sigaction(number, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
        sigaction(number, &action, nullptr);
}

} // namespace

WireLoop::WireLoop() : m_application(m_argc, m_argv)
{
    // The application has taken over the locale of the user. But the program speaks the same language in all.
    std::setlocale(LC_MESSAGES, "C");
    if (pipe2(m_signals, O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category());
    signalsEnd = m_signals[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_signals[0], QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { interrupt(); });
    for (const int number : loopSignals)
        setHandler(number, tellSignal, static_cast<int>(SA_RESETHAND | SA_RESTART));
}

WireLoop::~WireLoop()
{
    for (const int number : loopSignals)
        setHandler(number, SIG_DFL, 0);
    m_notifier.reset();
    ::close(m_signals[0]);
    ::close(m_signals[1]);
}

void WireLoop::run()
{
    if (!m_hasQuit)
        QCoreApplication::exec();
    m_isOver = true;
    if (m_exception)
        std::rethrow_exception(m_exception);
}

void WireLoop::quit()
{
    m_hasQuit = true;
    QCoreApplication::quit();
}

void WireLoop::interrupt()
{
    m_notifier->setEnabled(false);
    m_isInterrupted = true;
    quit();
}

void callAfter(std::chrono::milliseconds time, QObject& context, const std::function<void()>& action)
{
    auto* const timer = new QTimer(&context);
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, timer, [timer, action] {
        timer->deleteLater();
        action();
    });
    timer->start(time);
}

} // namespace routermsg
