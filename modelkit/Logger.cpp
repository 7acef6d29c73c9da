// SPDX-License-Identifier: MIT
#include "modelkit/Logger.h"

#include <utility>

namespace MODELKIT {

Logger::Logger(std::shared_ptr<LogSink> sink) : m_sink(std::move(sink)) {}
Logger::~Logger() = default;

void Logger::Log(Level level, const QString& text)
{
    if (!m_sink || m_writer == std::this_thread::get_id())
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    struct Writing
    {
        std::atomic<std::thread::id>& writer;
        explicit Writing(std::atomic<std::thread::id>& own) : writer(own)
        {
            writer = std::this_thread::get_id();
        }
        ~Writing() { writer = std::thread::id(); }
    } const writing(m_writer);
    m_sink->Write(level, text);
}

const QStringList& Logger::GetLevelNames()
{
    static const QStringList names{QStringLiteral("INFO"), QStringLiteral("WARNING"),
                                   QStringLiteral("ERROR")};
    return names;
}

LogSink::~LogSink() = default;

} // namespace MODELKIT
