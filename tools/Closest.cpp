#include "Closest.h"

#include "modelkit/ClosestName.h"

namespace routermsg {

QString didYouMean(const QString& word, const QStringList& words)
{
    const QString meant = MODELKIT::ClosestName(word, words);
    return meant.isEmpty() ? QString() : QStringLiteral(" Did you mean %1?").arg(meant);
}

QString enumerated(const QStringList& words)
{
    if (words.size() < 2)
        return words.join(QString());
    return QStringList(words.mid(0, words.size() - 1)).join(QStringLiteral(", ")) + QStringLiteral(" and ")
           + words.last();
}

} // namespace routermsg
