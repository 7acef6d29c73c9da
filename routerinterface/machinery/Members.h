// SPDX-License-Identifier: MIT
// One member of a record: reading, changing and resetting it and its default.
#pragma once

#include "routerinterface/machinery/Lifecycle.h"
#include "routerinterface/machinery/Rules.h"

#include <utility>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Does what initData() does and allocates all that changing the member needs. Init: initData() or
// initToFill().
template <class Member, class R, class Init>
DataOf<R>& initMember(const R& record, const Init& init)
{
    using Slot = typename Member::Slot;
    if constexpr (IsNested<Slot>::value) {
        return orStayEmpty(record, [&]() -> DataOf<R>& {
            auto& data = init(record);
            nestedRecord<Member>(data);
            return data;
        });
    } else {
        return initData(record);
    }
}

template <class Member, class R>
DataOf<R>& initMember(const R& record)
{
    return initMember<Member>(record, initData<R>);
}

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

// Stores a value. If the rule of the member refuses it, throws and stores nothing. Given: makes the text from
// which the value was read.
template <class Member, class R, class T, class Given>
void setMember(R& record, const T& value, const Given& given)
{
    auto& data = initMember<Member>(record);
    if (hasRule<typename Member::Slot> && record.GetValidate())
        requireAcceptable<Member>(record, value, given);
    if constexpr (IsNested<typename Member::Slot>::value)
        nestedRecord<Member>(data) = value;
    else if constexpr (IsList<typename Member::Slot>::value)
        Member::slot(data).give(value);
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
    auto& data = initMember<Member>(record, initToFill<Member, R>);
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

// A reference to the default of a member.
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

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
