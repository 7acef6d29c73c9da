// SPDX-License-Identifier: MIT
// The check of a record: the rules that its members must fulfil before it is sent.
#pragma once

#include "routerinterface/machinery/Rules.h"
#include "routerinterface/machinery/WholeRecord.h"

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Whether the rules of a record include those of the records in this member. A choice only checks that its
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
void checkRecords(const R& record, const Slot& slot)
{
    const bool isDerived = !isExactly(record);
    doAtRecords(slot, [&](const RecordIn<Slot>& owned) {
        if (isDerived)
            beginOwn(owned);
        walksOf(owned).applyRules(owned);
    });
}

// The rules of one member, by the kind of its slot. They apply whether validation is on or off, except one.
template <class Member, class R, class T>
void checkMember(const R&, const DataOf<R>&, const Value<T>&)
{}

template <class Member, class R, class T>
void checkMember(const R& record, const DataOf<R>& data, const Text<T>& text)
{
    if (data.set.test(Member::index) && !Text<T>::isValid(text.value))
        throw OutOfRangeException(setProperlyText(record, Member::nameText()));
}

template <class Member, class R, class E>
void checkMember(const R& record, const DataOf<R>& data, const Enumerated<E>& enumerated)
{
    if (data.set.test(Member::index) && !isEnumerator(enumerated.value))
        refuseEnumerator<E>(setProperlyText(record, Member::nameText()), numberText(enumerated.value));
}

template <class Member, class R, class E>
void checkMember(const R& record, const DataOf<R>& data, const Mandatory<E>& enumerated)
{
    if (!data.set.test(Member::index))
        throw OutOfRangeException(setProperlyText(record, Member::nameText()));
    if (!isEnumerator(enumerated.value))
        refuseEnumerator<E>(setProperlyText(record, Member::nameText()), numberText(enumerated.value));
}

template <class Member, class R, class N>
void checkMember(const R& record, const DataOf<R>& data, const Nested<N>&)
{
    if constexpr (isChoice<DataOf<R>>) {
        // The one rule that applies under validation only.
        if (isCurrent(data, Member{}) && !data.set.test(Member::index)
            && !nestedRecord<Member>(data).HasData() && record.GetValidate())
            throw IncompleteDefinitionException(incompleteChoiceText(record, Member::fieldName()));
    } else if (checksInto<R>(data, Member{})) {
        checkRecords(record, Member::slot(data));
    }
}

template <class Member, class R, class N>
void checkMember(const R& record, const DataOf<R>& data, const List<N>& list)
{
    if (checksInto<R>(data, Member{}))
        checkRecords(record, list);
}

// The rules in member order; the settings have been handed down.
template <class R>
void Walks<R>::applyRules(const R& record)
{
    auto& data = initData(record);
    DataOf<R>::Members::forEach([&](auto member) {
        using Member = decltype(member);
        checkMember<Member>(record, data, Member::slot(data));
    });
}

// What validation requires of the records in a member. OfRecord: what it requires of the record around them.
template <class R, class Member>
Validation validationOf(const DataOf<R>& data, Member member, Validation ofRecord)
{
    if (ofRecord == Validation::Off)
        return Validation::Off;
    return checksInto<R>(data, member) ? Validation::Begun : Validation::Due;
}

// The same if the record around is of a derived class: the owned one begins on its own.
template <class R>
Validation ownValidationOf(const R& owned)
{
    return beginOwn(owned) ? Validation::Due : Validation::Off;
}

// Whether an owned record fulfils what validation requires of it.
template <class R>
bool mayBeWritten(const R& record, Validation validation)
{
    if (validation == Validation::Due)
        walksOf(record).applyRules(record);
    return validation == Validation::Off || hasData(record);
}

// Whether a record is written when a caller asks for it. A derived class may change the flag in its virtual
// operations, so applyVirtually() calls its check.
template <class R, class ApplyVirtually>
bool isToBeWritten(const R& record, const ApplyVirtually& applyVirtually)
{
    if (!record.GetValidate())
        return true;
    if (isExactly(record))
        doAt([&] { return record.GetObjectName(); }, [&] { walksOf(record).applyRules(record); });
    else
        applyVirtually();
    return !record.GetValidate() || record.HasData();
}

template <class R>
void check(const R& record)
{
    handDown(record);
    doAt([&] { return record.GetObjectName(); }, [&] { walksOf(record).applyRules(record); });
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
