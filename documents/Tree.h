// SPDX-License-Identifier: MIT
/// \file
/// Records with everything that can be told of their members, for programs.
#pragma once

#include "documents/Export.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QJsonObject>

namespace ROUTERDOCUMENTS {

/// An object with record, the name of the class, and members, an array in the order of declaration: name,
/// type and set of each, and value, which is such an object for a nested record, or items for a list. Beside
/// the name of an enumerator stands its number.
/// \throws std::bad_cast when the object is no record of the record library.
ROUTERDOCUMENTS_EXPORT QJsonObject TreeJson(const MODELKIT::IMKObject& record);

} // namespace ROUTERDOCUMENTS
