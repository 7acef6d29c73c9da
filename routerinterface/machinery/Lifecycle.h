// SPDX-License-Identifier: MIT
// The life of a record: creating and sharing its data block, reading and writing members and their
// defaults, resetting, comparing.
#pragma once

#include "routerinterface/machinery/Diagnostics.h"
#include "routerinterface/machinery/Rules.h"

#include <new>
#include <utility>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Gives the record a block of its own.
template <class R>
DataOf<R>& initData(const R& record)
{
    auto& block = pointer(record);
    if (block) {
        detach(record);
    } else {
        MODELKIT::BlockPointer<DataOf<R>>(new DataOf<R>).swap(block);
        handDown(record);
    }
    return *block;
}

// Does something for which memory may be lacking. A record without a block then stays without one.
template <class R, class Action>
decltype(auto) orStayEmpty(const R& record, const Action& action)
{
    auto& block = pointer(record);
    const bool isEmpty = !block;
    try {
        return action();
    } catch (const std::bad_alloc&) {
        if (isEmpty)
            MODELKIT::BlockPointer<DataOf<R>>().swap(block);
        throw;
    }
}

// The same as initData() with all that changing the member needs memory for.
template <class Member, class R>
DataOf<R>& initMember(const R& record)
{
    using Slot = typename Member::Slot;
    if constexpr (IsNested<Slot>::value) {
        return orStayEmpty(record, [&record]() -> DataOf<R>& {
            auto& data = initData(record);
            nestedRecord<Member>(data);
            return data;
        });
    } else {
        return initData(record);
    }
}

// The record's block, if it has one, made its own: even reading a shared block ends the sharing.
template <class R>
DataOf<R>* existingData(const R& record)
{
    detach(record);
    auto& block = pointer(record);
    return block ? &*block : nullptr;
}

template <class R>
void copyConstruct(R& record, const R& source)
{
    pointer(record) = pointer(source);
    detach(record);
    Access::identify(record, DataOf<R>::className());
    Walks<R>::settleCopy(record, source.GetValidate());
}

// Exchanges the contents of two records of one class.
template <class R>
void swapData(const R& a, const R& b)
{
    pointer(a).swap(pointer(b));
}

// --- one member -----------------------------------------------------------------------------

template <class Member, class R>
decltype(auto) slotOf(const R& record)
{
    return Member::slot(initData(record));
}

template <class Member, class R>
bool isSet(const R& record)
{
    const auto* data = existingData(record);
    return data && data->set.test(Member::index);
}

// Stores a value, or throws what the member's rule says about it and stores nothing. Given: makes the
// text from which the value was read.
template <class Member, class R, class T, class Given>
void setMember(R& record, const T& value, const Given& given)
{
    auto& data = initMember<Member>(record);
    if (record.GetValidate())
        requireAcceptable<Member>(record, value, given);
    if constexpr (IsNested<typename Member::Slot>::value)
        nestedRecord<Member>(data) = value;
    else
        Member::slot(data).value = value;
    data.set.set(Member::index);
    makeCurrent(data, Member{});
}

template <class Member, class R, class T>
void setMember(R& record, const T& value)
{
    setMember<Member>(record, value, [&value] { return numberText(value); });
}

// Hands out a nested record or a list for changing in place, which counts as setting it.
template <class Member, class R>
auto& editMember(R& record)
{
    auto& data = initMember<Member>(record);
    const auto handOut = [&data]() -> auto&
    {
        if constexpr (IsNested<typename Member::Slot>::value)
            return nestedRecord<Member>(data);
        else
            return Member::slot(data).ownItems();
    };
    auto& member = handOut();
    data.set.set(Member::index);
    makeCurrent(data, Member{});
    return member;
}

template <class Member, class R>
const auto& viewMember(const R& record)
{
    auto& data = initMember<Member>(record);
    if constexpr (IsNested<typename Member::Slot>::value)
        return nestedRecord<Member>(data);
    else
        return std::as_const(Member::slot(data).value);
}

template <class Member, class R>
void resetMember(R& record)
{
    if (auto* data = existingData(record)) {
        Member::slot(*data).reset();
        data->set.clear(Member::index);
    }
}

// The place of a member's default.
template <class Member, class R>
auto& defaultOf(const R& record)
{
    return orStayEmpty(
        record, [&record]() -> auto& {
            auto&& slot = Member::slot(initData(record));
            using Slot = typename Member::Slot;
            if constexpr (IsNested<Slot>::value)
                return slot.defaultValue();
            else if constexpr (IsList<Slot>::value)
                return slot.defaultItem();
            else
                return slot.defaultValue;
        });
}

template <class Member, class R, class T>
void setDefault(R& record, const T& value)
{
    defaultOf<Member>(record) = value;
    pointer(record)->defaultSet.set(Member::index);
}

template <class Member, class R, class Item>
void requireData(const R& record, const Item& item)
{
    if (record.GetValidate() && !item.HasData())
        throw IncompleteDefinitionException(incompleteItemText(record, Member::name()));
}

// Moves the content of item to the end of the list.
template <class Member, class R, class Item>
void appendContent(R& record, Item& item)
{
    auto& data = initData(record);
    auto& items = Member::slot(data).ownItems();
    items.resize(items.size() + 1);
    Item& appended = items.last();
    swapData(appended, item);
    appended.MODELKIT::IMKObject::SetValidate(item.GetValidate());
    data.set.set(Member::index);
}

// Appends a new item into which read() puts the content. When that fails or brings too little the
// list stays as it was. As any other, it gets the logger with the next operation.
template <class Member, class R, class Read>
void appendRead(R& record, const Read& read)
{
    auto& data = initData(record);
    auto& items = Member::slot(data).ownItems();
    struct Removal
    {
        decltype(items) list;
        bool isDue;
        ~Removal()
        {
            if (isDue)
                list.removeLast();
        }
    };
    items.resize(items.size() + 1);
    Removal removal{items, true};
    auto& item = items.last();
    Access::applySettings(item, record.GetValidate(), Access::logger(item));
    read(item);
    requireData<Member>(record, item);
    removal.isDue = false;
    data.set.set(Member::index);
}

template <class Member, class R, class Item>
void append(R& record, const Item& item)
{
    orStayEmpty(record, [&] {
        initData(record);
        requireData<Member>(record, item);
        Item copy(item);
        appendContent<Member>(record, copy);
    });
}

// --- the whole record -----------------------------------------------------------------------

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
        return data && data->choice != data->invalidChoice && Data::Members::any([&](auto member) {
                   return isCurrent(*data, member) && nestedRecord<decltype(member)>(*data).HasData();
               });
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
bool equalValues(const Data& a, const Data& b)
{
    if constexpr (IsNested<typename Member::Slot>::value)
        return nestedRecord<Member>(a) == nestedRecord<Member>(b);
    else
        return Member::slot(a).equals(Member::slot(b));
}

template <class R>
bool equal(const R& a, const R& b)
{
    using Data = DataOf<R>;
    const auto* dataA = existingData(a);
    const auto* dataB = existingData(b);
    if (!dataA && !dataB)
        return true;
    if constexpr (isChoice<Data>) {
        dataA = &initData(a);
        dataB = &initData(b);
        return dataA->choice == dataB->choice && !Data::Members::any([&](auto member) {
                   return isCurrent(*dataA, member) && !equalValues<decltype(member)>(*dataA, *dataB);
               });
    } else {
        // A record without a block compares as one in which nothing is set.
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

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
