// SPDX-License-Identifier: MIT
// What every data block holds beside the slots of its members.
#pragma once

#include "modelkit/SharedBlock.h"

#include <cstdint>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// One bit for each member of a record.
class Flags
{
public:
    static constexpr int capacity = 8;

    bool test(int index) const { return (m_bits >> index & 1U) != 0; }
    void set(int index) { m_bits = static_cast<std::uint8_t>(m_bits | 1U << index); }
    void clear(int index) { m_bits = static_cast<std::uint8_t>(m_bits & ~(1U << index)); }
    void clearAll() { m_bits = 0; }

private:
    std::uint8_t m_bits = 0;
};

// What every data block holds beside its members.
struct Block : MODELKIT::SharedBlock
{
    Flags set;
    Flags defaultSet;
};

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
