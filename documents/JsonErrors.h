// SPDX-License-Identifier: MIT
// Everything that is wrong with a JSON document. Not installed.
#pragma once

#include "documents/FirstErrors.h"

#include <QtCore/QByteArray>

namespace ROUTERDOCUMENTS {

// Adds all errors that FromJson() with validation, and the check of the record behind it, could end with.
// What is wrong is passed over, and an error is not told again as what follows from it: a member whose value
// is wrong is not missing. Only a text that is no JSON, and a limit, end the list. A reading report gets the
// same entries as from FromJson(), if the text is JSON to its end.
void findErrorsInJson(const QByteArray& json, FirstErrors& errors);

} // namespace ROUTERDOCUMENTS
