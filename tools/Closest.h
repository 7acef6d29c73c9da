/// \file
/// What somebody may have meant.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace routermsg {

/// The word that is most like \a word, if any is like it: by other case, as its beginning or a part of it, or
/// by few edits. Of several the first.
QString closest(const QString& word, const QStringList& words);

/// " Did you mean X?" with the closest word, or nothing.
QString didYouMean(const QString& word, const QStringList& words);

/// "a, b and c".
QString enumerated(const QStringList& words);

} // namespace routermsg
