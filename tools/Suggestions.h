// SPDX-License-Identifier: MIT
/// \file
/// Suggestions for words that are not understood.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace routermsg {

/// " The choices are a, b and c."
QString possible(const QStringList& words);

/// " Did you mean X?" with the closest of the words, or nothing. A "=" at the end of a word is ignored.
QString didYouMeanWord(const QString& word, const QStringList& words);

} // namespace routermsg
