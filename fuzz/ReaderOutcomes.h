// SPDX-License-Identifier: MIT
// What a MessageReader makes of the bytes of a connection, however they are split.
#pragma once

#include "link/MessageReader.h"

#include <QtCore/QByteArray>
#include <QtCore/QVector>

#include <functional>

namespace fuzzing {

// Limits that inputs of a fuzzer reach.
MODELKIT::Limits smallLimits();

// One outcome of MessageReader::Next(), but NeedMore.
struct Outcome
{
    ROUTERLINK::MessageReader::Outcome outcome;
    ROUTERDOCUMENTS::Form form;
    qint64 offset;
    MODELKIT::Failure failure;
    // Of a message: its bytes, and the content of the record in the binary form.
    QByteArray bytes;
    QByteArray content;
};

// Gives a piece of the connection: how many of the bytes that are left, at least 1.
using NextPiece = std::function<qint64(qint64 left)>;

// Reads the whole connection in these pieces. Ends the process when the reader throws, looks at bytes too
// often, or says something that contradicts itself.
QVector<Outcome> outcomesOf(const char* bytes, qint64 size, const NextPiece& nextPiece) noexcept;

// Ends the process and says why, unless they are the same.
void requireSame(const QVector<Outcome>& one, const QVector<Outcome>& other);

} // namespace fuzzing
