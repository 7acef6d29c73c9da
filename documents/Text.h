// SPDX-License-Identifier: MIT
/// \file
/// Making texts from documents safe to display.
#pragma once

#include "documents/Export.h"

#include <QtCore/QPair>
#include <QtCore/QString>

namespace ROUTERDOCUMENTS {

/// The text with all characters escaped, as in JSON, that could control a terminal or hide or reorder text:
/// control characters, line breaks, direction marks, lone surrogates and noncharacters.
/// Everything that comes from a document or from the command line must pass through this function or Quoted()
/// before it is displayed.
ROUTERDOCUMENTS_EXPORT QString Printable(const QString& text);

/// The printable text in double quotes, with quotes and backslashes in it escaped: a JSON string.
ROUTERDOCUMENTS_EXPORT QString Quoted(const QString& text);

/// The texts \a first and \a second in quotes. When they are long, only what differs is left, with a few
/// characters around it; dots outside the quotes stand for the rest.
ROUTERDOCUMENTS_EXPORT QPair<QString, QString> QuotedWhereDifferent(const QString& first,
                                                                    const QString& second);
/// The text, truncated when it is too long for a message.
ROUTERDOCUMENTS_EXPORT QString Abbreviated(const QString& text);

/// A whole JSON document with the same content that is safe to display. Such characters occur only in its
/// texts, where they can be written as escapes.
ROUTERDOCUMENTS_EXPORT QString ShowableJson(const QString& json);
/// The same for a whole XML document, with character references.
ROUTERDOCUMENTS_EXPORT QString ShowableXml(const QString& xml);

/// The shortest decimal text that gives the same number when it is read, with an exponent only when the
/// number is very large or small; or "nan", "inf", "-inf".
ROUTERDOCUMENTS_EXPORT QString Exactly(double value);

} // namespace ROUTERDOCUMENTS
