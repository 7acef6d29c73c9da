// SPDX-License-Identifier: MIT
// What an owner asks of the records that it owns.
//
// A record's data block is known only in the record's own source, where these functions are
// instantiated; the sources of its owners call them. Unlike the record's virtual operations, they rely on
// settings that the owner has handed down already. The body of each stands in the file of its topic.
#pragma once

#include "modelkit/DocumentContext.h"
#include "modelkit/HeldLogger.h"
#include "modelkit/QtVersion.h"

#include <QtCore/QLatin1String>

#include <cstddef>
#include <memory>
#include <optional>

class QXmlStreamReader;
class QXmlStreamWriter;

namespace MODELKIT {
class PlainXmlReader;
class PlainXmlWriter;
} // namespace MODELKIT

namespace PELLU300ROUTERINTERFACEXML {

class RecordInfo;

namespace machinery {

namespace QtVersion = MODELKIT::QtVersion;

class BinarySink;
class BinarySource;

// A reading operation, or the part of one that fills a list item.
struct Reading
{
    // For a record that has not handed its settings down yet. Operation: the whole document that is being
    // read, or null.
    static Reading ofUnsettled(MODELKIT::DocumentContext* operation) { return Reading(operation); }

    // For a record that has, with that many list items below it.
    static Reading ofSettled(MODELKIT::DocumentContext* operation, QtVersion::Size items)
    {
        Reading reading(operation);
        reading.settled = true;
        reading.settledItems = items;
        return reading;
    }

    // For an item that has just been appended: it has its settings, and no records below it.
    static Reading ofNewItem(const Reading& list) { return ofSettled(list.context, 0); }

    // Calls read(reading) for a record nested in the one that is filled.
    template <class Read>
    void forNested(const Read& read)
    {
        if (isDerived) {
            Reading own = ofUnsettled(context);
            read(own);
        } else {
            read(*this);
        }
    }

    // Whether the settings have been handed down to the records below the one that is filled, and how many
    // list items have them. A record shares this with the records nested in it; every list item has a Reading
    // of its own.
    bool settled = false;
    QtVersion::Size settledItems = 0;

    // Whether the record that is filled is of a derived class, which may hand its settings down differently.
    // The records nested in it then have a Reading of their own, too.
    bool isDerived = false;

    // The operation on a whole document, or null.
    MODELKIT::DocumentContext* context;

    // Whether somebody asked for a report of what is accepted silently.
    bool isReporting;

private:
    explicit Reading(MODELKIT::DocumentContext* operation)
        : context(operation), isReporting(operation && operation->IsReporting())
    {}
};

// What validation requires of a record before it is written.
enum class Validation
{
    Off,   // nothing
    Due,   // its rules, and that it holds its data
    Begun, // that it holds its data; its rules have been applied with those of its owner
};

template <class R>
struct Walks
{
    // Description.h
    static QLatin1String className();
    static const RecordInfo& info();

    // InnerBlocks.h: the record's block in the memory of its owner's block. Size: 0 if it cannot be there.
    static std::size_t innerSize();
    static void copyInner(const R& record, const R& source);
    static void leaveInner(std::byte* memory, std::size_t distance);

    // WholeRecord.h
    static QtVersion::HashValue hash(const R& record, QtVersion::HashValue seed);

    // Lifecycle.h: makes a new record a copy.
    static void takeCopy(R& record, const R& source);

    // Diagnostics.h
    static void setValidate(const R& record, bool validate);
    static void setLogger(const R& record, const MODELKIT::HeldLogger& logger);
    static void applySettings(const R& record, bool validate, const MODELKIT::HeldLogger& logger);
    static void settleCopy(const R& record, bool validate);
    static QtVersion::Size numberOfItems(const R& record);
    static void handDownToNewItems(const R& record, Reading& reading);

    // Checking.h
    static void applyRules(const R& record);

    // Xml.h
    static void write(const R& record, QXmlStreamWriter& writer, Validation validation);
    static void write(const R& record, MODELKIT::PlainXmlWriter& writer, Validation validation);
    static void read(R& record, QXmlStreamReader& reader, Reading& reading);
    static void read(R& record, MODELKIT::PlainXmlReader& reader, Reading& reading);

    // Binary.h. Tag: the word in front of the frame, if it gets one.
    static void write(const R& record, BinarySink& sink, std::optional<int> tag, Validation validation);
    static void read(R& record, BinarySource& source, qint64 length, Reading& reading);
};

// The walks for the class of a record.
template <class R>
constexpr Walks<R> walksOf(const R&)
{
    return {};
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
