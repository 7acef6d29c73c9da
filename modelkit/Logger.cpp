#include "modelkit/Logger.h"

#include <utility>

namespace MODELKIT {

Logger::Logger(std::shared_ptr<LogSink> sink) : m_sink(std::move(sink)) {}
Logger::~Logger() = default;

void Logger::Log(Level level, const QString& text)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_sink)
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
