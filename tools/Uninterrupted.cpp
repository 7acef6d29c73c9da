// SPDX-License-Identifier: MIT
#include "Uninterrupted.h"

#include <condition_variable>
#include <mutex>

namespace routermsg {

namespace {

// How many threads are uninterrupted, and whether a signal waits until none is.
class Gate
{
public:
    void enter()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return !m_isClosed; });
        ++m_count;
    }

    void leave()
    {
        const std::lock_guard lock(m_mutex);
        --m_count;
        m_changed.notify_all();
    }

    void close()
    {
        std::unique_lock lock(m_mutex);
        m_isClosed = true;
        m_changed.wait(lock, [this] { return m_count == 0; });
    }

    void open()
    {
        const std::lock_guard lock(m_mutex);
        m_isClosed = false;
        m_changed.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_count = 0;
    bool m_isClosed = false;
};

Gate& gate()
{
    static Gate only;
    return only;
}

sigset_t setOf(std::initializer_list<int> numbers)
{
    sigset_t set;
    sigemptyset(&set);
    for (const int number : numbers)
        sigaddset(&set, number);
    return set;
}

sigset_t endingSignals() { return setOf({SIGINT, SIGTERM, SIGHUP, SIGQUIT}); }

// Ends the watch. By default it does nothing to the program.
constexpr int farewell = SIGURG;

} // namespace

Uninterrupted::Uninterrupted()
{
    const sigset_t ending = endingSignals();
    pthread_sigmask(SIG_BLOCK, &ending, &m_before);
    gate().enter();
}

Uninterrupted::~Uninterrupted()
{
    gate().leave();
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

SignalWatch::SignalWatch()
{
    // A reader that goes away must not end the program either; writing to it then fails.
    const sigset_t all = setOf({SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, farewell});
    pthread_sigmask(SIG_BLOCK, &all, &m_before);
    try {
        m_thread = std::thread(watch);
    } catch (...) {
        pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
        throw;
    }
}

SignalWatch::~SignalWatch()
{
    pthread_kill(m_thread.native_handle(), farewell);
    m_thread.join();
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

void SignalWatch::watch()
{
    const sigset_t watched = setOf({SIGINT, SIGTERM, SIGHUP, SIGQUIT, farewell});
    while (true) {
        int signal = 0;
        if (sigwait(&watched, &signal) != 0)
            continue;
        if (signal == farewell)
            return;
        gate().close();
        const sigset_t arrived = setOf({signal});
        pthread_kill(pthread_self(), signal);
        pthread_sigmask(SIG_UNBLOCK, &arrived, nullptr);
        // It still lives: the program was started to ignore this signal.
        pthread_sigmask(SIG_BLOCK, &arrived, nullptr);
        gate().open();
    }
}

} // namespace routermsg
