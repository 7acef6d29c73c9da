// SPDX-License-Identifier: MIT
#include "documents/JsonString.h"

namespace ROUTERDOCUMENTS {

void appendJsonString(const QString& text, QByteArray& json)
{
    QString escaped;
    for (int i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        const bool isPair = unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        if (isPair)
            escaped += QString(unit) + text.at(++i);
        else if (unit.unicode() < 0x20 || unit.isSurrogate())
            escaped += QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
        else if (unit == QLatin1Char('"') || unit == QLatin1Char('\\'))
            escaped += QString(QLatin1Char('\\')) + unit;
        else
            escaped += unit;
    }
    json += '"' + escaped.toUtf8() + '"';
}

} // namespace ROUTERDOCUMENTS
