// SPDX-License-Identifier: MIT
/// \file
/// The complete content of records, for programs.
#pragma once

#include "documents/Export.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QJsonObject>

namespace ROUTERDOCUMENTS {

/// An object with record, the name of the class, and members, an array in the order of declaration. Each
/// member has name, type and set. If it is set, it also has value, or items if it is a list. Nested records
/// and items are such objects again. An enumeration also has number, its enumerator's value.
/// \throws std::bad_cast when the object is no record of the record library.
ROUTERDOCUMENTS_EXPORT QJsonObject TreeJson(const MODELKIT::IMKObject& record);

} // namespace ROUTERDOCUMENTS
