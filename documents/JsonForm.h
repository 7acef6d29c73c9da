// SPDX-License-Identifier: MIT
/// \file
/// Records as JSON.
///
/// The document is an object whose only key is the name of the record's class. A record is an object that
/// holds the members that are set, under their names and in the order of their declaration; a list is an
/// array. Numbers and booleans are those of JSON. A text is a string, or null for a null text. An enumerator
/// is its name, or null for the invalid value.
///
/// This form loses less than the other forms: decimal numbers keep all their digits, and unsigned numbers
/// their full range. It cannot represent infinite decimals, decimals that are not a number, and the sign of a
/// zero.
#pragma once

#include "documents/Export.h"
#include "documents/Validation.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QByteArray>

#include <memory>

namespace ROUTERDOCUMENTS {

/// The record as JSON, indented by two spaces, with a line break at the end.
/// \throws DocumentError, with a path as in FromJson(), for a decimal that JSON cannot represent.
/// \throws std::bad_cast when the object is no record of the record library.
ROUTERDOCUMENTS_EXPORT QByteArray ToJson(const MODELKIT::IMKObject& record);

/// The same JSON on one line without white space, with a line break at the end.
/// \throws DocumentError and std::bad_cast as ToJson() does.
ROUTERDOCUMENTS_EXPORT QByteArray ToJsonLine(const MODELKIT::IMKObject& record);

/// Reads a record from JSON. Nothing is skipped and nothing is converted: unknown keys, repeated keys, values
/// of another type or outside the range of their member, and more than one member in a record that carries
/// one at a time are refused. Limits::inputSize and Limits::listItems apply.
/// \throws DocumentError with line and column where the text is not JSON, or else with the path of what is
/// wrong, in which items count from 0: "$.PelLu300RouterMessage.Fragment[1].DF_Params.Frequency".
/// \throws MKException what the record throws, with such a path as its place.
ROUTERDOCUMENTS_EXPORT std::unique_ptr<MODELKIT::IMKObject> FromJson(const QByteArray& json,
                                                                     Validation validation = Validation::Off);

} // namespace ROUTERDOCUMENTS
