// SPDX-License-Identifier: MIT
#include "PlainMessage.h"

#include <QtCore/QtEndian>

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstring>
#include <string_view>

namespace benchmarks {

namespace {

const std::array<QString, 3> typeNames{QStringLiteral("Request"), QStringLiteral("Reply"),
                                       QStringLiteral("Event")};
const std::array<QString, 3> stateNames{QStringLiteral("NoMasterPresent"), QStringLiteral("MasterPresent"),
                                        QStringLiteral("RouterIsMaster")};

template <std::size_t size, class Text>
int valueOf(const std::array<QString, size>& names, const Text& name)
{
    for (std::size_t i = 0; i < size; ++i)
        if (names[i] == name)
            return static_cast<int>(i);
    return -1;
}

QString decimals(double value) { return QString::number(value, 'f', 2); }

struct XmlWriter
{
    QXmlStreamWriter& writer;

    void start(const QString& name) { writer.writeStartElement(name); }
    void text(const QString& name, const QString& value) { writer.writeTextElement(name, value); }

    void operator()(const PlainState& payload)
    {
        start(QStringLiteral("MastershipState"));
        text(QStringLiteral("State"), stateNames[static_cast<std::size_t>(payload.state)]);
        text(QStringLiteral("MasterClientID"), payload.client);
    }
    void success(const QString& name, bool value)
    {
        start(name);
        text(QStringLiteral("Success"), value ? QStringLiteral("true") : QStringLiteral("false"));
    }
    void operator()(const PlainSuccess<1>& payload)
    {
        success(QStringLiteral("AcquireMastership"), payload.success);
    }
    void operator()(const PlainSuccess<2>& payload)
    {
        success(QStringLiteral("ReleaseMastership"), payload.success);
    }
    void port(const QString& name, unsigned int value)
    {
        start(name);
        text(QStringLiteral("Port"), QString::number(value));
    }
    void operator()(const PlainPort<3>& payload) { port(QStringLiteral("OstraInterfacePort"), payload.port); }
    void operator()(const PlainPort<5>& payload) { port(QStringLiteral("RouterVtServerPort"), payload.port); }
    void operator()(const PlainServer& payload)
    {
        start(QStringLiteral("PelVtConnectServer"));
        text(QStringLiteral("Address"), payload.address);
        text(QStringLiteral("Port"), QString::number(payload.port));
    }
    void operator()(const PlainParams& payload)
    {
        start(QStringLiteral("DF_Params"));
        text(QStringLiteral("Frequency"), decimals(payload.frequency));
        text(QStringLiteral("DemodulationFrequency"), decimals(payload.demodulation));
        text(QStringLiteral("Bandwidth"), decimals(payload.bandwidth));
        text(QStringLiteral("PanoramaSpan"), decimals(payload.span));
    }
};

PlainFragment readPayload(QXmlStreamReader& reader)
{
    const auto name = reader.name();
    const auto number = [&] { return static_cast<unsigned int>(reader.readElementText().toInt()); };
    const auto truth = [&] {
        const QString text = reader.readElementText().toLower();
        return text != QLatin1String("false") && text != QLatin1String("0");
    };
    const auto members = [&](auto&& read) {
        while (reader.readNextStartElement())
            read();
    };
    if (name == QLatin1String("MastershipState")) {
        PlainState payload;
        members([&] {
            if (reader.name() == QLatin1String("State"))
                payload.state = valueOf(stateNames, reader.readElementText());
            else if (reader.name() == QLatin1String("MasterClientID"))
                payload.client = reader.readElementText();
            else
                reader.skipCurrentElement();
        });
        return payload;
    }
    if (name == QLatin1String("AcquireMastership")) {
        PlainSuccess<1> payload;
        members([&] { payload.success = truth(); });
        return payload;
    }
    if (name == QLatin1String("ReleaseMastership")) {
        PlainSuccess<2> payload;
        members([&] { payload.success = truth(); });
        return payload;
    }
    if (name == QLatin1String("OstraInterfacePort")) {
        PlainPort<3> payload;
        members([&] { payload.port = number(); });
        return payload;
    }
    if (name == QLatin1String("PelVtConnectServer")) {
        PlainServer payload;
        members([&] {
            if (reader.name() == QLatin1String("Address"))
                payload.address = reader.readElementText();
            else if (reader.name() == QLatin1String("Port"))
                payload.port = number();
            else
                reader.skipCurrentElement();
        });
        return payload;
    }
    if (name == QLatin1String("RouterVtServerPort")) {
        PlainPort<5> payload;
        members([&] { payload.port = number(); });
        return payload;
    }
    PlainParams payload;
    members([&] {
        if (reader.name() == QLatin1String("Frequency"))
            payload.frequency = reader.readElementText().toDouble();
        else if (reader.name() == QLatin1String("DemodulationFrequency"))
            payload.demodulation = reader.readElementText().toDouble();
        else if (reader.name() == QLatin1String("Bandwidth"))
            payload.bandwidth = reader.readElementText().toDouble();
        else if (reader.name() == QLatin1String("PanoramaSpan"))
            payload.span = reader.readElementText().toDouble();
        else
            reader.skipCurrentElement();
    });
    return payload;
}

// --- the binary form

constexpr quint32 documentTag = 0x9B1A7AD8, typeTag = 0xE1D9E008, idTag = 0xEF193DE9, listTag = 0x61023A90;
constexpr quint32 stateTag = 0x4264F498, clientTag = 0x0BCD2CF7, successTag = 0xBF8A59C6,
                  portTag = 0x1F980517;
constexpr quint32 addressTag = 0x2AC271EC, frequencyTag = 0xA97DB5BE, demodulationTag = 0x5255927F;
constexpr quint32 bandwidthTag = 0x104A95AB, spanTag = 0x7029D96C;
constexpr std::array<quint32, 7> payloadTags{0x111939B4, 0x21BDA6E2, 0xFC38AB7C, 0xF9E464D0,
                                             0x0BBAB464, 0x5D020EA0, 0xBE2DFF74};

// Writes the parts of the binary form to a data stream.
struct StreamOutput
{
    QDataStream& stream;

