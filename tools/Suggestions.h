// SPDX-License-Identifier: MIT
/// \file
/// What to write instead of a word that is not understood.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace routermsg {

/// " Possible are a, b and c."
QString possible(const QStringList& words);

/// " Did you mean X?" with the closest of the words, or nothing. A "=" at their end does not count.
QString didYouMeanWord(const QString& word, const QStringList& words);

} // namespace routermsg
