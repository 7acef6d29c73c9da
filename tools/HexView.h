// SPDX-License-Identifier: MIT
/// \file
/// The bytes of a binary form with what they mean.
#pragma once

#include "Finding.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>

#include <optional>

namespace routermsg {

class Output;

/// Writes the parts of a plain or compressed form, the latter also as it is inside: offset, bytes and
/// meaning, with what is wrong marked where it is. Long values are abbreviated in the middle.
/// \returns what is wrong first, without the file.
std::optional<Finding> writeHex(const QByteArray& form, Output& output);

/// Writes the same as a JSON object with one part in a line and all bytes: \a head and then parts, for a
/// compressed form inflated, and wrong with what is wrong first.
/// \returns what is wrong first, without the file.
std::optional<Finding> writeHexJson(const QByteArray& form, const QJsonObject& head, Output& output);

} // namespace routermsg