    void word(int value) { stream << value; }
    void tag(quint32 value) { stream << value; }
    void wide(qint64 value) { stream << value; }
    void flag(bool value) { stream << value; }
    void text(const QString& value) { stream << value.toUtf8(); }
    void decimal(double value) { stream << decimals(value).toUtf8(); }

    qint64 beginLength()
    {
        stream << 0;
        return stream.device()->pos();
    }
    void endLength(qint64 begin)
    {
        const qint64 end = stream.device()->pos();
        stream.device()->seek(begin - 4);
        stream << static_cast<int>(end - begin);
        stream.device()->seek(end);
    }
};

// Writes them through a pointer into memory.
struct PointerOutput
{
    QByteArray bytes = QByteArray(1 << 12, Qt::Uninitialized);
    char* at = bytes.data();

    char* take(int size)
    {
        const int used = static_cast<int>(at - bytes.constData());
        if (size > bytes.size() - used) {
            bytes.resize(2 * bytes.size() + size);
            at = bytes.data() + used;
        }
        char* place = at;
        at += size;
        return place;
    }
    template <class T>
    void number(T value)
    {
        qToBigEndian<T>(value, take(sizeof(T)));
    }
    void put(const char* data, int size)
    {
        word(size);
        std::memcpy(take(size), data, static_cast<std::size_t>(size));
    }

    void word(int value) { number<qint32>(value); }
    void tag(quint32 value) { number<quint32>(value); }
    void wide(qint64 value) { number<qint64>(value); }
    void flag(bool value) { *take(1) = value ? 1 : 0; }
    void text(const QString& value)
    {
        const QByteArray utf8 = value.toUtf8();
        put(utf8.constData(), static_cast<int>(utf8.size()));
    }
    void decimal(double value)
    {
        char text[32];
        const auto end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 2).ptr;
        put(text, static_cast<int>(end - text));
    }

