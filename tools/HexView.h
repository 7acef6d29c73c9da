// SPDX-License-Identifier: MIT
/// \file
/// The bytes of a binary form with their meaning.
#pragma once

#include "Finding.h"

#include <QtCore/QByteArray>
#include <QtCore/QJsonObject>

#include <optional>

namespace routermsg {

class Output;

/// Writes the parts of a plain or compressed form: offset, bytes and meaning, with a mark at every mistake.
/// The parts of the form inside a compressed one follow. Long values are abbreviated in the middle.
/// \returns the first mistake, without the file.
std::optional<Finding> writeHex(const QByteArray& form, Output& output);

/// Writes the same as a JSON object, with one part in a line and all bytes. It has the members of \a head,
/// parts, inflated for a compressed form, and wrong with the first mistake.
/// \returns the first mistake, without the file.
std::optional<Finding> writeHexJson(const QByteArray& form, const QJsonObject& head, Output& output);

} // namespace routermsg
