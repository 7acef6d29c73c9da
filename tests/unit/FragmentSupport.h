// SPDX-License-Identifier: MIT
// What the tests of the fragment share: its payloads, each with the same accessor names, its own
// content and its written forms.
#pragma once

#include "TestSupport.h"

#include <array>
#include <type_traits>

namespace testing_support {

using Choice = Fragment::ChoiceFragment;
using Logger = MODELKIT::Logger;

constexpr Choice none = static_cast<Choice>(-1);

// One of the payloads, with accessors that have the same names for all.
#define PAYLOAD(Name, number)                                                               \
    using Record = PELLU300ROUTERINTERFACEXML::Name;                                        \
    static constexpr Choice choice = static_cast<Choice>(number);                           \
    static QString name() { return #Name; }                                                 \
    static void set(Fragment& f, const Record& value) { f.Set##Name(value); }               \
    static Record& edit(Fragment& f) { return f.Get##Name(); }                              \
    static const Record& view(const Fragment& f) { return f.Get##Name(); }                  \
    static bool isSet(const Fragment& f) { return f.Is##Name##Set(); }                      \
    static void reset(Fragment& f) { f.Reset##Name(); }                                     \
    static const Record& defaultRecord(const Fragment& f) { return f.GetDefault##Name(); }  \
    static void setDefault(Fragment& f, const Record& value) { f.SetDefault##Name(value); } \
    static bool isValid(const Fragment& f, const Record& value) { return f.IsValid##Name(value); }

// The same for a payload with a member Port.
#define PORT_PAYLOAD                                         \
    static void setContent(Record& r) { r.SetPort(5000); }   \
    static void setOtherContent(Record& r) { r.SetPort(7); } \
    static void setDefaultContent(Record& r) { r.SetDefaultPort(5000); }

struct MastershipStatePayload
{
    PAYLOAD(MastershipState, 0)
    static void setContent(Record& r)
    {
        r.SetState(Record::MasterPresent);
        r.SetMasterClientID("c1");
    }
    static void setOtherContent(Record& r) { r.SetState(Record::RouterIsMaster); }
    static void setDefaultContent(Record& r)
    {
        r.SetDefaultState(Record::MasterPresent);
        r.SetDefaultMasterClientID("c1");
    }
    static QString xml()
    {
        return "<MastershipState><State>MasterPresent</State>"
               "<MasterClientID>c1</MasterClientID></MastershipState>";
    }
    static QByteArray tag() { return bytes("111939B4"); }
    static QByteArray frame()
    {
        return bytes("00000027 4264F498 00000011 0000000D 4D617374657250726573656E74"
                     " 0BCD2CF7 00000006 00000002 6331");
    }
};

struct AcquireMastershipPayload
{
    PAYLOAD(AcquireMastership, 1)
    static void setContent(Record& r) { r.SetSuccess(true); }
    static void setOtherContent(Record& r) { r.SetSuccess(false); }
    static void setDefaultContent(Record& r) { r.SetDefaultSuccess(true); }
    static QString xml() { return "<AcquireMastership><Success>true</Success></AcquireMastership>"; }
    static QByteArray tag() { return bytes("21BDA6E2"); }
    static QByteArray frame() { return bytes("00000009 BF8A59C6 00000001 01"); }
};

struct ReleaseMastershipPayload
{
    PAYLOAD(ReleaseMastership, 2)
    static void setContent(Record& r) { r.SetSuccess(true); }
    static void setOtherContent(Record& r) { r.SetSuccess(false); }
    static void setDefaultContent(Record& r) { r.SetDefaultSuccess(true); }
    static QString xml() { return "<ReleaseMastership><Success>true</Success></ReleaseMastership>"; }
    static QByteArray tag() { return bytes("FC38AB7C"); }
    static QByteArray frame() { return bytes("00000009 BF8A59C6 00000001 01"); }
};

struct OstraInterfacePortPayload
{
    PAYLOAD(OstraInterfacePort, 3)
    PORT_PAYLOAD
    static QString xml() { return "<OstraInterfacePort><Port>5000</Port></OstraInterfacePort>"; }
    static QByteArray tag() { return bytes("F9E464D0"); }
    static QByteArray frame() { return bytes("00000010 1F980517 00000008 0000000000001388"); }
};

struct PelVtConnectServerPayload
{
    PAYLOAD(PelVtConnectServer, 4)
    static void setContent(Record& r)
    {
        r.SetAddress("host");
        r.SetPort(80);
    }
    static void setOtherContent(Record& r) { r.SetAddress("other"); }
    static void setDefaultContent(Record& r)
    {
        r.SetDefaultAddress("host");
        r.SetDefaultPort(80);
    }
    static QString xml()
    {
        return "<PelVtConnectServer><Address>host</Address><Port>80</Port></PelVtConnectServer>";
    }
    static QByteArray tag() { return bytes("0BBAB464"); }
    static QByteArray frame()
    {
        return bytes("00000020 2AC271EC 00000008 00000004 686F7374 1F980517 00000008 0000000000000050");
    }
};

struct RouterVtServerPortPayload
{
    PAYLOAD(RouterVtServerPort, 5)
    PORT_PAYLOAD
    static QString xml() { return "<RouterVtServerPort><Port>5000</Port></RouterVtServerPort>"; }
    static QByteArray tag() { return bytes("5D020EA0"); }
    static QByteArray frame() { return bytes("00000010 1F980517 00000008 0000000000001388"); }
};

struct DF_ParamsPayload
{
    PAYLOAD(DF_Params, 6)
    static void setContent(Record& r)
    {
        r.SetFrequency(2.5);
        r.SetPanoramaSpan(10);
    }
    static void setOtherContent(Record& r) { r.SetBandwidth(1); }
    static void setDefaultContent(Record& r)
    {
        r.SetDefaultFrequency(2.5);
        r.SetDefaultPanoramaSpan(10);
    }
    static QString xml()
    {
        return "<DF_Params><Frequency>2.50</Frequency><PanoramaSpan>10.00</PanoramaSpan></DF_Params>";
    }
    static QByteArray tag() { return bytes("BE2DFF74"); }
    static QByteArray frame()
    {
        return bytes("00000021 A97DB5BE 00000008 00000004 322E3530"
                     " 7029D96C 00000009 00000005 31302E3030");
    }
};

// The payloads with content and written forms.
using Payloads = ::testing::Types<MastershipStatePayload, AcquireMastershipPayload, ReleaseMastershipPayload,
                                  OstraInterfacePortPayload, PelVtConnectServerPayload,
                                  RouterVtServerPortPayload, DF_ParamsPayload>;

// Another payload than the given one.
template <class Payload>
using Another = std::conditional_t<std::is_same_v<Payload, DF_ParamsPayload>, OstraInterfacePortPayload,
                                   DF_ParamsPayload>;

template <class Payload>
typename Payload::Record withContent()
{
    typename Payload::Record record;
    Payload::setContent(record);
    return record;
}

template <class Payload>
typename Payload::Record withOtherContent()
{
    typename Payload::Record record;
    Payload::setOtherContent(record);
    return record;
}

// Four bytes, most significant first.
inline QByteArray lengthWord(qsizetype length)
{
    QByteArray word(4, '\0');
    word[2] = static_cast<char>(length / 256);
    word[3] = static_cast<char>(length % 256);
    return word;
}

// The frame of a fragment with one entry: the tag and the frame of the payload.
inline QByteArray fragmentFrame(const QByteArray& entry) { return lengthWord(entry.size()) + entry; }

// Which payloads of a fragment are set.
using Flags = std::array<bool, payloadCount>;

#define PAYLOAD_FLAG(Name, value, tag, id) f.Is##Name##Set(),
inline Flags flagsOf(const Fragment& f) { return {PAYLOAD_RECORDS(PAYLOAD_FLAG)}; }
#undef PAYLOAD_FLAG

template <class... Payload>
void setContentOf(Fragment& f, ::testing::Types<Payload...>)
{
    (Payload::set(f, withContent<Payload>()), ...);
}

// A fragment with all payloads set, of which DF_Params is selected.
inline Fragment withEverythingSet()
{
#define SET_EMPTY(Name, value, tag, id) f.Set##Name(PELLU300ROUTERINTERFACEXML::Name());
    Fragment f;
    PAYLOAD_RECORDS(SET_EMPTY)
    setContentOf(f, Payloads());
    return f;
#undef SET_EMPTY
}

#define TRUE_FLAG(Name, value, tag, id) true,
constexpr Flags allSet{PAYLOAD_RECORDS(TRUE_FLAG)};
#undef TRUE_FLAG
constexpr Flags noneSet{};

template <class Payload>
Flags onlySet()
{
    Flags flags{};
    flags[static_cast<std::size_t>(Payload::choice)] = true;
    return flags;
}

} // namespace testing_support
