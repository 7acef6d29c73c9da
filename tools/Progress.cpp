// SPDX-License-Identifier: MIT
#include "Progress.h"

#include "Session.h"
#include "documents/Text.h"

#include <QtCore/QFileInfo>
#include <QtCore/QString>

#include <csignal>
#include <unistd.h>

#include <algorithm>
#include <atomic>
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
    // The total is negative if it is not known.
    ProgressBar(int descriptor, qint64 total)
        : m_descriptor(descriptor), m_total(total), m_thread(startThread())
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
        m_name = name;
    }

    void add(qint64 bytes) { m_done += bytes; }

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
        const qint64 done = m_done;
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - m_begin).count();
        const QString text =
            QStringLiteral("%1 %2 s  %3")
                .arg(m_total < 0 ? megabytes(done) : bar(done), QString::number(seconds), Printable(m_name));
        // Line wrapping is off meanwhile, so that the terminal cuts off a text that is too long.
        writeAll(m_descriptor, "\r\033[K\033[?7l" + text.toUtf8() + "\033[?7h");
        m_isVisible = true;
    }

    QString bar(qint64 done) const
    {
        constexpr int width = 20;
        // A file may have grown.
        const qint64 total = std::max({m_total, done, qint64(1)});
        const auto filled = static_cast<int>(static_cast<double>(done) / static_cast<double>(total) * width);
        return QStringLiteral("[%1] %2 of %3")
            .arg(QString(filled, QLatin1Char('=')).leftJustified(width), megabytes(done), megabytes(total));
    }

    static QString megabytes(qint64 bytes)
    {
        return QStringLiteral("%1 MB").arg(static_cast<double>(bytes) / 1e6, 0, 'f', 1);
    }

    void wipe()
    {
        if (m_isVisible)
            writeAll(m_descriptor, "\r\033[K");
        m_isVisible = false;
    }

    const int m_descriptor;
    const qint64 m_total;
    const Clock::time_point m_begin = Clock::now();
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::atomic<qint64> m_done = 0;
    QString m_name;
    bool m_isVisible = false;
    bool m_isOver = false;
    std::thread m_thread;
};

namespace {

// Negative if one of the inputs is no file.
qint64 sizeOf(const QStringList& inputs)
{
    qint64 size = 0;
    for (const QString& path : inputs) {
        const QFileInfo file(path);
        if (!file.isFile())
            return -1;
        size += file.size();
    }
    return size;
}

} // namespace

Progress::Progress(Session& session, const QStringList& inputs) : m_session(&session)
{
    if (session.isQuiet() || !session.err().isTerminal())
        return;
    m_bar = std::make_shared<ProgressBar>(STDERR_FILENO, sizeOf(inputs));
    const auto aside = [this](const Output::Action& action) { m_bar->whileHidden(action); };
    // Other output needs no room on the terminal, and may have to wait for its reader.
    if (session.out().isTerminal())
        session.out().setAside(aside);
    session.err().setAside(aside);
}

Progress::Progress(Progress* whole) : m_bar(whole->m_bar) {}

Progress::~Progress()
{
    if (!m_session)
        return;
    m_session->out().setAside(nullptr);
    m_session->err().setAside(nullptr);
}

void Progress::next(const QString& name)
{
    m_reached = 0;
    if (m_bar)
        m_bar->next(name);
}

void Progress::reached(qint64 bytes)
{
    if (m_bar)
        m_bar->add(bytes - m_reached);
    m_reached = bytes;
}

} // namespace routermsg
