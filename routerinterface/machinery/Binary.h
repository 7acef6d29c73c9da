// SPDX-License-Identifier: MIT
// The binary form: frames of tagged, length-prefixed entries on a data stream.
#pragma once

#include "routerinterface/machinery/BinaryStreams.h"
#include "routerinterface/machinery/Checking.h"
#include "routerinterface/machinery/Notices.h"
#include "routerinterface/machinery/TextForms.h"

#include <QtCore/QDataStream>

#include <algorithm>
#include <cstdint>
#include <optional>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// --- payloads -------------------------------------------------------------------------------

inline void writePayload(BinarySink& sink, const Value<unsigned int>& slot) { sink.doubleWord(slot.value); }
inline void writePayload(BinarySink& sink, const Value<bool>& slot) { sink.boolean(slot.value); }

// Doubles, texts and enumerators travel in their text form.
inline void writePayload(BinarySink& sink, const Value<double>& slot)
{
    char text[maximalNumberSize];
    const int size = sink.isTransfer() ? 0 : writeTwoDecimals(slot.value, text);
    if (size > 0)
        sink.text(text, size);
    else
        sink.text(sink.isTransfer() ? QString::number(slot.value, 'g', 17) : textOf(slot));
}

template <class T>
void writePayload(BinarySink& sink, const Text<T>& slot)
{
    sink.text(textOf(slot));
}

template <class E>
void writePayload(BinarySink& sink, const Enumerated<E>& slot)
{
    sink.text(textOf(slot));
}

// Reports what is noticed, with the offset of the entry. Member: makes the last step of the path, if reading
// has not entered it yet. Given: the text of the member that it is about, if any.
struct BinaryNotify
{
    const Reading& reading;
    qint64 offset;
    QString (*member)() = nullptr;
    const Utf8Text* given = nullptr;

    explicit operator bool() const { return reading.isReporting; }

    void operator()(Notice kind, const QString& text) const
    {
        reading.context->Report(kind, text, offset, member ? member() : QString(),
                                given ? given->toString() : QString());
    }
};

template <class Member, class R>
bool readPayload(R& record, BinarySource& source, const Value<unsigned int>&, const BinaryNotify& notify)
{
    qint64 wide = 0;
    if (!source.doubleWord(wide))
        return false;
    const auto value = static_cast<unsigned int>(wide & 0xFFFFFFFF);
    if (value != wide && notify)
        notify(Notice::WrappedNumber, QStringLiteral("%1 was read as %2.").arg(wide).arg(value));
    setMember<Member>(record, value);
    return true;
}

template <class Member, class R>
bool readPayload(R& record, BinarySource& source, const Value<bool>&, const BinaryNotify& notify)
{
    char byte = 0;
    if (!source.byte(byte))
        return false;
    if (byte != 0 && byte != 1 && notify)
        notify(Notice::UnusualBoolean, QStringLiteral("The byte %1 was read as true.").arg(byte & 0xFF));
    setMember<Member>(record, byte != 0);
    return true;
}

template <class Member, class R, class Slot>
bool readPayload(R& record, BinarySource& source, const Slot& slot, const BinaryNotify& notify)
{
    Utf8Text text;
    if (!source.text(text))
        return false;
    const BinaryNotify notifyOfText{notify.reading, notify.offset, notify.member, &text};
    setMember<Member>(record, fromText<Member>(record, slot, text, notifyOfText),
                      [&text] { return text.toString(); });
    return true;
}

// --- writing --------------------------------------------------------------------------------

// The frames of the records that a member holds. Only those of nested records have a tag in front.
template <class R, class Member>
void writeRecords(const R& record, Member member, BinarySink& sink, Validation validation)
{
    const DataOf<R>& data = *pointer(record);
    const bool isDerived = !isExactly(record);
    const Validation ofOwned = validationOf<R>(data, member, validation);
    std::optional<int> tag;
    if (IsNested<typename Member::Slot>::value)
        tag = static_cast<int>(Member::binaryTag);
    doAtRecords(Member::slot(data), [&](const auto& owned) {
        Validation own = ofOwned;
        if (isDerived)
            own = sink.isTransfer() ? Validation::Off : ownValidationOf(owned);
        walksOf(owned).write(owned, sink, tag, own);
    });
}

