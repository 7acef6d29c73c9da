// SPDX-License-Identifier: MIT
// The rows of a RecordItemModel as a tree, and the records at them. Not installed.
#pragma once

#include "modelkit/IMKObject.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QString>
#include <QtCore/QVector>

#include <memory>
#include <vector>

namespace ROUTERMODELS {

// A row: the root, a member, or an item of a list. Its children are the members of a record, the selected
// member of a choice, or the items of a list.
struct RecordNode
{
    using MemberInfo = PELLU300ROUTERINTERFACEXML::MemberInfo;
    using RecordInfo = PELLU300ROUTERINTERFACEXML::RecordInfo;

    bool isRoot() const { return !member; }
    bool isItem() const { return parent && parent->isList(); }
    bool isList() const { return member && !info && member->GetKind() == MemberInfo::List; }
    bool isRecord() const { return info != nullptr; }
    bool isChoice() const { return info && info->IsChoice(); }
    bool isValue() const { return member && !info && !isList(); }
    int count() const { return static_cast<int>(children.size()); }
    RecordNode& child(int index) const { return *children[static_cast<std::size_t>(index)]; }

    RecordNode* parent = nullptr;
    // The member; of an item, the list; null for the root.
    const MemberInfo* member = nullptr;
    // The class of the record at this row; null for values and lists.
    const RecordInfo* info = nullptr;
    int row = 0;
    // The number of an item as it was last displayed.
    int number = 0;
    // Whether the children have been made. Nobody knows them before.
    bool isPopulated = false;
    std::vector<std::unique_ptr<RecordNode>> children;
};

// A copy that shares its data with the record.
std::unique_ptr<MODELKIT::IMKObject> copyOf(const MODELKIT::IMKObject& record);

// Moves items of a list. To: the index of the first one afterwards.
void moveItemsIn(MODELKIT::IMKObject& owner, const PELLU300ROUTERINTERFACEXML::MemberInfo& list, int index,
                 int count, int to);

// Changes of the record below change no rows: the owner of the tree does that, because it tells views of it.
class RecordTree
{
public:
    explicit RecordTree(const MODELKIT::IMKObject& record);

    RecordNode& root() { return m_root; }
    const MODELKIT::IMKObject& record() const { return *m_record; }

    // Makes the children unless that has been done.
    void populate(RecordNode& node);
    // Gives a parent new children in front of the one with that row. To a choice, the member that it carries.
    void addChildren(RecordNode& parent, int row, int count);
    // The caller keeps the children until nobody refers to them any more.
    std::vector<std::unique_ptr<RecordNode>> takeChildren(RecordNode& parent, int row, int count);
    static void moveChildren(RecordNode& parent, int row, int count, int to);

    // The record at the row of one.
    const MODELKIT::IMKObject& recordAt(const RecordNode& node) const;
    // The record whose member is at the row; for an item, the one with the list.
    const MODELKIT::IMKObject& ownerOf(const RecordNode& node) const { return recordAt(ownerNode(node)); }
    static const RecordNode& ownerNode(const RecordNode& node);
    // The same for changing in place. Sets the records on the way.
    MODELKIT::IMKObject& edit(const RecordNode& node);
    // Does the same in a record other than the one of the tree, which is at the row of top.
    static MODELKIT::IMKObject& edit(const RecordNode& node, const RecordNode& top,
                                     MODELKIT::IMKObject& record);

    // Whether the member is set. The root and items always are.
    bool isSet(const RecordNode& node) const;
    // The outermost of the node and those above it that is not set; null if all are.
    const RecordNode* outermostUnset(const RecordNode& node) const;

    // The rows on the way from the root, and what is there; null when there is no such row.
    static QVector<int> placeOf(const RecordNode& node);
    RecordNode* nodeAt(const QVector<int>& place);

    // "PelLu300RouterMessage/Fragment[2]/DF_Params"; the root itself has its name.
    static QString pathOf(const RecordNode& node);
    // Such a path, or one that begins with "/" and the root, where an item without number is the first one.
    RecordNode* find(const QString& path);

private:
    static std::unique_ptr<RecordNode> newChild(RecordNode& parent,
                                                const PELLU300ROUTERINTERFACEXML::MemberInfo& member);
    static void renumber(RecordNode& parent, int from);
    RecordNode* findChild(RecordNode& node, const QString& name);

    std::unique_ptr<MODELKIT::IMKObject> m_record;
    RecordNode m_root;
};

} // namespace ROUTERMODELS
