// SPDX-License-Identifier: MIT
// The two diagnostic settings of a record, validation flag and logger, and how they travel from an
// owner to what it owns.
//
// Every operation that checks, writes or reads first hands the settings down. They cannot be
// remembered from one operation to the next, because any reference that a caller holds may have
// changed those of an owned record in between. Within one operation nobody else can, so the
// operation hands them down once and then only to what has been added since.
#pragma once

#include "routerinterface/machinery/Access.h"
#include "routerinterface/machinery/MemberTable.h"
#include "routerinterface/machinery/Sharing.h"
#include "routerinterface/machinery/Walks.h"

#include <memory>
#include <typeinfo>
#include <utility>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Calls apply(owned) for every record that this one owns directly: the nested ones that exist and
// the list items.
template <class Data, class Apply>
void forEachOwned(Data& data, Apply&& apply)
{
    Data::Members::forEach([&](auto member) {
        using Slot = typename decltype(member)::Slot;
        auto&& slot = member.slot(data);
        if constexpr (IsNested<Slot>::value) {
            if (auto* record = slot.existing())
                apply(*record);
        } else if constexpr (IsList<Slot>::value) {
            for (auto& item : slot.ownItems())
                apply(std::as_const(item));
        }
    });
}

// The same for the records that are defaults.
template <class Data, class Apply>
void forEachDefault(const Data& data, Apply&& apply)
{
    const auto visit = [&](auto member) {
        if (const auto* standard = member.slot(data).existingDefault())
            apply(*standard);
    };
    if constexpr (hasNested<Data>)
        if (data.hasDefaults())
            forEachNested<Data>(visit);
    if constexpr (hasList<Data>)
        Data::Members::forEach([&](auto member) {
            if constexpr (IsList<typename decltype(member)::Slot>::value)
                visit(member);
        });
}

template <class R>
void setValidate(const R& record, bool validate)
{
    record.MODELKIT::IMKObject::SetValidate(validate);
    using Data = DataOf<R>;
    if constexpr (ownsRecords<Data>) {
        if (!pointer(record))
            return;
        detach(record);
        Data& data = *pointer(record);
        if constexpr (hasNested<Data>)
            data.validate = validate;
        forEachOwned(data, [validate](const auto& owned) {
            Walks<std::decay_t<decltype(owned)>>::setValidate(owned, validate);
        });
    }
}

template <class R>
void setLogger(const R& record, const std::shared_ptr<MODELKIT::Logger>& logger)
{
    record.MODELKIT::IMKObject::SetLogger(logger);
    using Data = DataOf<R>;
    if constexpr (ownsRecords<Data>) {
        if (!pointer(record))
            return;
        detach(record);
        Data& data = *pointer(record);
        if constexpr (hasNested<Data>)
            data.logger = logger;
        forEachOwned(data, [&logger](const auto& owned) {
            Walks<std::decay_t<decltype(owned)>>::setLogger(owned, logger);
        });
    }
}

// Both at once.
template <class R>
void applySettings(const R& record, bool validate, const std::shared_ptr<MODELKIT::Logger>& logger)
{
    Access::applySettings(record, validate, logger);
    using Data = DataOf<R>;
    if constexpr (ownsRecords<Data>) {
        if (!pointer(record))
            return;
        detach(record);
        Data& data = *pointer(record);
        if constexpr (hasNested<Data>) {
            data.validate = validate;
            Access::shareLogger<R>(data.logger, logger);
        }
        forEachOwned(data, [validate, &logger](const auto& owned) {
            Walks<std::decay_t<decltype(owned)>>::applySettings(owned, validate, logger);
        });
    }
}

