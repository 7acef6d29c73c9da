#include "modelkit/LogSinks.h"

#include <QtCore/QIODevice>
#include <QtCore/QLoggingCategory>

namespace MODELKIT {

namespace {

Q_LOGGING_CATEGORY(category, "modelkit")

} // namespace

void QtLogSink::Write(Logger::Level level, const QString& text)
{
    const QMessageLogger logger;
    if (level == Logger::Info && category().isInfoEnabled())
        logger.info(category()).noquote() << text;
    else if (level == Logger::Warning && category().isWarningEnabled())
        logger.warning(category()).noquote() << text;
    else if (level == Logger::Error && category().isCriticalEnabled())
        logger.critical(category()).noquote() << text;
}

DeviceLogSink::DeviceLogSink(QIODevice& device) : m_device(device) {}

void DeviceLogSink::Write(Logger::Level level, const QString& text)
{
    QString line = Logger::GetLevelNames().value(level) + QLatin1String(": ") + text;
    for (QChar& character : line)
        if (character.category() == QChar::Other_Control)
            character = QLatin1Char(' ');
    m_device.write(line.toUtf8() + '\n');
}

void MemoryLogSink::Write(Logger::Level level, const QString& text) { m_entries.append({level, text}); }
const QVector<MemoryLogSink::Entry>& MemoryLogSink::GetEntries() const { return m_entries; }
void MemoryLogSink::Clear() { m_entries.clear(); }

} // namespace MODELKIT
