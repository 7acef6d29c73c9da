// SPDX-License-Identifier: MIT
// Strings in a JSON text. Not installed.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

namespace ROUTERDOCUMENTS {

// Appends the text as a string of JSON, from which reading gives exactly this text.
void appendJsonString(const QString& text, QByteArray& json);

} // namespace ROUTERDOCUMENTS
