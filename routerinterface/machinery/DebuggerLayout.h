// SPDX-License-Identifier: MIT
// A table in the library from which debuggers learn where the members of a record are. The debug information
// of a program does not describe the data blocks, and installed libraries have none. See debuggers/.
#pragma once

#include "routerinterface/machinery/Access.h"
#include "routerinterface/machinery/MemberTable.h"
#include "routerinterface/machinery/OwnerBlock.h"

#include <QtCore/QString>

#include <cstddef>
#include <cstdint>
#include <type_traits>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// A short text without a pointer: so the table needs no relocation and can be read from the file of the
// library when a core file lacks it.
struct LayoutText
{
    char characters[28] = {};

    constexpr LayoutText() = default;
    template <std::size_t size>
    constexpr LayoutText(const char (&text)[size])
    {
        static_assert(size <= sizeof(characters), "the text and a null byte must fit");
        for (std::size_t i = 0; i < size; ++i)
            characters[i] = text[i];
    }
};

// A row of a member table. The offset is that of the current value in the data block. A nested record has no
// slot; its offset is 0.
struct MemberLayout
{
    LayoutText name;
    LayoutText kind;
    LayoutText type;
    std::uint32_t offset = 0;
};

// Everything that a debugger needs to find the members of a record. All numbers but the id have 32 bits.
// debuggers/routerinterface_gdb.py reads it byte by byte: when this changes, the version must change, too.
template <std::size_t count>
struct RecordLayout
{
    static constexpr std::uint32_t none = OwnerBlock::Offsets::none;

    std::uint32_t version = 1;
    std::uint32_t memberCount = count;
    std::int64_t id = 0;
    std::uint32_t recordSize = 0;
    std::uint32_t stringSize = sizeof(QString);
    // In the record. Its data are the pointer to the data block.
    std::uint32_t typeCode = none;
    std::uint32_t data = none;
    // In the data block.
    std::uint32_t setFlags = none;
    std::uint32_t choice = none;
    OwnerBlock::Offsets owner;
    MemberLayout members[count];
};

ROUTERINTERFACE_OFFSETS_BEGIN

template <class R, std::size_t count>
constexpr RecordLayout<count> layoutOf(const MemberLayout (&rows)[count])
{
    using Data = DataOf<R>;
    RecordLayout<count> layout;
    layout.id = R::id;
    layout.recordSize = sizeof(R);
    layout.typeCode = Access::typeCodeOffset<R>();
    layout.data = Access::dataOffset<R>();
    layout.setFlags = offsetof(Data, set);
    if constexpr (isChoice<Data>)
        layout.choice = offsetof(Data, choice);
    if constexpr (std::is_base_of_v<OwnerBlock, Data>)
        layout.owner = OwnerBlock::offsets();
    for (std::size_t i = 0; i < count; ++i)
        layout.members[i] = rows[i];
    return layout;
}

ROUTERINTERFACE_OFFSETS_END

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
