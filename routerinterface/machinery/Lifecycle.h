// SPDX-License-Identifier: MIT
// How a record gets its data block.
#pragma once

#include "routerinterface/machinery/Diagnostics.h"

#include <new>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Gives the record a block of its own.
template <class R>
DataOf<R>& initData(const R& record)
{
    auto& block = pointer(record);
    if (block) {
        detach(record);
    } else {
        MODELKIT::BlockPointer<DataOf<R>>(new DataOf<R>).swap(block);
        handDownToNew(record);
    }
    return *block;
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

template <class R>
void copyConstruct(R& record, const R& source)
{
    pointer(record) = pointer(source);
    detach(record);
    Access::identify(record, DataOf<R>::nameText());
    walksOf(record).settleCopy(record, source.GetValidate());
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
