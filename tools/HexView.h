// SPDX-License-Identifier: MIT
/// \file
/// The bytes of a binary form with their meaning.
#pragma once

#include "Finding.h"
#include "documents/FrameFormat.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>

#include <optional>

namespace routermsg {

class Output;

/// A binary form.
struct HexForm
{
    QByteArray bytes;
    /// Where it begins in its input.
    qint64 offset = 0;
    /// The layout of a bare frame; all others have the usual one.
    ROUTERDOCUMENTS::FrameFormat frame = {};
    /// The class that it must have; null for any.
    const PELLU300ROUTERINTERFACEXML::RecordInfo* info = nullptr;
};

/// Writes the parts of a plain or compressed form: offset, bytes and meaning, with a mark at every mistake.
/// The offsets are those in the input. The parts of the form inside a compressed one follow, with offsets in
/// that form. Long values are abbreviated in the middle.
/// \returns the first mistake, without the file.
std::optional<Finding> writeHex(const HexForm& form, Output& output);

/// Writes the same as a JSON object, with one part in a line and all bytes. It has the members of \a head,
/// parts, inflated for a compressed form, and wrong with the first mistake.
/// \returns the first mistake, without the file.
std::optional<Finding> writeHexJson(const HexForm& form, const QJsonObject& head, Output& output);

} // namespace routermsg
