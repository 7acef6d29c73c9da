// SPDX-License-Identifier: MIT
#include "routerinterface/Printing.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QLocale>

#include <algorithm>
#include <ostream>
#include <utility>

namespace PELLU300ROUTERINTERFACEXML {

namespace {

constexpr int maximalCharacters = 200;
constexpr int maximalItems = 100;

QString escaped(QChar character)
{
    switch (character.unicode()) {
    case '"':
        return QStringLiteral("\\\"");
    case '\\':
        return QStringLiteral("\\\\");
    case '\n':
        return QStringLiteral("\\n");
    case '\r':
        return QStringLiteral("\\r");
    case '\t':
        return QStringLiteral("\\t");
    default:
        break;
    }
    if (character.isPrint() || character.isSurrogate())
        return QString(character);
    return QStringLiteral("\\u%1").arg(static_cast<int>(character.unicode()), 4, 16, QLatin1Char('0'));
}

QString quoted(const QString& text)
{
    if (text.isNull())
        return QStringLiteral("null");
    QString shown = text.left(maximalCharacters);
    const bool isCut = shown.size() < text.size();
    // Half of a surrogate pair is no character.
    if (isCut && shown.at(shown.size() - 1).isHighSurrogate())
        shown.chop(1);
    QString result(QLatin1Char('"'));
    for (const QChar character : std::as_const(shown))
        result += escaped(character);
    result += QLatin1Char('"');
    if (isCut)
        result += QStringLiteral("... (%1 characters)").arg(text.size());
    return result;
}

QString valueText(const MemberInfo& member, const QVariant& value)
{
    switch (member.GetKind()) {
    case MemberInfo::Decimal:
        return QString::number(value.toDouble(), 'g', QLocale::FloatingPointShortest);
    case MemberInfo::Text:
        return quoted(value.toString());
    case MemberInfo::Enumeration: {
        const int number = value.toInt();
        return machinery::enumeratorText(number, member.GetNames().value(number));
    }
    default:
        return value.toString();
    }
}

class RecordText
{
public:
    void add(const MODELKIT::IMKObject& record, const QString& title)
    {
        const RecordInfo& info = RecordInfo::Of(record);
        const auto& members = info.GetMembers();
        beginLine(title + stateOf(record, info));
        ++m_depth;
        for (const MemberInfo* member : members)
            if (member->IsSet(record))
                addMember(record, *member);
        --m_depth;
    }

    const QString& get() const { return m_text; }

private:
    // What is to be said of a record without members that are set.
    static QString stateOf(const MODELKIT::IMKObject& record, const RecordInfo& info)
    {
        for (const MemberInfo* member : info.GetMembers())
            if (member->IsSet(record))
                return QString();
        const MemberInfo* const selected = info.IsChoice() ? info.GetSelected(record) : nullptr;
        return selected ? QStringLiteral(" (%1 is selected, but not set)").arg(selected->GetName())
                        : QStringLiteral(" (nothing is set)");
    }

    void beginLine(const QString& text)
    {
        if (!m_text.isEmpty())
            m_text += QLatin1Char('\n');
        m_text += QString(2 * m_depth, QLatin1Char(' ')) + text;
    }

    void addMember(const MODELKIT::IMKObject& record, const MemberInfo& member)
    {
        const QString& name = member.GetName();
        if (member.GetKind() == MemberInfo::Record)
            add(member.GetRecord(record), name);
        else if (member.GetKind() == MemberInfo::List)
            addItems(record, member);
        else
            beginLine(name + QLatin1String(": ") + valueText(member, member.GetValue(record)));
    }

    void addItems(const MODELKIT::IMKObject& record, const MemberInfo& member)
    {
        const int count = member.CountItems(record);
        if (count == 0)
            beginLine(member.GetName() + QLatin1String(": no items"));
        for (int i = 0; i < std::min(count, maximalItems); ++i)
            add(member.GetItem(record, i), QStringLiteral("%1[%2]").arg(member.GetName()).arg(i + 1));
        if (count > maximalItems)
            beginLine(QStringLiteral("... (%1 items)").arg(count));
    }

    QString m_text;
    int m_depth = 0;
};

} // namespace

QString Describe(const MODELKIT::IMKObject& record)
{
    RecordText text;
    text.add(record, RecordInfo::Of(record).GetName());
    return text.get();
}

namespace machinery {

QDebug print(QDebug debug, const QString& text)
{
    const QDebugStateSaver saver(debug);
    return debug.noquote() << text;
}

std::ostream& print(std::ostream& stream, const QString& text) { return stream << text.toUtf8().constData(); }

QString enumeratorText(int value, const QString& name)
{
    return name.isNull() ? QStringLiteral("%1 (no enumerator)").arg(value) : name;
}

} // namespace machinery

} // namespace PELLU300ROUTERINTERFACEXML
