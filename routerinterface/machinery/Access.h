// SPDX-License-Identifier: MIT
// The way from the machinery into a record: the one friend that every record has.
#pragma once

#include "modelkit/HeldLogger.h"
#include "modelkit/IMKObject.h"
#include "modelkit/SharedBlock.h"
#include "routerinterface/machinery/Offsets.h"

#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

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
    static bool validate(const R& record)
    {
        return record.OwnValidate();
    }

    template <class R>
    static const MODELKIT::HeldLogger& logger(const R& record)
    {
        return record.OwnLogger();
    }

    template <class R>
    static void applySettings(const R& record, bool validate, const MODELKIT::HeldLogger& logger)
    {
        record.ApplySettings(validate, logger);
    }

    template <class R>
    static std::size_t roomDistance(const R& record)
    {
        return record.RoomDistance();
    }

    template <class R>
    static void setRoomDistance(const R& record, std::size_t distance)
    {
        record.SetRoomDistance(static_cast<std::uint8_t>(distance));
    }

    template <class R>
    static const QString& name(const R& record)
    {
        return record.OwnName();
    }

    // Most records are called as their class, so both names are the same string already.
    template <class R>
    static void shareName(R& to, const R& from)
    {
        if (name(to).constData() != name(from).constData())
            to.SetObjectName(name(from));
    }

    // Where debuggers find the type code and the pointer to the data block.
    ROUTERINTERFACE_OFFSETS_BEGIN
    template <class R>
    static constexpr std::uint32_t typeCodeOffset()
    {
        return offsetof(R, m_typeCode);
    }

    template <class R>
    static constexpr std::uint32_t dataOffset()
    {
        return offsetof(R, m_data);
    }
    ROUTERINTERFACE_OFFSETS_END

    template <class R>
    static void identify(R& record, QString className)
    {
        record.TakeName(std::move(className));
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
