// SPDX-License-Identifier: MIT
// The block of a choice and that of its record in one allocation.
//
// That is how choices are read and copied: then it is known which record the choice will hold. The inner
// block is shared like any other, and may outlive the outer one: the memory is given back after both.
#pragma once

#include "routerinterface/machinery/Access.h"
#include "routerinterface/machinery/MemberTable.h"
#include "routerinterface/machinery/Walks.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <type_traits>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// --- for the record with the inner block ------------------------------------------------------

template <class R>
std::size_t Walks<R>::innerSize()
{
    return ownsRecords<DataOf<R>> ? 0 : sizeof(DataOf<R>);
}

template <class R>
void Walks<R>::makeInner([[maybe_unused]] const R& record, [[maybe_unused]] const R* source,
                         [[maybe_unused]] std::byte* memory, [[maybe_unused]] std::size_t distance)
{
    using Data = DataOf<R>;
    if constexpr (!ownsRecords<Data>) {
        static_assert(alignof(Data) <= Block::unit, "inner blocks are aligned to the unit");
        void* const place = memory + distance;
        Data* const block = source ? new (place) Data(*pointer(*source)) : new (place) Data;
        block->placeInside(distance);
        MODELKIT::BlockPointer<Data>(block).swap(pointer(record));
    }
}

template <class R>
void Walks<R>::leaveInner(std::byte* memory, std::size_t distance)
{
    using Data = DataOf<R>;
    Block::leaveInside(std::launder(reinterpret_cast<Data*>(memory + distance)));
}

// --- for the choice ---------------------------------------------------------------------------

template <class Data>
void destroyWithInner(Data* block) noexcept
{
    static_assert(sizeof(Data) % Block::unit == 0
                      && sizeof(Data) / Block::unit <= std::numeric_limits<std::uint8_t>::max(),
                  "an inner block knows its distance");
    const int inner = block->inner;
    if (inner < 0) {
        Block::destroy(block);
        return;
    }
    auto* const memory = reinterpret_cast<std::byte*>(block);
    block->~Data();
    withNested<Data>(inner, [memory](auto member) {
        Walks<RecordIn<typename decltype(member)::Slot>>::leaveInner(memory, sizeof(Data));
    });
}

// A new block of a choice, with room behind it for the block of that record.
template <class Data, class Nested>
MODELKIT::BlockPointer<Data> makeOuter(const Data* source)
{
    void* const memory = ::operator new(sizeof(Data) + Walks<Nested>::innerSize());
    static_assert(
        std::is_nothrow_default_constructible_v<Data> && std::is_nothrow_copy_constructible_v<Data>);
    return MODELKIT::BlockPointer<Data>(source ? new (memory) Data(*source) : new (memory) Data);
}

// Gives the record in that room its block, a copy of that of the source or a new one.
template <class Member, class Data, class Nested>
void fillRoom(Data& data, const Nested& nested, const Nested* source)
{
    Walks<Nested>::makeInner(nested, source, reinterpret_cast<std::byte*>(&data), sizeof(Data));
    data.inner = Member::index;
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
