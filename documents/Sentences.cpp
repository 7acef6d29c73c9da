// SPDX-License-Identifier: MIT
#include "documents/Sentences.h"

#include "modelkit/ClosestName.h"

namespace ROUTERDOCUMENTS {

QString DidYouMean(const QString& word, const QStringList& words)
{
    return DidYouMean(MODELKIT::ClosestName(word, words));
}

QString DidYouMean(const QString& meant)
{
    return meant.isEmpty() ? QString() : QStringLiteral(" Did you mean %1?").arg(meant);
}

namespace {

QString joined(const QStringList& words, const QString& beforeLast)
{
    if (words.size() < 2)
        return words.join(QString());
    return QStringList(words.mid(0, words.size() - 1)).join(QStringLiteral(", ")) + beforeLast + words.last();
}

} // namespace

QString Listed(const QStringList& words) { return joined(words, QStringLiteral(" and ")); }

QString Alternatives(const QStringList& words) { return joined(words, QStringLiteral(" or ")); }

} // namespace ROUTERDOCUMENTS
