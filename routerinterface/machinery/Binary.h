// The binary form: frames of tagged, length-prefixed entries on a data stream.
#pragma once

#include "routerinterface/machinery/Checking.h"
#include "routerinterface/machinery/Xml.h"

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QtEndian>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Writes the parts of a frame to a data stream in the stream's byte order.
class StreamSink
{
public:
    explicit StreamSink(QDataStream& stream) : m_stream(stream), m_device(stream.device()) {}

    void word(int value) { m_stream << static_cast<qint32>(value); }
    void tag(std::uint32_t value) { m_stream << static_cast<quint32>(value); }
    void doubleWord(qint64 value) { m_stream << value; }
    void boolean(bool value) { m_stream << value; }

    // UTF-8 with a byte count; a null string has a count of its own.
    void text(const QString& value)
    {
        if (value.isNull()) {
            word(-1);
            return;
        }
        const QByteArray bytes = value.toUtf8();
        word(static_cast<int>(bytes.size()));
        m_stream.writeRawData(bytes.constData(), static_cast<int>(bytes.size()));
    }

    // Writes a length word to be filled in by endLength() with the number of bytes that follow it.
    // Returns the place behind it.
    qint64 beginLength()
    {
        word(0);
        return position();
    }

    void endLength(qint64 begin)
    {
        const qint64 end = position();
        seek(begin - 4);
        word(static_cast<int>(end - begin));
        seek(end);
    }

private:
    qint64 position() const { return m_device ? m_device->pos() : 0; }

    void seek(qint64 position)
    {
        if (m_device)
            m_device->seek(position);
    }

    QDataStream& m_stream;
    QIODevice* m_device;
};

// Reads the parts of a frame from a data stream and counts the bytes. A part that the stream does
// not hold whole is not delivered: the call returns false.
class StreamSource
{
public:
    explicit StreamSource(QDataStream& stream) : m_stream(stream) {}

    qint64 consumed() const { return m_consumed; }
    bool atEnd() const { return m_stream.atEnd(); }

    // The number of bytes known to be there still.
    qint64 available() const
    {
        const QIODevice* device = m_stream.device();
        return device ? device->bytesAvailable() : 0;
    }

    bool word(int& value) { return number(value); }

    bool read(unsigned int& value)
    {
        qint64 wide = 0;
        if (!number(wide))
            return false;
        value = static_cast<unsigned int>(wide & 0xFFFFFFFF);
        return true;
    }

    bool read(bool& value)
    {
        char byte = 0;
        if (!take(&byte, 1))
            return false;
        value = byte != 0;
        return true;
    }

    bool read(QString& value)
    {
        qint32 count = 0;
        if (!number(count))
            return false;
        if (count == -1) {
            value = QString();
            return true;
        }
        if (count < 0) {
            m_stream.setStatus(QDataStream::ReadPastEnd);
            return false;
        }
        // In steps, so that memory grows with what is there and not with what is announced.
        QByteArray bytes;
        while (bytes.size() < count) {
            const int have = static_cast<int>(bytes.size());
            const int step = std::min(count - have, maximalStep);
            bytes.resize(have + step);
            if (!take(bytes.data() + have, step))
                return false;
        }
        // With the size given: a null character is a part of the text.
        value = count == 0 ? QString(QLatin1String("")) : QString::fromUtf8(bytes.constData(), count);
        return true;
    }

    // Lets the record leave an entry that it does not know.
    template <class R>
    void skip(const R& record, int length, int tag)
    {
        m_consumed += record.skipCurrentElement(m_stream, length, tag);
    }

private:
    static constexpr int maximalStep = 1 << 20;

    bool take(char* to, int count)
    {
        const int taken = m_stream.readRawData(to, count);
        m_consumed += std::max(taken, 0);
        if (taken == count)
            return true;
        m_stream.setStatus(QDataStream::ReadPastEnd);
        return false;
    }

    template <class T>
    bool number(T& value)
    {
        char bytes[sizeof(T)];
        if (!take(bytes, static_cast<int>(sizeof bytes)))
            return false;
        value = m_stream.byteOrder() == QDataStream::BigEndian ? qFromBigEndian<T>(bytes)
                                                               : qFromLittleEndian<T>(bytes);
        return true;
    }

    QDataStream& m_stream;
    qint64 m_consumed = 0;
};

// --- payloads -------------------------------------------------------------------------------

inline void writePayload(StreamSink& sink, const Value<unsigned int>& slot) { sink.doubleWord(slot.value); }
inline void writePayload(StreamSink& sink, const Value<bool>& slot) { sink.boolean(slot.value); }

// Doubles, texts and enumerators travel in their text form.
inline void writePayload(StreamSink& sink, const Value<double>& slot) { sink.text(textOf(slot)); }
template <class T>
void writePayload(StreamSink& sink, const Text<T>& slot)
{
    sink.text(textOf(slot));
}
template <class E>
void writePayload(StreamSink& sink, const Enumerated<E>& slot)
{
    sink.text(textOf(slot));
}

template <class Member, class R, class T>
bool readPayload(R& record, StreamSource& source, const Value<T>&)
{
    T value{};
    if (!source.read(value))
        return false;
    setMember<Member>(record, value);
    return true;
}

template <class Member, class R, class Slot>
bool readTextPayload(R& record, StreamSource& source, const Slot& slot)
{
    QString text;
    if (!source.read(text))
        return false;
    setMember<Member>(record, fromText<Member>(record, slot, text));
    return true;
}

template <class Member, class R>
bool readPayload(R& record, StreamSource& source, const Value<double>& slot)
{
    return readTextPayload<Member>(record, source, slot);
}