    qint64 beginLength()
    {
        word(0);
        return at - bytes.constData();
    }
    void endLength(qint64 begin)
    {
        char* const start = bytes.data() + begin;
        qToBigEndian<qint32>(static_cast<qint32>(at - start), start - 4);
    }
};

template <class Output>
struct BinaryWriter
{
    Output& output;

    template <class Write>
    void lengthOf(Write&& write)
    {
        const qint64 begin = output.beginLength();
        write();
        output.endLength(begin);
    }
    template <class Write>
    void entry(quint32 tag, Write&& write)
    {
        output.tag(tag);
        lengthOf(write);
    }
    void text(quint32 tag, const QString& value)
    {
        entry(tag, [&] { output.text(value); });
    }
    void number(quint32 tag, unsigned int value)
    {
        entry(tag, [&] { output.wide(static_cast<qint64>(value)); });
    }
    void decimal(quint32 tag, double value)
    {
        entry(tag, [&] { output.decimal(value); });
    }
    void operator()(const PlainState& payload)
    {
        text(stateTag, stateNames[static_cast<std::size_t>(payload.state)]);
        text(clientTag, payload.client);
    }
    void operator()(const PlainSuccess<1>& payload)
    {
        entry(successTag, [&] { output.flag(payload.success); });
    }
    void operator()(const PlainSuccess<2>& payload)
    {
        entry(successTag, [&] { output.flag(payload.success); });
    }
    void operator()(const PlainPort<3>& payload) { number(portTag, payload.port); }
    void operator()(const PlainPort<5>& payload) { number(portTag, payload.port); }
    void operator()(const PlainServer& payload)
    {
        text(addressTag, payload.address);
        number(portTag, payload.port);
    }
    void operator()(const PlainParams& payload)
    {
        decimal(frequencyTag, payload.frequency);
        decimal(demodulationTag, payload.demodulation);
        decimal(bandwidthTag, payload.bandwidth);
        decimal(spanTag, payload.span);
    }
    void message(const PlainMessage& message)
    {
        lengthOf([&] {
            entry(documentTag, [&] {
                text(typeTag, typeNames[static_cast<std::size_t>(message.type)]);
                number(idTag, message.id);
                entry(listTag, [&] {
                    output.word(static_cast<int>(message.fragments.size()));
                    for (const PlainFragment& fragment : message.fragments)
                        lengthOf([&] {
                            entry(payloadTags[fragment.index()], [&] { std::visit(*this, fragment); });
                        });
                });
            });
        });
    }
};

struct StreamInput
{
    QDataStream& stream;

    bool atEnd() const { return stream.atEnd(); }
    int word()
    {
        int value = 0;
        stream >> value;
        return value;
    }
    qint64 wide()
    {
        qint64 value = 0;
        stream >> value;
        return value;
    }
    bool flag()
    {
        bool value = false;
        stream >> value;
        return value;
    }
    QByteArray bytes()
    {
        QByteArray value;
        stream >> value;
        return value;
    }
    QString text() { return QString::fromUtf8(bytes()); }
    template <std::size_t size>
    int name(const std::array<QString, size>& names)
    {
        return valueOf(names, text());
    }
    double decimal() { return text().toDouble(); }
};

// A reader whose only check is that it does not read beyond the end of its input.
struct PointerInput
{
    const char* at;
    const char* end;

