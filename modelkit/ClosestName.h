// SPDX-License-Identifier: MIT
/// \file
/// What somebody may have meant.
#pragma once

#include "modelkit/Export.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace MODELKIT {

/// The name that is most like \a word, if any is like it: by other case, as its beginning or a part of it, or
/// by few edits. Of several the first. Null when none is like it.
MODELKIT_EXPORT QString ClosestName(const QString& word, const QStringList& names);

} // namespace MODELKIT
