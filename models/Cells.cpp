// SPDX-License-Identifier: MIT
#include "models/Cells.h"

#include "documents/Text.h"
#include "documents/ValueTexts.h"
#include "documents/Values.h"

#include <QtCore/QObject>

namespace ROUTERMODELS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// Names of enumerators and payloads, translated as the records do it.
QStringList displayNames(const QStringList& names)
{
    QStringList translated;
    for (const QString& name : names)
        translated += QObject::tr(name.toUtf8().constData());
    return translated;
}

QStringList memberNames(const RecordInfo& info)
{
    QStringList names;
    for (const MemberInfo* member : info.GetMembers())
        names += member->GetName();
    return names;
}

QString memberText(const MemberInfo& member, const QVariant& value)
{
    if (member.GetKind() == MemberInfo::Text)
        return ROUTERDOCUMENTS::Printable(ROUTERDOCUMENTS::Abbreviated(value.toString()));
    const QString text = ROUTERDOCUMENTS::PlainText(member, value);
    return member.GetKind() == MemberInfo::Enumeration ? displayNames({text}).constFirst() : text;
}

} // namespace

QString nameText(const RecordNode& node)
{
    if (node.isRoot())
        return node.info->GetName();
    const QString& name = node.member->GetName();
    return node.isItem() ? QStringLiteral("%1[%2]").arg(name).arg(node.number) : name;
}

QString valueText(const RecordTree& tree, const RecordNode& node)
{
    const bool isSet = tree.isSet(node);
    if (node.isChoice())
        return choicesAt(node).value(editedValue(tree, node).toInt());
    if (node.isRecord())
        return isSet ? ROUTERDOCUMENTS::Abbreviated(ROUTERDOCUMENTS::SummaryText(tree.recordAt(node)))
                     : QString();
    const IMKObject& owner = tree.ownerOf(node);
    if (node.isList())
        return isSet ? ROUTERDOCUMENTS::MemberText(owner, *node.member) : QString();
    if (isSet)
        return memberText(*node.member, node.member->GetValue(owner));
    return node.member->IsDefaultSet(owner) ? memberText(*node.member, node.member->GetDefault(owner))
                                            : QString();
}

QString typeText(const RecordNode& node)
{
    return node.isRecord() ? QStringLiteral("record") : ROUTERDOCUMENTS::TypeName(*node.member);
}

QString hintText(const RecordNode& node)
{
    return node.isValue() ? ROUTERDOCUMENTS::PossibleValues(*node.member) : QString();
}

QVariant editedValue(const RecordTree& tree, const RecordNode& node)
{
    if (node.isValue())
        return node.member->GetValue(tree.ownerOf(node));
    if (!node.isChoice())
        return QVariant();
    return static_cast<int>(node.info->GetMembers().indexOf(node.info->GetSelected(tree.recordAt(node))));
}

QStringList choicesAt(const RecordNode& node)
{
    if (node.isChoice())
        return displayNames(memberNames(*node.info));
    if (!node.isValue())
        return QStringList();
    if (node.member->GetKind() == MemberInfo::Boolean)
        return {QStringLiteral("false"), QStringLiteral("true")};
    return displayNames(node.member->GetNames());
}

} // namespace ROUTERMODELS