    bool atEnd() const { return at == end; }
    template <class T>
    T number()
    {
        if (end - at < static_cast<std::ptrdiff_t>(sizeof(T))) {
            at = end;
            return T();
        }
        const T value = qFromBigEndian<T>(at);
        at += sizeof(T);
        return value;
    }
    int word() { return number<qint32>(); }
    qint64 wide() { return number<qint64>(); }
    bool flag() { return number<quint8>() != 0; }
    std::string_view bytes()
    {
        const auto size = std::min<std::ptrdiff_t>(std::max(word(), 0), end - at);
        at += size;
        return {at - size, static_cast<std::size_t>(size)};
    }
    QString text()
    {
        const auto utf8 = bytes();
        return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
    }
    template <std::size_t size>
    int name(const std::array<QString, size>& names)
    {
        const auto utf8 = bytes();
        return valueOf(names, QLatin1String(utf8.data(), static_cast<int>(utf8.size())));
    }
    double decimal()
    {
        const auto utf8 = bytes();
        double value = 0;
        std::from_chars(utf8.data(), utf8.data() + utf8.size(), value);
        return value;
    }
};

template <class Input>
struct BinaryReader
{
    Input& input;

    unsigned int number() { return static_cast<unsigned int>(input.wide()); }

    template <class Read>
    void entries(int length, Read&& read)
    {
        qint64 remaining = length;
        while (remaining > 0 && !input.atEnd()) {
            const auto tag = static_cast<quint32>(input.word());
            const int size = input.word();
            remaining -= 8 + size;
            read(tag, size);
        }
    }
    PlainFragment payload(quint32 payloadTag, int length)
    {
        std::size_t kind = 0;
        while (kind < payloadTags.size() - 1 && payloadTags[kind] != payloadTag)
            ++kind;
        const auto port = [&](auto plain) {
            entries(length, [&](quint32, int) { plain.port = number(); });
            return PlainFragment(plain);
        };
        const auto success = [&](auto plain) {
            entries(length, [&](quint32, int) { plain.success = input.flag(); });
            return PlainFragment(plain);
        };
        switch (kind) {
        case 0: {
            PlainState plain;
            entries(length, [&](quint32 tag, int) {
                if (tag == stateTag)
                    plain.state = input.name(stateNames);
                else
                    plain.client = input.text();
            });
            return plain;
        }
        case 1:
            return success(PlainSuccess<1>());
        case 2:
            return success(PlainSuccess<2>());
        case 3:
            return port(PlainPort<3>());
        case 4: {
            PlainServer plain;
            entries(length, [&](quint32 tag, int) {
                if (tag == addressTag)
                    plain.address = input.text();
                else
                    plain.port = number();
            });
            return plain;
        }
        case 5:
            return port(PlainPort<5>());
        default: {
            PlainParams plain;
            entries(length, [&](quint32 tag, int) {
                const double value = input.decimal();
                if (tag == frequencyTag)
                    plain.frequency = value;
                else if (tag == demodulationTag)
                    plain.demodulation = value;
                else if (tag == bandwidthTag)
                    plain.bandwidth = value;
                else
                    plain.span = value;
            });
            return plain;
        }
        }
    }
    PlainMessage message()
    {
        PlainMessage message;
        entries(input.word(), [&](quint32, int messageLength) {
            entries(messageLength, [&](quint32 tag, int) {
                if (tag == typeTag) {
                    message.type = input.name(typeNames);
                } else if (tag == idTag) {
                    message.id = number();
                } else {
                    const int count = input.word();
                    message.fragments.reserve(static_cast<std::size_t>(count));
                    for (int i = 0; i < count; ++i)
                        entries(input.word(), [&](quint32 payloadTag, int size) {
                            message.fragments.push_back(payload(payloadTag, size));
                        });
                }
            });
        });
        return message;
    }
};

} // namespace

PlainMessage plainMessage(int fragments)
{
    PlainMessage message;
    message.type = 1;
    message.id = 4711;
    for (int i = 0; i < fragments; ++i) {
        const auto port = static_cast<unsigned int>(5000 + i % 1000);
        switch (i % 7) {
        case 0:
            message.fragments.emplace_back(PlainState{1, QStringLiteral("client-%1").arg(i)});
            break;
        case 1:
            message.fragments.emplace_back(PlainSuccess<1>{true});
            break;
        case 2:
            message.fragments.emplace_back(PlainSuccess<2>{false});
            break;
        case 3:
            message.fragments.emplace_back(PlainPort<3>{port});
            break;
        case 4:
            message.fragments.emplace_back(PlainServer{QStringLiteral("192.168.1.%1").arg(i % 250), port});
            break;
        case 5:
            message.fragments.emplace_back(PlainPort<5>{port});
            break;
        default:
            message.fragments.emplace_back(PlainParams{98500000.25 + i, 10700000.5, 15000, 2000000.75});
            break;
        }
    }
    return message;
}

