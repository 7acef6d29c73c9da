/// \file
/// A record as an indented tree with types, and with what is not set.
#pragma once

#include "modelkit/IMKObject.h"

#include <QtCore/QJsonObject>

namespace routermsg {

class Output;

void writeTree(const MODELKIT::IMKObject& record, Output& output);

/// An object with record, the name of the class, and members, an array in the order of declaration: name,
/// type and set of each, and value, which is such an object for a nested record, or items for a list. Beside
/// the name of an enumerator stands its number.
QJsonObject treeJson(const MODELKIT::IMKObject& record);

} // namespace routermsg
