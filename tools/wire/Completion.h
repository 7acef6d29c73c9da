// SPDX-License-Identifier: MIT
/// \file
/// How the last word of a request can go on.
#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

namespace routermsg {

struct Completion
{
    /// What stands there of the word.
    QString begin;
    /// The words that begin like that, in capital or small letters.
    QStringList words;
};

/// \param line the line up to the cursor, a request or "?" and the beginning of a word. There is no word for
/// what is inside a value.
Completion completionOf(const QString& line);

/// The beginning that all words share; at least what stands there.
QString sharedBeginning(const Completion& completion);

} // namespace routermsg
