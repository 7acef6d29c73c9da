// SPDX-License-Identifier: MIT
// The block of a choice and that of its record in one allocation.
//
// That is how choices are read, copied, and filled through a reference to the record: then it is known which
// record the choice will hold. The inner block is made when that record needs it. It is shared like any
// other, and may outlive the outer one: the memory is given back after both.
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

// Gives the record, in whose owner's block there is room, an inner block: a copy of another block or a new
// one.
template <class R, class... Source>
void makeInner(const R& record, const Source&... source)
{
    using Data = DataOf<R>;
    static_assert(alignof(Data) <= Block::unit, "inner blocks are aligned to the unit");
    OwnerBlock& outer = OwnerBlock::around(record);
    auto* const place = const_cast<std::byte*>(reinterpret_cast<const std::byte*>(&record))
                        + Access::roomDistance(record) * Block::unit;
    Data* const block = new (place) Data(source...);
    block->placeInside(static_cast<std::size_t>(place - reinterpret_cast<std::byte*>(&outer)));
    MODELKIT::BlockPointer<Data>(block).swap(pointer(record));
    Access::setRoomDistance(record, 0);
    outer.setInner();
}

template <class R>
void Walks<R>::copyInner([[maybe_unused]] const R& record, [[maybe_unused]] const R& source)
{
    if constexpr (!ownsRecords<DataOf<R>>)
        makeInner(record, *pointer(source));
}

template <class R>
void Walks<R>::leaveInner(std::byte* memory, std::size_t distance)
{
    using Data = DataOf<R>;
    Block::leaveInside(std::launder(reinterpret_cast<Data*>(memory + distance)));
}

// Releases the texts, which may take much memory, when nobody can see the values any more.
template <class Data>
void emptyInner([[maybe_unused]] Data* block) noexcept
{
    if constexpr (!ownsRecords<Data> && !std::is_trivially_destructible_v<Data>)
        Data::Members::forEach([block](auto member) {
            auto& slot = member.slot(*block);
            slot = std::decay_t<decltype(slot)>();
        });
}

// --- for the choice ---------------------------------------------------------------------------

template <class Data>
void destroyWithInner(Data* block) noexcept
{
    static_assert(sizeof(Data) % Block::unit == 0
                      && sizeof(Data) / Block::unit <= std::numeric_limits<std::uint8_t>::max(),
                  "an inner block knows its distance");
    const int inner = block->indexOfInner();
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

// Tells the only record of the block about that room.
template <class Data, class Nested>
void offerRoom(const Data& data, const Nested& nested)
{
    const auto distance =
        reinterpret_cast<const std::byte*>(&data + 1) - reinterpret_cast<const std::byte*>(&nested);
    Access::setRoomDistance(nested, static_cast<std::size_t>(distance) / Block::unit);
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
