// SPDX-License-Identifier: MIT
#include "documents/Tree.h"

#include "documents/Values.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QJsonArray>

namespace ROUTERDOCUMENTS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

QJsonArray itemsJson(const IMKObject& record, const MemberInfo& member)
{
    QJsonArray items;
    for (int i = 0, count = member.CountItems(record); i < count; ++i)
        items += TreeJson(member.GetItem(record, i));
    return items;
}

QJsonObject memberTree(const IMKObject& record, const MemberInfo& member)
{
    QJsonObject json{{QStringLiteral("name"), member.GetName()},
                     {QStringLiteral("type"), TypeName(member)},
                     {QStringLiteral("set"), member.IsSet(record)}};
    if (!member.IsSet(record))
        return json;
    switch (member.GetKind()) {
    case MemberInfo::Record:
        json[QStringLiteral("value")] = TreeJson(member.GetRecord(record));
        break;
    case MemberInfo::List:
        json[QStringLiteral("items")] = itemsJson(record, member);
        break;
    case MemberInfo::Enumeration:
        json[QStringLiteral("number")] = member.GetValue(record).toInt();
        [[fallthrough]];
    default:
        json[QStringLiteral("value")] = ValueJson(member, member.GetValue(record));
    }
    return json;
}

} // namespace

QJsonObject TreeJson(const IMKObject& record)
{
    const RecordInfo& info = RecordInfo::Of(record);
    QJsonArray members;
    for (const MemberInfo* member : info.GetMembers())
        members += memberTree(record, *member);
    return {{QStringLiteral("record"), info.GetName()}, {QStringLiteral("members"), members}};
}

} // namespace ROUTERDOCUMENTS
