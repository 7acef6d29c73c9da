// SPDX-License-Identifier: MIT
#include "models/ModelMachine.h"

#include "modelkit/Exceptions.h"

#include <algorithm>

namespace ROUTERMODELS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

void RecordItemModel::Machine::setRecord(const IMKObject& record)
{
    // Made first: what is no record leaves the model as it is.
    auto tree = std::make_unique<RecordTree>(record);
    m_model.beginResetModel();
    m_tree.swap(tree);
    m_model.endResetModel();
}

QModelIndex RecordItemModel::Machine::indexOf(const RecordNode& node, int column) const
{
    return m_model.createIndex(node.row, column, const_cast<RecordNode*>(&node));
}

// --- steps

bool RecordItemModel::Machine::edit(const RecordNode& node,
                                    const std::function<StepMaker::Wanted(const StepMaker&)>& wanted)
{
    StepMaker::Wanted step;
    try {
        step = wanted(StepMaker(*m_tree, validation == ROUTERDOCUMENTS::Validation::On));
    } catch (const MKException& refusal) {
        refuse(node, refusal.GetText());
        return false;
    }
    if (!step)
        return true;
    if (!run(*step, true))
        return false;
    Q_EMIT m_model.Edited(*step);
    return true;
}

void RecordItemModel::Machine::refuse(const RecordNode& node, const QString& reason)
{
    Q_EMIT m_model.Refused(RecordTree::pathOf(node), reason);
}

bool RecordItemModel::Machine::run(const RecordStep& made, bool isForward)
{
    const RecordStep::Data& step = *made.m_data;
    RecordNode* const node = m_tree->nodeAt(step.place);
    if (!fits(step, isForward, node))
        return false;
    // Rules were applied when the step was made, perhaps others than now.
    if (m_tree->record().GetValidate())
        m_tree->record().SetValidate(false);
    switch (step.kind) {
    case RecordStep::Kind::Nothing:
        break;
    case RecordStep::Kind::Value:
        changeValue(*node, isForward ? step.valueAfter : step.valueBefore);
        break;
    case RecordStep::Kind::Content:
        changeContent(*node, isForward ? *step.recordAfter : *step.recordBefore);
        break;
    case RecordStep::Kind::Insertion:
    case RecordStep::Kind::Removal:
        if (isForward == (step.kind == RecordStep::Kind::Insertion))
            insertItems(*node, step.row, step.items);
        else
            removeItems(*node, step.row, step.count);
        break;
    case RecordStep::Kind::Move:
        if (isForward)
            moveItems(*node, step.row, step.count, step.to);
        else
            moveItems(*node, step.to, step.count, step.row);
        break;
    }
    return true;
}

bool RecordItemModel::Machine::fits(const RecordStep::Data& step, bool isForward, RecordNode* node)
{
    if (step.kind == RecordStep::Kind::Nothing)
        return true;
    if (!node)
        return false;
    const RecordNode* const unset = m_tree->outermostUnset(*node);
    switch (step.kind) {
    case RecordStep::Kind::Nothing:
        break;
    case RecordStep::Kind::Value:
        return node->isValue() && node->member == step.member && (!unset || unset == node);
    case RecordStep::Kind::Content:
        return !unset && node->info == &RecordInfo::Of(*step.recordAfter);
    case RecordStep::Kind::Insertion:
    case RecordStep::Kind::Removal:
    case RecordStep::Kind::Move:
        return !unset && node->isList() && node->member == step.member && fitsList(step, isForward, *node);
    }
    return false;
}

bool RecordItemModel::Machine::fitsList(const RecordStep::Data& step, bool isForward, RecordNode& list)
{
    const int size = list.member->CountItems(m_tree->ownerOf(list));
    if (step.kind == RecordStep::Kind::Move)
        return step.row + step.count <= size && step.to + step.count <= size;
    const bool isInsertion = isForward == (step.kind == RecordStep::Kind::Insertion);
    return step.row + (isInsertion ? 0 : step.count) <= size;
}

// --- values and contents

void RecordItemModel::Machine::changeValue(RecordNode& node, const QVariant& value)
{
    IMKObject& owner = m_tree->edit(RecordTree::ownerNode(node));
    if (value.isValid())
        node.member->SetValue(owner, value);
    else
        node.member->Reset(owner);
    tellWithOwners(node);
}

// The rows that the new content does not have go while the record still has the old one, and those that the
// old one does not have come when it has the new one. So every row that views know can always be read.
void RecordItemModel::Machine::changeContent(RecordNode& node, const IMKObject& content)
{
    // A view that is told of the end of one row may ask for others for the first time.
    while (shrink(node, content))
        continue;
    node.info->Assign(m_tree->edit(node), content);
    grow(node);
    tellBelow(node);
    tellWithOwners(node);
}

