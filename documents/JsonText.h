// SPDX-License-Identifier: MIT
// Parsing a JSON text. Not installed.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QJsonValue>

namespace ROUTERDOCUMENTS {

// Throws a DocumentError for a text that is not JSON, and for a key that is repeated in its object.
QJsonValue parseText(const QByteArray& json);

} // namespace ROUTERDOCUMENTS
