// SPDX-License-Identifier: MIT
// The name that somebody who misspelt it may have meant. Not installed.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace MODELKIT {

// The name that is most like the word: one that differs in case only, begins or ends with the word, contains
// it, or differs by few edits. The first of several that are equally like it; null when none is like it.
MODELKIT_EXPORT QString ClosestName(const QString& word, const QStringList& names);

} // namespace MODELKIT
