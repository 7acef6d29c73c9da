// SPDX-License-Identifier: MIT
/// \file
/// Ready-made receivers of log entries.
#pragma once

#include "modelkit/Logger.h"

#include <QtCore/QString>
#include <QtCore/QVector>

class QIODevice;

namespace MODELKIT {

/// Hands entries to Qt's logging, in the category "modelkit".
class MODELKIT_EXPORT QtLogSink : public LogSink
{
public:
    void Write(Logger::Level level, const QString& text) override;
};

/// Writes each entry as a line in UTF-8, "ERROR: text", to an open device that outlives the sink. Line
/// breaks, other control characters and marks that change the direction of a text are written as blanks. A
/// file is flushed after each entry.
class MODELKIT_EXPORT DeviceLogSink : public LogSink
{
public:
    /// The device must be open.
    explicit DeviceLogSink(QIODevice& device);
    void Write(Logger::Level level, const QString& text) override;

    /// The number of entries that the device has not taken whole. Not to be called while another thread
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
        QString text;        ///< the text as it was given
    };

    void Write(Logger::Level level, const QString& text) override;

    /// The entries so far, oldest first. Not to be called while another thread writes.
    const QVector<Entry>& GetEntries() const;
    /// Forgets the entries.
    void Clear();

private:
    QVector<Entry> m_entries;
};

} // namespace MODELKIT
