// SPDX-License-Identifier: MIT
// What every data block holds beside the slots of its members.
#pragma once

#include "modelkit/SharedBlock.h"

#include <cstdint>
#include <limits>

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

// What every data block holds beside its members.
struct Block : MODELKIT::SharedBlock
{
    Flags set;
    Flags defaultSet;
};

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
