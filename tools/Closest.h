/// \file
/// What somebody may have meant.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace routermsg {

/// " Did you mean X?" with the closest word, or nothing.
QString didYouMean(const QString& word, const QStringList& words);

/// "a, b and c".
QString enumerated(const QStringList& words);

} // namespace routermsg
