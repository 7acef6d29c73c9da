#include "documents/Closest.h"

#include "modelkit/ClosestName.h"

namespace routermsg {

QString didYouMean(const QString& word, const QStringList& words)
{
    return didYouMean(MODELKIT::ClosestName(word, words));
}

QString didYouMean(const QString& meant)
{
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
