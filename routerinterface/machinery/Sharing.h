// SPDX-License-Identifier: MIT
// Data blocks that records share, and how a record gets its own.
#pragma once

#include "routerinterface/machinery/Access.h"
#include "routerinterface/machinery/InnerBlocks.h"
#include "routerinterface/machinery/MemberTable.h"

#include <QtCore/QtGlobal>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// A copy of the block of a choice with the current record, if that one's block can be an inner one; else
// null. settle(to, from) gives the record its settings.
template <class Data, class Settle>
MODELKIT::BlockPointer<Data> copyWithCurrent(const Data& block, const Settle& settle)
{
    MODELKIT::BlockPointer<Data> copy;
    withNested<Data>(block.choice, [&](auto member) {
        using Record = RecordIn<typename decltype(member)::Slot>;
        const Record* const record = member.slot(block).existing();
        if (!record || !pointer(*record) || Walks<Record>::innerSize() == 0)
            return;
        copy = makeOuter<Data, Record>(&block);
        auto& nested = copy->template create<Record>(member.index, OwnerBlock::Current);
        settle(nested, *record);
        offerRoom(*copy, nested);
        Walks<Record>::copyInner(nested, *record);
    });
    return copy;
}

// A copy of a block and of the records in it. It is needed seldom, so its callers stay small.
template <class Data>
Q_NEVER_INLINE MODELKIT::BlockPointer<Data> copyOf(const Data& block)
{
    MODELKIT::BlockPointer<Data> copy;
    if constexpr (isChoice<Data>)
        copy = copyWithCurrent(block, [](auto& to, const auto& from) { duplicateSettings(to, from); });
    if (!copy)
        copy = MODELKIT::BlockPointer<Data>(new Data(block));
    if constexpr (hasNested<Data>) {
        forEachExisting(block, OwnerBlock::Current, [&copy](auto member, const auto& record) {
            const auto slot = member.slot(*copy);
            if (!slot.existing())
                slot.copyFrom(record);
        });
        if (block.hasDefaults())
            forEachExisting(block, OwnerBlock::Default, [&copy](auto member, const auto& standard) {
                member.slot(*copy).copyDefaultFrom(standard);
            });
    }
    return copy;
}

// Makes the record's block its own if another record shares it.
template <class R>
void detach(const R& record)
{
    auto& block = pointer(record);
    if (block.isShared())
        block = copyOf(*block);
}

// The record's own block, or null. Even reading ends the sharing.
template <class R>
DataOf<R>* existingData(const R& record)
{
    detach(record);
    auto& block = pointer(record);
    return block ? &*block : nullptr;
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