namespace {

void writePlainXml(const PlainMessage& message, QXmlStreamWriter& writer)
{
    XmlWriter payloads{writer};
    writer.writeStartElement(QStringLiteral("PelLu300RouterInterfaceXml"));
    writer.writeStartElement(QStringLiteral("PelLu300RouterMessage"));
    writer.writeTextElement(QStringLiteral("Type"), typeNames[static_cast<std::size_t>(message.type)]);
    writer.writeTextElement(QStringLiteral("MessageID"), QString::number(message.id));
    for (const PlainFragment& fragment : message.fragments) {
        writer.writeStartElement(QStringLiteral("Fragment"));
        std::visit(payloads, fragment);
        writer.writeEndElement();
        writer.writeEndElement();
    }
    writer.writeEndElement();
    writer.writeEndElement();
}

void writePlainDocument(const PlainMessage& message, QXmlStreamWriter& writer)
{
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(2);
    writer.writeStartDocument();
    writePlainXml(message, writer);
    writer.writeEndDocument();
}

} // namespace

QByteArray plainXml(const PlainMessage& message)
{
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writePlainXml(message, writer);
    return xml;
}

QString plainXmlString(const PlainMessage& message)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    writePlainXml(message, writer);
    return xml;
}

QString plainDocument(const PlainMessage& message)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    writePlainDocument(message, writer);
    return xml;
}

QByteArray plainDocumentBytes(const PlainMessage& message)
{
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writePlainDocument(message, writer);
    return xml;
}

namespace {

PlainMessage readPlainMessage(QXmlStreamReader& reader)
{
    PlainMessage message;
    reader.readNextStartElement();
    while (reader.readNextStartElement()) {
        while (reader.readNextStartElement()) {
            if (reader.name() == QLatin1String("Type")) {
                message.type = valueOf(typeNames, reader.readElementText());
            } else if (reader.name() == QLatin1String("MessageID")) {
                message.id = static_cast<unsigned int>(reader.readElementText().toInt());
            } else if (reader.name() == QLatin1String("Fragment")) {
                while (reader.readNextStartElement())
                    message.fragments.push_back(readPayload(reader));
            } else {
                reader.skipCurrentElement();
            }
        }
    }
    return message;
}

} // namespace

PlainMessage readPlainXml(const QByteArray& xml)
{
    QXmlStreamReader reader(xml);
    return readPlainMessage(reader);
}

PlainMessage readPlainDocument(const QString& xml)
{
    QXmlStreamReader reader(xml);
    return readPlainMessage(reader);
}

QByteArray plainStream(const PlainMessage& message)
{
    QByteArray frame;
    QDataStream stream(&frame, QIODevice::WriteOnly);
    StreamOutput output{stream};
    BinaryWriter<StreamOutput>{output}.message(message);
    return frame;
}

PlainMessage readPlainStream(const QByteArray& frame)
{
    QDataStream stream(frame);
    StreamInput input{stream};
    return BinaryReader<StreamInput>{input}.message();
}

QByteArray encode(const PlainMessage& message)
{
    PointerOutput output;
    BinaryWriter<PointerOutput>{output}.message(message);
    output.bytes.resize(static_cast<int>(output.at - output.bytes.constData()));
    return output.bytes;
}

PlainMessage decode(const QByteArray& frame)
{
    PointerInput input{frame.constData(), frame.constData() + frame.size()};
    return BinaryReader<PointerInput>{input}.message();
}

} // namespace benchmarks
