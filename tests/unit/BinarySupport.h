// SPDX-License-Identifier: MIT
// What the tests of the binary form share: one filled sample of every record with its literal frame,
// and the parts from which frames are put together.
#pragma once

#include "TestSupport.h"

#include <QtCore/QIODevice>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace binary_support {

using namespace testing_support;

// One filled sample of each record: its name, its content, its frame without id in both byte orders,
// and the frame of the record in which nothing is set.
template <class R>
struct Sample;

template <>
struct Sample<OstraInterfacePort>
{
    static constexpr const char* name = "OstraInterfacePort";
    static constexpr const char* empty = "00000000";
    static constexpr const char* frame = "00000010 1F980517 00000008 0000000000001388";
    static constexpr const char* littleEndianFrame = "10000000 1705981F 08000000 8813000000000000";
    static void fill(OstraInterfacePort& record) { record.SetPort(5000); }
};

template <>
struct Sample<RouterVtServerPort>
{
    static constexpr const char* name = "RouterVtServerPort";
    static constexpr const char* empty = "00000000";
    static constexpr const char* frame = "00000010 1F980517 00000008 00000000000001BB";
    static constexpr const char* littleEndianFrame = "10000000 1705981F 08000000 BB01000000000000";
    static void fill(RouterVtServerPort& record) { record.SetPort(443); }
};

template <>
struct Sample<PelVtConnectServer>
{
    static constexpr const char* name = "PelVtConnectServer";
    static constexpr const char* empty = "00000000";
    static constexpr const char* frame = "00000026 2AC271EC 0000000E 0000000A 76742E6578616D706C65"
                                         "1F980517 00000008 0000000000001B58";
    static constexpr const char* littleEndianFrame =
        "26000000 EC71C22A 0E000000 0A000000 76742E6578616D706C65 1705981F 08000000 581B000000000000";
    static void fill(PelVtConnectServer& record)
    {
        record.SetAddress(QStringLiteral("vt.example"));
        record.SetPort(7000);
    }
};

template <>
struct Sample<MastershipState>
{
    static constexpr const char* name = "MastershipState";
    static constexpr const char* empty = "00000000";
    static constexpr const char* frame = "0000002D 4264F498 00000011 0000000D 4D617374657250726573656E74"
                                         "0BCD2CF7 0000000C 00000008 636C69656E742D37";
    static constexpr const char* littleEndianFrame =
        "2D000000 98F46442 11000000 0D000000 4D617374657250726573656E74"
        "F72CCD0B 0C000000 08000000 636C69656E742D37";
    static void fill(MastershipState& record)
    {
        record.SetState(MastershipState::MasterPresent);
        record.SetMasterClientID(QStringLiteral("client-7"));
    }
};

template <>
struct Sample<AcquireMastership>
{
    static constexpr const char* name = "AcquireMastership";
    static constexpr const char* empty = "00000000";
    static constexpr const char* frame = "00000009 BF8A59C6 00000001 01";
    static constexpr const char* littleEndianFrame = "09000000 C6598ABF 01000000 01";
    static void fill(AcquireMastership& record) { record.SetSuccess(true); }
};

template <>
struct Sample<ReleaseMastership>
{
    static constexpr const char* name = "ReleaseMastership";
    static constexpr const char* empty = "00000000";
    static constexpr const char* frame = "00000009 BF8A59C6 00000001 00";
    static constexpr const char* littleEndianFrame = "09000000 C6598ABF 01000000 00";
    static void fill(ReleaseMastership& record) { record.SetSuccess(false); }
};

template <>
struct Sample<DF_Params>
{
    static constexpr const char* name = "DF_Params";
    static constexpr const char* empty = "00000000";
    static constexpr const char* frame = "00000048 A97DB5BE 00000009 00000005 39382E3530"
                                         "5255927F 00000009 00000005 39382E3735"
                                         "104A95AB 0000000D 00000009 3132303030302E3030"
                                         "7029D96C 00000009 00000005 2D322E3030";
    static constexpr const char* littleEndianFrame = "48000000 BEB57DA9 09000000 05000000 39382E3530"
                                                     "7F925552 09000000 05000000 39382E3735"
                                                     "AB954A10 0D000000 09000000 3132303030302E3030"
                                                     "6CD92970 09000000 05000000 2D322E3030";
    static void fill(DF_Params& record)
    {
        record.SetFrequency(98.5);
        record.SetDemodulationFrequency(98.75);
        record.SetBandwidth(120000);
        record.SetPanoramaSpan(-2);
    }
};

