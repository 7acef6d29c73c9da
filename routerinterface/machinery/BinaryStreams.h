// SPDX-License-Identifier: MIT
// Where the parts of a frame are written to and read from.
//
// Both classes work on a data stream. If its device is a plain buffer in memory, they use the buffer's bytes
// directly and keep the device's position. Otherwise the sink builds the frame in memory and writes it in one
// piece when it is complete, so no device needs to seek and every refusal shows in the stream's status; the
// source reads through the stream part by part. Bytes, positions and status are the same either way, with two
// exceptions. The signals of a plain buffer announce one written byte instead of all. If an owned record
// throws half-way, the beginning of the frame stays in a plain buffer, while other devices get nothing.
#pragma once

#include "modelkit/DocumentContext.h"
#include "modelkit/NotRepresentableException.h"
#include "routerinterface/machinery/Characters.h"

#include <QtCore/QBuffer>
#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QtEndian>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <typeinfo>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Whether characters that were pushed back with ungetChar() stand in front of what the buffer holds. The
// device does not tell; but with its own bytes taken away, it is at the end unless there are such characters.
inline bool hasPushedBack(QBuffer& buffer)
{
    QByteArray nothing;
    buffer.buffer().swap(nothing);
    const bool isAtEnd = buffer.atEnd();
    buffer.buffer().swap(nothing);
    return !isAtEnd;
}

// The buffer of the stream, if its bytes can be used directly.
inline QBuffer* plainBuffer(QIODevice* device)
{
    // Not a derived class: it may read and write in its own way.
    if (!device || typeid(*device) != typeid(QBuffer) || device->isTransactionStarted()
        || device->isTextModeEnabled() || (device->openMode() & QIODevice::Append))
        return nullptr;
    auto* buffer = static_cast<QBuffer*>(device);
    constexpr qint64 largest = qint64(1) << 30;
    if (buffer->pos() < 0 || buffer->pos() > buffer->size() || buffer->size() > largest
        || hasPushedBack(*buffer))
        return nullptr;
    return buffer;
}

class BinarySink
{
public:
    // Context: the operation on a whole document that writes, if it is one.
    BinarySink(QDataStream& stream, const MODELKIT::DocumentContext* context)
        : m_stream(stream), m_buffer(writableBuffer(stream)),
          m_target(m_buffer ? m_buffer->buffer() : m_frame),
          m_isBigEndian(stream.byteOrder() == QDataStream::BigEndian),
          m_isTransfer(context && context->IsTransfer()),
          m_refusesUnrepresentable(context && context->RefusesUnrepresentable())
    {
        if (m_buffer) {
            m_sizeBefore = static_cast<int>(m_buffer->buffer().size());
            m_begin = static_cast<int>(m_buffer->pos());
            m_at = m_begin;
            m_room = m_sizeBefore;
            // Data() would allocate memory for no bytes.
            if (m_room > 0)
                m_bytes = m_buffer->buffer().data();
        }
    }
    BinarySink(const BinarySink&) = delete;
    BinarySink& operator=(const BinarySink&) = delete;

    ~BinarySink()
    {
        if (!m_buffer)
            return;
        // What has grown is reserved, so that making the bytes fewer cannot fail.
        if (m_room > m_sizeBefore)
            m_buffer->buffer().resize(std::max(m_sizeBefore, m_at));
        if (m_at == m_begin)
            return;
        // The last byte is written through the device, which emits its signals then.
        const char last = m_bytes[m_at - 1];
        m_buffer->seek(m_at - 1);
        try {
            m_buffer->write(&last, 1);
        } catch (...) {
            m_buffer->seek(m_at);
        }
    }

    // Whether the frame only carries the members from one record to another: it holds what is set, in
    // full precision, and no rule is applied.
    bool isTransfer() const { return m_isTransfer; }

    // Called when the frame is complete.
    void finish()
    {
        if (!m_buffer)
            m_stream.writeRawData(m_bytes, m_at);
    }

