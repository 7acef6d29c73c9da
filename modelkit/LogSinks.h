// SPDX-License-Identifier: MIT
/// \file
/// Ready-made sinks for log entries.
#pragma once

#include "modelkit/Logger.h"

#include <QtCore/QString>
#include <QtCore/QVector>

class QIODevice;

namespace MODELKIT {

/// Passes entries to Qt's logging, in the category "modelkit".
class MODELKIT_EXPORT QtLogSink : public LogSink
{
public:
    void Write(Logger::Level level, const QString& text) override;
};

/// Writes each entry as one line in UTF-8, "ERROR: text", to a device. Line breaks, other control characters
/// and direction marks are written as spaces. A file is flushed after each entry.
class MODELKIT_EXPORT DeviceLogSink : public LogSink
{
public:
    /// The device must be open and outlive the sink.
    explicit DeviceLogSink(QIODevice& device);
    void Write(Logger::Level level, const QString& text) override;

    /// The number of entries that the device has not accepted completely. Do not call it while another thread
    /// writes.
    qint64 GetLost() const;

private:
    QIODevice& m_device;
    qint64 m_lost = 0;
};

/// Keeps entries in memory.
class MODELKIT_EXPORT MemoryLogSink : public LogSink
{
public:
    /// What was logged.
    struct Entry
    {
        Logger::Level level; ///< how serious it is
        QString text;        ///< the unchanged text
    };

    void Write(Logger::Level level, const QString& text) override;

    /// The entries so far, oldest first. Do not call it while another thread writes.
    const QVector<Entry>& GetEntries() const;
    /// Removes all entries.
    void Clear();

private:
    QVector<Entry> m_entries;
};

} // namespace MODELKIT
