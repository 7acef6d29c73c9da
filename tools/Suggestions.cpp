// SPDX-License-Identifier: MIT
#include "Suggestions.h"

#include "documents/Sentences.h"

#include "modelkit/ClosestName.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

QString possible(const QStringList& words)
{
    return QStringLiteral(" The choices are %1.").arg(Listed(words));
}

QString didYouMeanWord(const QString& word, const QStringList& words)
{
    QStringList names = words;
    names.replaceInStrings(QStringLiteral("="), QString());
    const QString meant = MODELKIT::ClosestName(word, names);
    return meant.isEmpty() ? QString() : DidYouMean(words.at(names.indexOf(meant)));
}

} // namespace routermsg
