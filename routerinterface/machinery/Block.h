// SPDX-License-Identifier: MIT
// What every data block holds beside the slots of its members.
#pragma once

#include "modelkit/SharedBlock.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// One bit for each member of a record.
class Flags
{
public:
    using Bits = std::uint8_t;
    static constexpr int capacity = std::numeric_limits<Bits>::digits;

    bool test(int index) const { return (m_bits >> index & 1U) != 0; }
    void set(int index) { m_bits = static_cast<Bits>(m_bits | 1U << index); }
    void clear(int index) { m_bits = static_cast<Bits>(m_bits & ~(1U << index)); }
    void clearAll() { m_bits = 0; }

private:
    Bits m_bits = 0;
};

// What every data block holds beside its members. A block is alone in its memory, or an inner block: the
// block of a nested record behind that of its owner, which saves an allocation (InnerBlocks.h).
class Block : public MODELKIT::SharedBlock
{
public:
    // Everything in memory that is allocated together is aligned to this.
    static constexpr std::size_t unit = alignof(double);

    Flags set;
    Flags defaultSet;

    Block() = default;
    Block(const Block& other) noexcept : SharedBlock(other), set(other.set), defaultSet(other.defaultSet) {}

    // Makes a new block an inner one, that many bytes behind the beginning of the memory.
    void placeInside(std::size_t distance)
    {
        m_distance = static_cast<std::uint8_t>(distance / unit);
        beginOwned();
    }

    template <class Data>
    static void destroy(Data* block) noexcept
    {
        void* const memory = reinterpret_cast<std::byte*>(block) - block->m_distance * unit;
        block->~Data();
        ::operator delete(memory);
    }

    template <class Data>
    static void empty(Data* block) noexcept
    {
        emptyInner(block);
    }

    // Ends the hold of the owner.
    template <class Data>
    static void leaveInside(Data* block) noexcept
    {
        if (block->endOwned())
            destroy(block);
    }

private:
    std::uint8_t m_distance = 0;
};

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