    void word(int value) { number(static_cast<qint32>(value)); }
    void tag(std::uint32_t value) { number(static_cast<quint32>(value)); }
    void doubleWord(qint64 value) { number(value); }

    void boolean(bool value)
    {
        const char byte = value ? 1 : 0;
        put(&byte, 1);
    }

    // Bytes, preceded by their number.
    void text(const char* bytes, int size)
    {
        word(size);
        put(bytes, size);
    }

    // UTF-8. A null string is a special number without bytes.
    void text(const QString& value)
    {
        if (value.isNull()) {
            word(Utf8Text::null);
            return;
        }
        const int size = static_cast<int>(value.size());
        char ascii[asciiRoom];
        if (size <= asciiRoom && toAscii(value, ascii)) {
            text(ascii, size);
            return;
        }
        if (m_refusesUnrepresentable && !value.isValidUtf16())
            throw MODELKIT::NotRepresentableException(
                QStringLiteral("A text holds a character that the binary form cannot carry."));
        const QByteArray bytes = value.toUtf8();
        text(bytes.constData(), static_cast<int>(bytes.size()));
    }

    // Writes a length word to be filled in by endLength() with the number of bytes that follow it.
    // Returns the place behind it.
    int beginLength()
    {
        word(0);
        return m_at;
    }

    void endLength(int begin)
    {
        const int end = m_at;
        m_at = begin - 4;
        word(end - begin);
        m_at = end;
    }

private:
    // A stream with a bad status refuses to write.
    static QBuffer* writableBuffer(const QDataStream& stream)
    {
        const bool isWritable =
            stream.device() && stream.device()->isWritable() && stream.status() == QDataStream::Ok;
        return isWritable ? plainBuffer(stream.device()) : nullptr;
    }

    static constexpr int asciiRoom = 64;

    static bool toAscii(const QString& value, char* to)
    {
        const QChar* characters = value.constData();
        unsigned int all = 0;
        for (int i = 0, size = static_cast<int>(value.size()); i < size; ++i) {
            all |= characters[i].unicode();
            to[i] = static_cast<char>(characters[i].unicode());
        }
        return all < 0x80;
    }

    template <class T>
    void number(T value)
    {
        constexpr int size = sizeof(T);
        if (size > m_room - m_at)
            grow(size);
        if (m_isBigEndian)
            qToBigEndian<T>(value, m_bytes + m_at);
        else
            qToLittleEndian<T>(value, m_bytes + m_at);
        m_at += size;
    }

    void put(const char* bytes, int size)
    {
        if (size > m_room - m_at)
            grow(size);
        std::memcpy(m_bytes + m_at, bytes, static_cast<std::size_t>(size));
        m_at += size;
    }

    void grow(int size)
    {
        constexpr qint64 most = std::numeric_limits<int>::max() - 64;
        const qint64 needed = qint64(m_at) + size;
        if (needed > most)
            throw std::bad_alloc();
        const auto wanted =
            static_cast<int>(std::clamp<qint64>(2 * qint64(m_room), std::max<qint64>(needed, 256), most));
        m_target.reserve(wanted);
        m_target.resize(wanted);
        m_room = static_cast<int>(m_target.size());
        m_bytes = m_target.data();
    }

    QDataStream& m_stream;
    QBuffer* m_buffer;
    QByteArray m_frame;
    // The bytes of the buffer, or the frame.
    QByteArray& m_target;
    char* m_bytes = nullptr;
    int m_begin = 0;
    int m_at = 0;
    int m_room = 0;
    int m_sizeBefore = 0;
    bool m_isBigEndian;
    bool m_isTransfer;
    bool m_refusesUnrepresentable;
};

// Counts the bytes that are read. If the stream ends inside a part, the call returns false and consumes what
// is left.
class BinarySource
{
public:
    explicit BinarySource(QDataStream& stream)
        : m_stream(stream), m_isBigEndian(stream.byteOrder() == QDataStream::BigEndian)
    {
        if (stream.device() && stream.device()->isReadable())
            m_buffer = plainBuffer(stream.device());
        if (m_buffer) {
            m_held = m_buffer->data();
            m_begin = m_held.constData() + m_buffer->pos();
            m_at = m_begin;
            m_end = m_held.constData() + m_held.size();
        }
    }
    BinarySource(const BinarySource&) = delete;
    BinarySource& operator=(const BinarySource&) = delete;

