// SPDX-License-Identifier: MIT
// What the tests of the binary form share: a filled sample of every record with its frame as a literal, and
// parts of frames.
#pragma once

#include "DocumentParts.h"
#include "TestDevices.h"
#include "TestSupport.h"

#include <cstdint>

namespace binary_support {

using namespace testing_support;

// A filled sample of each record: its name, its content, its frame without id in both byte orders, and the
// frame of the empty record.
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

inline quint32 sizeOf(const QByteArray& content) { return static_cast<quint32>(content.size()); }

inline QByteArray textPayload(const QByteArray& utf8) { return sized(utf8); }

inline QByteArray frame(const QByteArray& entries) { return sized(entries); }

inline QByteArray portEntry(std::uint32_t port) { return entry(portTag, word(0) + word(port)); }

// The payload of a list entry: the count and the frames of the items.
inline QByteArray list(std::uint32_t count, const QByteArray& elements) { return word(count) + elements; }

// The frame of a document with every member of every record. Each payload has its own fragment.
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
    return frame(entry(messageTag, entry(typeTag, textPayload("Event"))
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

// Expects that reading the frame throws the length error of the record with that name.
inline void expectLengthError(MODELKIT::IMKObject& record, const QByteArray& frame, const char* name)
{
    expectThrow<BinaryParsingException>([&] { readFrame(record, frame); }, lengthErrorOf(name));
}

template <class R>
R readFrom(const QByteArray& frame)
{
    R record;
    readFrame(record, frame);
    return record;
}

inline const PelLu300RouterMessage& messageIn(const PelLu300RouterInterfaceXml& document)
{
    return document.GetPelLu300RouterMessage();
}

// The port of the item at that index of the list.
inline unsigned int portAt(const PelLu300RouterMessage& message, int index)
{
    const Fragment& item = message.GetFragment().at(index);
    EXPECT_EQ(item.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_TRUE(item.IsOstraInterfacePortSet());
    return item.GetOstraInterfacePort().GetPort();
}

inline QByteArray portElement(std::uint32_t port)
{
    return frame(entry(ostraInterfacePortTag, portEntry(port)));
}

// Expects that reading content, announced as length bytes, throws the length error of the record with that
// name.
inline void expectLengthErrorOf(MODELKIT::IMKObject& record, const QByteArray& content, int length,
                                const char* name)
{
    QDataStream stream(content);
    expectThrow<BinaryParsingException>([&] { record.SetBinary(stream, length); }, lengthErrorOf(name));
}

} // namespace binary_support
