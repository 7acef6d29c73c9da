// SPDX-License-Identifier: MIT
// From a JSON text to its values. Not installed.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonValue>

namespace ROUTERDOCUMENTS {

// Refuses what is no JSON, and keys that come twice in an object.
QJsonValue parseText(const QByteArray& json);

} // namespace ROUTERDOCUMENTS