template <>
struct Sample<Fragment>
{
    static constexpr const char* name = "Fragment";
    static constexpr const char* empty = "00000000";
    static constexpr const char* frame = "00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388";
    static constexpr const char* littleEndianFrame =
        "18000000 D064E4F9 10000000 1705981F 08000000 8813000000000000";
    static void fill(Fragment& record) { record.GetOstraInterfacePort().SetPort(5000); }
};

template <>
struct Sample<PelLu300RouterMessage>
{
    static constexpr const char* name = "PelLu300RouterMessage";
    // The type is written even when it is not set.
    static constexpr const char* empty = "0000000C E1D9E008 00000004 FFFFFFFF";
    static constexpr const char* frame = "00000049 E1D9E008 00000009 00000005 5265706C79"
                                         "EF193DE9 00000008 0000000000000007"
                                         "61023A90 00000020 00000001"
                                         "00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388";
    static constexpr const char* littleEndianFrame =
        "49000000 08E0D9E1 09000000 05000000 5265706C79 E93D19EF 08000000 0700000000000000"
        "903A0261 20000000 01000000 18000000 D064E4F9 10000000 1705981F 08000000 8813000000000000";
    static void fill(PelLu300RouterMessage& record)
    {
        record.SetType(PelLu300RouterMessage::Reply);
        record.SetMessageID(7);
        Fragment fragment;
        Sample<Fragment>::fill(fragment);
        record.AppendFragment(fragment);
    }
};

template <>
struct Sample<PelLu300RouterInterfaceXml>
{
    static constexpr const char* name = "PelLu300RouterInterfaceXml";
    static constexpr const char* empty = "00000000";
    static constexpr const char* frame = "00000051 9B1A7AD8"
                                         "00000049 E1D9E008 00000009 00000005 5265706C79"
                                         "EF193DE9 00000008 0000000000000007"
                                         "61023A90 00000020 00000001"
                                         "00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388";
    static constexpr const char* littleEndianFrame =
        "51000000 D87A1A9B 49000000 08E0D9E1 09000000 05000000 5265706C79 E93D19EF 08000000 0700000000000000"
        "903A0261 20000000 01000000 18000000 D064E4F9 10000000 1705981F 08000000 8813000000000000";
    static void fill(PelLu300RouterInterfaceXml& record)
    {
        Sample<PelLu300RouterMessage>::fill(record.GetPelLu300RouterMessage());
    }
};

// The parts of a big-endian frame.
inline QByteArray word(std::uint32_t value)
{
    QByteArray part;
    for (int shift = 24; shift >= 0; shift -= 8)
        part.append(static_cast<char>(value >> shift & 0xFFU));
    return part;
}

inline std::uint32_t sizeOf(const QByteArray& content) { return static_cast<std::uint32_t>(content.size()); }

inline QByteArray text(const QByteArray& utf8) { return word(sizeOf(utf8)) + utf8; }

inline QByteArray entry(std::uint32_t tag, const QByteArray& payload)
{
    return word(tag) + word(sizeOf(payload)) + payload;
}

inline QByteArray frame(const QByteArray& entries) { return word(sizeOf(entries)) + entries; }

// The tags that the tests put together themselves.
constexpr std::uint32_t messageTag = 0x9B1A7AD8;
constexpr std::uint32_t typeTag = 0xE1D9E008;
constexpr std::uint32_t messageIdTag = 0xEF193DE9;
constexpr std::uint32_t fragmentTag = 0x61023A90;
constexpr std::uint32_t mastershipStateTag = 0x111939B4;
constexpr std::uint32_t acquireMastershipTag = 0x21BDA6E2;
constexpr std::uint32_t releaseMastershipTag = 0xFC38AB7C;
constexpr std::uint32_t ostraInterfacePortTag = 0xF9E464D0;
constexpr std::uint32_t pelVtConnectServerTag = 0x0BBAB464;
constexpr std::uint32_t routerVtServerPortTag = 0x5D020EA0;
constexpr std::uint32_t dfParamsTag = 0xBE2DFF74;
constexpr std::uint32_t stateTag = 0x4264F498;
constexpr std::uint32_t masterClientIdTag = 0x0BCD2CF7;
constexpr std::uint32_t successTag = 0xBF8A59C6;
constexpr std::uint32_t portTag = 0x1F980517;
constexpr std::uint32_t addressTag = 0x2AC271EC;
constexpr std::uint32_t frequencyTag = 0xA97DB5BE;
constexpr std::uint32_t demodulationFrequencyTag = 0x5255927F;
constexpr std::uint32_t bandwidthTag = 0x104A95AB;
constexpr std::uint32_t panoramaSpanTag = 0x7029D96C;
constexpr std::uint32_t unknownTag = 0x01020304;

