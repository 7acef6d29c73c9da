// What a data block keeps for one member, by kind of member: the default, the current value, and the
// rules for resetting, comparing and answering whether the member holds data.
#pragma once

#include "modelkit/IMKObject.h"
#include "modelkit/QtVersion.h"
#include "modelkit/SharedBlock.h"

#include <QtCore/QString>
#include <QtCore/QVector>

#include <cstdint>
#include <memory>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

namespace QtVersion = MODELKIT::QtVersion;

// A number or a truth value.
template <class T>
struct Value
{
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

// The validation flag and the logger that an owner last handed down to its nested records.
struct HandedDown
{
    bool validate = false;
    std::shared_ptr<MODELKIT::Logger> logger;
};

// Makes a new record the same as another: it shares the data, as every assignment does, and takes over
// flag and logger without handing them down. So the records below keep theirs, whatever they are.
template <class R>
void duplicate(R& to, const R& from)
{
    to = from;
    to.MODELKIT::IMKObject::SetValidate(from.GetValidate());
    to.MODELKIT::IMKObject::SetLogger(from.GetLogger());
}

// A nested record. The record comes into being when it is first touched; until then it counts as
// newly constructed with its owner's flag and logger, and costs a pointer. Once it exists it stays
// where it is, since references to it have been given away.
template <class R>
class Nested
{
public:
    Nested() = default;
    Nested(const Nested& other)
    {
        if (!other.m_records)
            return;
        m_records = std::make_unique<Records>();
        duplicate(m_records->value, other.m_records->value);
        if (other.m_records->defaultValue) {
            m_records->defaultValue = std::make_unique<R>();
            duplicate(*m_records->defaultValue, *other.m_records->defaultValue);
        }
    }

    // The current record, or null while nobody has touched it.
    R* existing() const { return m_records ? &m_records->value : nullptr; }

    R& value(const HandedDown& handedDown) const { return records(handedDown).value; }

    R& defaultValue(const HandedDown& handedDown) const
    {
        Records& own = records(handedDown);
        if (!own.defaultValue)
            own.defaultValue = std::make_unique<R>();
        return *own.defaultValue;
    }

    void reset()
    {
        if (!m_records)
            return;
        if (m_records->defaultValue)
            m_records->value = *m_records->defaultValue;
        else
            m_records->value = R();
    }

    // Gives the records up again when nobody could tell: called on a fresh copy, to which no
    // reference has been given away yet.
    void forgetUntouched(const HandedDown& handedDown)
    {
        if (m_records && !m_records->defaultValue && !m_records->value.IsInitialized()
            && m_records->value.GetValidate() == handedDown.validate
            && m_records->value.GetLogger() == handedDown.logger)
            m_records.reset();
    }

    bool holdsData(bool) const { return m_records && m_records->value.AnyData(); }

    static bool isValid(const R&) { return true; }

private:
    struct Records
    {
        R value;
        std::unique_ptr<R> defaultValue;
    };

    Records& records(const HandedDown& handedDown) const
    {
        if (!m_records) {
            auto fresh = std::make_unique<Records>();
            fresh->value.SetValidate(handedDown.validate);
            fresh->value.SetLogger(handedDown.logger);
            m_records = std::move(fresh);
        }
        return *m_records;
    }

    mutable std::unique_ptr<Records> m_records;
};

// A list of records and a default item.
template <class R>
class List
{
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

    // The items, made this list's own when the container still shares them with another one:
    // flag and logger of a shared item must not be written.
    Items& ownItems()
    {
        if (!value.isDetached())
            value = ownCopy(value);
        return value;
    }

    R& defaultItem() const
    {
        if (!m_defaultItem)
            m_defaultItem = std::make_unique<R>();
        return *m_defaultItem;
    }

    void reset() { value = Items(); }
    bool holdsData(bool) const { return !value.isEmpty(); }
    bool equals(const List& other) const { return value == other.value; }
    static bool isValid(const Items&) { return true; }

    Items value;

private:
    // Unlike the container's own copying this keeps the loggers of the items.
    static Items ownCopy(const Items& items)
    {
        Items copy(items.size());
        R* to = copy.data();
        for (const R& item : items)
            duplicate(*to++, item);
        return copy;
    }

    mutable std::unique_ptr<R> m_defaultItem;
};

// One bit for each member of a record.
class Flags
{
public:
    static constexpr int capacity = 8;

    bool test(int index) const { return (m_bits >> index & 1U) != 0; }
    void set(int index) { m_bits = static_cast<std::uint8_t>(m_bits | 1U << index); }
    void clear(int index) { m_bits = static_cast<std::uint8_t>(m_bits & ~(1U << index)); }
    void clearAll() { m_bits = 0; }

private:
    std::uint8_t m_bits = 0;
};

// What every data block holds beside its members.
struct Block : MODELKIT::SharedBlock
{
    Flags set;
    Flags defaultSet;
};

// The block of a record with nested records.
struct OwnerBlock : Block
{
    HandedDown handedDown;
};

// The block of a record of which one nested record at a time is current: only that one is written,
// compared and checked. The choice is the index of its member.
template <class E>
struct ChoiceBlock : OwnerBlock
{
    static constexpr E none = static_cast<E>(-1);

    E invalidChoice = none;
    E choice = none;
};

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
