// SPDX-License-Identifier: MIT
/// \file
/// Parts of messages about names.
#pragma once

#include "documents/Export.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace ROUTERDOCUMENTS {

/// " Did you mean X?" with that of the \a words that is most similar to \a word, or an empty text when none
/// is.
ROUTERDOCUMENTS_EXPORT QString DidYouMean(const QString& word, const QStringList& words);

/// " Did you mean X?" with that word, or an empty text when it is empty.
ROUTERDOCUMENTS_EXPORT QString DidYouMean(const QString& meant);

/// "a, b and c".
ROUTERDOCUMENTS_EXPORT QString Listed(const QStringList& words);
/// "a, b or c".
ROUTERDOCUMENTS_EXPORT QString Alternatives(const QStringList& words);

} // namespace ROUTERDOCUMENTS
