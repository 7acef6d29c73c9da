// SPDX-License-Identifier: MIT
// What is noticed about the members of a record while it is read, in either form.
#pragma once

#include "routerinterface/machinery/TextForms.h"
#include "routerinterface/machinery/WholeRecord.h"

#include <QtCore/QString>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Notices a member that comes a second time, or replaces another member of a choice. Seen: the members that
// have come so far.
template <class Member, class R, class Notify>
void noticeComingAgain([[maybe_unused]] const R& record, const Flags& seen, const Notify& notify)
{
    using Data = DataOf<R>;
    if (!IsList<typename Member::Slot>::value && seen.test(Member::index))
        notify(Notice::RepeatedMember,
               QStringLiteral("%1 came before; the last one counts.").arg(Member::nameText()));
    if constexpr (isChoice<Data>) {
        const auto& data = initData(record);
        if (data.choice != data.invalidChoice && !isCurrent(data, Member{}))
            notify(Notice::ReplacedPayload,
                   QStringLiteral("%1 came before and is replaced.").arg(nameOf(data.choice)));
    }
}

// Notices what is missing at the end of reading, if the record would not be written as it was read.
template <class R, class Notify>
void noticeMissing([[maybe_unused]] const R& record, [[maybe_unused]] const Notify& notify)
{
    using Data = DataOf<R>;
    if constexpr (isChoice<Data>) {
        if (notify && !hasData(record))
            notify(Notice::MissingPayload,
                   QStringLiteral("%1 has no payload and is not written under validation.")
                       .arg(record.GetObjectName()));
    } else if constexpr (Data::Members::template has<IsMandatory>) {
        if (!notify)
            return;
        const auto& data = initData(record);
        Data::Members::forEach([&](auto member) {
            if (IsMandatory<typename decltype(member)::Slot>::value && !data.set.test(member.index))
                notify(Notice::MissingMember,
                       QStringLiteral("%1 is missing and is written all the same.").arg(member.nameText()));
        });
    }
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
