// SPDX-License-Identifier: MIT
#include "models/RecordItemModel.h"

#include "models/Cells.h"
#include "models/ModelMachine.h"

#include "documents/Text.h"
#include "documents/ValueTexts.h"
#include "routerinterface/RecordInfo.h"

#include <utility>

namespace ROUTERMODELS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

namespace {

int editorOf(const RecordNode& node)
{
    if (node.isChoice())
        return RecordItemModel::PayloadEditor;
    if (!node.isValue())
        return RecordItemModel::NoEditor;
    switch (node.member->GetKind()) {
    case MemberInfo::UnsignedInteger:
        return RecordItemModel::IntegerEditor;
    case MemberInfo::Decimal:
        return RecordItemModel::DecimalEditor;
    case MemberInfo::Text:
        return RecordItemModel::TextEditor;
    case MemberInfo::Boolean:
    case MemberInfo::Enumeration:
        return RecordItemModel::ListEditor;
    case MemberInfo::Record:
    case MemberInfo::List:
        break;
    }
    return RecordItemModel::NoEditor;
}

// A choice by its number or name; -2 if it is none.
int payloadIn(const RecordInfo& info, const QVariant& value)
{
    const auto& members = info.GetMembers();
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    if (isNumber)
        return number >= -1 && number < static_cast<int>(members.size()) ? number : -2;
    const QString name = value.toString();
    if (!value.isValid() || name.isEmpty())
        return value.isValid() ? -1 : -2;
    const MemberInfo* const member = info.FindMember(name);
    return member ? static_cast<int>(members.indexOf(member)) : -2;
}

} // namespace

RecordItemModel::RecordItemModel(QObject* parent) : RecordItemModel(*RecordInfo::Document().Create(), parent)
{}

RecordItemModel::RecordItemModel(const IMKObject& record, QObject* parent)
    : QAbstractItemModel(parent), m_machine(std::make_unique<Machine>(*this, record))
{}

RecordItemModel::~RecordItemModel() = default;

// --- the record

void RecordItemModel::SetRecord(const IMKObject& record) { m_machine->setRecord(record); }

const IMKObject& RecordItemModel::GetRecord() const { return m_machine->tree().record(); }

const IMKObject* RecordItemModel::FindRecord(const QModelIndex& index) const
{
    const RecordNode* const node = Machine::nodeOf(index);
    return node && node->isRecord() ? &m_machine->tree().recordAt(*node) : nullptr;
}

void RecordItemModel::SetValidation(ROUTERDOCUMENTS::Validation validation)
{
    m_machine->validation = validation;
}

ROUTERDOCUMENTS::Validation RecordItemModel::GetValidation() const { return m_machine->validation; }

QString RecordItemModel::GetPath(const QModelIndex& index) const
{
    const RecordNode* const node = Machine::nodeOf(index);
    return node ? RecordTree::pathOf(*node) : QString();
}

QModelIndex RecordItemModel::FindPath(const QString& path) const
{
    const RecordNode* const node = m_machine->tree().find(path);
    return node ? m_machine->indexOf(*node) : QModelIndex();
}

// --- structure

QModelIndex RecordItemModel::index(int row, int column, const QModelIndex& parent) const
{
    if (row < 0 || column < 0 || row >= rowCount(parent) || column >= ColumnCount)
        return QModelIndex();
    RecordNode* const above = Machine::nodeOf(parent);
    return createIndex(row, column, above ? &above->child(row) : &m_machine->tree().root());
}

QModelIndex RecordItemModel::parent(const QModelIndex& child) const
{
    const RecordNode* const node = Machine::nodeOf(child);
    return node && node->parent ? m_machine->indexOf(*node->parent) : QModelIndex();
}

int RecordItemModel::rowCount(const QModelIndex& parent) const
{
    RecordNode* const node = Machine::nodeOf(parent);
    if (!node)
        return 1;
    if (parent.column() != NameColumn)
        return 0;
    m_machine->tree().populate(*node);
    return node->count();
}

int RecordItemModel::columnCount(const QModelIndex& parent) const
{
    return parent.column() > NameColumn ? 0 : ColumnCount;
}

// --- content

QVariant RecordItemModel::data(const QModelIndex& index, int role) const
{
    const RecordNode* const node = Machine::nodeOf(index);
    if (!node)
        return QVariant();
    const RecordTree& tree = m_machine->tree();
    switch (role) {
    case IsSetRole:
        return tree.isSet(*node);
    case PathRole:
        return RecordTree::pathOf(*node);
    case EditorRole:
        return editorOf(*node);
    case ChoicesRole:
        return choicesAt(*node);
    case Qt::CheckStateRole:
        if (index.column() != NameColumn || node->isRoot() || node->isItem())
            return QVariant();
        return tree.isSet(*node) ? Qt::Checked : Qt::Unchecked;
    case Qt::ToolTipRole:
        return index.column() == ValueColumn ? hintText(*node) : QVariant();
    case Qt::EditRole:
        if (index.column() == ValueColumn)
            return editedValue(tree, *node);
        [[fallthrough]];
    case Qt::DisplayRole:
        if (index.column() == ValueColumn)
            return valueText(tree, *node);
        return index.column() == NameColumn ? nameText(*node) : typeText(*node);
    default:
        return QVariant();
    }
}

QVariant RecordItemModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractItemModel::headerData(section, orientation, role);
    switch (section) {
    case NameColumn:
        return tr("Name");
    case ValueColumn:
        return tr("Value");
    case TypeColumn:
        return tr("Type");
    default:
        return QVariant();
    }
}

