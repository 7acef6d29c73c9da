// SPDX-License-Identifier: MIT
// The XML form: one element per record, one child element per scalar member, nested records and list
// items as elements of their own.
#pragma once

#include "modelkit/PlainXmlClasses.h"
#include "modelkit/PlainXmlReader.h"
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

using MODELKIT::PlainXmlReader;

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
            sink.textElement(member, member.slot(data));
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
void Walks<R>::write(const R& record, MODELKIT::PlainXmlWriter& writer, Validation validation)
{
    XmlBytes bytes(writer);
    if (mayBeWritten(record, validation))
        writeElement(record, bytes, validation);
}

template <class R, class Sink>
void writeRoot(const R& record, Sink sink)
{
    handDown(record);
    if (!isToBeWritten(record, [&record] { record.Check(); }))
        return;
    doAt([&record] { return record.GetObjectName(); },
         [&] { writeElement(record, sink, record.GetValidate() ? Validation::Begun : Validation::Off); });
}

template <class R>
void getXml(const R& record, QXmlStreamWriter& writer)
{
    writeRoot(record, XmlCalls(writer));
}

// --- reading --------------------------------------------------------------------------------

// Elements are read with QXmlStreamReader or with PlainXmlReader. Only the first one can report what is
// noticed, and only documents of which nobody wants a report are read with the second.

// Reports what is noticed, with the place where the reader stands. Given: the text of the member that it is
// about, if any.
template <class Reader>
struct XmlNotify
{
    const Reading& reading;
    const Reader& reader;
    const Utf16Text* given = nullptr;

    explicit operator bool() const { return reading.isReporting; }

    void operator()(Notice kind, const QString& text) const
    {
        reading.context->Report(kind, text, reader, given ? given->toString() : QString());
    }
};

template <>
struct XmlNotify<PlainXmlReader>
{
    const Reading& reading;
    const PlainXmlReader& reader;
    const Utf8Text* given = nullptr;

    explicit operator bool() const { return false; }

    void operator()(Notice, const QString&) const {}
};

template <class Reader>
XmlNotify(const Reading&, const Reader&) -> XmlNotify<Reader>;
template <class Reader, class Characters>
XmlNotify(const Reading&, const Reader&, const Characters*) -> XmlNotify<Reader>;

inline void noticeTag(const XmlNotify<PlainXmlReader>&) {}

// Notices a prefix and attributes in the start tag of a known element.
inline void noticeTag(const XmlNotify<QXmlStreamReader>& notify)
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

inline QString nameAt(const QXmlStreamReader& reader) { return reader.name().toString(); }
inline QString nameAt(const PlainXmlReader& reader) { return reader.name(); }

