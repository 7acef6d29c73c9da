// SPDX-License-Identifier: MIT
#include "Progress.h"

#include "Session.h"
#include "documents/Text.h"

#include <QtCore/QString>

#include <csignal>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace routermsg {

using namespace ROUTERDOCUMENTS;

// A separate thread draws the bar, because a step may take long.
class ProgressBar
{
public:
    ProgressBar(int descriptor, int total) : m_descriptor(descriptor), m_total(total), m_thread(startThread())
    {}
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    ~ProgressBar()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isOver = true;
            wipe();
        }
        m_wake.notify_one();
        m_thread.join();
    }

    void next(const QString& name)
    {
        const std::lock_guard lock(m_mutex);
        ++m_step;
        m_name = name;
    }

    void whileHidden(const std::function<void()>& action)
    {
        const std::lock_guard lock(m_mutex);
        wipe();
        action();
    }

private:
    using Clock = std::chrono::steady_clock;

    // The thread blocks all signals: they are for the main thread, which may hold them back.
    std::thread startThread()
    {
        sigset_t all;
        sigset_t before;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
        std::thread thread([this] { run(); });
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
        return thread;
    }

    void run()
    {
        std::unique_lock lock(m_mutex);
        auto pause = std::chrono::milliseconds(1000);
        while (!m_wake.wait_for(lock, pause, [this] { return m_isOver; })) {
            draw();
            pause = std::chrono::milliseconds(200);
        }
    }

    void draw()
    {
        constexpr int width = 20;
        const int done = std::max(m_step - 1, 0);
        const int filled = m_total > 0 ? static_cast<int>(qint64(width) * done / m_total) : 0;
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - m_begin).count();
        const QString text = QStringLiteral("[%1] %2/%3 %4 s  %5")
                                 .arg(QString(filled, QLatin1Char('=')).leftJustified(width))
                                 .arg(done)
                                 .arg(m_total)
                                 .arg(seconds)
                                 .arg(Printable(m_name));
        // Line wrapping is off meanwhile, so that the terminal cuts off a text that is too long.
        writeAll(m_descriptor, "\r\033[K\033[?7l" + text.toUtf8() + "\033[?7h");
        m_isVisible = true;
    }

    void wipe()
    {
        if (m_isVisible)
            writeAll(m_descriptor, "\r\033[K");
        m_isVisible = false;
    }

    const int m_descriptor;
    const int m_total;
    const Clock::time_point m_begin = Clock::now();
    std::mutex m_mutex;
    std::condition_variable m_wake;
    int m_step = 0;
    QString m_name;
    bool m_isVisible = false;
    bool m_isOver = false;
    std::thread m_thread;
};

Progress::Progress(Session& session, int total) : m_session(session)
{
    if (session.isQuiet() || !session.err().isTerminal())
        return;
    m_bar = std::make_unique<ProgressBar>(STDERR_FILENO, total);
    const auto aside = [this](const Output::Action& action) { m_bar->whileHidden(action); };
    session.out().setAside(aside);
    session.err().setAside(aside);
}

Progress::~Progress()
{
    m_session.out().setAside(nullptr);
    m_session.err().setAside(nullptr);
}

void Progress::next(const QString& name)
{
    if (m_bar)
        m_bar->next(name);
}

} // namespace routermsg
