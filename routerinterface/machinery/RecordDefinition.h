// SPDX-License-Identifier: MIT
// The operations of all records, for a record's source, which includes this file first and DefineRecord.h
// with its member table.
#pragma once

#include "modelkit/ClassNames.h"
#include "routerinterface/machinery/Binary.h"
#include "routerinterface/machinery/Checking.h"
#include "routerinterface/machinery/Description.h"
#include "routerinterface/machinery/Diagnostics.h"
#include "routerinterface/machinery/Items.h"
#include "routerinterface/machinery/Lifecycle.h"
#include "routerinterface/machinery/Members.h"
#include "routerinterface/machinery/Walks.h"
#include "routerinterface/machinery/WholeRecord.h"
#include "routerinterface/machinery/Xml.h"

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

template <class R>
QLatin1String Walks<R>::className()
{
    return DataOf<R>::name();
}

template <class R>
const RecordInfo& Walks<R>::info()
{
    return Description::of<R>();
}

template <class R>
void Walks<R>::setValidate(const R& record, bool validate)
{
    machinery::setValidate(record, validate);
}

template <class R>
void Walks<R>::setLogger(const R& record, const std::shared_ptr<MODELKIT::Logger>& logger)
{
    machinery::setLogger(record, logger);
}

template <class R>
void Walks<R>::applySettings(const R& record, bool validate, const std::shared_ptr<MODELKIT::Logger>& logger)
{
    machinery::applySettings(record, validate, logger);
}

template <class R>
void Walks<R>::settleCopy(const R& record, bool validate)
{
    machinery::settleCopy(record, validate);
}

template <class R>
QtVersion::Size Walks<R>::numberOfItems(const R& record)
{
    return machinery::numberOfItems(record);
}

template <class R>
void Walks<R>::handDownToNewItems(const R& record, Reading& reading)
{
    machinery::handDownToNewItems(record, reading);
}

template <class R>
void Walks<R>::applyRules(const R& record, bool flag)
{
    machinery::applyRules(record, flag);
}

template <class R>
void Walks<R>::writeOwned(const R& record, QXmlStreamWriter& writer, bool validate, bool applied)
{
    machinery::writeOwned(record, writer, validate, applied);
}

template <class R>
void Walks<R>::readOwned(R& record, QXmlStreamReader& reader, Reading& reading)
{
    machinery::readElement(record, reader, reading, record.GetObjectName());
}

template <class R>
void Walks<R>::writeOwned(const R& record, BinarySink& sink, int id, bool writeId, bool validate,
                          bool applied)
{
    machinery::writeOwned(record, sink, id, writeId, validate, applied);
}

template <class R>
void Walks<R>::readEntries(R& record, BinarySource& source, qint64 length, Reading& reading)
{
    machinery::readEntries(record, source, length, reading);
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML

/// Defines the translation helpers of a record with enumerated members.
#define ROUTERINTERFACE_DEFINE_TRANSLATION(Record)                                                           \
    QString Record::tr(const char* text, const char* disambiguation)                                         \
    {                                                                                                        \
        return MODELKIT::QtVersion::translate("PELLU300ROUTERINTERFACEXML::" #Record, text, disambiguation); \
    }                                                                                                        \
    QString Record::tr(const char* text, const char* disambiguation, int n)                                  \
    {                                                                                                        \
        return MODELKIT::QtVersion::translate("PELLU300ROUTERINTERFACEXML::" #Record, text, disambiguation,  \
                                              n);                                                            \
    }                                                                                                        \
    QString Record::trUtf8(const char* text, const char* disambiguation)                                     \
    {                                                                                                        \
        return tr(text, disambiguation);                                                                     \
    }                                                                                                        \
    QString Record::trUtf8(const char* text, const char* disambiguation, int n)                              \
    {                                                                                                        \
        return tr(text, disambiguation, n);                                                                  \
    }
