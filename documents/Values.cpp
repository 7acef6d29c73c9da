// SPDX-License-Identifier: MIT
#include "documents/Values.h"

#include "documents/JsonNumber.h"
#include "documents/Text.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

#include <cmath>

namespace ROUTERDOCUMENTS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

QString TypeName(const MemberInfo& member)
{
    switch (member.GetKind()) {
    case MemberInfo::UnsignedInteger:
        return QStringLiteral("unsigned integer");
    case MemberInfo::Decimal:
        return QStringLiteral("decimal");
    case MemberInfo::Boolean:
        return QStringLiteral("boolean");
    case MemberInfo::Text:
        return QStringLiteral("text");
    case MemberInfo::Enumeration:
        return QStringLiteral("enumeration");
    case MemberInfo::Record:
        return QStringLiteral("record");
    case MemberInfo::List:
        return QStringLiteral("list");
    }
    return QString();
}

namespace {

QString enumeratorText(const MemberInfo& member, int number)
{
    const QString name = member.GetNames().value(number, QStringLiteral("no enumerator"));
    return QStringLiteral("%1 (%2)").arg(name).arg(number);
}

} // namespace

QString ValueText(const MemberInfo& member, const QVariant& value)
{
    switch (member.GetKind()) {
    case MemberInfo::Decimal:
        return Exactly(value.toDouble());
    case MemberInfo::Text:
        return value.toString().isNull() ? QStringLiteral("null") : Quoted(value.toString());
    case MemberInfo::Enumeration:
        return enumeratorText(member, value.toInt());
    case MemberInfo::UnsignedInteger:
    case MemberInfo::Boolean:
    case MemberInfo::Record:
    case MemberInfo::List:
        break;
    }
    return value.toString();
}

QString PlainText(const MemberInfo& member, const QVariant& value)
{
    switch (member.GetKind()) {
    case MemberInfo::Text:
        return Printable(value.toString());
    case MemberInfo::Enumeration:
        return member.GetNames().value(value.toInt(), value.toString());
    case MemberInfo::UnsignedInteger:
    case MemberInfo::Decimal:
    case MemberInfo::Boolean:
    case MemberInfo::Record:
    case MemberInfo::List:
        break;
    }
    return ValueText(member, value);
}

QJsonValue DecimalJson(double value)
{
    const char* name = nameOf(value);
    return name ? QJsonValue(QLatin1String(name)) : QJsonValue(value);
}

QJsonValue ValueJson(const MemberInfo& member, const QVariant& value)
{
    switch (member.GetKind()) {
    case MemberInfo::Decimal:
        return DecimalJson(value.toDouble());
    case MemberInfo::Text:
        return value.toString().isNull() ? QJsonValue() : QJsonValue(value.toString());
    case MemberInfo::Enumeration: {
        const QString name = member.GetNames().value(value.toInt());
        return name.isNull() ? QJsonValue() : QJsonValue(name);
    }
    case MemberInfo::UnsignedInteger:
        return static_cast<qint64>(value.toUInt());
    case MemberInfo::Boolean:
        return value.toBool();
    case MemberInfo::Record:
    case MemberInfo::List:
        break;
    }
    return QJsonValue();
}

bool IsSameValue(const MemberInfo& member, const QVariant& a, const QVariant& b)
{
    switch (member.GetKind()) {
    case MemberInfo::Decimal:
        return a.toDouble() == b.toDouble() || (std::isnan(a.toDouble()) && std::isnan(b.toDouble()));
    case MemberInfo::Text:
        return a.toString() == b.toString() && a.toString().isNull() == b.toString().isNull();
    case MemberInfo::UnsignedInteger:
    case MemberInfo::Boolean:
    case MemberInfo::Enumeration:
    case MemberInfo::Record:
    case MemberInfo::List:
        break;
    }
    return a == b;
}

QString MemberText(const IMKObject& record, const MemberInfo& member)
{
    if (!member.IsSet(record))
        return QStringLiteral("not set");
    if (member.GetKind() == MemberInfo::Record)
        return SummaryText(member.GetRecord(record));
    if (member.GetKind() == MemberInfo::List)
        return QStringLiteral("[%1]").arg(member.CountItems(record));
    return ValueText(member, member.GetValue(record));
}

QJsonValue MemberJson(const IMKObject& record, const MemberInfo& member)
{
    if (!member.IsSet(record))
        return QJsonValue(QJsonValue::Undefined);
    if (member.GetKind() == MemberInfo::Record)
        return SummaryJson(member.GetRecord(record));
    if (member.GetKind() == MemberInfo::List)
        return QJsonObject{{QStringLiteral("items"), member.CountItems(record)}};
    return ValueJson(member, member.GetValue(record));
}

QString SummaryText(const IMKObject& record)
{
    QStringList members;
    for (const MemberInfo* member : RecordInfo::Of(record).GetMembers())
        if (member->IsSet(record))
            members += member->GetName() + QStringLiteral(": ") + MemberText(record, *member);
    return QLatin1Char('{') + members.join(QStringLiteral(", ")) + QLatin1Char('}');
}

QJsonValue SummaryJson(const IMKObject& record)
{
    QJsonObject members;
    for (const MemberInfo* member : RecordInfo::Of(record).GetMembers())
        if (member->IsSet(record))
            members[member->GetName()] = MemberJson(record, *member);
    return members;
}

} // namespace ROUTERDOCUMENTS
