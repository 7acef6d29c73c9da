#include "PlainMessage.h"

#include <array>

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

// --- over QDataStream

constexpr quint32 documentTag = 0x9B1A7AD8, typeTag = 0xE1D9E008, idTag = 0xEF193DE9, listTag = 0x61023A90;
constexpr quint32 stateTag = 0x4264F498, clientTag = 0x0BCD2CF7, successTag = 0xBF8A59C6,
                  portTag = 0x1F980517;
constexpr quint32 addressTag = 0x2AC271EC, frequencyTag = 0xA97DB5BE, demodulationTag = 0x5255927F;
constexpr quint32 bandwidthTag = 0x104A95AB, spanTag = 0x7029D96C;
constexpr std::array<quint32, 7> payloadTags{0x111939B4, 0x21BDA6E2, 0xFC38AB7C, 0xF9E464D0,
                                             0x0BBAB464, 0x5D020EA0, 0xBE2DFF74};

struct StreamWriter
{
    QDataStream& stream;

    template <class Write>
    void lengthOf(Write&& write)
    {
        stream << 0;
        const qint64 begin = stream.device()->pos();
        write();
        const qint64 end = stream.device()->pos();
        stream.device()->seek(begin - 4);
        stream << static_cast<int>(end - begin);
        stream.device()->seek(end);
    }
    template <class Write>
    void entry(quint32 tag, Write&& write)
    {
        stream << tag;
        lengthOf(write);
    }
    void text(quint32 tag, const QString& value)
    {
        entry(tag, [&] { stream << value.toUtf8(); });
    }
    void number(quint32 tag, unsigned int value)
    {
        entry(tag, [&] { stream << static_cast<qint64>(value); });
    }
    void operator()(const PlainState& payload)
    {
        text(stateTag, stateNames[static_cast<std::size_t>(payload.state)]);
        text(clientTag, payload.client);
    }
    void operator()(const PlainSuccess<1>& payload)
    {
        entry(successTag, [&] { stream << payload.success; });
    }
    void operator()(const PlainSuccess<2>& payload)
    {
        entry(successTag, [&] { stream << payload.success; });
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
        text(frequencyTag, decimals(payload.frequency));
        text(demodulationTag, decimals(payload.demodulation));
        text(bandwidthTag, decimals(payload.bandwidth));
        text(spanTag, decimals(payload.span));
    }
};

struct StreamReader
{
    QDataStream& stream;

    QString text()
    {
        QByteArray bytes;
        stream >> bytes;
        return QString::fromUtf8(bytes);
    }
    unsigned int number()
    {
        qint64 wide = 0;
        stream >> wide;
        return static_cast<unsigned int>(wide);
    }
    template <class Read>
    void entries(int length, Read&& read)
    {
        qint64 remaining = length;
        while (remaining > 0 && !stream.atEnd()) {
            quint32 tag = 0;
            int size = 0;
            stream >> tag >> size;
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
            entries(length, [&](quint32, int) { stream >> plain.success; });
            return PlainFragment(plain);
        };
        switch (kind) {
        case 0: {
            PlainState plain;
            entries(length, [&](quint32 tag, int) {
                if (tag == stateTag)
                    plain.state = valueOf(stateNames, text());
                else
                    plain.client = text();
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
                    plain.address = text();
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
                const double value = text().toDouble();
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

QByteArray plainXml(const PlainMessage& message)
{
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
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
    return xml;
}

PlainMessage readPlainXml(const QByteArray& xml)
{
    PlainMessage message;
    QXmlStreamReader reader(xml);
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

QByteArray plainStream(const PlainMessage& message)
{
    QByteArray frame;
    QDataStream stream(&frame, QIODevice::WriteOnly);
    StreamWriter writer{stream};
    writer.lengthOf([&] {
        writer.entry(documentTag, [&] {
            writer.text(typeTag, typeNames[static_cast<std::size_t>(message.type)]);
            writer.number(idTag, message.id);
            writer.entry(listTag, [&] {
                stream << static_cast<int>(message.fragments.size());
                for (const PlainFragment& fragment : message.fragments)
                    writer.lengthOf([&] {
                        writer.entry(payloadTags[fragment.index()], [&] { std::visit(writer, fragment); });
                    });
            });
        });
    });
    return frame;
}

PlainMessage readPlainStream(const QByteArray& frame)
{
    PlainMessage message;
    QDataStream stream(frame);
    StreamReader reader{stream};
    int length = 0;
    stream >> length;
    reader.entries(length, [&](quint32, int messageLength) {
        reader.entries(messageLength, [&](quint32 tag, int) {
            if (tag == typeTag) {
                message.type = valueOf(typeNames, reader.text());
            } else if (tag == idTag) {
                message.id = reader.number();
            } else {
                int count = 0;
                stream >> count;
                message.fragments.reserve(static_cast<std::size_t>(count));
                for (int i = 0; i < count; ++i) {
                    int itemLength = 0;
                    stream >> itemLength;
                    reader.entries(itemLength, [&](quint32 payloadTag, int size) {
                        message.fragments.push_back(reader.payload(payloadTag, size));
                    });
                }
            }
        });
    });
    return message;
}

} // namespace benchmarks
