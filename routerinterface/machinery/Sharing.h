// SPDX-License-Identifier: MIT
// Data blocks that records share, and how a record gets its own.
#pragma once

#include "routerinterface/machinery/Access.h"
#include "routerinterface/machinery/MemberTable.h"

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Makes the record's block its own if another record shares it.
template <class R>
void detach(const R& record)
{
    auto& block = pointer(record);
    if (!block.isShared())
        return;
    using Data = DataOf<R>;
    MODELKIT::BlockPointer<Data> own(new Data(*block));
    if constexpr (hasNested<Data>) {
        forEachNested<Data>([&](auto member) { member.slot(*own).copyFrom(member.slot(*block)); });
        if (block->hasDefaults())
            forEachNested<Data>([&](auto member) { member.slot(*own).copyDefaultFrom(member.slot(*block)); });
    }
    own.swap(block);
}

// The record's own block, or null. Even reading ends the sharing.
template <class R>
DataOf<R>* existingData(const R& record)
{
    detach(record);
    auto& block = pointer(record);
    return block ? &*block : nullptr;
}

// Exchanges the contents of two records of one class.
template <class R>
void swapData(const R& a, const R& b)
{
    pointer(a).swap(pointer(b));
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