// Skips an unknown element. Only names are compared: the skip ends early at a nested start element of the
// same name, whose content is then taken for the record's own.
template <class R, class Reader>
void skipElement(const R& record, Reader& reader, const Reading& reading)
{
    const QString name = nameAt(reader);
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
template <class Member, class R, class Characters>
bool isElementOf([[maybe_unused]] const R& record, const Characters& name)
{
    using Slot = typename Member::Slot;
    if constexpr (IsNested<Slot>::value)
        if (const auto& block = pointer(record))
            if (const auto* nested = Member::slot(*block).existing())
                return isName(name, nested->GetObjectName());
    if constexpr (IsNested<Slot>::value || IsList<Slot>::value)
        return isName(name, Walks<RecordIn<Slot>>::className());
    else
        return isName(name, Member::name());
}

inline void stop(QXmlStreamReader& reader, const Reading& reading)
{
    reader.raiseError(reading.context->GetFailure().text);
}
inline void stop(PlainXmlReader& reader, const Reading&) { reader.stop(); }

template <class Member, class R, class Reader>
void readItem(R& record, Reader& reader, const Reading& reading)
{
    if (reading.context && !reading.context->AdmitsItem(Member::slot(initData(record)).value.size())) {
        stop(reader, reading);
        return;
    }
    using Item = RecordIn<typename Member::Slot>;
    Reading itemReading = Reading::ofNewItem(reading);
    appendRead<Member>(record, [&](Item& item) { Walks<Item>::read(item, reader, itemReading); });
}

// Calls use() with the text of the element on whose start the reader stands.
template <class Use>
void useText(QXmlStreamReader& reader, const Reading& reading, const Use& use)
{
    QVarLengthArray<QChar, 128> text;
    MODELKIT::walkText(reader, reading.context, [&text](QtVersion::XmlView piece) {
        text.append(piece.data(), static_cast<int>(piece.size()));
    });
    use(Utf16Text(text.constData(), text.size()));
}

template <class Use>
void useText(PlainXmlReader& reader, const Reading&, const Use& use)
{
    const std::string_view text = reader.readText();
    use(Utf8Text(text.data(), static_cast<int>(text.size())));
}

template <class Member, class R, class Reader>
void readMember(R& record, Reader& reader, Reading& reading)
{
    using Slot = typename Member::Slot;
    auto& data = initToFill<Member>(record);
    if constexpr (IsNested<Slot>::value) {
        auto& nested = nestedRecord<Member>(data);
        makeCurrent(data, Member{});
        reading.forNested([&](Reading& ofNested) { walksOf(nested).read(nested, reader, ofNested); });
        data.set.set(Member::index);
    } else if constexpr (IsList<Slot>::value) {
        readItem<Member>(record, reader, reading);
    } else {
        noticeTag(XmlNotify{reading, reader});
        useText(reader, reading, [&](const auto& given) {
            const XmlNotify notify{reading, reader, &given};
            setMember<Member>(record, fromText<Member>(record, Member::slot(data), given, notify),
                              [&given] { return given.toString(); });
        });
    }
}

inline Utf16Text charactersOfName(const QXmlStreamReader& reader)
{
    const auto name = reader.name();
    return {name.data(), name.size()};
}
inline Utf8Text charactersOfName(const PlainXmlReader& reader)
{
    const QLatin1String name = reader.name();
    return {name.data(), static_cast<int>(name.size())};
}

// Reads the child element on whose start the reader stands. Seen: the members that the element
// around it has brought so far.
template <class R, class Reader>
void readChild(R& record, Reader& reader, Reading& reading, Flags& seen)
{
    const auto name = charactersOfName(reader);
    const bool known = DataOf<R>::Members::any([&](auto member) {
        using Member = decltype(member);
        if (!isElementOf<Member>(record, name))
            return false;
        if (const XmlNotify notify{reading, reader})
            noticeComingAgain<Member>(record, seen, notify);
        seen.set(Member::index);
        readMember<Member>(record, reader, reading);
        return true;
    });
    if (!known) {
        initData(record);
        skipElement(record, reader, reading);
    }
}

// Reads the element of that name on whose start the reader stands.
template <class R, class Reader, class Name>
void readElement(R& record, Reader& reader, Reading& reading, const Name& name)
{
    initBeforeReading(record);
    const XmlNotify notify{reading, reader};
    noticeTag(notify);
    Flags seen;
    MODELKIT::walkElement(reader, reading.context, name, [&] {
        settle(record, reading);
        readChild(record, reader, reading, seen);
    });
    initData(record);
    if (reader.isEndElement())
        noticeMissing(record, notify);
}

template <class R>
void Walks<R>::read(R& record, QXmlStreamReader& reader, Reading& reading)
{
    readElement(record, reader, reading, record.GetObjectName());
}

template <class R>
void Walks<R>::read(R& record, PlainXmlReader& reader, Reading& reading)
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

// --- whole documents without Qt's stream classes ----------------------------------------------

// Makes it known how documents of a class are read and written.
template <class R>
bool registerPlainXml()
{
    static MODELKIT::PlainXmlClass added{
        &typeid(R),
        [](const MODELKIT::IMKObject& object, MODELKIT::PlainXmlWriter& writer) {
            writeRoot(static_cast<const R&>(object), XmlBytes(writer));
        },
        [](MODELKIT::IMKObject& object, PlainXmlReader& reader) {
            R& record = static_cast<R&>(object);
            Reading reading = Reading::ofUnsettled(MODELKIT::DocumentContext::Current());
            readElement(record, reader, reading, nameAt(reader));
        },
        nullptr};
    MODELKIT::registerPlainXml(added);
    return true;
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