template <class R>
void writeFrame(const R& record, BinarySink& sink, std::optional<int> tag, Validation validation)
{
    auto& data = initData(record);
    if (tag)
        sink.word(*tag);
    const int frame = sink.beginLength();
    DataOf<R>::Members::forEach([&](auto member) {
        using Slot = typename decltype(member)::Slot;
        if (!isWritten(data, member)
            || (IsMandatory<Slot>::value && sink.isTransfer() && !data.set.test(member.index)))
            return;
        const auto& slot = member.slot(data);
        if constexpr (IsNested<Slot>::value) {
            writeRecords(record, member, sink, validation);
        } else {
            if constexpr (IsList<Slot>::value)
                if (slot.value.isEmpty())
                    return;
            sink.tag(member.binaryTag);
            const int entry = sink.beginLength();
            if constexpr (IsList<Slot>::value) {
                sink.word(static_cast<int>(slot.value.size()));
                writeRecords(record, member, sink, validation);
            } else if constexpr (IsText<Slot>::value) {
                doAt(decltype(member)::nameText, [&] { writePayload(sink, slot); });
            } else {
                writePayload(sink, slot);
            }
            sink.endLength(entry);
        }
    });
    sink.endLength(frame);
}

template <class R>
void Walks<R>::write(const R& record, BinarySink& sink, std::optional<int> tag, Validation validation)
{
    if (mayBeWritten(record, validation))
        writeFrame(record, sink, tag, validation);
}

template <class R>
bool getBinary(const R& record, QDataStream& stream, std::optional<int> tag)
{
    handDown(record);
    const MODELKIT::DocumentContext* context = MODELKIT::DocumentContext::Current();
    const bool isTransfer = context && context->IsTransfer();
    if (!isTransfer && !isToBeWritten(record, [&record] { record.Check(false); }))
        return false;
    BinarySink sink(stream, context);
    const bool isValidated = record.GetValidate() && !isTransfer;
    doAt([&record] { return record.GetObjectName(); },
         [&] { writeFrame(record, sink, tag, isValidated ? Validation::Begun : Validation::Off); });
    sink.finish();
    return true;
}

// --- reading --------------------------------------------------------------------------------

// Reads something that belongs to the member or record called step().
template <class Step, class Read>
void readAt(const Reading& reading, const Step& step, const Read& read)
{
    MODELKIT::DocumentContext* const reporting = reading.isReporting ? reading.context : nullptr;
    if (reporting)
        reporting->Enter(step());
    read();
    if (reporting)
        reporting->Leave();
}

// Reads the items of a list entry of the given length.
template <class Member, class R>
bool readList(R& record, BinarySource& source, int length, const Reading& reading)
{
    using Item = RecordIn<typename Member::Slot>;
    int count = 0;
    if (!source.word(count) || count < 0)
        return false;
    // An item takes at least its length word. Room is made in advance only in an empty list: reserving copies
    // the items that are there without their flags and loggers, and would be repeated for every list entry.
    auto& items = Member::slot(initData(record)).ownItems();
    if (items.isEmpty()) {
        constexpr qint64 most = 1 << 20;
        const qint64 possible = std::min<qint64>({length, source.available(), 4 * most}) / 4;
        items.reserve(static_cast<QtVersion::Size>(std::clamp<qint64>(possible, 0, count)));
    }
    const auto step = [&items] { return MODELKIT::Place::Step(Walks<Item>::className(), items.size() + 1); };
    qint64 offset = 0;
    try {
        for (int i = 0; i < count; ++i) {
            offset = source.consumed();
            int itemLength = 0;
            if (!source.word(itemLength))
                return false;
            readAt(reading, step, [&] {
                if (reading.context && !reading.context->AdmitsItem(items.size()))
                    throw BinaryParsingException(lengthErrorText(record));
                Reading itemReading = Reading::ofNewItem(reading);
                appendRead<Member>(
                    record, [&](Item& item) { Walks<Item>::read(item, source, itemLength, itemReading); });
            });
        }
    } catch (ModelKitException& exception) {
        prependStep(exception, step(), offset);
        throw;
    }
    return true;
}

// Reads the payload of an entry. The entry's length counts for owned records only; returns false
// when the stream ends inside the payload.
template <class Member, class R>
bool readEntry(R& record, BinarySource& source, int length, qint64 offset, Reading& reading)
{
    using Slot = typename Member::Slot;
    auto& data = initToFill<Member>(record);
    bool whole = true;
    if constexpr (IsNested<Slot>::value) {
        auto& nested = nestedRecord<Member>(data);
        makeCurrent(data, Member{});
        const auto step = [&nested] { return nested.GetObjectName(); };
        reading.forNested([&](Reading& ofNested) {
            readAt(reading, step, [&] { walksOf(nested).read(nested, source, length, ofNested); });
        });
        data.set.set(Member::index);
    } else if constexpr (IsList<Slot>::value) {
        whole = readList<Member>(record, source, length, reading);
    } else {
        const BinaryNotify notify{reading, offset};
        readAt(reading, Member::nameText,
               [&] { whole = readPayload<Member>(record, source, Member::slot(data), notify); });
    }
    return whole;
}

