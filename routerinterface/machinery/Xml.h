// The XML form: one element per record, one child element per scalar member, nested records and list
// items as elements of their own.
#pragma once

#include "routerinterface/machinery/Checking.h"

#include <QtCore/QXmlStreamReader>
#include <QtCore/QXmlStreamWriter>

#include <typeinfo>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// --- text forms -----------------------------------------------------------------------------

inline QString toText(unsigned int value) { return QString::number(value); }
inline QString toText(bool value) { return value ? QStringLiteral("true") : QStringLiteral("false"); }

// Two decimals, rounded; part of the dialect.
inline QString toText(double value) { return QString::number(value, 'f', 2); }

template <class T>
QString textOf(const Value<T>& slot)
{
    return toText(slot.value);
}
template <class T>
QString textOf(const Text<T>& slot)
{
    return slot.value;
}
template <class E>
QString textOf(const Enumerated<E>& slot)
{
    return nameOf(slot.value);
}

// Reading is lenient: what is no number becomes 0. Numbers are read as signed ones, so that those
// above 2147483647 become 0 and -1 becomes 4294967295; part of the dialect.
template <class Member, class R>
unsigned int fromText(const R&, const Value<unsigned int>&, const QString& text)
{
    return static_cast<unsigned int>(text.toInt());
}

template <class Member, class R>
double fromText(const R&, const Value<double>&, const QString& text)
{
    return text.toDouble();
}

template <class Member, class R>
bool fromText(const R& record, const Value<bool>&, const QString& text)
{
    if (text.isEmpty()) {
        if (record.GetValidate())
            throw InvalidXmlException(emptyBooleanText(record, Member::nameText()));
        return false;
    }
    const QString lower = text.toLower();
    return lower != QLatin1String("false") && lower != QLatin1String("0");
}

template <class Member, class R, class T>
T fromText(const R&, const Text<T>&, const QString& text)
{
    return text;
}

template <class Member, class R, class E>
E fromText(const R&, const Enumerated<E>& slot, const QString& text)
{
    return enumeratorOf(text, slot.invalid);
}

// --- writing --------------------------------------------------------------------------------

// Writes an owned record, whose settings its owner has handed down. Checked: the rules of an outer
// record have been applied to it already.
template <class R>
void writeOwned(const R& record, QXmlStreamWriter& writer, bool checked)
{
    if (record.GetValidate()) {
        if (!checked)
            Walks<R>::applyRules(record, false);
        if (!record.HasData())
            return;
    }
    Walks<R>::writeElement(record, writer, checked || record.GetValidate());
}

template <class R>
void writeElement(const R& record, QXmlStreamWriter& writer, bool checked)
{
    auto& data = initData(record);
    writer.writeStartElement(record.GetObjectName());
    DataOf<R>::Members::forEach([&](auto member) {
        using Slot = typename decltype(member)::Slot;
        if (!isWritten(data, member))
            return;
        const auto& slot = member.slot(data);
        if constexpr (IsNested<Slot>::value) {
            writeOwned(nestedRecord<decltype(member)>(data), writer, checked && checksInto<R>(data, member));
        } else if constexpr (IsList<Slot>::value) {
            for (const auto& item : slot.value)
                writeOwned(item, writer, checked && checksInto<R>(data, member));
        } else {
            writer.writeTextElement(member.nameText(), textOf(slot));
        }
    });
    writer.writeEndElement();
}

template <class R>
void getXml(const R& record, QXmlStreamWriter& writer)
{
    handDown(record);
    const bool validate = record.GetValidate();
    if (validate) {
        record.Check();
        if (!record.HasData())
            return;
    }
    writeElement(record, writer, validate);
}

// --- reading --------------------------------------------------------------------------------

// Leaves an unknown element. The walk compares names only: it stops early on a nested start element
// of the same name, whose content is then taken for the record's own.
inline void skipElement(QXmlStreamReader& reader)
{
    const QString name = reader.name().toString();
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.name() == name)
            return;
    }
}

// The element name by which a member is read: its own name, or that of the records it holds.
template <class Member>
QLatin1String elementName()
{
    using Slot = typename Member::Slot;
    if constexpr (IsNested<Slot>::value || IsList<Slot>::value)
        return Walks<RecordIn<Slot>>::className();
    else
        return Member::name();
}

template <class Member, class R>
void readMember(R& record, QXmlStreamReader& reader, Settled& settled)
{
    using Slot = typename Member::Slot;
    auto& data = initData(record);
    auto& slot = Member::slot(data);
    if constexpr (IsNested<Slot>::value) {
        makeCurrent(data, Member{});
        Walks<RecordIn<Slot>>::readElement(nestedRecord<Member>(data), reader, settled);
        data.set.set(Member::index);
    } else if constexpr (IsList<Slot>::value) {
        RecordIn<Slot> item;
        item.SetValidate(record.GetValidate());
        item.SetLogger(record.GetLogger());
        Settled itemSettled;
        Walks<RecordIn<Slot>>::readElement(item, reader, itemSettled);
        appendOwn<Member>(record, item);
    } else {
        const QString text = Access::textValue(record, reader);
        setMember<Member>(record, fromText<Member>(record, slot, text));
    }
}

// Reads the child element on whose start the reader stands.
template <class R>
void readChild(R& record, QXmlStreamReader& reader, Settled& settled)
{
    initData(record);
    const bool known = DataOf<R>::Members::any([&](auto member) {
        using Member = decltype(member);
        if (reader.name() != elementName<Member>())
            return false;
        readMember<Member>(record, reader, settled);
        return true;
    });
    if (!known)
        skipElement(reader);
}

// Reads an owned record.
template <class R>
void readElement(R& record, QXmlStreamReader& reader, Settled& settled)
{
    initData(record);
    Access::forEachChildElement(record, reader, [&] {
        settle(record, settled);
        readChild(record, reader, settled);
    });
}

template <class R>
void processXmlStartElement(R& record, QXmlStreamReader& reader)
{
    handDown(record);
    Settled settled{true, numberOfItems(record)};
    readChild(record, reader, settled);
}

template <class R>
void processXml(R& record, QXmlStreamReader& reader)
{
    // In a derived class, which may read child elements in its own way, the walk must call the
    // virtual operation; without one it may keep what it knows from one child to the next.
    if (typeid(record) == typeid(R)) {
        Settled settled;
        readElement(record, reader, settled);
    } else {
        initData(record);
        record.MODELKIT::IMKObject::ProcessXml(reader);
    }
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
