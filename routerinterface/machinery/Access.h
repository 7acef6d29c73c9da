// The way from the machinery into a record: the one friend that every record has.
#pragma once

#include "modelkit/IMKObject.h"
#include "modelkit/SharedBlock.h"

#include <type_traits>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

struct Access
{
    template <class R>
    static auto& pointer(const R& record)
    {
        return record.m_data;
    }

    template <class R>
    static void identify(R& record, const QString& className)
    {
        record.SetObjectName(className);
        record.m_typeCode = R::id;
    }
};

template <class R>
auto& pointer(const R& record)
{
    return Access::pointer(record);
}

// The type of a record's data block.
template <class R>
using DataOf = std::remove_reference_t<decltype(*Access::pointer(std::declval<const R&>()))>;

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
