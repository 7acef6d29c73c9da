// SPDX-License-Identifier: MIT
#include "documents/Text.h"

#include <QtCore/QLocale>

#include <cmath>
#include <functional>

namespace ROUTERDOCUMENTS {

namespace {

// Some scripts and emojis need joiners.
bool isJoiner(char32_t character) { return character == 0x200C || character == 0x200D; }

bool canBeShown(char32_t character)
{
    if ((character & 0xFFFE) == 0xFFFE)
        return false;
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Other_Surrogate:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return false;
    case QChar::Other_Format:
        return isJoiner(character);
    default:
        return true;
    }
}

QString escapedUnit(QChar unit)
{
    switch (unit.unicode()) {
    case '\b':
        return QStringLiteral("\\b");
    case '\f':
        return QStringLiteral("\\f");
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        return QStringLiteral("\\u%1").arg(unit.unicode(), 4, 16, QLatin1Char('0'));
    }
}

// Replaces characters that cannot be displayed safely. Line breaks can be kept.
QString escaped(const QString& text, const std::function<QString(QStringView)>& escape, bool keepLineBreaks)
{
    QString result;
    result.reserve(text.size());
    for (QString::size_type i = 0; i < text.size(); ++i) {
        const bool isPair =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        const char32_t character =
            isPair ? QChar::surrogateToUcs4(text.at(i), text.at(i + 1)) : text.at(i).unicode();
        const auto units = QStringView(text).mid(i, isPair ? 2 : 1);
        if (canBeShown(character) || (keepLineBreaks && character == '\n'))
            result.append(units.data(), static_cast<int>(units.size()));
        else
            result += escape(units);
        i += isPair ? 1 : 0;
    }
    return result;
}

QString escapedAsInJson(QStringView units)
{
    QString result;
    for (const QChar unit : units)
        result += escapedUnit(unit);
    return result;
}

QString escapedAsInXml(QStringView units)
{
    const uint character =
        units.size() == 2 ? QChar::surrogateToUcs4(units.at(0), units.at(1)) : units.at(0).unicode();
    return QStringLiteral("&#x%1;").arg(character, 0, 16);
}

} // namespace

QString Printable(const QString& text) { return escaped(text, escapedAsInJson, false); }

QString Quoted(const QString& text)
{
    QString inside = text;
    inside.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + Printable(inside) + QLatin1Char('"');
}

QString Abbreviated(const QString& text)
{
    constexpr int shown = 40;
    return text.size() > shown ? text.left(shown) + QLatin1String("...") : text;
}

QString ShowableJson(const QString& json) { return escaped(json, escapedAsInJson, true); }

QString ShowableXml(const QString& xml) { return escaped(xml, escapedAsInXml, true); }

QString Exactly(double value)
{
    const double size = std::abs(value);
    const bool isUsual = value == 0 || (size >= 1e-6 && size < 1e15);
    return QString::number(value, isUsual ? 'f' : 'g', QLocale::FloatingPointShortest);
}

} // namespace ROUTERDOCUMENTS