// Each entry is compared on its own: two wrong lengths can cancel each other out in the sum.
inline void noticeLength(int announced, qint64 taken, const BinaryNotify& notify)
{
    if (taken != announced)
        notify(Notice::WrongLength,
               QStringLiteral("The entry announces %1 bytes and takes %2.").arg(announced).arg(taken));
}

// An entry of a frame.
struct BinaryEntry
{
    int tag = 0;
    int length = 0;
    qint64 offset = 0;
};

// Puts the member of the entry in front of the exception's path. The items of a list are a step of their own.
template <class R>
void prependMember(ModelKitException& exception, const R& record, const BinaryEntry& entry)
{
    DataOf<R>::Members::forEach([&](auto member) {
        using Slot = typename decltype(member)::Slot;
        if (static_cast<std::uint32_t>(entry.tag) != member.binaryTag)
            return;
        if constexpr (IsNested<Slot>::value)
            prependStep(exception, nestedRecord<decltype(member)>(*pointer(record)).GetObjectName(),
                        entry.offset);
        else if constexpr (!IsList<Slot>::value)
            prependStep(exception, member.nameText(), entry.offset);
    });
}

// Reads the entry into its member. Returns false if there is none.
template <class R>
bool readKnown(R& record, BinarySource& source, const BinaryEntry& entry, Reading& reading, Flags& seen,
               bool& whole)
{
    return DataOf<R>::Members::any([&](auto member) {
        using Member = decltype(member);
        if (static_cast<std::uint32_t>(entry.tag) != Member::binaryTag)
            return false;
        const BinaryNotify notify{reading, entry.offset, Member::nameText};
        if (notify)
            noticeComingAgain<Member>(record, seen, notify);
        seen.set(Member::index);
        whole = readEntry<Member>(record, source, entry.length, entry.offset, reading);
        if (notify && whole)
            noticeLength(entry.length, source.consumed() - entry.offset - 8, notify);
        return true;
    });
}

template <class R>
void skipUnknown(const R& record, BinarySource& source, const BinaryEntry& entry, const Reading& reading)
{
    initData(record);
    if (const BinaryNotify notify{reading, entry.offset})
        notify(Notice::UnknownTag,
               QStringLiteral("The entry with tag 0x%1 is not known in %2 and was skipped.")
                   .arg(static_cast<std::uint32_t>(entry.tag), 8, 16, QLatin1Char('0'))
                   .arg(record.GetObjectName()));
    source.skip(record, entry.length, entry.tag);
}

template <class R>
void Walks<R>::read(R& record, BinarySource& source, qint64 length, Reading& reading)
{
    settle(record, reading);
    initBeforeReading(record);
    const qint64 begin = source.consumed();
    qint64 remaining = length;
    bool whole = true;
    Flags seen;
    BinaryEntry entry;
    try {
        while (whole && remaining > 0 && !source.atEnd()) {
            entry.offset = source.consumed();
            if (!source.words(entry.tag, entry.length))
                break;
            remaining -= 8 + static_cast<qint64>(entry.length);
            if (!readKnown(record, source, entry, reading, seen, whole))
                skipUnknown(record, source, entry, reading);
        }
    } catch (ModelKitException& exception) {
        prependMember(exception, record, entry);
        throw;
    }
    initData(record);
    if (!whole || remaining != 0 || source.consumed() - begin != length) {
        BinaryParsingException exception(lengthErrorText(record));
        MODELKIT::Place place;
        place.offset = source.consumed();
        exception.SetPlace(place);
        throw exception;
    }
    if (const BinaryNotify notify{reading, begin})
        noticeMissing(record, notify);
}

template <class R>
void setBinary(R& record, QDataStream& stream, int length)
{
    Reading reading = beginReading(record);
    BinarySource source(stream);
    const auto step = [&record] { return record.GetObjectName(); };
    try {
        readAt(reading, step, [&] { walksOf(record).read(record, source, length, reading); });
    } catch (ModelKitException& exception) {
        prependStep(exception, step(), 0);
        throw;
    }
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