// The settings of a copy: the flag, handed down, and no logger. Defaults, which no owner hands anything,
// keep their flag.
template <class R>
void settleCopy(const R& record, bool validate)
{
    const auto& logger = Access::logger(record);
    if (logger || logger.use_count() > 0)
        record.MODELKIT::IMKObject::ResetLogger();
    Access::applySettings(record, validate, logger);
    using Data = DataOf<R>;
    if constexpr (ownsRecords<Data>) {
        if (!pointer(record))
            return;
        detach(record);
        Data& data = *pointer(record);
        if constexpr (hasNested<Data>) {
            data.validate = validate;
            data.logger.reset();
        }
        forEachOwned(data, [validate](const auto& owned) {
            Walks<std::decay_t<decltype(owned)>>::settleCopy(owned, validate);
        });
        forEachDefault(data, [](const auto& standard) {
            Walks<std::decay_t<decltype(standard)>>::settleCopy(standard, Access::validate(standard));
        });
    }
}

// Whether the record is not one of a derived class, which may have virtual operations of its own.
template <class R>
bool isExactly(const R& record)
{
    return typeid(record) == typeid(R);
}

// Re-applies the record's own settings through its virtual operations, which hand them down: the
// beginning of every operation that a caller starts.
template <class R>
void handDown(const R& record)
{
    if (isExactly(record)) {
        applySettings(record, Access::validate(record), Access::logger(record));
        return;
    }
    record.SetValidate(record.GetValidate());
    record.SetLogger(record.GetLogger());
}

// Begins an operation of an owned record's own: hands the record's settings down and returns its flag. A
// record of a derived class may have kept its own from what it owns, and its check may have looked away;
// what it owns then takes nothing for granted. Owned records themselves are never of derived classes.
template <class R>
bool beginOwn(const R& owned)
{
    Walks<R>::applySettings(owned, Access::validate(owned), Access::logger(owned));
    return Access::validate(owned);
}

// The number of items in the list that the record, or a record nested in it, holds.
template <class R>
QtVersion::Size numberOfItems([[maybe_unused]] const R& record)
{
    QtVersion::Size count = 0;
    using Data = DataOf<R>;
    if constexpr (ownsRecords<Data>) {
        if (!pointer(record))
            return count;
        const Data& data = *pointer(record);
        Data::Members::forEach([&](auto member) {
            using Slot = typename decltype(member)::Slot;
            if constexpr (IsNested<Slot>::value) {
                if (const auto* nested = member.slot(data).existing())
                    count += Walks<RecordIn<Slot>>::numberOfItems(*nested);
            } else if constexpr (IsList<Slot>::value) {
                count += member.slot(data).value.size();
            }
        });
    }
    return count;
}

// Hands the settings down to the list items behind the settled ones, wherever below the record the
// list is.
template <class R>
void handDownToNewItems([[maybe_unused]] const R& record, [[maybe_unused]] Reading& reading)
{
    using Data = DataOf<R>;
    if constexpr (ownsRecords<Data>) {
        if (!pointer(record))
            return;
        Data& data = *pointer(record);
        Data::Members::forEach([&](auto member) {
            using Slot = typename decltype(member)::Slot;
            if constexpr (IsNested<Slot>::value) {
                if (const auto* nested = member.slot(data).existing())
                    Walks<RecordIn<Slot>>::handDownToNewItems(*nested, reading);
            } else if constexpr (IsList<Slot>::value) {
                auto& items = member.slot(data).value;
                for (auto i = reading.settledItems; i < items.size(); ++i)
                    Walks<RecordIn<Slot>>::applySettings(items[i], record.GetValidate(),
                                                         Access::logger(record));
                reading.settledItems = items.size();
            }
        });
    }
}

// The beginning of every step of a reading operation: the same to every observer as handDown().
template <class R>
void settle([[maybe_unused]] const R& record, [[maybe_unused]] Reading& reading)
{
    if constexpr (ownsRecords<DataOf<R>>) {
        if (reading.settled) {
            handDownToNewItems(record, reading);
            return;
        }
        applySettings(record, record.GetValidate(), Access::logger(record));
        reading.settled = true;
        reading.settledItems = numberOfItems(record);
    }
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
