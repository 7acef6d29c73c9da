// SPDX-License-Identifier: MIT
// The beginning of the whole-object binary form. Not installed.
//
// Plain: the object's binary frame with the low 32 bits of its type code as id, that is
//
//     id, length, content of that length
//
// Compressed: the plain form in big-endian byte order, compressed in pieces,
//
//     marker, length, content of that length
//
// Reading tells them apart by the first word.
#pragma once

#include "modelkit/Failure.h"

#include <QtCore/QDataStream>
#include <QtCore/QString>
#include <QtCore/QtGlobal>

namespace MODELKIT {

// The first two words of a form.
struct FormHeader
{
    // In bytes.
    static constexpr int size = 8;
    // In the place of the id, where the form is compressed.
    static constexpr int compressedMarker = 0x4D4B5A31;

    int id = 0;
    int length = 0;

    // Bytes: at least as many as the header has.
    FormHeader(const char* bytes, QDataStream::ByteOrder order);

    // Whether a form of the class with that frame id begins like this, plain or compressed, and is not larger
    // than the limit. If not, the failure says why.
    bool BeginsFormOf(int frameId, const QString& className, qint64 limit, Failure& failure) const;
};

// The bytes are no binary form; the text says why.
Failure notAForm(const QString& text);

// There are only so many bytes of the form.
Failure cutOff(qint64 bytes);

} // namespace MODELKIT