    ~BinarySource() { keepPosition(); }

    qint64 consumed() const { return m_consumed + (m_at - m_begin); }
    bool atEnd() const { return m_at == m_end && (m_buffer || m_stream.atEnd()); }

    // How many more bytes are known to be there.
    qint64 available() const
    {
        if (m_buffer)
            return m_end - m_at;
        return m_stream.device() ? m_stream.device()->bytesAvailable() : 0;
    }

    bool word(int& value) { return number(value); }

    // Two words at once.
    bool words(int& first, int& second)
    {
        const char* bytes = take(2 * static_cast<int>(sizeof(int)));
        if (!bytes)
            return false;
        first = decoded<int>(bytes);
        second = decoded<int>(bytes + sizeof(int));
        return true;
    }

    bool doubleWord(qint64& value) { return number(value); }

    bool byte(char& value)
    {
        const char* bytes = take(1);
        if (!bytes)
            return false;
        value = *bytes;
        return true;
    }

    // The text stays where it is until the next part is read.
    bool text(Utf8Text& value)
    {
        int size = 0;
        if (!number(size))
            return false;
        if (size == Utf8Text::null) {
            value = Utf8Text();
            return true;
        }
        // The number is unsigned: a negative one stands for more than a stream can hold.
        const char* bytes = take(size < 0 ? std::numeric_limits<int>::max() : size);
        value = Utf8Text(bytes, size);
        return bytes != nullptr;
    }

    // Lets the record skip an unknown entry, by its virtual operation.
    template <class R>
    void skip(const R& record, int length, int tag)
    {
        keepPosition();
        const int skipped = record.skipCurrentElement(m_stream, length, tag);
        if (m_buffer)
            m_at += std::min<qint64>(skipped, m_end - m_at);
        else
            m_consumed += skipped;
    }

private:
    static constexpr int step = 1 << 20;

    // The next bytes; null when there are not as many.
    const char* take(int size)
    {
        if (size > m_end - m_at)
            return m_buffer ? fallShort() : takeFromStream(size);
        const char* bytes = m_at;
        m_at += size;
        return bytes;
    }

    // In steps: memory grows with the bytes that are there, not with the announced number.
    const char* takeFromStream(int size)
    {
        m_held.resize(0);
        do {
            const int have = static_cast<int>(m_held.size());
            const int wanted = std::min(size - have, step);
            m_held.resize(have + wanted);
            const int taken = std::max(m_stream.readRawData(m_held.data() + have, wanted), 0);
            m_consumed += taken;
            if (taken != wanted)
                return fallShort();
        } while (m_held.size() < size);
        return m_held.constData();
    }

    const char* fallShort()
    {
        m_at = m_end;
        m_stream.setStatus(QDataStream::ReadPastEnd);
        return nullptr;
    }

    template <class T>
    bool number(T& value)
    {
        const char* bytes = take(static_cast<int>(sizeof(T)));
        if (!bytes)
            return false;
        value = decoded<T>(bytes);
        return true;
    }

    template <class T>
    T decoded(const char* bytes) const
    {
        return m_isBigEndian ? qFromBigEndian<T>(bytes) : qFromLittleEndian<T>(bytes);
    }

    void keepPosition()
    {
        if (m_buffer)
            m_buffer->seek(m_at - m_held.constData());
    }

    QDataStream& m_stream;
    QBuffer* m_buffer = nullptr;
    // The buffer's bytes, or the part that was last read from the stream.
    QByteArray m_held;
    // The buffer's bytes and the next one. For other devices there are none, and the bytes that were read are
    // counted.
    const char* m_begin = "";
    const char* m_at = m_begin;
    const char* m_end = m_begin;
    qint64 m_consumed = 0;
    bool m_isBigEndian;
};

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
