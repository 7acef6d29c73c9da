// SPDX-License-Identifier: MIT
// How a record gets its data block.
#pragma once

#include "routerinterface/machinery/Diagnostics.h"

#include <QtCore/QtGlobal>

#include <new>
#include <utility>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

template <class R>
Q_NEVER_INLINE void makeBlock(const R& record)
{
    if constexpr (!ownsRecords<DataOf<R>>) {
        if (Access::roomDistance(record) != 0) {
            makeInner(record);
            return;
        }
    }
    pointer(record) = MODELKIT::BlockPointer<DataOf<R>>(new DataOf<R>);
    handDownToNew(record);
}

// Gives the record a block of its own. Mostly it has one already.
template <class R>
DataOf<R>& initData(const R& record)
{
    auto& block = pointer(record);
    if (!block)
        makeBlock(record);
    else
        detach(record);
    return *block;
}

// Reading calls this first. A choice gets its block when it is known what it will hold, or else in the end.
template <class R>
void initBeforeReading(const R& record)
{
    if constexpr (!isChoice<DataOf<R>>)
        initData(record);
}

// Does what initData() does for a record of which that member is filled next. A new block of a choice comes
// with room for the inner block of the nested record.
template <class Member, class R>
DataOf<R>& initToFill(const R& record)
{
    using Data = DataOf<R>;
    if constexpr (isChoice<Data>) {
        using Record = RecordIn<typename Member::Slot>;
        if (!pointer(record) && isExactly(record) && Walks<Record>::innerSize() != 0) {
            pointer(record) = makeOuter<Data, Record>(nullptr);
            handDownToNew(record);
            Data& data = *pointer(record);
            offerRoom(data, nestedRecord<Member>(data));
            return data;
        }
    }
    return initData(record);
}

// Runs an action that needs memory. If there is not enough, a record without a block stays without one.
template <class R, class Action>
decltype(auto) orStayEmpty(const R& record, const Action& action)
{
    auto& block = pointer(record);
    const bool isEmpty = !block;
    try {
        return action();
    } catch (const std::bad_alloc&) {
        if (isEmpty)
            MODELKIT::BlockPointer<DataOf<R>>().swap(block);
        throw;
    }
}

// Makes a new record a copy of a choice that holds nothing but its current record, which gets its settings at
// once. False if that is not so; then the record is untouched.
template <class R>
bool takeCopyOfCurrent(R& record, const R& source, bool validate)
{
    const auto& block = pointer(source);
    if (!block || !block->holdsOnly(block->choice, OwnerBlock::Current))
        return false;
    const MODELKIT::HeldLogger none;
    auto copy = copyWithCurrent(*block, [&](auto& to, const auto& from) {
        Access::applySettings(to, validate, none);
        Access::shareName(to, from);
    });
    if (!copy)
        return false;
    copy->validate = validate;
    copy->logger = none;
    Access::applySettings(record, validate, none);
    pointer(record) = std::move(copy);
    return true;
}

template <class R>
void Walks<R>::takeCopy(R& record, const R& source)
{
    const bool validate = source.GetValidate();
    if constexpr (isChoice<DataOf<R>>)
        if (takeCopyOfCurrent(record, source, validate))
            return;
    if (const auto& block = pointer(source))
        pointer(record) = copyOf(*block);
    settleCopy(record, validate);
}

template <class R>
void copyConstruct(R& record, const R& source)
{
    Access::identify(record, DataOf<R>::nameText());
    Walks<R>::takeCopy(record, source);
}

// The records below keep their settings, which are those of the source, so the new record takes these as
// well.
template <class R>
void moveConstruct(R& record, const R& source) noexcept
{
    Access::identify(record, DataOf<R>::nameText());
    Access::applySettings(record, Access::validate(source), Access::logger(source));
    pointer(record).swap(pointer(source));
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
