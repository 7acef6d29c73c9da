// SPDX-License-Identifier: MIT
// The data blocks of records that hold nested records.
#pragma once

#include "modelkit/HeldLogger.h"
#include "modelkit/IMKObject.h"
#include "routerinterface/machinery/Block.h"
#include "routerinterface/machinery/Offsets.h"

#include <QtCore/QtGlobal>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// The block of a record with nested records. It holds those that have been touched, and the settings that
// their owner last handed down. Copying the block copies the settings only; detach() decides which records to
// copy.
//
// The first record is constructed inside the block, the others on the heap: most blocks hold only one, which
// so costs no allocation of its own.
class OwnerBlock : public Block
{
public:
    OwnerBlock() = default;
    OwnerBlock(const OwnerBlock& other) noexcept
        : Block(other), logger(other.logger), validate(other.validate)
    {}
    ~OwnerBlock()
    {
        if (m_firstKey != none)
            first<MODELKIT::IMKObject>()->~IMKObject();
    }

    enum Role : int
    {
        Current,
        Default
    };

    // The record of the member with that index, or null while nobody has touched it.
    template <class R>
    R* find(int index, Role role) const
    {
        const int key = keyOf(index, role);
        if (key == m_firstKey)
            return first<R>();
        for (const Other* other = m_others.get(); other; other = other->next.get())
            if (other->key == key)
                return static_cast<R*>(other->record.get());
        return nullptr;
    }

    // The member whose record has the inner block in this memory; -1 if there is none.
    int indexOfInner() const { return m_hasInner ? m_firstKey / 2 : -1; }
    // Notes that the record in the room has it.
    void setInner() { m_hasInner = true; }

    // The block with that record in its room.
    static OwnerBlock& around(const MODELKIT::IMKObject& first)
    {
        const auto* const room = reinterpret_cast<const std::byte*>(&first);
        return *std::launder(reinterpret_cast<OwnerBlock*>(const_cast<std::byte*>(room - roomOffset)));
    }

    // Whether that is the only record.
    bool holdsOnly(int index, Role role) const { return m_firstKey == keyOf(index, role) && !m_others; }

    // Calls visit(index, role) for every record that exists.
    template <class Visit>
    void forEachKey(const Visit& visit) const
    {
        if (m_firstKey == none)
            return;
        visit(m_firstKey / 2, static_cast<Role>(m_firstKey % 2));
        for (const Other* other = m_others.get(); other; other = other->next.get())
            visit(other->key / 2, static_cast<Role>(other->key % 2));
    }

    // Whether there is any default record.
    bool hasDefaults() const { return m_hasDefaults; }

    // Creates a record that does not exist yet. It is never moved.
    template <class R>
    R& create(int index, Role role) const
    {
        static_assert(sizeof(R) == sizeof(m_room) && alignof(R) == alignof(MODELKIT::IMKObject),
                      "a record is its base and the pointer to its block");
        const int key = keyOf(index, role);
        if (m_firstKey == none) {
            Q_ASSERT(m_room == reinterpret_cast<const std::byte*>(this) + roomOffset);
            R* record = new (m_room) R;
            m_firstKey = static_cast<std::int8_t>(key);
            m_hasDefaults |= role == Default;
            return *record;
        }
        auto other = std::make_unique<Other>();
        auto record = std::make_unique<R>();
        R& created = *record;
        other->key = key;
        other->record = std::move(record);
        other->next = std::move(m_others);
        m_others = std::move(other);
        m_hasDefaults |= role == Default;
        return created;
    }

    // Where debuggers find the records: the first one, its key, the pointer to the list of the others, and
    // the parts of an element of that list.
    struct Offsets
    {
        static constexpr std::uint32_t none = 0xFFFFFFFF;

        std::uint32_t first = none;
        std::uint32_t firstKey = none;
        std::uint32_t others = none;
        std::uint32_t otherKey = none;
        std::uint32_t otherRecord = none;
        std::uint32_t otherNext = none;
    };
    static constexpr Offsets offsets();

private:
    struct Other
    {
        int key = none;
        std::unique_ptr<MODELKIT::IMKObject> record;
        std::unique_ptr<Other> next;
    };

    static int keyOf(int index, Role role) { return 2 * index + role; }

    // The record in the room. Its base begins where it begins.
    template <class R>
    R* first() const
    {
        return std::launder(reinterpret_cast<R*>(m_room));
    }

    static constexpr std::int8_t none = -1;
    static constexpr std::size_t roomOffset = sizeof(Block);

    // In this order there are no gaps.
    alignas(MODELKIT::IMKObject) mutable std::byte m_room[sizeof(MODELKIT::IMKObject) + sizeof(void*)];
    mutable std::unique_ptr<Other> m_others;

public:
    MODELKIT::HeldLogger logger;
    bool validate = false;

private:
    mutable bool m_hasDefaults = false;
    mutable std::int8_t m_firstKey = none;
    bool m_hasInner = false;
};

ROUTERINTERFACE_OFFSETS_BEGIN
constexpr OwnerBlock::Offsets OwnerBlock::offsets()
{
    return {offsetof(OwnerBlock, m_room), offsetof(OwnerBlock, m_firstKey), offsetof(OwnerBlock, m_others),
            offsetof(Other, key),         offsetof(Other, record),          offsetof(Other, next)};
}
ROUTERINTERFACE_OFFSETS_END

// The block of a choice: one nested record at a time is current, and only that one is written, compared and
// checked. The choice is the index of its member.
template <class E>
class ChoiceBlock : public OwnerBlock
{
public:
    static constexpr E invalidChoice = static_cast<E>(-1);

    E choice = invalidChoice;

    ChoiceBlock() = default;
    ChoiceBlock(const ChoiceBlock& other) noexcept : OwnerBlock(other), choice(other.choice) {}

    template <class Data>
    static void destroy(Data* block) noexcept
    {
        destroyWithInner(block);
    }
};

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
