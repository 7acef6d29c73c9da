// SPDX-License-Identifier: MIT
// The XML form: one element per record, one child element per scalar member, nested records and list
// items as elements of their own.
#pragma once

#include "modelkit/XmlWalk.h"
#include "routerinterface/machinery/Checking.h"
#include "routerinterface/machinery/Notices.h"
#include "routerinterface/machinery/TextForms.h"
#include "routerinterface/machinery/XmlSinks.h"

#include <QtCore/QVarLengthArray>
#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// --- writing --------------------------------------------------------------------------------

template <class R, class Member, class Sink>
void writeRecords(const R& record, Member member, Sink& sink, Validation validation)
{
    const DataOf<R>& data = *pointer(record);
    const bool isDerived = !isExactly(record);
    const Validation ofOwned = validationOf<R>(data, member, validation);
    doAtRecords(Member::slot(data), [&](const auto& owned) {
        walksOf(owned).write(owned, sink.writer(), isDerived ? ownValidationOf(owned) : ofOwned);
    });
}

template <class R, class Sink>
void writeElement(const R& record, [[maybe_unused]] Sink& sink, [[maybe_unused]] Validation validation)
{
    auto& data = initData(record);
    sink.startElement(record.GetObjectName());
    DataOf<R>::Members::forEach([&](auto member) {
        using Slot = typename decltype(member)::Slot;
        if (!isWritten(data, member))
            return;
        if constexpr (IsNested<Slot>::value || IsList<Slot>::value)
            writeRecords(record, member, sink, validation);
        else
            sink.textElement(member.nameText(), member.slot(data));
    });
    sink.endElement(record.GetObjectName());
}

template <class R>
void Walks<R>::write(const R& record, QXmlStreamWriter& writer, Validation validation)
{
    if (!mayBeWritten(record, validation))
        return;
    // Only for a record without nested ones, since these may throw half-way.
    if constexpr (!ownsRecords<DataOf<R>>) {
        if (XmlStretch::suits(writer)) {
            XmlStretch stretch;
            writeElement(record, stretch, validation);
            if (stretch.isExact()) {
                stretch.writeTo(writer);
                return;
            }
        }
    }
    XmlCalls calls(writer);
    writeElement(record, calls, validation);
}

template <class R>
void getXml(const R& record, QXmlStreamWriter& writer)
{
    handDown(record);
    if (!isToBeWritten(record, [&record] { record.Check(); }))
        return;
    doAt([&record] { return record.GetObjectName(); },
         [&] {
             XmlCalls calls(writer);
             writeElement(record, calls, record.GetValidate() ? Validation::Begun : Validation::Off);
         });
}

// --- reading --------------------------------------------------------------------------------

// Reports what is noticed, with the place where the reader stands. Given: the text of the member that it is
// about, if any.
struct XmlNotify
{
    const Reading& reading;
    const QXmlStreamReader& reader;
    const Utf16Text* given = nullptr;

    explicit operator bool() const { return reading.isReporting; }

    void operator()(Notice kind, const QString& text) const
    {
        reading.context->Report(kind, text, reader, given ? given->toString() : QString());
    }
};

// Notices a prefix and attributes in the start tag of a known element.
inline void noticeTag(const XmlNotify& notify)
{
    if (!notify)
        return;
    const QXmlStreamReader& reader = notify.reader;
    if (!reader.prefix().isEmpty())
        notify(Notice::Prefix, QStringLiteral("The prefix %1 of %2 was left out.")
                                   .arg(reader.prefix().toString(), reader.name().toString()));
    for (const QXmlStreamAttribute& attribute : reader.attributes())
        notify(Notice::Attribute,
               QStringLiteral("The attribute %1 was ignored.").arg(attribute.qualifiedName().toString()));
}

// Skips an unknown element. Only names are compared: the skip ends early at a nested start element of the
// same name, whose content is then taken for the record's own.
template <class R>
void skipElement(const R& record, QXmlStreamReader& reader, const Reading& reading)
{
    const QString name = reader.name().toString();
    if (const XmlNotify notify{reading, reader})
        notify(Notice::UnknownElement, QStringLiteral("The element %1 is not known in %2 and was skipped.")
                                           .arg(name, record.GetObjectName()));
    while (!reader.atEnd()) {
        MODELKIT::readToken(reader, reading.context);
        if (reader.name() == name)
            return;
    }
}

