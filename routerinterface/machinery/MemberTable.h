// SPDX-License-Identifier: MIT
// The table of a record's members as a list of types, and the walks over it.
//
// Each member is described by an empty type with
//   Slot            the type of its slot in the data block (Slots.h)
//   index           its place in the table, which is also its flag bit
//   binaryTag       the tag of its entry in the binary form
//   slot(data)      its slot in a data block
//   name()          its name as a view, nameText() as a string
//   fieldName()     the name of its slot, which some message texts mention
#pragma once

#include "routerinterface/machinery/Slots.h"

#include <QtCore/QStringList>

#include <cstdint>
#include <type_traits>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

struct ListHead;

// The generated list begins with a comma; ListHead stands in front of it.
template <class Head, class... Members>
struct MemberList;

template <class... Members>
struct MemberList<ListHead, Members...>
{
    static constexpr int count = sizeof...(Members);

    // Calls visit(member) for every member in declaration order.
    template <class Visit>
    static void forEach(Visit&& visit)
    {
        (visit(Members{}), ...);
    }

    // Calls visit(member) until a call returns true. Returns whether one did.
    template <class Visit>
    static bool any(Visit&& visit)
    {
        return (visit(Members{}) || ...);
    }

    template <template <class> class Predicate>
    static constexpr bool has = (Predicate<typename Members::Slot>::value || ...);
    template <template <class> class Predicate>
    static constexpr bool hasOnly = (Predicate<typename Members::Slot>::value && ...);

    static constexpr bool tagsDiffer()
    {
        const std::uint32_t tags[] = {Members::binaryTag...};
        for (int i = 0; i < count; ++i)
            for (int k = 0; k < i; ++k)
                if (tags[i] == tags[k])
                    return false;
        return true;
    }

    static QStringList names() { return {Members::nameText()...}; }
};

template <class Slot>
struct IsNested : std::false_type
{
};
template <class R>
struct IsNested<Nested<R>> : std::true_type
{
};

template <class Slot>
struct IsList : std::false_type
{
};
template <class R>
struct IsList<List<R>> : std::true_type
{
};

// The record class that a nested member or a list holds.
template <class Slot>
struct RecordInSlot;
template <class R>
struct RecordInSlot<Nested<R>>
{
    using Type = R;
};
template <class R>
struct RecordInSlot<List<R>>
{
    using Type = R;
};
template <class Slot>
using RecordIn = typename RecordInSlot<Slot>::Type;

template <class Slot>
struct IsText : std::false_type
{
};
template <class T>
struct IsText<Text<T>> : std::true_type
{
};

template <class Slot>
struct IsEnumerated : std::false_type
{
};
template <class E>
struct IsEnumerated<Enumerated<E>> : std::true_type
{
};
template <class E>
struct IsEnumerated<Mandatory<E>> : std::true_type
{
};

template <class Slot>
struct IsMandatory : std::false_type
{
};
template <class E>
struct IsMandatory<Mandatory<E>> : std::true_type
{
};

template <class Data>
constexpr bool hasNested = Data::Members::template has<IsNested>;
template <class Data>
constexpr bool hasList = Data::Members::template has<IsList>;
template <class Data>
constexpr bool ownsRecords = hasNested<Data> || hasList<Data>;

// Calls visit(member) for every member that is a nested record.
template <class Data, class Visit>
void forEachNested(Visit&& visit)
{
    Data::Members::forEach([&](auto member) {
        if constexpr (IsNested<typename decltype(member)::Slot>::value)
            visit(member);
    });
}

// Calls visit(member) for the nested record with that index.
template <class Data, class Visit>
void withNested(int index, Visit&& visit)
{
    forEachNested<Data>([&](auto member) {
        if (member.index == index)
            visit(member);
    });
}

// Calls visit(member, record) for every nested record that exists in that role.
template <class Data, class Visit>
void forEachExisting(const Data& data, OwnerBlock::Role role, Visit&& visit)
{
    data.forEachKey([&](int index, OwnerBlock::Role itsRole) {
        if (itsRole == role)
            withNested<Data>(index, [&](auto member) {
                using Record = RecordIn<typename decltype(member)::Slot>;
                visit(member, *data.template find<Record>(index, role));
            });
    });
}

template <class E>
std::true_type choiceTest(const ChoiceBlock<E>*);
std::false_type choiceTest(const void*);
template <class Data>
constexpr bool isChoice = decltype(choiceTest(static_cast<Data*>(nullptr)))::value;

// In a choice only one member is current; in every other record all members are.
template <class Member, class Data>
bool isCurrent([[maybe_unused]] const Data& data, Member)
{
    if constexpr (isChoice<Data>)
        return data.choice == Member::index;
    else
        return true;
}

template <class Member, class Data>
void makeCurrent([[maybe_unused]] Data& data, Member)
{
    if constexpr (isChoice<Data>)
        data.choice = static_cast<decltype(data.choice)>(Member::index);
}

// The record of a nested member.
template <class Member, class Data>
auto& nestedRecord(const Data& data)
{
    return Member::slot(data).value();
}

// Whether the member is part of the written forms. The flag does not matter for a list, of which the items
// are written, nor for a mandatory member, which is always written.
template <class Member, class Data>
bool isWritten(const Data& data, Member member)
{
    if constexpr (IsList<typename Member::Slot>::value || IsMandatory<typename Member::Slot>::value)
        return true;
    else
        return data.set.test(Member::index) && isCurrent(data, member);
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
