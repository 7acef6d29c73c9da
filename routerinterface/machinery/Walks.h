// SPDX-License-Identifier: MIT
// What an owner asks of the records that it owns.
//
// A record's data block is known only in the record's own source, where these functions are
// instantiated; the sources of its owners call them. They take for granted that the owner has handed
// its settings down, which sets them apart from the record's virtual operations.
#pragma once

#include "modelkit/DocumentContext.h"
#include "modelkit/Logger.h"
#include "modelkit/QtVersion.h"

#include <QtCore/QLatin1String>

#include <memory>

class QXmlStreamReader;
class QXmlStreamWriter;

namespace PELLU300ROUTERINTERFACEXML {

class RecordInfo;

namespace machinery {

namespace QtVersion = MODELKIT::QtVersion;

class BinarySink;
class BinarySource;

// A reading operation, or the part of one that fills a list item.
struct Reading
{
    explicit Reading(MODELKIT::DocumentContext* operation)
        : context(operation), isReporting(operation && operation->IsReporting())
    {}

    // Of an item that has just been appended: it has its settings, and no records below it.
    static Reading ofNewItem(const Reading& list)
    {
        Reading item(list.context);
        item.settled = true;
        return item;
    }

    // What is known about the settings of the records below the one that is filled: whether they
    // have been handed down, and how many list items have them. A record and the records nested in
    // it share this knowledge; every list item is read with its own.
    bool settled = false;
    QtVersion::Size settledItems = 0;

    // Whether the record that is filled is of a derived class, which may hand its settings down in its own
    // way: the records nested in it are then read with a knowledge of their own, too.
    bool isDerived = false;

    // The whole document that is being read, if it is one.
    MODELKIT::DocumentContext* context;

    // Whether somebody wants to know what is accepted in silence.
    bool isReporting;
};

template <class R>
struct Walks
{
    static QLatin1String className();
    static const RecordInfo& info();

    static void setValidate(const R& record, bool validate);
    static void setLogger(const R& record, const std::shared_ptr<MODELKIT::Logger>& logger);
    static void applySettings(const R& record, bool validate,
                              const std::shared_ptr<MODELKIT::Logger>& logger);
    static void settleCopy(const R& record, bool validate);
    static QtVersion::Size numberOfItems(const R& record);
    static void handDownToNewItems(const R& record, Reading& reading);

    static void applyRules(const R& record, bool flag);

    // Applied: the rules of an outer record have been applied to this one already.
    static void writeOwned(const R& record, QXmlStreamWriter& writer, bool validate, bool applied);
    static void readOwned(R& record, QXmlStreamReader& reader, Reading& reading);

    static void writeOwned(const R& record, BinarySink& sink, int id, bool writeId, bool validate,
                           bool applied);
    static void readEntries(R& record, BinarySource& source, qint64 length, Reading& reading);
};

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
