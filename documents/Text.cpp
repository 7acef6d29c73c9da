// SPDX-License-Identifier: MIT
#include "documents/Text.h"

#include "modelkit/Quoted.h"

#include <QtCore/QLocale>

#include <algorithm>
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

enum class LineBreaks
{
    Escaped,
    Kept
};

// Replaces characters that cannot be displayed safely.
QString escaped(const QString& text, const std::function<QString(QStringView)>& escape, LineBreaks lineBreaks)
{
    QString result;
    result.reserve(text.size());
    for (QString::size_type i = 0; i < text.size(); ++i) {
        const bool isPair =
            text.at(i).isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
        const char32_t character =
            isPair ? QChar::surrogateToUcs4(text.at(i), text.at(i + 1)) : text.at(i).unicode();
        const auto units = QStringView(text).mid(i, isPair ? 2 : 1);
        if (canBeShown(character) || (lineBreaks == LineBreaks::Kept && character == '\n'))
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

// What differs between two texts.
class DifferentPart
{
public:
    DifferentPart(const QString& first, const QString& second)
        : m_isWhole(std::max(first.size(), second.size()) <= longest)
    {
        const auto shorter = std::min(first.size(), second.size());
        while (m_before < shorter && first.at(m_before) == second.at(m_before))
            ++m_before;
        while (m_behind < shorter - m_before
               && first.at(first.size() - 1 - m_behind) == second.at(second.size() - 1 - m_behind))
            ++m_behind;
    }

    // One of the texts.
    QString quoted(const QString& text) const
    {
        if (m_isWhole)
            return Quoted(text);
        const Size begin = boundary(text, std::max<Size>(m_before - around, 0));
        const Size end = boundary(text, std::min(text.size() - m_behind + around, text.size()));
        if (end - begin <= longest)
            return shown(text, begin, end);
        // The beginning and the end of a long part tell more than its middle.
        const Size half = longest / 2;
        return shown(text, begin, boundary(text, begin + half))
               + shown(text, boundary(text, end - half), end).mid(dots().size());
    }

private:
    using Size = QString::size_type;

    // In characters.
    static constexpr Size longest = 80;
    static constexpr Size around = 20;

    static QString dots() { return QStringLiteral("..."); }

    // Not between the two units of a character.
    static Size boundary(const QString& text, Size index)
    {
        const bool isInside = index > 0 && index < text.size() && text.at(index).isLowSurrogate()
                              && text.at(index - 1).isHighSurrogate();
        return isInside ? index - 1 : index;
    }

    static QString shown(const QString& text, Size begin, Size end)
    {
        return (begin > 0 ? dots() : QString()) + Quoted(text.mid(begin, end - begin))
               + (end < text.size() ? dots() : QString());
    }

    bool m_isWhole;
    Size m_before = 0;
    Size m_behind = 0;
};

} // namespace

QString Printable(const QString& text) { return escaped(text, escapedAsInJson, LineBreaks::Escaped); }

QString Quoted(const QString& text)
{
    QString inside = text;
    inside.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('"'), QLatin1String("\\\""));
    return QLatin1Char('"') + Printable(inside) + QLatin1Char('"');
}

QPair<QString, QString> QuotedWhereDifferent(const QString& first, const QString& second)
{
    const DifferentPart part(first, second);
    return {part.quoted(first), part.quoted(second)};
}

QString Abbreviated(const QString& text) { return MODELKIT::abbreviated(text); }

QString ShowableJson(const QString& json) { return escaped(json, escapedAsInJson, LineBreaks::Kept); }

QString ShowableXml(const QString& xml) { return escaped(xml, escapedAsInXml, LineBreaks::Kept); }

QString Exactly(double value)
{
    const double size = std::abs(value);
    const bool isUsual = value == 0 || (size >= 1e-6 && size < 1e15);
    return QString::number(value, isUsual ? 'f' : 'g', QLocale::FloatingPointShortest);
}

} // namespace ROUTERDOCUMENTS
