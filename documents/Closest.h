/// \file
/// What somebody may have meant.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace routermsg {

/// " Did you mean X?" with the closest word, or nothing.
QString didYouMean(const QString& word, const QStringList& words);

/// " Did you mean X?" with that word, or nothing when it is empty.
QString didYouMean(const QString& meant);

/// "a, b and c".
QString enumerated(const QStringList& words);

} // namespace routermsg
