// SPDX-License-Identifier: MIT
#include "modelkit/Failure.h"

namespace MODELKIT {

QString Failure::GetSentence() const
{
    const QString where = place.ToString();
    QString sentence = where.isEmpty() ? text : where + QLatin1String(": ") + text;
    if (!place.path.isEmpty())
        sentence += QLatin1String(" (in ") + place.path + QLatin1Char(')');
    return sentence;
}

} // namespace MODELKIT
