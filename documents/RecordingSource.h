// SPDX-License-Identifier: MIT
// What a RecordingReader asks for the next message, and what its two answers share. Not installed.
#pragma once

#include "documents/Recording.h"

#include <QtCore/QString>

namespace ROUTERDOCUMENTS {

inline QString countedBytes(qint64 bytes, const QString& what)
{
    return bytes == 1 ? QStringLiteral("1 byte is %1").arg(what)
                      : QStringLiteral("%1 bytes are %2").arg(QString::number(bytes), what);
}

class RecordingReader::Source
{
public:
    Source() = default;
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
    virtual ~Source() = default;

    virtual bool ReadNext(RecordedMessage& message) = 0;
    virtual void Reject(const RecordedMessage& message) = 0;
    virtual qint64 GetExaminedBytes() const = 0;
};

} // namespace ROUTERDOCUMENTS
