// SPDX-License-Identifier: MIT
/// \file
/// Binary messages whose framing an application does itself.
#pragma once

#include <QtCore/QDataStream>

namespace ROUTERDOCUMENTS {

/// The layout of bare frames: what `GetBinary` writes to a stream in either byte order, with or without the
/// class id in front. The usual layout is that of whole binary forms.
struct FrameFormat
{
    /// Whether each frame begins with the class id. Frames without it begin with their length.
    bool hasId = true;
    /// The byte order of all numbers. Inside a compressed form they are big-endian nevertheless.
    QDataStream::ByteOrder byteOrder = QDataStream::BigEndian;
};

} // namespace ROUTERDOCUMENTS
