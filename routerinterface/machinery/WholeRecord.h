// SPDX-License-Identifier: MIT
// The record as a whole: resetting, what it holds, comparing, hashing.
#pragma once

#include "routerinterface/machinery/Items.h"
#include "routerinterface/machinery/Members.h"

#include <QtCore/QHash>

#include <utility>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

template <class R>
void resetValues(const R& record)
{
    if (auto* data = existingData(record)) {
        DataOf<R>::Members::forEach([&](auto member) { member.slot(*data).reset(); });
        if constexpr (isChoice<DataOf<R>>)
            data->choice = data->invalidChoice;
    }
}

template <class R>
void clearChoice(const R& record)
{
    if (auto* data = existingData(record))
        data->choice = data->invalidChoice;
}

template <class R>
void reset(R& record)
{
    if (auto* data = existingData(record)) {
        if constexpr (hasNested<DataOf<R>>)
            forEachNested<DataOf<R>>([&](auto member) { member.slot(*data).prepareReset(); });
        data->set.clearAll();
        resetValues(record);
    }
}

template <class R>
void resetToDefault(R& record)
{
    initData(record);
    record.Reset();
    using Data = DataOf<R>;
    Data::Members::forEach([&](auto member) {
        using Member = decltype(member);
        using Slot = typename Member::Slot;
        if constexpr (isChoice<Data>) {
            auto& data = initData(record);
            nestedRecord<Member>(data).ResetToDefault();
        } else if (initData(record).defaultSet.test(Member::index)) {
            const auto& value = defaultOf<Member>(record);
            if constexpr (IsList<Slot>::value) {
                append<Member>(record, value);
            } else if constexpr (IsText<Slot>::value) {
                if (!value.isNull())
                    setMember<Member>(record, value);
            } else {
                setMember<Member>(record, value);
            }
        }
    });
}

template <class R>
bool anyData(const R& record)
{
    const auto* data = existingData(record);
    if (!data)
        return false;
    using Data = DataOf<R>;
    if constexpr (isChoice<Data>)
        return data->choice != data->invalidChoice;
    else
        return Data::Members::any(
            [&](auto member) { return member.slot(*data).holdsData(data->set.test(member.index)); });
}

// False for a choice without a current record or with one that lacks data, and for a record whose
// mandatory member is not set; every other record always counts as holding its data.
template <class R>
bool hasData(const R& record)
{
    using Data = DataOf<R>;
    if constexpr (isChoice<Data>) {
        const auto* data = existingData(record);
        bool holds = false;
        if (data)
            withNested<Data>(data->choice,
                             [&](auto member) { holds = nestedRecord<decltype(member)>(*data).HasData(); });
        return holds;
    } else if constexpr (Data::Members::template has<IsMandatory>) {
        const auto* data = existingData(record);
        return data && !Data::Members::any([&](auto member) {
                   return IsMandatory<typename decltype(member)::Slot>::value
                          && !data->set.test(member.index);
               });
    } else {
        return true;
    }
}

template <class Member, class Data>
bool equalValues(Data& a, Data& b)
{
    using Slot = typename Member::Slot;
    if constexpr (IsNested<Slot>::value) {
        return nestedRecord<Member>(a) == nestedRecord<Member>(b);
    } else {
        // To compare items changes their blocks, and another thread may have the same items in a list of its
        // own.
        if constexpr (IsList<Slot>::value) {
            Member::slot(a).ownItems();
            Member::slot(b).ownItems();
        }
        return Member::slot(a).equals(Member::slot(b));
    }
}

template <class R>
bool equal(const R& a, const R& b)
{
    using Data = DataOf<R>;
    auto* dataA = existingData(a);
    auto* dataB = existingData(b);
    if (!dataA && !dataB)
        return true;
    if constexpr (isChoice<Data>) {
        dataA = &initData(a);
        dataB = &initData(b);
        return dataA->choice == dataB->choice && !Data::Members::any([&](auto member) {
                   return isCurrent(*dataA, member) && !equalValues<decltype(member)>(*dataA, *dataB);
               });
    } else {
        // A record without a block equals one in which nothing is set.
        const Flags none;
        const Flags& setA = dataA ? dataA->set : none;
        const Flags& setB = dataB ? dataB->set : none;
        return !Data::Members::any([&](auto member) {
            if (setA.test(member.index) != setB.test(member.index))
                return true;
            return setA.test(member.index) && !equalValues<decltype(member)>(*dataA, *dataB);
        });
    }
}

// --- hashing: equal records have equal hashes ----------------------------------------------------

using HashValue = QtVersion::HashValue;

inline HashValue mixedHash(HashValue hash, HashValue value)
{
    return hash ^ (value + HashValue(0x9E3779B9U) + (hash << 6) + (hash >> 2));
}

template <class Member, class Data>
HashValue hashOfMember(Data& data, HashValue seed)
{
    using Slot = typename Member::Slot;
    if constexpr (IsNested<Slot>::value) {
        return Walks<RecordIn<Slot>>::hash(nestedRecord<Member>(data), seed);
    } else if constexpr (IsList<Slot>::value) {
        HashValue hash = seed;
        for (const auto& item : std::as_const(Member::slot(data).ownItems()))
            hash = mixedHash(hash, Walks<RecordIn<Slot>>::hash(item, seed));
        return hash;
    } else if constexpr (IsEnumerated<Slot>::value) {
        return qHash(static_cast<int>(Member::slot(data).value), seed);
    } else {
        return qHash(Member::slot(data).value, seed);
    }
}

// Like equality, this leaves out what is not set, and in a choice what is not selected.
template <class R>
HashValue Walks<R>::hash(const R& record, HashValue seed)
{
    using Data = DataOf<R>;
    HashValue hash = seed;
    auto* const data = existingData(record);
    if (!data)
        return hash;
    const auto mixMember = [&](auto member) {
        hash = mixedHash(hash, static_cast<HashValue>(member.index));
        hash = mixedHash(hash, hashOfMember<decltype(member)>(*data, seed));
    };
    if constexpr (isChoice<Data>)
        withNested<Data>(data->choice, mixMember);
    else
        Data::Members::forEach([&](auto member) {
            if (data->set.test(member.index))
                mixMember(member);
        });
    return hash;
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
