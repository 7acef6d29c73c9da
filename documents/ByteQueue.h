// SPDX-License-Identifier: MIT
// Bytes that have arrived and that nobody has used yet. Not installed.
#pragma once

#include "documents/Export.h"

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

namespace ROUTERDOCUMENTS {

// Bytes are appended at the end and removed from the beginning. Every byte moves only once on average,
// however few are appended and removed at a time.
class ROUTERDOCUMENTS_EXPORT ByteQueue
{
public:
    const char* Data() const { return m_bytes.constData() + m_begin; }
    qint64 Size() const { return m_bytes.size() - m_begin; }

    // To append to. What it contains already must stay.
    QByteArray& Tail();
    void Append(const char* bytes, qint64 size) { Tail().append(bytes, static_cast<int>(size)); }

    // Drop() removes bytes from the beginning, Take() removes and returns them.
    void Drop(qint64 size);
    QByteArray Take(qint64 size);
    // Puts back what Take() returned last, if nothing else was removed or appended since.
    void Return(const QByteArray& bytes);

    // The size from which on bytes are not copied when they are taken. Buffers of twice that size are kept.
    static constexpr int block = 1 << 16;

private:
    QByteArray m_bytes;
    qint64 m_begin = 0;
};

} // namespace ROUTERDOCUMENTS