// Whether an element of that name is read into the member. A nested record goes by its object name, which is
// that of its class until the record exists; other members go by their own name.
template <class Member, class Data>
bool isElementOf([[maybe_unused]] const Data& data, const Utf16Text& name)
{
    using Slot = typename Member::Slot;
    if constexpr (IsNested<Slot>::value)
        if (const auto* nested = Member::slot(data).existing())
            return isName(name, nested->GetObjectName());
    if constexpr (IsNested<Slot>::value || IsList<Slot>::value)
        return isName(name, Walks<RecordIn<Slot>>::className());
    else
        return isName(name, Member::name());
}

template <class Member, class R>
void readItem(R& record, QXmlStreamReader& reader, const Reading& reading)
{
    if (reading.context && !reading.context->AdmitsItem(Member::slot(initData(record)).value.size())) {
        reader.raiseError(reading.context->GetFailure().text);
        return;
    }
    using Item = RecordIn<typename Member::Slot>;
    Reading itemReading = Reading::ofNewItem(reading);
    appendRead<Member>(record, [&](Item& item) { Walks<Item>::read(item, reader, itemReading); });
}

template <class Member, class R>
void readMember(R& record, QXmlStreamReader& reader, Reading& reading)
{
    using Slot = typename Member::Slot;
    auto& data = initData(record);
    if constexpr (IsNested<Slot>::value) {
        auto& nested = nestedRecord<Member>(data);
        makeCurrent(data, Member{});
        reading.forNested([&](Reading& ofNested) { walksOf(nested).read(nested, reader, ofNested); });
        data.set.set(Member::index);
    } else if constexpr (IsList<Slot>::value) {
        readItem<Member>(record, reader, reading);
    } else {
        noticeTag(XmlNotify{reading, reader});
        QVarLengthArray<QChar, 128> text;
        MODELKIT::walkText(reader, reading.context, [&text](QtVersion::XmlView piece) {
            text.append(piece.data(), static_cast<int>(piece.size()));
        });
        const Utf16Text given(text.constData(), text.size());
        const XmlNotify notify{reading, reader, &given};
        setMember<Member>(record, fromText<Member>(record, Member::slot(data), given, notify),
                          [&given] { return given.toString(); });
    }
}

// Reads the child element on whose start the reader stands. Seen: the members that the element
// around it has brought so far.
template <class R>
void readChild(R& record, QXmlStreamReader& reader, Reading& reading, Flags& seen)
{
    const auto view = reader.name();
    const Utf16Text name(view.data(), view.size());
    const auto& data = initData(record);
    const bool known = DataOf<R>::Members::any([&](auto member) {
        using Member = decltype(member);
        if (!isElementOf<Member>(data, name))
            return false;
        if (const XmlNotify notify{reading, reader})
            noticeComingAgain<Member>(record, seen, notify);
        seen.set(Member::index);
        readMember<Member>(record, reader, reading);
        return true;
    });
    if (!known)
        skipElement(record, reader, reading);
}

// Reads the element of that name on whose start the reader stands.
template <class R, class Name>
void readElement(R& record, QXmlStreamReader& reader, Reading& reading, const Name& name)
{
    initData(record);
    const XmlNotify notify{reading, reader};
    noticeTag(notify);
    Flags seen;
    MODELKIT::walkElement(reader, reading.context, name, [&] {
        settle(record, reading);
        readChild(record, reader, reading, seen);
    });
    if (reader.isEndElement())
        noticeMissing(record, notify);
}

template <class R>
void Walks<R>::read(R& record, QXmlStreamReader& reader, Reading& reading)
{
    readElement(record, reader, reading, record.GetObjectName());
}

template <class R>
void processXmlStartElement(R& record, QXmlStreamReader& reader)
{
    Reading reading = beginReading(record);
    // Reading a whole document begins with a reset, so what is set now was read before.
    Flags seen = initData(record).set;
    readChild(record, reader, reading, seen);
}

template <class R>
void processXml(R& record, QXmlStreamReader& reader)
{
    // A derived class may read child elements in its own way, so the walk must call the virtual operation for
    // each. Otherwise the Reading lasts from one child to the next.
    Reading reading = Reading::ofUnsettled(MODELKIT::DocumentContext::Current());
    if (isExactly(record)) {
        readElement(record, reader, reading, reader.name().toString());
    } else {
        const XmlNotify notify{reading, reader};
        initData(record);
        noticeTag(notify);
        record.MODELKIT::IMKObject::ProcessXml(reader);
        if (reader.isEndElement())
            noticeMissing(record, notify);
    }
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
