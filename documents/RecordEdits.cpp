// SPDX-License-Identifier: MIT
#include "documents/RecordEdits.h"

#include "documents/Text.h"
#include "documents/ValueTexts.h"

#include <algorithm>
#include <memory>

namespace ROUTERDOCUMENTS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

// --- understanding changes

void RecordEdits::Set(const QString& change)
{
    const auto equals = change.indexOf(QLatin1Char('='));
    const QString path = change.left(equals);
    Edit edit{change, PathPattern(path, PathPattern::ForEditing), false, {}, false};
    const auto& members = edit.pattern.GetMembers();
    const bool isRecord = members.isEmpty() || members.constFirst()->GetClass();
    if (isRecord && equals >= 0)
        throw InvalidEdit(
            QStringLiteral("%1 is a record and has no value of its own. Set one of its members.")
                .arg(Quoted(path)));
    if (!isRecord && equals < 0)
        throw InvalidEdit(QStringLiteral("%1 needs a value: %2=...").arg(Quoted(path), Printable(path)));
    if (members.isEmpty())
        throw InvalidEdit(QStringLiteral("%1 is the whole document.").arg(Quoted(path)));
    const QString text = change.mid(equals + 1);
    for (const MemberInfo* member : members) {
        if (isRecord)
            break;
        const QVariant value = ValueFromText(*member, text);
        if (!value.isValid())
            throw InvalidEdit(QStringLiteral("%1: %2").arg(Printable(path), WrongValue(*member, text)));
        edit.values.insert(member, value);
    }
    m_edits += edit;
}

void RecordEdits::Unset(const QString& path)
{
    const Edit edit{path, PathPattern(path, PathPattern::ForEditing), true, {}, false};
    const auto& steps = edit.pattern.GetSteps();
    if (edit.pattern.GetMembers().isEmpty())
        throw InvalidEdit(QStringLiteral("%1 is the whole document.").arg(Quoted(path)));
    if (std::any_of(steps.begin(), steps.end(),
                    [](const PathPattern::Step& step) { return step.items == PathPattern::New; }))
        throw InvalidEdit(
            QStringLiteral("%1 is a new item, so there is nothing to unset.").arg(Quoted(path)));
    m_edits += edit;
}

QStringList RecordEdits::GetUnused() const
{
    QStringList unused;
    for (const Edit& edit : m_edits)
        if (!edit.isUsed)
            unused += edit.text;
    return unused;
}

// --- making changes

// A member on the way from the root, and the items that the path names there.
struct WayStep
{
    const MemberInfo* member;
    PathPattern::Items items = PathPattern::All;
    int number = 0;
    // Whether the step is in the path as it was written.
    bool isNamed = false;
};

using Way = QVector<WayStep>;

namespace {

// Whether the names at the end of the way are those of the path. Then the way gets the items of the path.
bool completeWay(Way& way, const QString& root, const PathPattern& pattern)
{
    const auto& steps = pattern.GetSteps();
    const auto excess = way.size() + 1 - steps.size();
    if (excess < 0 || (pattern.IsFromRoot() && excess > 0)
        || (excess == 0 && steps.constFirst().name != root))
        return false;
    for (auto i = std::max<decltype(excess)>(excess, 1); i <= way.size(); ++i) {
        const PathPattern::Step& step = steps.at(i - excess);
        WayStep& wayStep = way[i - 1];
        if (step.name != wayStep.member->GetName())
            return false;
        wayStep.items = step.items;
        wayStep.number = step.first;
        wayStep.isNamed = true;
    }
    return true;
}

// Calls visit() for every way to which the path leads below a class.
template <class Visit>
void forEachWay(const RecordInfo& info, const QString& root, const PathPattern& pattern, const Way& before,
                const Visit& visit)
{
    for (const MemberInfo* member : info.GetMembers()) {
        const Way way = before + Way{{member}};
        Way complete = way;
        if (pattern.GetMembers().contains(member) && completeWay(complete, root, pattern))
            visit(complete);
        if (member->GetClass() && pattern.LeadsInto(*member->GetClass()))
            forEachWay(*member->GetClass(), root, pattern, way, visit);
    }
}

} // namespace

// Makes a change along one way. All functions return whether there was a place for it.
class RecordEdits::Application
{
public:
    Application(const Edit& edit, const Way& way) : m_edit(edit), m_way(way) {}

    bool apply(IMKObject& root) { return change(root, 0, true); }

private:
    bool isLast(int position) const { return position + 1 == m_way.size(); }

