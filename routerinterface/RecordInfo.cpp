// SPDX-License-Identifier: MIT
#include "routerinterface/RecordInfo.h"

#include "routerinterface/PelLu300RouterInterfaceXml.h"
#include "routerinterface/machinery/Walks.h"

#include <algorithm>
#include <stdexcept>
#include <typeinfo>

namespace PELLU300ROUTERINTERFACEXML {

extern template struct machinery::Walks<PelLu300RouterInterfaceXml>;

namespace {

template <class Info>
[[noreturn]] void refuse(const Info& info, const char* what)
{
    throw std::logic_error(info.GetName().toStdString() + " is no " + what);
}

void addWithOwned(const RecordInfo& info, QVector<const RecordInfo*>& all)
{
    // A class with several owners stands behind the last of them.
    all.removeAll(&info);
    all.append(&info);
    for (const MemberInfo* member : info.GetMembers())
        if (member->GetClass())
            addWithOwned(*member->GetClass(), all);
}

template <class Predicate>
const RecordInfo* findClass(const Predicate& predicate)
{
    const auto& all = RecordInfo::All();
    const auto found = std::find_if(all.begin(), all.end(), predicate);
    return found == all.end() ? nullptr : *found;
}

template <class Predicate>
const MemberInfo* findMember(const RecordInfo& info, const Predicate& predicate)
{
    const auto& members = info.GetMembers();
    const auto found = std::find_if(members.begin(), members.end(), predicate);
    return found == members.end() ? nullptr : *found;
}

} // namespace

MemberInfo::MemberInfo(const QString& name, Kind kind, std::uint32_t binaryTag, bool isMandatory,
                       const QStringList& names, const RecordInfo* recordClass)
    : m_name(name), m_kind(kind), m_binaryTag(binaryTag), m_isMandatory(isMandatory), m_names(names),
      m_class(recordClass)
{}

MemberInfo::~MemberInfo() = default;

QVariant MemberInfo::GetValue(const MODELKIT::IMKObject&) const { refuse(*this, "value"); }
void MemberInfo::SetValue(MODELKIT::IMKObject&, const QVariant&) const { refuse(*this, "value"); }
bool MemberInfo::IsValid(const QVariant&) const { refuse(*this, "value"); }
QVariant MemberInfo::GetDefault(const MODELKIT::IMKObject&) const { refuse(*this, "value"); }
void MemberInfo::SetDefault(MODELKIT::IMKObject&, const QVariant&) const { refuse(*this, "value"); }

const MODELKIT::IMKObject& MemberInfo::GetRecord(const MODELKIT::IMKObject&) const
{
    refuse(*this, "nested record");
}
MODELKIT::IMKObject& MemberInfo::EditRecord(MODELKIT::IMKObject&) const { refuse(*this, "nested record"); }
void MemberInfo::SetRecord(MODELKIT::IMKObject&, const MODELKIT::IMKObject&) const
{
    refuse(*this, "nested record");
}
void MemberInfo::Select(MODELKIT::IMKObject&) const { refuse(*this, "member of a choice"); }
const MODELKIT::IMKObject& MemberInfo::GetDefaultRecord(const MODELKIT::IMKObject&) const
{
    refuse(*this, "nested record or list");
}
void MemberInfo::SetDefaultRecord(MODELKIT::IMKObject&, const MODELKIT::IMKObject&) const
{
    refuse(*this, "nested record or list");
}

int MemberInfo::CountItems(const MODELKIT::IMKObject&) const { refuse(*this, "list"); }
const MODELKIT::IMKObject& MemberInfo::GetItem(const MODELKIT::IMKObject&, int) const
{
    refuse(*this, "list");
}
MODELKIT::IMKObject& MemberInfo::EditItem(MODELKIT::IMKObject&, int) const { refuse(*this, "list"); }
void MemberInfo::AppendItem(MODELKIT::IMKObject&, const MODELKIT::IMKObject&) const { refuse(*this, "list"); }
void MemberInfo::InsertItem(MODELKIT::IMKObject&, int, const MODELKIT::IMKObject&) const
{
    refuse(*this, "list");
}
void MemberInfo::RemoveItem(MODELKIT::IMKObject&, int) const { refuse(*this, "list"); }
void MemberInfo::MoveItem(MODELKIT::IMKObject&, int, int) const { refuse(*this, "list"); }

RecordInfo::~RecordInfo() { qDeleteAll(m_members); }

const RecordInfo& RecordInfo::Document() { return machinery::Walks<PelLu300RouterInterfaceXml>::info(); }

const QVector<const RecordInfo*>& RecordInfo::All()
{
    static const QVector<const RecordInfo*> all = [] {
        QVector<const RecordInfo*> classes;
        addWithOwned(Document(), classes);
        return classes;
    }();
    return all;
}

const RecordInfo* RecordInfo::Find(const QString& name)
{
    return findClass([&name](const RecordInfo* info) { return info->GetName() == name; });
}

const RecordInfo* RecordInfo::FindByFrameId(std::uint32_t frameId)
{
    return findClass([frameId](const RecordInfo* info) { return info->GetFrameId() == frameId; });
}

const RecordInfo& RecordInfo::Of(const MODELKIT::IMKObject& record)
{
    // Most records are called as their class; others are searched for.
    const RecordInfo* info = Find(record.GetObjectName());
    if (!info || !info->m_describes(record))
        info = findClass([&record](const RecordInfo* known) { return known->m_describes(record); });
    if (!info)
        throw std::bad_cast();
    return *info;
}

void RecordInfo::Assign(MODELKIT::IMKObject& target, const MODELKIT::IMKObject& source) const
{
    m_assign(target, source);
}

const MemberInfo* RecordInfo::GetSelected(const MODELKIT::IMKObject& record) const
{
    if (!IsChoice())
        refuse(*this, "choice");
    return m_members.value(m_selected(record));
}

void RecordInfo::ClearSelection(MODELKIT::IMKObject& record) const
{
    if (!IsChoice())
        refuse(*this, "choice");
    m_clearSelection(record);
}

const MemberInfo* RecordInfo::FindMember(const QString& name) const
{
    return findMember(*this, [&name](const MemberInfo* member) { return member->GetName() == name; });
}

const MemberInfo* RecordInfo::FindMember(std::uint32_t binaryTag) const
{
    return findMember(*this,
                      [binaryTag](const MemberInfo* member) { return member->GetBinaryTag() == binaryTag; });
}

} // namespace PELLU300ROUTERINTERFACEXML
