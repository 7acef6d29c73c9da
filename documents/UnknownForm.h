// SPDX-License-Identifier: MIT
/// \file
/// Telling people what bytes are that are in none of the forms.
#pragma once

#include "documents/Export.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace ROUTERDOCUMENTS {

/// Why the bytes are in none of the forms, in one or two sentences that are safe to display: they are empty,
/// compressed by another program, in little-endian order, or something else. Empty when they begin like one
/// of the forms, even if they cannot be read.
/// \param bytes the whole input, or at least its first 64 bytes.
ROUTERDOCUMENTS_EXPORT QString WhyNoForm(const QByteArray& bytes);

} // namespace ROUTERDOCUMENTS
