// SPDX-License-Identifier: MIT
#include "modelkit/LogSinks.h"

#include "modelkit/Devices.h"

#include <QtCore/QIODevice>
#include <QtCore/QLoggingCategory>

namespace MODELKIT {

namespace {

Q_LOGGING_CATEGORY(category, "modelkit")

// Whether the character could make an entry look like several entries or like another one.
bool deceives(QChar character)
{
    switch (character.category()) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        break;
    }
    const unsigned int code = character.unicode();
    return code == 0x061C || code == 0x200E || code == 0x200F || (code >= 0x202A && code <= 0x202E)
           || (code >= 0x2066 && code <= 0x2069);
}

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
        if (deceives(character))
            character = QLatin1Char(' ');
    QString reason;
    if (!writeAll(m_device, line.toUtf8() + '\n', reason) || !flush(m_device, reason))
        ++m_lost;
}

qint64 DeviceLogSink::GetLost() const { return m_lost; }

void MemoryLogSink::Write(Logger::Level level, const QString& text) { m_entries.append({level, text}); }
const QVector<MemoryLogSink::Entry>& MemoryLogSink::GetEntries() const { return m_entries; }
void MemoryLogSink::Clear() { m_entries.clear(); }

} // namespace MODELKIT
