// SPDX-License-Identifier: MIT
/// \file
/// Records as JSON.
///
/// The document is an object whose only key is the name of the record's class. A record is an object that
/// holds the members that are set, under their names and in the order of their declaration; a list is an
/// array, and is left out when it is empty. Booleans are those of JSON. An enumerator is its name, or null
/// for the invalid value.
///
/// This form carries every value:
/// - A number is written with all its digits, unsigned ones in their full range. A decimal zero with a sign
/// is
///   `-0.0`. The decimals for which JSON has no numbers are the strings `"NaN"`, `"Infinity"` and
///   `"-Infinity"`.
/// - A text is a string, or null for a null text. Control characters below U+0020, and a surrogate that is
/// not
///   part of a pair, are written as escapes such as `\u0000` and `\ud800`, and are read back as they were.
///
/// Reading takes a whole number in any spelling: `7.0` and `70e-1` are 7, and `-0` is 0. A decimal may have
/// more digits than a `double` keeps; that makes an entry in a reading report.
#pragma once

#include "documents/Export.h"
#include "documents/Validation.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QByteArray>

#include <memory>

namespace ROUTERDOCUMENTS {

/// The record as JSON, indented by two spaces, with a line break at the end.
/// \throws std::bad_cast when the object is no record of the record library.
ROUTERDOCUMENTS_EXPORT QByteArray ToJson(const MODELKIT::IMKObject& record);

/// The same JSON on one line without white space, with a line break at the end.
/// \throws std::bad_cast as ToJson() does.
ROUTERDOCUMENTS_EXPORT QByteArray ToJsonLine(const MODELKIT::IMKObject& record);

/// Reads a record from JSON. The text must be JSON to the letter: UTF-8, without comments, trailing commas,
/// raw control characters in strings or numbers such as `01`, `+1`, `.5` and `1.`; a byte order mark may
/// stand in front. Nothing is skipped and nothing is converted: unknown keys, repeated keys, values of
/// another type or outside the range of their member, and more than one member in a record that carries one
/// at a time are refused. Limits::inputSize and Limits::listItems apply. When reading succeeds, a reading
/// report gets an entry for every decimal that was rounded.
/// \param json the text
/// \param validation whether the record is validated; \a json may lack data without it
/// \throws DocumentError with line and column; for a text that is JSON also with the path of what is wrong,
/// in which items count from 0: "$.PelLu300RouterMessage.Fragment[1].DF_Params.Frequency".
/// \throws MKException what the record throws, with such a place.
ROUTERDOCUMENTS_EXPORT std::unique_ptr<MODELKIT::IMKObject> FromJson(const QByteArray& json,
                                                                     Validation validation = Validation::Off);

} // namespace ROUTERDOCUMENTS