inline QByteArray portEntry(std::uint32_t port) { return entry(portTag, word(0) + word(port)); }

// A list entry's payload: the count and the elements' frames.
inline QByteArray list(std::uint32_t count, const QByteArray& elements) { return word(count) + elements; }

// The frame of a document that uses every member of every record, each payload in a fragment of its own.
inline QByteArray fullDocumentFrame()
{
    const QByteArray state = bytes(Sample<MastershipState>::frame).mid(4);
    const QByteArray server = bytes(Sample<PelVtConnectServer>::frame).mid(4);
    const QByteArray tuning = bytes(Sample<DF_Params>::frame).mid(4);
    const QByteArray elements =
        frame(entry(mastershipStateTag, state))
        + frame(entry(acquireMastershipTag, entry(successTag, bytes("01"))))
        + frame(entry(releaseMastershipTag, entry(successTag, bytes("00"))))
        + frame(entry(ostraInterfacePortTag, portEntry(5000))) + frame(entry(pelVtConnectServerTag, server))
        + frame(entry(routerVtServerPortTag, portEntry(443))) + frame(entry(dfParamsTag, tuning));
    return frame(entry(messageTag, entry(typeTag, text("Event"))
                                       + entry(messageIdTag, bytes("00000000FFFFFFFF"))
                                       + entry(fragmentTag, list(7, elements))));
}

template <class R>
R sampleOf()
{
    R record;
    Sample<R>::fill(record);
    return record;
}

inline void fillFullDocument(PelLu300RouterInterfaceXml& document)
{
    Fragment fragments[7];
    fragments[0].SetMastershipState(sampleOf<MastershipState>());
    fragments[1].SetAcquireMastership(sampleOf<AcquireMastership>());
    fragments[2].SetReleaseMastership(sampleOf<ReleaseMastership>());
    fragments[3].SetOstraInterfacePort(sampleOf<OstraInterfacePort>());
    fragments[4].SetPelVtConnectServer(sampleOf<PelVtConnectServer>());
    fragments[5].SetRouterVtServerPort(sampleOf<RouterVtServerPort>());
    fragments[6].SetDF_Params(sampleOf<DF_Params>());
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Event);
    message.SetMessageID(4294967295U);
    for (const Fragment& fragment : fragments)
        message.AppendFragment(fragment);
}

inline QString lengthErrorOf(const char* record)
{
    return QLatin1String(record)
           + QLatin1String(
               "::SetBinary(...): Length error occurred during processing of binary representation");
}

// Expects that reading the frame ends in the length error of the record of that name.
inline void expectLengthError(MODELKIT::IMKObject& record, const QByteArray& frame, const char* name)
{
    expectThrow<BinaryParsingException>([&] { readFrame(record, frame); }, lengthErrorOf(name));
}

// A device that can only be read forwards.
class ForwardDevice : public QIODevice
{
public:
    explicit ForwardDevice(QByteArray content) : m_content(std::move(content))
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return left() + QIODevice::bytesAvailable(); }

    // The number of bytes that nobody has taken yet.
    qint64 left() const { return m_content.size() - m_taken; }

protected:
    qint64 readData(char* to, qint64 count) override
    {
        const qint64 taken = std::min(count, left());
        std::memcpy(to, m_content.constData() + m_taken, static_cast<std::size_t>(taken));
        m_taken += taken;
        return taken;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    QByteArray m_content;
    qint64 m_taken = 0;
};

} // namespace binary_support
