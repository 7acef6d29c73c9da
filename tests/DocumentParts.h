// SPDX-License-Identifier: MIT
// The parts from which tests put documents together, in both forms and in every encoding.
#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QIODevice>
#include <QtCore/QString>
#include <QtCore/QVector>

namespace testing_support {

// --- XML --------------------------------------------------------------------------------------------

constexpr const char* rootPath = "/PelLu300RouterInterfaceXml";
constexpr const char* messagePath = "/PelLu300RouterInterfaceXml/PelLu300RouterMessage";

inline QByteArray inMessage(const QByteArray& content)
{
    return "<PelLu300RouterInterfaceXml><PelLu300RouterMessage>" + content
           + "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>";
}

inline QString inMessage(const QString& content)
{
    return QLatin1String("<PelLu300RouterInterfaceXml><PelLu300RouterMessage>") + content
           + QLatin1String("</PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
}

// --- encodings --------------------------------------------------------------------------------------

enum class ByteOrder
{
    Big,
    Little
};

enum class Mark
{
    Without,
    With
};

inline QByteArray utf16(const QString& string, ByteOrder order, Mark mark)
{
    QByteArray encoded;
    QDataStream stream(&encoded, QIODevice::WriteOnly);
    stream.setByteOrder(order == ByteOrder::Big ? QDataStream::BigEndian : QDataStream::LittleEndian);
    if (mark == Mark::With)
        stream << quint16(0xFEFF);
    for (const QChar character : string)
        stream << quint16(character.unicode());
    return encoded;
}

inline QByteArray utf32(const QString& string, ByteOrder order, Mark mark)
{
    QByteArray encoded;
    QDataStream stream(&encoded, QIODevice::WriteOnly);
    stream.setByteOrder(order == ByteOrder::Big ? QDataStream::BigEndian : QDataStream::LittleEndian);
    if (mark == Mark::With)
        stream << quint32(0xFEFF);
    for (const uint code : string.toUcs4())
        stream << quint32(code);
    return encoded;
}

// --- the binary form, in big-endian byte order --------------------------------------------------------

inline QByteArray word(quint32 value)
{
    QByteArray part;
    QDataStream(&part, QIODevice::WriteOnly) << value;
    return part;
}

// The content, preceded by its size.
inline QByteArray sized(const QByteArray& content)
{
    return word(static_cast<quint32>(content.size())) + content;
}

inline QByteArray entry(quint32 tag, const QByteArray& payload) { return word(tag) + sized(payload); }

constexpr quint32 documentId = 0x8553499A;
constexpr quint32 messageTag = 0x9B1A7AD8;
constexpr quint32 typeTag = 0xE1D9E008;
constexpr quint32 messageIdTag = 0xEF193DE9;
constexpr quint32 fragmentTag = 0x61023A90;
constexpr quint32 mastershipStateTag = 0x111939B4;
constexpr quint32 acquireMastershipTag = 0x21BDA6E2;
constexpr quint32 releaseMastershipTag = 0xFC38AB7C;
constexpr quint32 ostraInterfacePortTag = 0xF9E464D0;
constexpr quint32 pelVtConnectServerTag = 0x0BBAB464;
constexpr quint32 routerVtServerPortTag = 0x5D020EA0;
constexpr quint32 dfParamsTag = 0xBE2DFF74;
constexpr quint32 stateTag = 0x4264F498;
constexpr quint32 masterClientIdTag = 0x0BCD2CF7;
constexpr quint32 successTag = 0xBF8A59C6;
constexpr quint32 portTag = 0x1F980517;
constexpr quint32 addressTag = 0x2AC271EC;
constexpr quint32 frequencyTag = 0xA97DB5BE;
constexpr quint32 demodulationFrequencyTag = 0x5255927F;
constexpr quint32 bandwidthTag = 0x104A95AB;
constexpr quint32 panoramaSpanTag = 0x7029D96C;
constexpr quint32 unknownTag = 0x01020304;

// The compressed form that consists of these pieces. Each piece begins with its size.
inline QByteArray compressedForm(const QByteArray& pieces) { return word(0x4D4B5A31) + sized(pieces); }

} // namespace testing_support
