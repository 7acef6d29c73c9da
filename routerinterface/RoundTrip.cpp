// SPDX-License-Identifier: MIT
#include "routerinterface/RoundTrip.h"

#include "routerinterface/RecordInfo.h"
#include "routerinterface/machinery/TextForms.h"

#include <QtCore/QVariant>

#include <algorithm>

namespace PELLU300ROUTERINTERFACEXML {

namespace {

// The member that a choice writes; null when it writes none.
const MemberInfo* writtenPayload(const RecordInfo& info, const MODELKIT::IMKObject& record)
{
    const MemberInfo* const selected = info.GetSelected(record);
    return selected && selected->IsSet(record) ? selected : nullptr;
}

bool areWrittenAlike(double a, double b)
{
    const QString first = machinery::toText(a);
    const QString second = machinery::toText(b);
    // The sign of a zero is a spelling.
    return first == second || first.toDouble() == second.toDouble();
}

class FormComparison
{
public:
    explicit FormComparison(WrittenForm form) : m_form(form) {}

    bool areEqual(const MODELKIT::IMKObject& a, const MODELKIT::IMKObject& b) const
    {
        const RecordInfo& info = RecordInfo::Of(a);
        if (&info != &RecordInfo::Of(b))
            return false;
        if (info.IsChoice()) {
            const MemberInfo* const payload = writtenPayload(info, a);
            return payload == writtenPayload(info, b)
                   && (!payload || areEqual(payload->GetRecord(a), payload->GetRecord(b)));
        }
        const auto& members = info.GetMembers();
        return std::all_of(members.begin(), members.end(),
                           [&](const MemberInfo* member) { return isEqual(*member, a, b); });
    }

private:
    bool isEqual(const MemberInfo& member, const MODELKIT::IMKObject& a, const MODELKIT::IMKObject& b) const
    {
        if (member.GetKind() == MemberInfo::List) {
            const int count = member.CountItems(a);
            if (count != member.CountItems(b))
                return false;
            for (int i = 0; i < count; ++i)
                if (!areEqual(member.GetItem(a, i), member.GetItem(b, i)))
                    return false;
            return true;
        }
        // What is mandatory is written even when it is not set.
        if (!member.IsMandatory()) {
            const bool isSet = member.IsSet(a);
            if (isSet != member.IsSet(b))
                return false;
            if (!isSet)
                return true;
        }
        return member.GetKind() == MemberInfo::Record
                   ? areEqual(member.GetRecord(a), member.GetRecord(b))
                   : isSame(member, member.GetValue(a), member.GetValue(b));
    }

    bool isSame(const MemberInfo& member, const QVariant& a, const QVariant& b) const
    {
        switch (member.GetKind()) {
        case MemberInfo::Decimal:
            return areWrittenAlike(a.toDouble(), b.toDouble());
        case MemberInfo::Enumeration:
            return member.GetNames().value(a.toInt()) == member.GetNames().value(b.toInt());
        case MemberInfo::Text: {
            const QString first = a.toString();
            const QString second = b.toString();
            return first == second && (m_form == WrittenForm::Xml || first.isNull() == second.isNull());
        }
        default:
            return a == b;
        }
    }

    WrittenForm m_form;
};

} // namespace

bool EqualsWithin(const MODELKIT::IMKObject& a, const MODELKIT::IMKObject& b, WrittenForm form)
{
    return FormComparison(form).areEqual(a, b);
}

} // namespace PELLU300ROUTERINTERFACEXML
