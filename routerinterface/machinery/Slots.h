// SPDX-License-Identifier: MIT
// The slot of a member in the data block, by kind of member. It keeps the default and the current value, and
// knows how to reset and compare them and whether the member holds data.
#pragma once

#include "modelkit/IMKObject.h"
#include "modelkit/QtVersion.h"
#include "routerinterface/machinery/Access.h"
#include "routerinterface/machinery/OwnerBlock.h"
#include "routerinterface/machinery/Walks.h"

#include <QtCore/QString>
#include <QtCore/QVector>

#include <algorithm>
#include <memory>
#include <string_view>
#include <type_traits>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

namespace QtVersion = MODELKIT::QtVersion;

// Whether one of the kinds below has that name.
constexpr bool isKind(std::string_view name)
{
    for (const std::string_view kind : {"Value", "Text", "Enumerated", "Mandatory", "Nested", "List"})
        if (name == kind)
            return true;
    return false;
}

// A number or a truth value.
template <class T>
struct Value
{
    static_assert(std::is_same_v<T, unsigned int> || std::is_same_v<T, double> || std::is_same_v<T, bool>,
                  "a member of the kind Value is an unsigned int, a double or a bool");

    T defaultValue{};
    T value{};

    void reset() { value = defaultValue; }
    bool holdsData(bool isSet) const { return isSet; }
    bool equals(const Value& other) const { return value == other.value; }
    static bool isValid(const T&) { return true; }
};

// A text. It is reset to the null string whatever its default, and judged by its content.
template <class T>
struct Text
{
    static_assert(std::is_same_v<T, QString>, "a member of the kind Text is a QString");

    T defaultValue;
    T value;

    void reset() { value = T(); }
    bool holdsData(bool) const { return !value.isNull(); }
    bool equals(const Text& other) const { return value == other.value; }
    static bool isValid(const T& text) { return !text.isNull(); }
};

// One enumerator, or any other number while validation is off. The invalid value stands for "none".
template <class E>
struct Enumerated
{
    static_assert(std::is_enum_v<E>, "a member of the kind Enumerated or Mandatory is an enumeration");

    static constexpr E none = static_cast<E>(-1);

    E invalid = none;
    E defaultValue = none;
    E value = none;

    void reset() { value = defaultValue; }
    bool holdsData(bool isSet) const { return isSet; }
    bool equals(const Enumerated& other) const { return value == other.value; }
};

// An enumerated member without which its record is incomplete: it must be set to pass a check, and
// it is written even when it is not set.
template <class E>
struct Mandatory : Enumerated<E>
{
};

// Gives a new record name, flag and logger of another, without handing them down.
template <class R>
void duplicateSettings(R& to, const R& from)
{
    Access::applySettings(to, Access::validate(from), Access::logger(from));
    Access::shareName(to, from);
}

// Makes a new record the same as another. It shares the data, as by assignment. The records below keep their
// settings.
template <class R>
void duplicate(R& to, const R& from)
{
    to = from;
    duplicateSettings(to, from);
}

// A list of records and a default item.
template <class R>
class List
{
    static_assert(std::is_base_of_v<MODELKIT::IMKObject, R>, "a member of the kind List holds records");

public:
    using Items = QVector<R>;

    List() = default;
    List(const List& other) : value(ownCopy(other.value))
    {
        if (other.m_defaultItem) {
            m_defaultItem = std::make_unique<R>();
            duplicate(*m_defaultItem, *other.m_defaultItem);
        }
    }

    // The items for changing. They stop being shared with another container first, because flag and logger of
    // a shared item must not be written.
    Items& ownItems()
    {
        if (!value.isDetached()) {
            value = ownCopy(value);
        } else if (m_isGiven) {
            // That others have left the items does not say that they left them before: isDetached() orders
            // nothing. Taking and leaving them does.
            [[maybe_unused]] const Items taken(value);
        }
        m_isGiven = false;
        return value;
    }

    R& defaultItem() const
    {
        if (!m_defaultItem)
            m_defaultItem = std::make_unique<R>();
        return *m_defaultItem;
    }

    R* existingDefault() const { return m_defaultItem.get(); }

    // Shares the items of a caller, who may give them to other records, also in other threads.
    void give(const Items& items)
    {
        value = items;
        m_isGiven = true;
    }

    void reset() { value = Items(); }
    bool holdsData(bool) const { return !value.isEmpty(); }
    // Item by item: an item need not equal itself, but a container equals one with the same storage.
    bool equals(const List& other) const
    {
        return value.size() == other.value.size()
               && std::equal(value.cbegin(), value.cend(), other.value.cbegin());
    }
    static bool isValid(const Items&) { return true; }

    Items value;

private:
    // Unlike a copy made by the container, this keeps the loggers of the items.
    static Items ownCopy(const Items& items)
    {
        Items copy(items.size());
        R* to = copy.data();
        for (const R& item : items)
            duplicate(*to++, item);
        return copy;
    }

    mutable std::unique_ptr<R> m_defaultItem;
    bool m_isGiven = false;
};

// A nested record in its block. It is created when it is first touched. Until then it costs nothing and
// counts as newly constructed with the flag and logger of its owner. It is never moved, since callers hold
// references to it.
template <class R>
class Nested
{
    static_assert(std::is_base_of_v<MODELKIT::IMKObject, R>, "a member of the kind Nested is a record");

public:
    Nested(const OwnerBlock& block, int index) : m_block(block), m_index(index) {}

    // The current record, or null while nobody has touched it.
    R* existing() const { return m_block.find<R>(m_index, OwnerBlock::Current); }

    R& value() const
    {
        R* record = existing();
        if (!record) {
            record = &m_block.create<R>(m_index, OwnerBlock::Current);
            Access::applySettings(*record, m_block.validate, m_block.logger);
        }
        return *record;
    }

    R* existingDefault() const
    {
        return m_block.hasDefaults() ? m_block.find<R>(m_index, OwnerBlock::Default) : nullptr;
    }

    R& defaultValue() const
    {
        R* standard = existingDefault();
        return standard ? *standard : m_block.create<R>(m_index, OwnerBlock::Default);
    }

    // Allocates what reset() will need.
    void prepareReset() const
    {
        if (existingDefault())
            value();
    }

    void reset() const
    {
        if (const R* standard = existingDefault())
            value() = *standard;
        else if (R* record = existing())
            *record = R();
    }

    // Copies a record of another block into this one, which has none yet. A record that equals an untouched
    // one in everything is left out.
    void copyFrom(const R& record) const
    {
        if (Access::pointer(record) || Access::validate(record) != m_block.validate
            || !(Access::logger(record) == m_block.logger) || Access::name(record) != Walks<R>::className())
            duplicate(m_block.create<R>(m_index, OwnerBlock::Current), record);
    }

    void copyDefaultFrom(const R& standard) const
    {
        duplicate(m_block.create<R>(m_index, OwnerBlock::Default), standard);
    }

    bool holdsData(bool) const
    {
        const R* record = existing();
        return record && record->AnyData();
    }

    static bool isValid(const R&) { return true; }

private:
    const OwnerBlock& m_block;
    int m_index;
};

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
