// SPDX-License-Identifier: MIT
// The data of a device as they arrive. Not installed.
#pragma once

#include "documents/ByteQueue.h"
#include "documents/TextUnits.h"

#include "modelkit/Devices.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

class QIODevice;

namespace ROUTERDOCUMENTS {

// Keeps what has arrived and has not been used yet, and knows its place. Opens a closed device.
class Arrivals
{
public:
    using Outcome = MODELKIT::Intake::Outcome;

    explicit Arrivals(QIODevice& device) : m_device(device) {}
    Arrivals(const Arrivals&) = delete;
    Arrivals& operator=(const Arrivals&) = delete;
    ~Arrivals();

    const char* Data() const { return m_bytes.Data(); }
    qint64 Size() const { return m_bytes.Size(); }

    // The offset of the first byte that has not been removed.
    qint64 Offset() const { return m_offset; }
    // The line of that byte, from 1; 0 after binary data.
    qint64 Line() const { return m_line; }
    // Its column, from 1, in UTF-16 units of a text in UTF-8; 0 after binary data.
    qint64 Column() const { return m_line == 0 ? 0 : m_column; }
    bool IsAtLineBegin() const { return m_last == '\n' || m_last == '\r'; }

    // Adds what has arrived. Whole if that was something. Intake: for the same device.
    Outcome Fetch(MODELKIT::Intake& intake);
    QIODevice& Device() { return m_device; }
    // Opens a closed device. False with the reason when it cannot be read.
    bool Open(QString& reason);

    // Drop() removes bytes from the beginning, Take() removes and returns them.
    void Drop(qint64 size, TextUnits units = TextUnits());
    QByteArray Take(qint64 size, TextUnits units = TextUnits());
    // Puts back what Take() returned last, if nothing else was removed or fetched since.
    void Return(const QByteArray& bytes);
    // What follows has no lines.
    void ForgetLines() { m_line = 0; }

private:
    void CountLines(qint64 size, TextUnits units);

    QIODevice& m_device;
    bool m_hasOpened = false;
    ByteQueue m_bytes;
    qint64 m_offset = 0;
    qint64 m_line = 1;
    qint64 m_column = 1;
    // The last character that was used; a text begins as after a line break.
    char m_last = '\n';
};

} // namespace ROUTERDOCUMENTS
