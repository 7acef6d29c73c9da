// SPDX-License-Identifier: MIT
// Finding places in a JSON document without a record. Not installed.
#pragma once

#include "modelkit/Place.h"

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace ROUTERDOCUMENTS {

// The place of the value to which a path of records leads, such as
// "/PelLu300RouterInterfaceXml/PelLu300RouterMessage/Fragment[2]". The result has the path as it is in JSON.
// If the text has no such value, only the path that was passed is known. The text must be JSON.
MODELKIT::Place findInJson(const QByteArray& json, const QString& path);

} // namespace ROUTERDOCUMENTS