// Removes the rows below a record that it will not have in future. True if there were any.
bool RecordItemModel::Machine::shrink(RecordNode& node, const IMKObject& future)
{
    if (!node.isPopulated)
        return false;
    if (node.isChoice() && node.count() > 0 && node.child(0).member != node.info->GetSelected(future)) {
        removeRowsOf(node, 0, 1);
        return true;
    }
    bool isShrunk = false;
    for (const auto& child : node.children) {
        if (child->isList())
            isShrunk |= shrinkList(*child, future);
        else if (child->isRecord())
            isShrunk |= shrink(*child, child->member->GetRecord(future));
    }
    return isShrunk;
}

// Future: the record with the list.
bool RecordItemModel::Machine::shrinkList(RecordNode& list, const IMKObject& future)
{
    if (!list.isPopulated)
        return false;
    const int count = list.member->CountItems(future);
    bool isShrunk = list.count() > count;
    if (isShrunk)
        removeRowsOf(list, count, list.count() - count);
    for (int i = 0; i < list.count(); ++i)
        isShrunk |= shrink(list.child(i), list.member->GetItem(future, i));
    return isShrunk;
}

// Adds the rows that the record below one has and the tree lacks.
void RecordItemModel::Machine::grow(RecordNode& node)
{
    if (!node.isPopulated)
        return;
    if (node.isList()) {
        const int missing = node.member->CountItems(m_tree->ownerOf(node)) - node.count();
        if (missing > 0)
            insertRowsOf(node, node.count(), missing);
    } else if (node.isChoice() && node.count() == 0 && node.info->GetSelected(m_tree->recordAt(node))) {
        insertRowsOf(node, 0, 1);
    }
    for (int row = 0; row < node.count(); ++row)
        grow(node.child(row));
}

void RecordItemModel::Machine::removeRowsOf(RecordNode& parent, int row, int count)
{
    m_model.beginRemoveRows(indexOf(parent), row, row + count - 1);
    const auto removed = m_tree->takeChildren(parent, row, count);
    m_model.endRemoveRows();
}

void RecordItemModel::Machine::insertRowsOf(RecordNode& parent, int row, int count)
{
    m_model.beginInsertRows(indexOf(parent), row, row + count - 1);
    m_tree->addChildren(parent, row, count);
    m_model.endInsertRows();
}

// --- items

void RecordItemModel::Machine::insertItems(RecordNode& list, int row, const Items& items)
{
    m_tree->populate(list);
    const int count = static_cast<int>(items.size());
    m_model.beginInsertRows(indexOf(list), row, row + count - 1);
    IMKObject& owner = m_tree->edit(RecordTree::ownerNode(list));
    for (int i = 0; i < count; ++i)
        list.member->InsertItem(owner, row + i, *items[static_cast<std::size_t>(i)]);
    m_tree->addChildren(list, row, count);
    m_model.endInsertRows();
    tellNumbers(list, row + count);
    tellWithOwners(list);
}

void RecordItemModel::Machine::removeItems(RecordNode& list, int row, int count)
{
    m_tree->populate(list);
    m_model.beginRemoveRows(indexOf(list), row, row + count - 1);
    IMKObject& owner = m_tree->edit(RecordTree::ownerNode(list));
    for (int i = 0; i < count; ++i)
        list.member->RemoveItem(owner, row);
    const auto removed = m_tree->takeChildren(list, row, count);
    m_model.endRemoveRows();
    tellNumbers(list, row);
    tellWithOwners(list);
}

void RecordItemModel::Machine::moveItems(RecordNode& list, int row, int count, int to)
{
    m_tree->populate(list);
    const QModelIndex parent = indexOf(list);
    m_model.beginMoveRows(parent, row, row + count - 1, parent, to > row ? to + count : to);
    moveItemsIn(m_tree->edit(RecordTree::ownerNode(list)), *list.member, row, count, to);
    RecordTree::moveChildren(list, row, count, to);
    m_model.endMoveRows();
    tellNumbers(list, std::min(row, to));
    tellWithOwners(list);
}

// --- telling views

// The names of items have the old numbers until now: views may not meet changes that they were not told of.
void RecordItemModel::Machine::tellNumbers(RecordNode& list, int from)
{
    if (from >= list.count())
        return;
    for (int row = from; row < list.count(); ++row)
        list.child(row).number = row + 1;
    Q_EMIT m_model.dataChanged(indexOf(list.child(from)), indexOf(list.child(list.count() - 1)));
}

void RecordItemModel::Machine::tellRow(const RecordNode& node)
{
    Q_EMIT m_model.dataChanged(indexOf(node), indexOf(node, ColumnCount - 1));
}

void RecordItemModel::Machine::tellWithOwners(const RecordNode& node)
{
    for (const RecordNode* above = &node; above; above = above->parent)
        tellRow(*above);
}

void RecordItemModel::Machine::tellBelow(const RecordNode& node)
{
    if (node.count() == 0)
        return;
    Q_EMIT m_model.dataChanged(indexOf(node.child(0)),
                               indexOf(node.child(node.count() - 1), ColumnCount - 1));
    for (int row = 0; row < node.count(); ++row)
        tellBelow(node.child(row));
}

void RecordItemModel::Machine::retranslate()
{
    Q_EMIT m_model.headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
    tellBelow(m_tree->root());
    tellRow(m_tree->root());
}

} // namespace ROUTERMODELS