    // \param isSingle whether the path leads to no other record like this one
    bool change(IMKObject& record, int position, bool isSingle)
    {
        const MemberInfo& member = *m_way.at(position).member;
        switch (member.GetKind()) {
        case MemberInfo::List:
            return changeList(record, position);
        case MemberInfo::Record:
            return changeRecord(record, position, isSingle);
        case MemberInfo::UnsignedInteger:
        case MemberInfo::Decimal:
        case MemberInfo::Boolean:
        case MemberInfo::Text:
        case MemberInfo::Enumeration:
            break;
        }
        if (!m_edit.isUnset)
            member.SetValue(record, m_edit.values.value(&member));
        else if (!member.IsSet(record))
            return false;
        else
            member.Reset(record);
        return true;
    }

    // --- records

    bool changeRecord(IMKObject& record, int position, bool isSingle)
    {
        const MemberInfo& member = *m_way.at(position).member;
        if (!member.IsSet(record))
            return !m_edit.isUnset && mayMake(record, position, isSingle) && makeRecord(record, position);
        if (!isLast(position))
            return change(member.EditRecord(record), position + 1, isSingle);
        if (!m_edit.isUnset)
            return true;
        member.Reset(record);
        if (RecordInfo::Of(record).IsChoice())
            RecordInfo::Of(record).ClearSelection(record);
        return true;
    }

    // A member of a choice must be meant without doubt, and must not replace another one.
    bool mayMake(const IMKObject& record, int position, bool isSingle) const
    {
        const RecordInfo& info = RecordInfo::Of(record);
        return !info.IsChoice() || (isSingle && m_way.at(position).isNamed && !info.GetSelected(record));
    }

    bool makeRecord(IMKObject& record, int position)
    {
        const MemberInfo& member = *m_way.at(position).member;
        const auto made = makeOf(member, record);
        if (!isLast(position) && !change(*made, position + 1, true))
            return false;
        member.SetRecord(record, *made);
        return true;
    }

    static std::unique_ptr<IMKObject> makeOf(const MemberInfo& member, const IMKObject& owner)
    {
        auto made = member.GetClass()->Create();
        made->SetValidate(owner.GetValidate());
        return made;
    }

    // --- lists

    bool changeList(IMKObject& record, int position)
    {
        const MemberInfo& member = *m_way.at(position).member;
        const int count = member.CountItems(record);
        switch (m_way.at(position).items) {
        case PathPattern::New:
            return appendItem(record, position);
        case PathPattern::Last:
            return changeItem(record, position, count - 1, true);
        case PathPattern::Numbered:
        case PathPattern::Paired:
            return changeItem(record, position, m_way.at(position).number - 1, true);
        case PathPattern::All:
            break;
        }
        if (isLast(position) && m_edit.isUnset) {
            const bool isSet = member.IsSet(record);
            member.Reset(record);
            return isSet;
        }
        bool isChanged = false;
        for (int i = 0; i < count; ++i)
            isChanged |= changeItem(record, position, i, false);
        return isChanged;
    }

    bool changeItem(IMKObject& record, int position, int index, bool isSingle)
    {
        const MemberInfo& member = *m_way.at(position).member;
        if (index < 0 || index >= member.CountItems(record))
            return false;
        if (!isLast(position))
            return change(member.EditItem(record, index), position + 1, isSingle);
        if (m_edit.isUnset)
            member.RemoveItem(record, index);
        return true;
    }

    bool appendItem(IMKObject& record, int position)
    {
        const MemberInfo& member = *m_way.at(position).member;
        const auto item = makeOf(member, record);
        if (!isLast(position) && !change(*item, position + 1, true))
            return false;
        member.AppendItem(record, *item);
        return true;
    }

    const Edit& m_edit;
    const Way& m_way;
};

bool RecordEdits::Apply(IMKObject& record)
{
    const RecordInfo& info = RecordInfo::Of(record);
    bool hasPlace = false;
    for (Edit& edit : m_edits)
        forEachWay(info, info.GetName(), edit.pattern, {}, [&](const Way& way) {
            if (!Application(edit, way).apply(record))
                return;
            edit.isUsed = true;
            hasPlace = true;
        });
    return hasPlace;
}

InvalidEdit::InvalidEdit(const QString& text) : m_text(text), m_utf8(text.toUtf8()) {}

InvalidEdit::InvalidEdit(const InvalidEdit& other) noexcept = default;
InvalidEdit& InvalidEdit::operator=(const InvalidEdit& other) noexcept = default;
InvalidEdit::~InvalidEdit() = default;

} // namespace ROUTERDOCUMENTS
