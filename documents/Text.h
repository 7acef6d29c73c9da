// SPDX-License-Identifier: MIT
/// \file
/// Texts from documents that are safe to be shown.
#pragma once

#include "documents/Export.h"

#include <QtCore/QString>

namespace ROUTERDOCUMENTS {

/// The text with everything escaped as in JSON that could steer a terminal or hide or reorder text:
/// control characters, line breaks, marks of direction, halves of surrogate pairs, noncharacters.
/// Everything that comes from a document or from the command line must pass through this, or Quoted(),
/// before it is written as text.
ROUTERDOCUMENTS_EXPORT QString Printable(const QString& text);

/// The printable text in double quotes, with quotes and backslashes in it escaped: a JSON string.
ROUTERDOCUMENTS_EXPORT QString Quoted(const QString& text);

/// The beginning of a text that is too long for a message.
ROUTERDOCUMENTS_EXPORT QString Abbreviated(const QString& text);

/// A whole JSON or XML document with the same content that is safe to be shown: in it such characters
/// stand in texts only, where both have escapes for them.
/// @{
ROUTERDOCUMENTS_EXPORT QString ShowableJson(const QString& json);
ROUTERDOCUMENTS_EXPORT QString ShowableXml(const QString& xml);
/// @}

/// The shortest decimal text that gives the same number when it is read, with an exponent only when it
/// is very large or small; "nan", "inf", "-inf".
ROUTERDOCUMENTS_EXPORT QString Exactly(double value);

} // namespace ROUTERDOCUMENTS
