// SPDX-License-Identifier: MIT
// The two diagnostic settings of a record, validation flag and logger, and how they travel from an
// owner to what it owns.
//
// Every operation that checks, writes or reads first hands the settings down. They cannot be
// remembered from one operation to the next, because any reference that a caller holds may have
// changed those of an owned record in between. Within one operation nobody else can, so the
// operation hands them down once and then only to what has been added since.
//
//   setValidate, setLogger  change one of the two, of a record and all below it
//   applySettings           changes both
//   settleCopy              gives a copy its settings: the flag, and no logger at any depth
//   handDown                begins an operation that a caller starts: the record's own settings go down
//   handDownToNew           does the same for a record whose data block is new
//   beginOwn                begins the part of an operation in a record whose owner is of a derived class
//   beginReading            begins a reading operation that a caller starts
//   settle                  begins a step of reading: settings go down where they have not yet been
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
    if constexpr (hasNested<Data>)
        forEachExisting(data, OwnerBlock::Current, [&](auto, auto& record) { apply(record); });
    if constexpr (hasList<Data>)
        Data::Members::forEach([&](auto member) {
            if constexpr (IsList<typename decltype(member)::Slot>::value)
                for (auto& item : member.slot(data).ownItems())
                    apply(std::as_const(item));
        });
}

// The same for the records that are defaults.
template <class Data, class Apply>
void forEachDefault(const Data& data, Apply&& apply)
{
    if constexpr (hasNested<Data>)
        if (data.hasDefaults())
            forEachExisting(data, OwnerBlock::Default, [&](auto, auto& record) { apply(record); });
    if constexpr (hasList<Data>)
        Data::Members::forEach([&](auto member) {
            if constexpr (IsList<typename decltype(member)::Slot>::value)
                if (const auto* standard = member.slot(data).existingDefault())
                    apply(*standard);
        });
}

// Changes the settings of all that a record owns: keep(block) those for nested records that do not exist yet,
// apply(owned) those of a record that does.
template <class R, class Keep, class Apply>
void handOn([[maybe_unused]] const R& record, [[maybe_unused]] const Keep& keep,
            [[maybe_unused]] const Apply& apply)
{
    using Data = DataOf<R>;
    if constexpr (ownsRecords<Data>) {
        if (!pointer(record))
            return;
        detach(record);
        Data& data = *pointer(record);
        if constexpr (hasNested<Data>)
            keep(data);
        forEachOwned(data, apply);
    }
}

template <class R>
void Walks<R>::setValidate(const R& record, bool validate)
{
    record.MODELKIT::IMKObject::SetValidate(validate);
    handOn(
        record, [validate](OwnerBlock& block) { block.validate = validate; },
        [validate](const auto& owned) { walksOf(owned).setValidate(owned, validate); });
}

template <class R>
void Walks<R>::setLogger(const R& record, const MODELKIT::HeldLogger& logger)
{
    Access::applySettings(record, Access::validate(record), logger);
    handOn(
        record, [&logger](OwnerBlock& block) { block.logger = logger; },
        [&logger](const auto& owned) { walksOf(owned).setLogger(owned, logger); });
}

// The logger is wrapped once, for the record and all below it.
template <class R>
void setLogger(const R& record, std::shared_ptr<MODELKIT::Logger> logger)
{
    record.MODELKIT::IMKObject::SetLogger(std::move(logger));
    walksOf(record).setLogger(record, Access::logger(record));
}

template <class R>
void Walks<R>::applySettings(const R& record, bool validate, const MODELKIT::HeldLogger& logger)
{
    Access::applySettings(record, validate, logger);
    handOn(
        record,
        [validate, &logger](OwnerBlock& block) {
            block.validate = validate;
            block.logger = logger;
        },
        [validate, &logger](const auto& owned) { walksOf(owned).applySettings(owned, validate, logger); });
}

// Defaults, to which no owner hands anything, keep their flag.
template <class R>
void Walks<R>::settleCopy(const R& record, bool validate)
{
    const MODELKIT::HeldLogger none;
    Access::applySettings(record, validate, none);
    handOn(
        record,
        [validate](OwnerBlock& block) {
            block.validate = validate;
            block.logger = MODELKIT::HeldLogger();
        },
        [validate](const auto& owned) { walksOf(owned).settleCopy(owned, validate); });
    if constexpr (ownsRecords<DataOf<R>>)
        if (pointer(record))
            forEachDefault(*pointer(record), [](const auto& standard) {
                walksOf(standard).settleCopy(standard, Access::validate(standard));
            });
}

// False for a record of a derived class, which may have virtual operations of its own.
template <class R>
bool isExactly(const R& record)
{
    return typeid(record) == typeid(R);
}

template <class R>
void handDown(const R& record)
{
    if (isExactly(record)) {
        walksOf(record).applySettings(record, Access::validate(record), Access::logger(record));
        return;
    }
    record.SetValidate(record.GetValidate());
    record.SetLogger(record.GetLogger());
}

// A block that has just been made owns nothing yet.
template <class R>
void handDownToNew(const R& record)
{
    if (!isExactly(record)) {
        handDown(record);
        return;
    }
    if constexpr (hasNested<DataOf<R>>) {
        OwnerBlock& block = *pointer(record);
        block.validate = Access::validate(record);
        block.logger = Access::logger(record);
    }
}

// A derived class may change how settings are handed down and how the record is checked, so the records that
// it owns take nothing for granted. Owned records themselves are never of derived classes. Returns the flag
// of the owned record.
template <class R>
bool beginOwn(const R& owned)
{
    walksOf(owned).applySettings(owned, Access::validate(owned), Access::logger(owned));
    return Access::validate(owned);
}

// The number of items in the list of the record or of a record nested in it.
template <class R>
QtVersion::Size Walks<R>::numberOfItems([[maybe_unused]] const R& record)
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
                    count += walksOf(*nested).numberOfItems(*nested);
            } else if constexpr (IsList<Slot>::value) {
                count += member.slot(data).value.size();
            }
        });
    }
    return count;
}

// Hands the settings down to the list items behind the settled ones. The list may be in a nested record.
template <class R>
void Walks<R>::handDownToNewItems([[maybe_unused]] const R& record, [[maybe_unused]] Reading& reading)
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
                    walksOf(*nested).handDownToNewItems(*nested, reading);
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

template <class R>
Reading beginReading(const R& record)
{
    handDown(record);
    Reading reading =
        Reading::ofSettled(MODELKIT::DocumentContext::Current(), walksOf(record).numberOfItems(record));
    reading.isDerived = !isExactly(record);
    return reading;
}

// No observer can tell this from handDown().
template <class R>
void settle([[maybe_unused]] const R& record, [[maybe_unused]] Reading& reading)
{
    if constexpr (ownsRecords<DataOf<R>>) {
        if (reading.settled) {
            walksOf(record).handDownToNewItems(record, reading);
            return;
        }
        walksOf(record).applySettings(record, record.GetValidate(), Access::logger(record));
        reading.settled = true;
        reading.settledItems = walksOf(record).numberOfItems(record);
    }
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
