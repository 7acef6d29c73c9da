// SPDX-License-Identifier: MIT
// The element of a record has the object name, which a derived class can change. A record can read what it
// writes, even if it contains renamed records.

#include "TestSupport.h"

#include <utility>

using namespace testing_support;

namespace {

// Gives access to the protected setter of the name.
template <class R>
struct Namer : R
{
    static void rename(R& record, const char* name)
    {
        void (R::*const setName)(const QString&) = &Namer::SetObjectName;
        (record.*setName)(QString::fromLatin1(name));
    }
};

Fragment fragmentWithRenamedPayload()
{
    Fragment fragment;
    Namer<class OstraInterfacePort>::rename(fragment.GetOstraInterfacePort(), "Harbour");
    fragment.GetOstraInterfacePort().SetPort(7);
    return fragment;
}

} // namespace

TEST(RenamedRecords, APayloadReadsWhatItWrote)
{
    Fragment fragment = fragmentWithRenamedPayload();
    const QString xml = xmlOf(fragment);
    EXPECT_EQ(xml, QStringLiteral("<Fragment><Harbour><Port>7</Port></Harbour></Fragment>"));
    fragment.GetOstraInterfacePort().SetPort(8);
    fragment.GetDF_Params();
    readXml(fragment, xml);
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_EQ(std::as_const(fragment).GetOstraInterfacePort().GetPort(), 7U);
    EXPECT_EQ(xmlOf(fragment), xml);
}

TEST(RenamedRecords, TheNameOfTheClassIsUnknown)
{
    Fragment fragment = fragmentWithRenamedPayload();
    fragment.GetDF_Params();
    readXml(fragment, QStringLiteral("<Fragment><OstraInterfacePort><Port>9</Port></OstraInterfacePort>"
                                     "</Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_EQ(std::as_const(fragment).GetOstraInterfacePort().GetPort(), 7U);
}

TEST(RenamedRecords, OfTwoPayloadsOfOneNameTheFirstIsRead)
{
    Fragment fragment;
    Namer<class DF_Params>::rename(fragment.GetDF_Params(), "OstraInterfacePort");
    readXml(fragment, QStringLiteral("<Fragment><OstraInterfacePort/></Fragment>"));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::OstraInterfacePort);
}

TEST(RenamedRecords, AMessageReadsWhatItWrote)
{
    PelLu300RouterInterfaceXml document;
    Namer<PelLu300RouterMessage>::rename(document.GetPelLu300RouterMessage(), "Letter");
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Event);
    document.GetPelLu300RouterMessage().AppendFragment(Fragment());
    const QString xml = xmlOf(document);
    EXPECT_EQ(xml, QStringLiteral("<PelLu300RouterInterfaceXml><Letter><Type>Event</Type><Fragment/></Letter>"
                                  "</PelLu300RouterInterfaceXml>"));
    document.Reset();
    readXml(document, xml);
    EXPECT_EQ(xmlOf(document), xml);
    // The element of the message ends with its new name, not with the nested element that has the name of the
    // class.
    document.Reset();
    readXml(document, QStringLiteral("<PelLu300RouterInterfaceXml><Letter><X><PelLu300RouterMessage/></X>"
                                     "<MessageID>4</MessageID></Letter></PelLu300RouterInterfaceXml>"));
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetMessageID(), 4U);
}

TEST(RenamedRecords, ItemsAreReadByTheNameOfTheirClass)
{
    PelLu300RouterMessage message;
    message.AppendFragment(Fragment());
    Namer<Fragment>::rename(message.GetFragment()[0], "Piece");
    message.SetType(PelLu300RouterMessage::Event);
    const QString xml = xmlOf(message);
    EXPECT_EQ(xml,
              QStringLiteral("<PelLu300RouterMessage><Type>Event</Type><Piece/></PelLu300RouterMessage>"));
    readXml(message, xml);
    EXPECT_EQ(std::as_const(message).GetFragment().size(), 1);
    readXml(message, QStringLiteral("<PelLu300RouterMessage><Fragment/></PelLu300RouterMessage>"));
    EXPECT_EQ(std::as_const(message).GetFragment().size(), 2);
}

TEST(RenamedRecords, ThePlaceOfAFailureCarriesTheirNames)
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    Namer<PelLu300RouterMessage>::rename(message, "Letter");
    message.SetType(PelLu300RouterMessage::Event);
    for (int i = 0; i < 4; ++i)
        message.AppendFragment(Fragment());
    Namer<Fragment>::rename(message.GetFragment()[0], "Piece");
    Namer<Fragment>::rename(message.GetFragment()[2], "Piece");
    Namer<class MastershipState>::rename(message.GetFragment()[2].GetMastershipState(), "Who");
    message.GetFragment()[2].GetMastershipState().SetState(static_cast<MastershipState::State>(9));
    document.SetValidate(true);
    EXPECT_EQ(thrownBy<OutOfRangeException>([&] { xmlOf(document); }).GetPlace().path,
              QStringLiteral("/PelLu300RouterInterfaceXml/Letter/Piece[2]/Who"));
    message.GetFragment()[2].ResetChoiceFragment();
    message.GetFragment()[3].GetMastershipState().SetState(MastershipState::RouterIsMaster);
    EXPECT_EQ(thrownBy<BinaryParsingException>(
                  [&] { readFrame(document, bytes("0000000C 9B1A7AD8 00000004 00000000")); })
                  .GetPlace()
                  .path,
              QStringLiteral("/PelLu300RouterInterfaceXml/Letter"));
}

TEST(RenamedRecords, KeepTheirNamesWhenASharedBlockIsDetached)
{
    PelLu300RouterInterfaceXml document;
    Namer<PelLu300RouterMessage>::rename(document.GetPelLu300RouterMessage(), "Letter");
    document.GetPelLu300RouterMessage().AppendFragment(fragmentWithRenamedPayload());
    Namer<class OstraInterfacePort>::rename(
        document.GetPelLu300RouterMessage().GetFragment()[0].GetOstraInterfacePort(), "Harbour");
    Namer<Fragment>::rename(document.GetPelLu300RouterMessage().GetFragment()[0], "Piece");
    // A fragment that differs from an untouched one only by the name of a payload.
    Fragment untouched;
    Namer<class DF_Params>::rename(untouched.GetDF_Params(), "Receiver");
    Fragment sharingUntouched;
    sharingUntouched = untouched;
    const QString xml = xmlOf(document);
    PelLu300RouterInterfaceXml sharing;
    sharing = document;
    static_cast<void>(sharing.IsInitialized());
    EXPECT_EQ(xmlOf(sharing), xml);
    sharing = document;
    static_cast<void>(document.IsInitialized());
    EXPECT_EQ(xmlOf(document), xml);
    EXPECT_EQ(xmlOf(untouched), QStringLiteral("<Fragment><Receiver/></Fragment>"));
    EXPECT_EQ(xmlOf(sharingUntouched), QStringLiteral("<Fragment><Receiver/></Fragment>"));
}
