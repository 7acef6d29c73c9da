// SPDX-License-Identifier: MIT
// Compressing and inflating the content of a compressed binary form. Not installed.
//
// The plain form is cut into pieces that are compressed one by one:
//
//     { length of the compressed piece, piece as qCompress makes it } ...
//
// The pieces bound the memory that inflating takes: `qUncompress` cannot be interrupted, but the length of a
// piece limits its output.
#pragma once

#include "modelkit/Failure.h"

#include <QtCore/QByteArray>
#include <QtCore/QtGlobal>

namespace MODELKIT {

// Level: from 0 (none) to 9 (smallest), -1 for zlib's default; others are clamped.
QByteArray compressInPieces(const QByteArray& plain, int level);

// Appends to plain. False, with the failure filled in, when the pieces are damaged or hold more than limit
// bytes.
bool inflatePieces(const QByteArray& packed, qint64 limit, QByteArray& plain, Failure& failure);

} // namespace MODELKIT
