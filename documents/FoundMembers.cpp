// SPDX-License-Identifier: MIT
#include "documents/FoundMembers.h"

#include "documents/Values.h"

namespace ROUTERDOCUMENTS {

using MODELKIT::IMKObject;
using PELLU300ROUTERINTERFACEXML::MemberInfo;
using PELLU300ROUTERINTERFACEXML::RecordInfo;

const IMKObject& FoundMember::found() const
{
    if (!member)
        return record;
    return item < 0 ? member->GetRecord(record) : member->GetItem(record, item);
}

QString FoundMember::ToText() const
{
    return IsValue() ? PlainText(*member, member->GetValue(record)) : SummaryText(found());
}

QJsonValue FoundMember::ToJson() const
{
    return IsValue() ? ValueJson(*member, member->GetValue(record)) : SummaryJson(found());
}

namespace {

class MemberSearch
{
public:
    using Visit = std::function<bool(const FoundMember&)>;

    MemberSearch(const PathPattern& pattern, const Visit& visit) : m_pattern(pattern), m_visit(visit) {}

    void search(const IMKObject& root)
    {
        m_path.Enter({RecordInfo::Of(root).GetName()});
        if (!m_pattern.Matches(m_path) || m_visit({root, nullptr, -1, m_path}))
            searchIn(root);
    }

private:
    // All these functions return whether to go on.

    bool searchIn(const IMKObject& record)
    {
        const RecordInfo& info = RecordInfo::Of(record);
        if (!m_pattern.LeadsInto(info))
            return true;
        for (const MemberInfo* member : info.GetMembers())
            if (mayHold(*member) && member->IsSet(record) && !searchMember(record, *member))
                return false;
        return true;
    }

    bool mayHold(const MemberInfo& member) const
    {
        return m_pattern.GetMembers().contains(&member)
               || (member.GetClass() && m_pattern.LeadsInto(*member.GetClass()));
    }

    bool searchMember(const IMKObject& record, const MemberInfo& member)
    {
        m_path.Enter({member.GetName()});
        bool goesOn = true;
        if (member.GetKind() == MemberInfo::List)
            for (int i = 0, count = member.CountItems(record); goesOn && i < count; ++i) {
                m_path.SetNumbers(i + 1, i + 1);
                goesOn = visitIfMeant(record, member, i) && searchIn(member.GetItem(record, i));
            }
        else if (member.GetKind() == MemberInfo::Record)
            goesOn = visitIfMeant(record, member, -1) && searchIn(member.GetRecord(record));
        else
            goesOn = visitIfMeant(record, member, -1);
        m_path.Leave();
        return goesOn;
    }

    bool visitIfMeant(const IMKObject& record, const MemberInfo& member, int item)
    {
        const bool isMeant = m_pattern.GetMembers().contains(&member) && m_pattern.Matches(m_path);
        return !isMeant || m_visit({record, &member, item, m_path});
    }

    const PathPattern& m_pattern;
    const Visit& m_visit;
    MemberPath m_path;
};

} // namespace

void FindMembers(const IMKObject& record, const PathPattern& pattern,
                 const std::function<bool(const FoundMember&)>& visit)
{
    MemberSearch(pattern, visit).search(record);
}

} // namespace ROUTERDOCUMENTS
