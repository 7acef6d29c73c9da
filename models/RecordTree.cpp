// SPDX-License-Identifier: MIT
#include "models/RecordTree.h"

#include "documents/MemberPath.h"

#include <QtCore/QStringList>

#include <algorithm>
#include <iterator>

namespace ROUTERMODELS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

std::unique_ptr<IMKObject> copyOf(const IMKObject& record)
{
    const RecordInfo& info = RecordInfo::Of(record);
    auto copy = info.Create();
    info.Assign(*copy, record);
    return copy;
}

void moveItemsIn(IMKObject& owner, const MemberInfo& list, int index, int count, int to)
{
    for (int i = 0; i < count; ++i) {
        if (to > index)
            list.MoveItem(owner, index, to + count - 1);
        else
            list.MoveItem(owner, index + i, to + i);
    }
}

RecordTree::RecordTree(const IMKObject& record) : m_record(copyOf(record))
{
    m_root.info = &RecordInfo::Of(record);
}

// --- rows

std::unique_ptr<RecordNode> RecordTree::newChild(RecordNode& parent, const MemberInfo& member)
{
    auto child = std::make_unique<RecordNode>();
    child->parent = &parent;
    child->member = &member;
    if (member.GetKind() == MemberInfo::Record || parent.isList())
        child->info = member.GetClass();
    return child;
}

void RecordTree::renumber(RecordNode& parent, int from)
{
    for (int row = from; row < parent.count(); ++row)
        parent.child(row).row = row;
}

void RecordTree::populate(RecordNode& node)
{
    if (node.isPopulated)
        return;
    if (node.isList())
        addChildren(node, 0, node.member->CountItems(ownerOf(node)));
    else if (node.isChoice())
        addChildren(node, 0, node.info->GetSelected(recordAt(node)) ? 1 : 0);
    else if (node.isRecord())
        for (const MemberInfo* member : node.info->GetMembers())
            node.children.push_back(newChild(node, *member));
    renumber(node, 0);
    node.isPopulated = true;
}

void RecordTree::addChildren(RecordNode& parent, int row, int count)
{
    std::vector<std::unique_ptr<RecordNode>> added;
    for (int i = 0; i < count; ++i) {
        const MemberInfo& member =
            parent.isList() ? *parent.member : *parent.info->GetSelected(recordAt(parent));
        added.push_back(newChild(parent, member));
        added.back()->number = row + i + 1;
    }
    parent.children.insert(parent.children.begin() + row, std::make_move_iterator(added.begin()),
                           std::make_move_iterator(added.end()));
    renumber(parent, row);
}

std::vector<std::unique_ptr<RecordNode>> RecordTree::takeChildren(RecordNode& parent, int row, int count)
{
    const auto first = parent.children.begin() + row;
    std::vector<std::unique_ptr<RecordNode>> taken(std::make_move_iterator(first),
                                                   std::make_move_iterator(first + count));
    parent.children.erase(first, first + count);
    renumber(parent, row);
    return taken;
}

void RecordTree::moveChildren(RecordNode& parent, int row, int count, int to)
{
    const auto begin = parent.children.begin();
    if (to > row)
        std::rotate(begin + row, begin + row + count, begin + to + count);
    else
        std::rotate(begin + to, begin + row, begin + row + count);
    renumber(parent, std::min(row, to));
}

// --- records

const RecordNode& RecordTree::ownerNode(const RecordNode& node)
{
    const RecordNode* owner = node.parent;
    while (!owner->isRecord())
        owner = owner->parent;
    return *owner;
}

const IMKObject& RecordTree::recordAt(const RecordNode& node) const
{
    if (node.isRoot())
        return *m_record;
    return node.isItem() ? node.member->GetItem(ownerOf(node), node.row)
                         : node.member->GetRecord(ownerOf(node));
}

IMKObject& RecordTree::edit(const RecordNode& node) { return edit(node, m_root, *m_record); }

IMKObject& RecordTree::edit(const RecordNode& node, const RecordNode& top, IMKObject& record)
{
    if (&node == &top)
        return record;
    IMKObject& owner = edit(ownerNode(node), top, record);
    return node.isItem() ? node.member->EditItem(owner, node.row) : node.member->EditRecord(owner);
}

bool RecordTree::isSet(const RecordNode& node) const
{
    return node.isRoot() || node.isItem() || node.member->IsSet(ownerOf(node));
}

const RecordNode* RecordTree::outermostUnset(const RecordNode& node) const
{
    const RecordNode* outermost = nullptr;
    for (const RecordNode* above = &node; above; above = above->parent)
        if (!isSet(*above))
            outermost = above;
    return outermost;
}

// --- places

QVector<int> RecordTree::placeOf(const RecordNode& node)
{
    QVector<int> place;
    for (const RecordNode* above = &node; !above->isRoot(); above = above->parent)
        place.prepend(above->row);
    return place;
}

RecordNode* RecordTree::nodeAt(const QVector<int>& place)
{
    RecordNode* node = &m_root;
    for (const int row : place) {
        populate(*node);
        if (row < 0 || row >= node->count())
            return nullptr;
        node = &node->child(row);
    }
    return node;
}

QString RecordTree::pathOf(const RecordNode& node)
{
    QVector<const RecordNode*> way;
    for (const RecordNode* above = &node; above; above = above->parent)
        way.prepend(above);
    ROUTERDOCUMENTS::MemberPath path;
    for (const RecordNode* step : way) {
        if (step->isItem())
            path.SetNumbers(step->row + 1, step->row + 1);
        else
            path.Enter({step->member ? step->member->GetName() : step->info->GetName(), 0, 0});
    }
    return path.ToText();
}

RecordNode* RecordTree::findChild(RecordNode& node, const QString& name)
{
    populate(node);
    const auto found = std::find_if(node.children.begin(), node.children.end(),
                                    [&name](const auto& child) { return child->member->GetName() == name; });
    return found == node.children.end() ? nullptr : found->get();
}

RecordNode* RecordTree::find(const QString& path)
{
    QStringList steps = path.split(QLatin1Char('/'));
    const bool isFromRoot = steps.constFirst().isEmpty();
    if (isFromRoot)
        steps.removeFirst();
    if (!steps.isEmpty() && steps.constFirst() == m_root.info->GetName())
        steps.removeFirst();
    else if (isFromRoot)
        return nullptr;
    RecordNode* node = &m_root;
    for (const QString& step : std::as_const(steps)) {
        // Only the end of a path may be a list as a whole.
        if (node->isList())
            return nullptr;
        const auto bracket = step.indexOf(QLatin1Char('['));
        node = findChild(*node, step.left(bracket));
        if (!node || (!node->isList() && bracket >= 0))
            return nullptr;
        if (!node->isList() || (bracket < 0 && !isFromRoot))
            continue;
        bool isNumber = bracket < 0;
        const int number = isNumber ? 1 : step.mid(bracket + 1, step.size() - bracket - 2).toInt(&isNumber);
        populate(*node);
        if (!isNumber || number < 1 || number > node->count()
            || (bracket >= 0 && !step.endsWith(QLatin1Char(']'))))
            return nullptr;
        node = &node->child(number - 1);
    }
    return node;
}

} // namespace ROUTERMODELS
