// SPDX-License-Identifier: MIT
#include "models/StepMaker.h"

#include "models/RecordStepData.h"

#include "documents/Values.h"

#include <typeinfo>
#include <utility>

namespace ROUTERMODELS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

// What a member gets that is only to be set: its default, or else something that its setter accepts.
QVariant firstValue(const MemberInfo& member, const IMKObject& owner)
{
    QVariant value = member.GetDefault(owner);
    if (!member.IsValid(value))
        value = member.GetKind() == MemberInfo::Text ? QVariant(QStringLiteral("")) : QVariant(0);
    return value;
}

} // namespace

std::unique_ptr<IMKObject> StepMaker::newRecord(const RecordInfo& info) const
{
    auto record = info.Create();
    record->SetValidate(m_validate);
    return record;
}

std::shared_ptr<RecordStep::Data> StepMaker::newStep(RecordStep::Kind kind, const RecordNode& node)
{
    auto step = std::make_shared<RecordStep::Data>();
    step->kind = kind;
    step->path = RecordTree::pathOf(node);
    step->name = step->path.section(QLatin1Char('/'), -1);
    step->place = RecordTree::placeOf(node);
    step->member = node.member;
    return step;
}

// A change of the record at the row of one, of which changed is what somebody has edited. A change below a
// record that is not set also sets that one; then the step is about the record around it.
RecordStep StepMaker::changeOf(const RecordNode& changed, const RecordNode& record,
                               const Change& change) const
{
    const RecordNode* const unset = m_tree.outermostUnset(changed);
    const RecordNode& top = unset ? RecordTree::ownerNode(*unset) : record;
    auto step = newStep(RecordStep::Kind::Content, changed);
    step->place = RecordTree::placeOf(top);
    step->recordBefore = copyOf(m_tree.recordAt(top));
    auto after = copyOf(m_tree.recordAt(top));
    change(RecordTree::edit(record, top, *after));
    step->recordAfter = std::move(after);
    return RecordStep(std::move(step));
}

StepMaker::Wanted StepMaker::setValue(const RecordNode& node, const QVariant& value) const
{
    const MemberInfo& member = *node.member;
    const RecordNode& owner = RecordTree::ownerNode(node);
    const auto trial = newRecord(*owner.info);
    member.SetValue(*trial, value);
    const QVariant accepted = member.GetValue(*trial);

    const RecordNode* const unset = m_tree.outermostUnset(node);
    const QVariant before = m_tree.isSet(node) ? member.GetValue(m_tree.recordAt(owner)) : QVariant();
    if (!unset && ROUTERDOCUMENTS::IsSameValue(member, before, accepted))
        return std::nullopt;
    if (unset && unset != &node)
        return changeOf(node, owner, [&](IMKObject& record) { member.SetValue(record, accepted); });
    auto step = newStep(RecordStep::Kind::Value, node);
    step->valueBefore = before;
    step->valueAfter = accepted;
    return RecordStep(std::move(step));
}

StepMaker::Wanted StepMaker::setPresent(const RecordNode& node, bool isPresent) const
{
    if (m_tree.isSet(node) == isPresent)
        return std::nullopt;
    const MemberInfo& member = *node.member;
    const RecordNode& owner = RecordTree::ownerNode(node);
    if (isPresent && node.isValue())
        return setValue(node, firstValue(member, m_tree.recordAt(owner)));
    if (isPresent)
        return changeOf(node, owner, [&](IMKObject& record) { member.EditRecord(record); });
    if (!node.isValue() || m_tree.outermostUnset(node))
        return changeOf(node, owner, [&](IMKObject& record) { member.Reset(record); });
    auto step = newStep(RecordStep::Kind::Value, node);
    step->valueBefore = member.GetValue(m_tree.recordAt(owner));
    return RecordStep(std::move(step));
}

StepMaker::Wanted StepMaker::choose(const RecordNode& node, const MemberInfo* payload) const
{
    const IMKObject& record = m_tree.recordAt(node);
    if (node.info->GetSelected(record) == payload && (!payload || payload->IsSet(record)))
        return std::nullopt;
    return changeOf(node, node, [&](IMKObject& choice) {
        if (payload)
            payload->Select(choice);
        else
            node.info->ClearSelection(choice);
    });
}

StepMaker::Wanted StepMaker::setContent(const RecordNode& node, const IMKObject& content) const
{
    if (&RecordInfo::Of(content) != node.info)
        throw std::bad_cast();
    if (node.isItem()) {
        const auto trial = newRecord(*RecordTree::ownerNode(node).info);
        node.member->AppendItem(*trial, content);
    }
    if (node.isRoot() || node.isItem() || m_tree.isSet(node))
        return changeOf(node, node, [&](IMKObject& record) { node.info->Assign(record, content); });
    return changeOf(node, RecordTree::ownerNode(node),
                    [&](IMKObject& record) { node.member->SetRecord(record, content); });
}

StepMaker::Wanted StepMaker::insertItems(const RecordNode& list, int row, Items items) const
{
    const MemberInfo& member = *list.member;
    const RecordNode& owner = RecordTree::ownerNode(list);
    const auto trial = newRecord(*owner.info);
    for (const auto& item : items)
        member.AppendItem(*trial, *item);
    if (m_tree.outermostUnset(list))
        return changeOf(list, owner, [&](IMKObject& record) {
            for (int i = 0; i < static_cast<int>(items.size()); ++i)
                member.InsertItem(record, row + i, *items[static_cast<std::size_t>(i)]);
        });
    auto step = newStep(RecordStep::Kind::Insertion, list);
    step->row = row;
    step->count = static_cast<int>(items.size());
    step->items = std::move(items);
    return RecordStep(std::move(step));
}

StepMaker::Wanted StepMaker::removeItems(const RecordNode& list, int row, int count) const
{
    if (m_tree.outermostUnset(list))
        return changeOf(list, RecordTree::ownerNode(list), [&](IMKObject& record) {
            for (int i = 0; i < count; ++i)
                list.member->RemoveItem(record, row);
        });
    auto step = newStep(RecordStep::Kind::Removal, list);
    step->row = row;
    step->count = count;
    for (int i = row; i < row + count; ++i)
        step->items.push_back(copyOf(list.member->GetItem(m_tree.ownerOf(list), i)));
    return RecordStep(std::move(step));
}

StepMaker::Wanted StepMaker::moveItems(const RecordNode& list, int row, int count, int to) const
{
    if (row == to || count == 0)
        return std::nullopt;
    if (m_tree.outermostUnset(list))
        return changeOf(list, RecordTree::ownerNode(list),
                        [&](IMKObject& record) { moveItemsIn(record, *list.member, row, count, to); });
    auto step = newStep(RecordStep::Kind::Move, list);
    step->row = row;
    step->count = count;
    step->to = to;
    return RecordStep(std::move(step));
}

} // namespace ROUTERMODELS
