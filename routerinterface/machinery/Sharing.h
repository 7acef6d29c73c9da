// SPDX-License-Identifier: MIT
// Data blocks that records share, and how a record gets its own.
#pragma once

#include "routerinterface/machinery/Access.h"
#include "routerinterface/machinery/MemberTable.h"

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Makes sure that nobody else holds the record's block, if it has one.
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

// The record's block, if it has one, made its own: even reading a shared block ends the sharing.
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
