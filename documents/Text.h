/// \file
/// Texts from documents that are safe to be shown.
#pragma once

#include <QtCore/QString>

namespace routermsg {

/// The text with everything escaped as in JSON that could steer a terminal or hide or reorder text:
/// control characters, line breaks, marks of direction, halves of surrogate pairs, noncharacters.
/// Everything that comes from a document or from the command line must pass through this, or quoted(),
/// before it is written as text.
QString printable(const QString& text);

/// The printable text in double quotes, with quotes and backslashes in it escaped: a JSON string.
QString quoted(const QString& text);

/// The beginning of a text that is too long for a message.
QString abbreviated(const QString& text);

/// A whole JSON or XML document with the same content that is safe to be shown: in it such characters
/// stand in texts only, where both have escapes for them.
/// @{
QString showableJson(const QString& json);
QString showableXml(const QString& xml);
/// @}

/// The shortest decimal text that gives the same number when it is read, with an exponent only when it
/// is very large or small; "nan", "inf", "-inf".
QString exactly(double value);

} // namespace routermsg