Qt::ItemFlags RecordItemModel::flags(const QModelIndex& index) const
{
    Qt::ItemFlags flags = QAbstractItemModel::flags(index);
    const RecordNode* const node = Machine::nodeOf(index);
    if (!node)
        return flags;
    if (node->isValue())
        flags |= Qt::ItemNeverHasChildren;
    if (index.column() == ValueColumn && editorOf(*node) != NoEditor)
        flags |= Qt::ItemIsEditable;
    const bool hasMark = index.column() == NameColumn && !node->isRoot() && !node->isItem();
    if (hasMark && (!node->isList() || m_machine->tree().isSet(*node)))
        flags |= Qt::ItemIsUserCheckable;
    return flags;
}

QHash<int, QByteArray> RecordItemModel::roleNames() const
{
    QHash<int, QByteArray> names = QAbstractItemModel::roleNames();
    names.insert(Qt::CheckStateRole, "checkState");
    names.insert(IsSetRole, "isSet");
    names.insert(PathRole, "path");
    names.insert(EditorRole, "editor");
    names.insert(ChoicesRole, "choices");
    return names;
}

void RecordItemModel::Retranslate() { m_machine->retranslate(); }

// --- editing

bool RecordItemModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    const RecordNode* const node = Machine::nodeOf(index);
    if (!node)
        return false;
    const bool isMark = index.column() == NameColumn && role == Qt::CheckStateRole;
    if (isMark && flags(index).testFlag(Qt::ItemIsUserCheckable))
        return m_machine->edit(*node, [&](const StepMaker& maker) {
            return maker.setPresent(*node, value.toInt() == Qt::Checked);
        });
    if (index.column() != ValueColumn || role != Qt::EditRole)
        return false;
    if (node->isValue())
        return m_machine->edit(*node, [&](const StepMaker& maker) { return maker.setValue(*node, value); });
    if (!node->isChoice())
        return false;
    const int payload = payloadIn(*node->info, value);
    if (payload < -1) {
        m_machine->refuse(*node, QStringLiteral("%1 is no payload of %2.")
                                     .arg(ROUTERDOCUMENTS::Quoted(value.toString()), node->info->GetName()));
        return false;
    }
    return m_machine->edit(*node, [&](const StepMaker& maker) {
        return maker.choose(*node, node->info->GetMembers().value(payload));
    });
}

bool RecordItemModel::SetContent(const QModelIndex& index, const IMKObject& content)
{
    const RecordNode* const node = Machine::nodeOf(index);
    if (!node || !node->isRecord())
        return false;
    return m_machine->edit(*node, [&](const StepMaker& maker) { return maker.setContent(*node, content); });
}

bool RecordItemModel::InsertItem(const QModelIndex& list, int row, const IMKObject& item)
{
    const RecordNode* const node = Machine::nodeOf(list);
    if (!node || !node->isList() || row < 0 || row > rowCount(list.siblingAtColumn(NameColumn)))
        return false;
    return m_machine->edit(*node, [&](const StepMaker& maker) {
        StepMaker::Items items;
        items.push_back(copyOf(item));
        return maker.insertItems(*node, row, std::move(items));
    });
}

bool RecordItemModel::InsertPayload(const QModelIndex& list, int row, int payload)
{
    const RecordNode* const node = Machine::nodeOf(list);
    if (!node || !node->isList())
        return false;
    const RecordInfo& info = *node->member->GetClass();
    const MemberInfo* const member = info.GetMembers().value(payload);
    if (!info.IsChoice() || !member)
        return false;
    const auto item = info.Create();
    member->Select(*item);
    return InsertItem(list, row, *item);
}

bool RecordItemModel::insertRows(int row, int count, const QModelIndex& parent)
{
    const RecordNode* const node = Machine::nodeOf(parent);
    if (!node || !node->isList() || count < 1 || row < 0 || row > rowCount(parent))
        return false;
    return m_machine->edit(*node, [&](const StepMaker& maker) {
        StepMaker::Items items;
        for (int i = 0; i < count; ++i)
            items.push_back(node->member->GetClass()->Create());
        return maker.insertItems(*node, row, std::move(items));
    });
}

bool RecordItemModel::removeRows(int row, int count, const QModelIndex& parent)
{
    const RecordNode* const node = Machine::nodeOf(parent);
    if (!node || !node->isList() || count < 1 || row < 0 || count > rowCount(parent) - row)
        return false;
    return m_machine->edit(*node,
                           [&](const StepMaker& maker) { return maker.removeItems(*node, row, count); });
}

bool RecordItemModel::moveRows(const QModelIndex& sourceParent, int sourceRow, int count,
                               const QModelIndex& destinationParent, int destinationChild)
{
    const RecordNode* const node = Machine::nodeOf(sourceParent);
    const int size = rowCount(sourceParent);
    if (!node || !node->isList() || destinationParent != sourceParent || count < 1 || sourceRow < 0
        || count > size - sourceRow || destinationChild < 0 || destinationChild > size)
        return false;
    // Views do not move rows to where they are.
    if (destinationChild >= sourceRow && destinationChild <= sourceRow + count)
        return false;
    const int to = destinationChild > sourceRow ? destinationChild - count : destinationChild;
    return m_machine->edit(
        *node, [&](const StepMaker& maker) { return maker.moveItems(*node, sourceRow, count, to); });
}

bool RecordItemModel::Apply(const RecordStep& step) { return m_machine->run(step, true); }

bool RecordItemModel::Revert(const RecordStep& step) { return m_machine->run(step, false); }

} // namespace ROUTERMODELS
