// SPDX-License-Identifier: MIT
/// \file
/// Records as JSON.
///
/// The whole is an object whose only key is the name of the record's class. A record is an object with
/// the members that are set under their names, in the order of their declaration; a list is an array.
/// Numbers and truth values are those of JSON, texts are strings, and null for a null text; enumerators
/// go by their names, and null stands for none of them.
///
/// Of all written forms this is the one that loses nothing: decimal numbers have all their digits, and
/// unsigned ones may be as large as they are. What it cannot carry are decimals that are infinite or
/// no number at all, and the sign of a zero.
#pragma once

#include "documents/Export.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QByteArray>

#include <memory>

namespace ROUTERDOCUMENTS {

/// The record as JSON, indented by two blanks, with a line break at the end.
/// \throws DocumentError, with a path as FromJson() gives, for a decimal that JSON cannot carry, and
/// std::bad_cast when the object is no record of the record library.
ROUTERDOCUMENTS_EXPORT QByteArray ToJson(const MODELKIT::IMKObject& record);

/// The record that is written in \a json. Nothing is skipped and nothing converted: what the record does
/// not know, values of another type or out of the range of their member, keys that come twice and more
/// than one member of a record that carries one at a time are refused. Limits::inputSize and
/// Limits::listItems apply. \param validate whether the record gets its validation switched on before it is
/// filled. \throws DocumentError with line and column of what is no JSON, or else with the path of what is
/// wrong; in it items count from 0: "$.PelLu300RouterMessage.Fragment[1].DF_Params.Frequency". \throws
/// MKException what the record throws, with such a path as its place.
ROUTERDOCUMENTS_EXPORT std::unique_ptr<MODELKIT::IMKObject> FromJson(const QByteArray& json, bool validate);

} // namespace ROUTERDOCUMENTS