template <class Member, class R, class T>
bool readPayload(R& record, StreamSource& source, const Text<T>& slot)
{
    return readTextPayload<Member>(record, source, slot);
}

template <class Member, class R, class E>
bool readPayload(R& record, StreamSource& source, const Enumerated<E>& slot)
{
    return readTextPayload<Member>(record, source, slot);
}

// --- writing --------------------------------------------------------------------------------

// Writes an owned record, whose settings its owner has handed down. Checked: the rules of an outer
// record have been applied to it already.
template <class R>
void writeOwned(const R& record, StreamSink& sink, int id, bool writeId, bool checked)
{
    if (record.GetValidate()) {
        if (!checked)
            Walks<R>::applyRules(record, false);
        if (!record.HasData())
            return;
    }
    Walks<R>::writeFrame(record, sink, id, writeId, checked || record.GetValidate());
}

template <class R>
void writeFrame(const R& record, StreamSink& sink, int id, bool writeId, bool checked)
{
    auto& data = initData(record);
    if (writeId)
        sink.word(id);
    const qint64 frame = sink.beginLength();
    DataOf<R>::Members::forEach([&](auto member) {
        using Slot = typename decltype(member)::Slot;
        if (!isWritten(data, member))
            return;
        const auto& slot = member.slot(data);
        const bool ownedChecked = checked && checksInto<R>(data, member);
        if constexpr (IsNested<Slot>::value) {
            writeOwned(nestedRecord<decltype(member)>(data), sink, static_cast<int>(member.binaryTag), true,
                       ownedChecked);
        } else {
            if constexpr (IsList<Slot>::value)
                if (slot.value.isEmpty())
                    return;
            sink.tag(member.binaryTag);
            const qint64 entry = sink.beginLength();
            if constexpr (IsList<Slot>::value) {
                sink.word(static_cast<int>(slot.value.size()));
                for (const auto& item : slot.value)
                    writeOwned(item, sink, static_cast<int>(member.binaryTag), false, ownedChecked);
            } else {
                writePayload(sink, slot);
            }
            sink.endLength(entry);
        }
    });
    sink.endLength(frame);
}

template <class R>
bool getBinary(const R& record, QDataStream& stream, int id, bool writeId)
{
    handDown(record);
    const bool validate = record.GetValidate();
    if (validate) {
        record.Check(false);
        if (!record.HasData())
            return false;
    }
    StreamSink sink(stream);
    writeFrame(record, sink, id, writeId, validate);
    return true;
}

// --- reading --------------------------------------------------------------------------------

// Reads the items of a list entry of the given length.
template <class Member, class R>
bool readList(R& record, StreamSource& source, int length)
{
    int count = 0;
    if (!source.word(count) || count < 0)
        return false;
    // An item takes at least its length word. Room is made in advance only where the list at least
    // doubles; otherwise many short entries would move the whole list many times.
    const qint64 possible = std::min<qint64>(length, source.available()) / 4;
    const auto expected = static_cast<QtVersion::Size>(std::clamp<qint64>(possible, 0, count));
    auto& items = Member::slot(initData(record)).ownItems();
    if (expected > items.size())
        items.reserve(items.size() + expected);
    for (int i = 0; i < count; ++i) {
        int itemLength = 0;
        if (!source.word(itemLength))
            return false;
        using Item = RecordIn<typename Member::Slot>;
        Item item;
        item.SetValidate(record.GetValidate());
        item.SetLogger(record.GetLogger());
        Settled settled;
        Walks<Item>::readEntries(item, source, itemLength, settled);
        appendOwn<Member>(record, item);
    }
    return true;
}

// Reads the payload of an entry. The entry's length counts for owned records only; returns false
// when the stream ends inside the payload.
template <class Member, class R>
bool readEntry(R& record, StreamSource& source, int length, Settled& settled)
{
    using Slot = typename Member::Slot;
    auto& data = initData(record);
    auto& slot = Member::slot(data);
    if constexpr (IsNested<Slot>::value) {
        makeCurrent(data, Member{});
        Walks<RecordIn<Slot>>::readEntries(nestedRecord<Member>(data), source, length, settled);
        data.set.set(Member::index);
        return true;
    } else if constexpr (IsList<Slot>::value) {
        return readList<Member>(record, source, length);
    } else {
        return readPayload<Member>(record, source, slot);
    }
}

template <class R>
void readEntries(R& record, StreamSource& source, qint64 length, Settled& settled)
{
    settle(record, settled);
    initData(record);
    const qint64 begin = source.consumed();
    qint64 remaining = length;
    bool whole = true;
    while (whole && remaining > 0 && !source.atEnd()) {
        int tag = 0;
        int entryLength = 0;
        if (!source.word(tag) || !source.word(entryLength))
            break;
        remaining -= 8 + static_cast<qint64>(entryLength);
        const bool known = DataOf<R>::Members::any([&](auto member) {
            using Member = decltype(member);
            if (static_cast<std::uint32_t>(tag) != Member::binaryTag)
                return false;
            whole = readEntry<Member>(record, source, entryLength, settled);
            return true;
        });
        if (!known)
            source.skip(record, entryLength, tag);
    }
    if (!whole || remaining != 0 || source.consumed() - begin != length)
        throw BinaryParsingException(lengthErrorText(record));
}

template <class R>
void setBinary(R& record, QDataStream& stream, int length)
{
    handDown(record);
    StreamSource source(stream);
    Settled settled{true, numberOfItems(record)};
    readEntries(record, source, length, settled);
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
