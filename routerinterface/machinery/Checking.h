// SPDX-License-Identifier: MIT
// Judging a record: the rules that its members must fulfil before it is sent.
#pragma once

#include "routerinterface/machinery/Rules.h"
#include "routerinterface/machinery/WholeRecord.h"

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Whether the rules of a record reach into the record in this member. A choice asks only whether its
// current record is there.
template <class R, class Member>
bool checksInto(const DataOf<R>& data, Member)
{
    using Slot = typename Member::Slot;
    return (IsNested<Slot>::value || IsList<Slot>::value)
           && !isChoice<DataOf<R>> && data.set.test(Member::index);
}

// The rules of the records that a slot holds.
template <class R, class Slot>
void checkRecords(const R& record, const Slot& slot, bool flag)
{
    using Owned = RecordIn<Slot>;
    const bool isDerived = !isExactly(record);
    doAtRecords(slot, [&](const Owned& owned) {
        if (isDerived)
            beginOwn(owned);
        Walks<Owned>::applyRules(owned, flag);
    });
}

// The rules of one member, by the kind of its slot. They do not ask the validation flag.
template <class Member, class R, class T>
void checkMember(const R&, const DataOf<R>&, const Value<T>&, bool)
{}

template <class Member, class R, class T>
void checkMember(const R& record, const DataOf<R>& data, const Text<T>& text, bool)
{
    if (data.set.test(Member::index) && !Text<T>::isValid(text.value))
        throw OutOfRangeException(setProperlyText(record, Member::nameText()));
}

template <class Member, class R, class E>
void checkMember(const R& record, const DataOf<R>& data, const Enumerated<E>& enumerated, bool)
{
    if (data.set.test(Member::index) && !isEnumerator(enumerated.value))
        refuseEnumerator<E>(setProperlyText(record, Member::nameText()), numberText(enumerated.value));
}

template <class Member, class R, class E>
void checkMember(const R& record, const DataOf<R>& data, const Mandatory<E>& enumerated, bool)
{
    if (!data.set.test(Member::index))
        throw OutOfRangeException(setProperlyText(record, Member::nameText()));
    if (!isEnumerator(enumerated.value))
        refuseEnumerator<E>(setProperlyText(record, Member::nameText()), numberText(enumerated.value));
}

template <class Member, class R, class N>
void checkMember(const R& record, const DataOf<R>& data, const Nested<N>&, [[maybe_unused]] bool flag)
{
    if constexpr (isChoice<DataOf<R>>) {
        // The one rule that asks the validation flag.
        if (isCurrent(data, Member{}) && !data.set.test(Member::index)
            && !nestedRecord<Member>(data).HasData() && record.GetValidate())
            throw IncompleteDefinitionException(incompleteChoiceText(record, Member::fieldName()));
    } else if (checksInto<R>(data, Member{})) {
        checkRecords(record, Member::slot(data), flag);
    }
}

template <class Member, class R, class N>
void checkMember(const R& record, const DataOf<R>& data, const List<N>& list, bool flag)
{
    if (checksInto<R>(data, Member{}))
        checkRecords(record, list, flag);
}

// The rules in member order; the settings have been handed down.
template <class R>
void applyRules(const R& record, bool flag)
{
    auto& data = initData(record);
    DataOf<R>::Members::forEach([&](auto member) {
        using Member = decltype(member);
        checkMember<Member>(record, data, Member::slot(data), flag);
    });
}

// Whether an owned record, to which the rules are applied unless they have been, holds what it needs
// to be written under validation.
template <class R>
bool mayBeWritten(const R& record, bool applied)
{
    if (!applied)
        applyRules(record, false);
    return hasData(record);
}

// Whether a record that a caller wants written is to be. In a derived class, whose virtual operations may
// change the flag, applyVirtually() calls its check.
template <class R, class ApplyVirtually>
bool isToBeWritten(const R& record, const ApplyVirtually& applyVirtually)
{
    if (!record.GetValidate())
        return true;
    if (isExactly(record))
        doAt([&] { return record.GetObjectName(); }, [&] { applyRules(record, false); });
    else
        applyVirtually();
    return !record.GetValidate() || record.HasData();
}

template <class R>
void check(const R& record, bool flag)
{
    handDown(record);
    doAt([&] { return record.GetObjectName(); }, [&] { applyRules(record, flag); });
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
