// SPDX-License-Identifier: MIT
// The fragment as a whole: the choice, copying, comparing and checking, and its written forms.

#include "FragmentSupport.h"

#include <memory>
#include <utility>

namespace {

using namespace testing_support;

// --- a new fragment -------------------------------------------------------------------------

TEST(FragmentRecord, ANewOneHasNoDataAndNoChoice)
{
    const Fragment f;
    EXPECT_FALSE(f.IsInitialized());
    EXPECT_FALSE(f.AnyData());
    EXPECT_FALSE(f.HasData());
    EXPECT_EQ(flagsOf(f), noneSet);
    EXPECT_FALSE(f.IsInitialized());
    EXPECT_EQ(f.GetChoiceFragment(), -1);
    EXPECT_TRUE(f.IsInitialized());
    EXPECT_FALSE(f.AnyData());
    EXPECT_FALSE(f.HasData());
    EXPECT_EQ(f.GetObjectName(), "Fragment");
    EXPECT_EQ(Fragment::GetId(), -767521452);
}

TEST(FragmentRecord, ANewOneIsWrittenEmpty)
{
    const Fragment f;
    EXPECT_EQ(xmlOf(f), "<Fragment/>");
    EXPECT_EQ(frameOf(f), bytes("00000000"));
    QByteArray withId;
    QDataStream stream(&withId, QIODevice::WriteOnly);
    EXPECT_TRUE(f.GetBinary(stream, 0x61023A90, true));
    EXPECT_EQ(withId, bytes("61023A90 00000000"));
}

TEST(FragmentRecord, ANewOneIsNotWrittenUnderValidation)
{
    const Fragment f;
    f.SetValidate(true);
    EXPECT_EQ(xmlOf(f), "");
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    EXPECT_FALSE(f.GetBinary(stream, 1, true));
    EXPECT_TRUE(written.isEmpty());
}

TEST(FragmentRecord, ANewOnePassesTheCheck)
{
    const Fragment f;
    EXPECT_NO_THROW(f.Check());
    f.SetValidate(true);
    EXPECT_NO_THROW(f.Check());
    EXPECT_NO_THROW(f.Check(true));
}

TEST(FragmentRecord, ResetsOfANewOneCreateNoDataBlock)
{
    Fragment f;
    f.Reset();
    f.ResetChoiceFragment();
    EXPECT_FALSE(f.IsInitialized());
    f.ResetToDefault();
    EXPECT_TRUE(f.IsInitialized());
    EXPECT_FALSE(f.AnyData());
}

// --- the choice -----------------------------------------------------------------------------

TEST(FragmentChoice, TheLastPayloadSetIsSelectedAndTheOthersStaySet)
{
    Fragment f;
    f.SetAcquireMastership(withContent<AcquireMastershipPayload>());
    f.SetDF_Params(withContent<DF_ParamsPayload>());
    EXPECT_EQ(f.GetChoiceFragment(), 6);
    EXPECT_TRUE(f.IsAcquireMastershipSet());
    EXPECT_EQ(xmlOf(f), "<Fragment><DF_Params><Frequency>2.50</Frequency><PanoramaSpan>10.00</PanoramaSpan>"
                        "</DF_Params></Fragment>");
    EXPECT_EQ(frameOf(f), bytes("00000029 BE2DFF74 00000021 A97DB5BE 00000008 00000004 322E3530"
                                " 7029D96C 00000009 00000005 31302E3030"));
}

TEST(FragmentChoice, AllFlagsStayOnWhileOnlyTheSelectedPayloadIsWritten)
{
    Fragment f = withEverythingSet();
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::DF_Params);
    f.GetAcquireMastership();
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_EQ(xmlOf(f),
              "<Fragment><AcquireMastership><Success>true</Success></AcquireMastership></Fragment>");
}

TEST(FragmentChoice, TheMutablePortGetterOnANewFragmentSelectsTheDefaultPort)
{
    Fragment f;
    EXPECT_EQ(f.GetOstraInterfacePort().GetPort(), 0U);
    EXPECT_EQ(f.GetChoiceFragment(), 3);
    EXPECT_TRUE(f.IsOstraInterfacePortSet());
    EXPECT_FALSE(f.GetOstraInterfacePort().IsPortSet());
}

TEST(FragmentChoice, InitChoiceAfterAnotherPayloadUnsetsThatPayload)
{
    Fragment f;
    OstraInterfacePort port;
    port.SetPort(99);
    f.SetDefaultOstraInterfacePort(port);
    f.SetDF_Params(withContent<DF_ParamsPayload>());
    f.InitChoice(Fragment::OstraInterfacePort);
    EXPECT_FALSE(f.IsDF_ParamsSet());
    EXPECT_EQ(f.GetChoiceFragment(), 3);
    EXPECT_EQ(std::as_const(f).GetOstraInterfacePort().GetPort(), 99U);
    EXPECT_TRUE(std::as_const(f).GetOstraInterfacePort().IsPortSet());
}

TEST(FragmentChoice, InitChoiceWithTheInvalidChoiceResetsAndThrowsWhateverTheValidation)
{
    for (const bool validate : {false, true}) {
        Fragment f = withEverythingSet();
        f.SetValidate(validate);
        expectThrow<OutOfRangeException>([&] { f.InitChoice(none); },
                                         "Invalid enum value set in 'Fragment'.");
        EXPECT_EQ(f.GetChoiceFragment(), none);
        EXPECT_EQ(flagsOf(f), noneSet);
        forEachPayload(f, [](const auto& payload) { EXPECT_FALSE(payload.AnyData()); });
    }
}

TEST(FragmentChoice, InitChoiceOfANewFragmentWithTheInvalidChoiceThrows)
{
    Fragment f;
    expectThrow<OutOfRangeException>([&] { f.InitChoice(none); }, "Invalid enum value set in 'Fragment'.");
    EXPECT_FALSE(f.AnyData());
}

TEST(FragmentChoice, InitChoiceTakesTheFragmentsOwnInvalidChoice)
{
    Fragment f = withEverythingSet();
    expectThrow<OutOfRangeException>([&] { f.InitChoice(f.GetInvalidChoiceFragment()); },
                                     "Invalid enum value set in 'Fragment'.");
    f = withEverythingSet();
    f.ResetChoiceFragment();
    expectThrow<OutOfRangeException>([&] { f.InitChoice(f.GetChoiceFragment()); },
                                     "Invalid enum value set in 'Fragment'.");
    EXPECT_EQ(flagsOf(f), noneSet);
}

TEST(FragmentChoice, InitChoiceTakesTheOwnChoiceOfASharedFragment)
{
    Fragment f = withEverythingSet();
    const Choice& choice = f.GetChoiceFragment();
    Fragment sharing;
    sharing = f;
    f.InitChoice(choice);
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_EQ(flagsOf(f), onlySet<DF_ParamsPayload>());
    EXPECT_EQ(flagsOf(sharing), allSet);
    EXPECT_EQ(sharing.GetChoiceFragment(), Fragment::DF_Params);
}

TEST(FragmentChoice, InitChoiceWithAnyOtherNumberResetsAndUnderValidationThrows)
{
    for (const bool validate : {false, true})
        for (const int number : {payloadCount, payloadCount + 2, -2, 2147483647, -2147483647 - 1}) {
            Fragment f = withEverythingSet();
            f.SetDefaultDF_Params(withOtherContent<DF_ParamsPayload>());
            f.SetValidate(validate);
            const auto choose = [&f, number] { f.InitChoice(static_cast<Choice>(number)); };
            if (validate)
                expectThrow<OutOfRangeException>(choose, "Invalid enum value set in 'Fragment'.");
            else
                EXPECT_NO_THROW(choose()) << number;
            EXPECT_EQ(f.GetChoiceFragment(), none) << number;
            EXPECT_EQ(flagsOf(f), noneSet) << number;
            EXPECT_FALSE(f.AnyData()) << number;
            EXPECT_FALSE(f.HasData()) << number;
            EXPECT_TRUE(std::as_const(f).GetDF_Params() == withOtherContent<DF_ParamsPayload>()) << number;
        }
}

TEST(FragmentChoice, InitChoiceResetsThroughTheVirtualOperation)
{
    struct Counting : Fragment
    {
        void Reset() override
        {
            ++resets;
            Fragment::Reset();
        }
        int resets = 0;
    };
    Counting f;
    f.InitChoice(Fragment::DF_Params);
    EXPECT_EQ(f.resets, 1);
    EXPECT_THROW(f.InitChoice(none), OutOfRangeException);
    EXPECT_EQ(f.resets, 2);
    f.ResetToDefault();
    EXPECT_EQ(f.resets, 3);
}

TEST(FragmentChoice, ResetChoiceSelectsNothingAndKeepsFlagsAndPayloads)
{
    Fragment f = withEverythingSet();
    f.ResetChoiceFragment();
    EXPECT_EQ(f.GetChoiceFragment(), none);
    EXPECT_FALSE(f.AnyData());
    EXPECT_FALSE(f.HasData());
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_TRUE(std::as_const(f).GetDF_Params() == withContent<DF_ParamsPayload>());
    EXPECT_TRUE(std::as_const(f).GetPelVtConnectServer() == withContent<PelVtConnectServerPayload>());
    EXPECT_EQ(xmlOf(f), "<Fragment/>");
    EXPECT_EQ(frameOf(f), bytes("00000000"));
    EXPECT_NO_THROW(f.Check());
}

TEST(FragmentChoice, ResetChoiceOfASharedFragmentLeavesTheOtherHolderSelected)
{
    Fragment f = withEverythingSet();
    Fragment sharing;
    sharing = f;
    f.ResetChoiceFragment();
    EXPECT_EQ(sharing.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_EQ(f.GetChoiceFragment(), none);
}

TEST(FragmentChoice, WithoutChoiceNothingIsWrittenUnderValidation)
{
    Fragment f = withEverythingSet();
    f.ResetChoiceFragment();
    f.SetValidate(true);
    EXPECT_EQ(xmlOf(f), "");
    EXPECT_EQ(frameOf(f), QByteArray());
}

TEST(FragmentChoice, ResetSelectsNothingClearsAllFlagsAndKeepsDefaults)
{
    Fragment f = withEverythingSet();
    f.SetDefaultDF_Params(withOtherContent<DF_ParamsPayload>());
    f.Reset();
    EXPECT_TRUE(f.IsInitialized());
    EXPECT_EQ(f.GetChoiceFragment(), none);
    EXPECT_EQ(flagsOf(f), noneSet);
    EXPECT_FALSE(f.AnyData());
    EXPECT_TRUE(f.GetDefaultDF_Params() == withOtherContent<DF_ParamsPayload>());
    EXPECT_TRUE(std::as_const(f).GetDF_Params() == withOtherContent<DF_ParamsPayload>());
    EXPECT_FALSE(std::as_const(f).GetMastershipState().AnyData());
}

TEST(FragmentChoice, ResetToDefaultReachesAllPayloads)
{
    Fragment f;
    MastershipState state;
    MastershipStatePayload::setDefaultContent(state);
    f.SetDefaultMastershipState(state);
    DF_Params params;
    DF_ParamsPayload::setDefaultContent(params);
    f.SetDefaultDF_Params(params);
    f.ResetToDefault();
    EXPECT_TRUE(std::as_const(f).GetMastershipState() == withContent<MastershipStatePayload>());
    EXPECT_TRUE(std::as_const(f).GetDF_Params() == withContent<DF_ParamsPayload>());
    forEachPayload(f, [](const auto& payload) { EXPECT_TRUE(payload.IsInitialized()); });
    EXPECT_EQ(f.GetChoiceFragment(), none);
    EXPECT_EQ(flagsOf(f), noneSet);
}

TEST(FragmentChoice, ResetToDefaultPassesWhatThePayloadsSetterThrows)
{
    Fragment f;
    MastershipState state;
    state.SetDefaultState(static_cast<MastershipState::State>(3));
    f.SetDefaultMastershipState(state);
    f.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { f.ResetToDefault(); },
                                     "enum is not valid (classname=MastershipState,membername=m_state)");
    EXPECT_EQ(flagsOf(f), noneSet);
    f.SetValidate(false);
    EXPECT_NO_THROW(f.ResetToDefault());
    EXPECT_EQ(std::as_const(f).GetMastershipState().GetState(), 3);
}

// --- comparing ------------------------------------------------------------------------------

TEST(FragmentEquality, TwoNewOnesAreEqualAndStayWithoutDataBlock)
{
    const Fragment a;
    const Fragment b;
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    EXPECT_FALSE(a.IsInitialized());
    EXPECT_FALSE(b.IsInitialized());
}

TEST(FragmentEquality, ANewOneEqualsOneThatSelectsNothing)
{
    Fragment a = withEverythingSet();
    a.ResetChoiceFragment();
    const Fragment b;
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(b == a);
    EXPECT_TRUE(b.IsInitialized());
}

TEST(FragmentEquality, SettingsAreNotCompared)
{
    Fragment a = withEverythingSet();
    Fragment b = a;
    b.SetValidate(true);
    b.SetLogger(std::make_shared<Logger>());
    EXPECT_TRUE(a == b);
}

// --- validation flag and logger -------------------------------------------------------------

TEST(FragmentSettings, ReachAllPayloadsWhateverTheChoice)
{
    const auto logger = std::make_shared<Logger>();
    for (Fragment f : {Fragment(), withEverythingSet()}) {
        f.GetChoiceFragment();
        f.SetValidate(true);
        f.SetLogger(logger);
        forEachPayload(f, [&](const auto& payload) {
            EXPECT_TRUE(payload.GetValidate());
            EXPECT_EQ(payload.GetLogger(), logger);
        });
        f.SetValidate(false);
        f.SetLogger(nullptr);
        forEachPayload(f, [&](const auto& payload) {
            EXPECT_FALSE(payload.GetValidate());
            EXPECT_EQ(payload.GetLogger(), nullptr);
        });
    }
}

TEST(FragmentSettings, GivenBeforeTheDataBlockExistsReachThePayloadsWithIt)
{
    const auto logger = std::make_shared<Logger>();
    const Fragment f;
    f.SetValidate(true);
    f.SetLogger(logger);
    EXPECT_FALSE(f.IsInitialized());
    forEachPayload(f, [&](const auto& payload) {
        EXPECT_TRUE(payload.GetValidate());
        EXPECT_EQ(payload.GetLogger(), logger);
    });
}

TEST(FragmentSettings, EveryCheckWriteAndReadHandsThemDownAgain)
{
    Fragment f;
    f.SetValidate(true);
    const auto logger = std::make_shared<Logger>();
    f.SetLogger(logger);
    OstraInterfacePort& port = f.GetOstraInterfacePort();
    const auto changeAndExpectRestored = [&](const auto& operation) {
        port.SetValidate(false);
        port.SetLogger(nullptr);
        operation();
        EXPECT_TRUE(port.GetValidate());
        EXPECT_EQ(port.GetLogger(), logger);
    };
    changeAndExpectRestored([&] { f.Check(); });
    changeAndExpectRestored([&] { f.Check(true); });
    changeAndExpectRestored([&] { xmlOf(f); });
    changeAndExpectRestored([&] { frameOf(f); });
    changeAndExpectRestored([&] { readFrame(f, bytes("00000000")); });
    changeAndExpectRestored([&] { readXml(f, "<Fragment><Unknown/></Fragment>"); });
}

TEST(FragmentSettings, GettersAndSettersDoNotHandThemDown)
{
    Fragment f;
    f.SetValidate(true);
    OstraInterfacePort& port = f.GetOstraInterfacePort();
    port.SetValidate(false);
    f.SetDF_Params(DF_Params());
    f.GetChoiceFragment();
    f.Reset();
    f.InitChoice(Fragment::OstraInterfacePort);
    EXPECT_FALSE(port.GetValidate());
    readXml(f, "<Fragment/>");
    EXPECT_FALSE(port.GetValidate());
}

TEST(FragmentSettings, ResettingTheLoggerReachesThePayloadsWithTheNextOperation)
{
    Fragment f;
    f.SetLogger(std::make_shared<Logger>());
    const OstraInterfacePort& port = f.GetOstraInterfacePort();
    f.ResetLogger();
    EXPECT_NE(port.GetLogger(), nullptr);
    f.Check();
    EXPECT_EQ(port.GetLogger(), nullptr);
}

TEST(FragmentSettings, ACopyHasTheValidationFlagButNoLogger)
{
    Fragment f = withEverythingSet();
    f.SetValidate(true);
    f.SetLogger(std::make_shared<Logger>());
    const Fragment copy(f);
    EXPECT_TRUE(copy.GetValidate());
    EXPECT_EQ(copy.GetLogger(), nullptr);
    forEachPayload(copy, [](const auto& payload) { EXPECT_TRUE(payload.GetValidate()); });
    copy.Check();
    forEachPayload(copy, [](const auto& payload) { EXPECT_EQ(payload.GetLogger(), nullptr); });
}

TEST(FragmentSettings, AssignmentKeepsTheOwnFlagAndLogger)
{
    Fragment source = withEverythingSet();
    source.SetValidate(true);
    source.SetLogger(std::make_shared<Logger>());
    Fragment f;
    const auto logger = std::make_shared<Logger>();
    f.SetLogger(logger);
    f = source;
    EXPECT_FALSE(f.GetValidate());
    EXPECT_EQ(f.GetLogger(), logger);
    f.Check();
    forEachPayload(f, [&](const auto& payload) {
        EXPECT_FALSE(payload.GetValidate());
        EXPECT_EQ(payload.GetLogger(), logger);
    });
    forEachPayload(source, [&](const auto& payload) {
        EXPECT_TRUE(payload.GetValidate());
        EXPECT_NE(payload.GetLogger(), logger);
    });
}

// --- copying --------------------------------------------------------------------------------

TEST(FragmentCopying, ACopyHasChoiceFlagsPayloadsAndDefaults)
{
    Fragment f = withEverythingSet();
    f.SetDefaultDF_Params(withOtherContent<DF_ParamsPayload>());
    Fragment copy(f);
    EXPECT_EQ(flagsOf(copy), allSet);
    EXPECT_EQ(copy.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_TRUE(std::as_const(copy).GetMastershipState() == withContent<MastershipStatePayload>());
    copy.ResetDF_Params();
    EXPECT_TRUE(std::as_const(copy).GetDF_Params() == withOtherContent<DF_ParamsPayload>());
    EXPECT_TRUE(std::as_const(f).GetDF_Params() == withContent<DF_ParamsPayload>());
}

TEST(FragmentCopying, ACopyRemembersWhichDefaultsWereSetInsideThePayloads)
{
    Fragment f;
    f.GetOstraInterfacePort().SetDefaultPort(12);
    Fragment copy(f);
    copy.GetOstraInterfacePort().ResetToDefault();
    EXPECT_EQ(copy.GetOstraInterfacePort().GetPort(), 12U);
    EXPECT_FALSE(f.GetOstraInterfacePort().IsPortSet());
}

TEST(FragmentCopying, SelfAssignmentChangesNothing)
{
    Fragment f = withEverythingSet();
    const Fragment& same = f;
    f = same;
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::DF_Params);
}

TEST(FragmentCopying, AssigningANewOneTakesAllDataAway)
{
    Fragment f = withEverythingSet();
    f = Fragment();
    EXPECT_FALSE(f.IsInitialized());
    EXPECT_EQ(flagsOf(f), noneSet);
}

TEST(FragmentCopying, ACopyOfACopyIsIndependentOfBoth)
{
    Fragment first = withEverythingSet();
    Fragment second(first);
    Fragment third;
    third = second;
    second.GetDF_Params().SetFrequency(1);
    third.GetDF_Params().SetFrequency(2);
    EXPECT_EQ(std::as_const(first).GetDF_Params().GetFrequency(), 2.5);
    EXPECT_EQ(std::as_const(second).GetDF_Params().GetFrequency(), 1.0);
    EXPECT_EQ(std::as_const(third).GetDF_Params().GetFrequency(), 2.0);
}

// --- XML ------------------------------------------------------------------------------------

TEST(FragmentXml, OfSeveralPayloadElementsTheLastStaysSelectedAndAllAreMarked)
{
    Fragment f;
    readXml(f, "<Fragment><DF_Params><Bandwidth>1</Bandwidth></DF_Params>"
               "<OstraInterfacePort><Port>3</Port></OstraInterfacePort></Fragment>");
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_TRUE(f.IsDF_ParamsSet());
    EXPECT_TRUE(f.IsOstraInterfacePortSet());
    EXPECT_EQ(std::as_const(f).GetDF_Params().GetBandwidth(), 1.0);
    EXPECT_EQ(xmlOf(f), "<Fragment><OstraInterfacePort><Port>3</Port></OstraInterfacePort></Fragment>");
}

TEST(FragmentXml, ASecondElementOfOnePayloadIsReadOnTopOfTheFirst)
{
    Fragment f;
    readXml(f, "<Fragment><MastershipState><State>MasterPresent</State>"
               "<MasterClientID>c1</MasterClientID></MastershipState>"
               "<MastershipState><State>RouterIsMaster</State></MastershipState></Fragment>");
    EXPECT_EQ(f.GetMastershipState().GetState(), MastershipState::RouterIsMaster);
    EXPECT_EQ(f.GetMastershipState().GetMasterClientID(), "c1");
}

TEST(FragmentXml, UnknownElementsAndAttributesAreIgnored)
{
    Fragment f;
    f.SetValidate(true);
    readXml(f, "<Fragment number=\"1\"><Choice>6</Choice><Other><DF_Params/></Other>"
               "<RouterVtServerPort x=\"y\"><Port>8</Port><Address>a</Address></RouterVtServerPort>"
               "<Later/></Fragment>");
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::RouterVtServerPort);
    EXPECT_EQ(flagsOf(f), onlySet<RouterVtServerPortPayload>());
    EXPECT_EQ(f.GetRouterVtServerPort().GetPort(), 8U);
}

TEST(FragmentXml, AnEmptyElementReadsNothing)
{
    Fragment f;
    readXml(f, "<Fragment/>");
    EXPECT_TRUE(f.IsInitialized());
    EXPECT_FALSE(f.AnyData());
    EXPECT_EQ(flagsOf(f), noneSet);
}

TEST(FragmentXml, ReadingKeepsWhatTheElementDoesNotHold)
{
    Fragment f = withEverythingSet();
    readXml(f, "<Fragment/>");
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::DF_Params);
}

TEST(FragmentXml, AFailedReadMovesTheChoiceButDoesNotMarkIt)
{
    Fragment f;
    f.SetDF_Params(withContent<DF_ParamsPayload>());
    f.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readXml(f, "<Fragment><MastershipState><MasterClientID>c1</MasterClientID><State>No</State>"
                       "</MastershipState></Fragment>");
        },
        "enum is not valid (classname=MastershipState,membername=m_state)");
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::MastershipState);
    EXPECT_FALSE(f.IsMastershipStateSet());
    EXPECT_TRUE(f.IsDF_ParamsSet());
    EXPECT_TRUE(std::as_const(f).GetMastershipState().IsMasterClientIDSet());

    expectThrow<InvalidXmlException>(
        [&] { readXml(f, "<Fragment><AcquireMastership><Success/></AcquireMastership></Fragment>"); },
        "Please set a value or a default for the boolean 'Success' in 'AcquireMastership'.");
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::AcquireMastership);
    EXPECT_FALSE(f.IsAcquireMastershipSet());

    expectThrow<InvalidXmlException>(
        [&] {
            readXml(f, "<Fragment><ReleaseMastership><Success></Success></ReleaseMastership></Fragment>");
        },
        "Please set a value or a default for the boolean 'Success' in 'ReleaseMastership'.");
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::ReleaseMastership);
    EXPECT_FALSE(f.IsReleaseMastershipSet());
}

TEST(FragmentXml, TheCheckOfAPayloadFailsBehindTheFragmentsStart)
{
    Fragment f;
    f.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    f.SetValidate(true);
    EXPECT_NO_THROW(f.Check());
    QString written;
    QXmlStreamWriter writer(&written);
    expectThrow<OutOfRangeException>([&] { f.GetXml(writer); },
                                     "MastershipState: Please set State properly.");
    EXPECT_TRUE(written.startsWith("<Fragment")) << written.toStdString();
    EXPECT_FALSE(written.contains("MastershipState"));
    EXPECT_FALSE(written.contains("</Fragment>"));
    EXPECT_THROW(frameOf(f), OutOfRangeException);
}

TEST(FragmentXml, APayloadThatIsNotSelectedIsNotChecked)
{
    Fragment f;
    f.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    f.SetAcquireMastership(withContent<AcquireMastershipPayload>());
    f.SetValidate(true);
    EXPECT_EQ(xmlOf(f),
              "<Fragment><AcquireMastership><Success>true</Success></AcquireMastership></Fragment>");
    EXPECT_EQ(frameOf(f), bytes("00000011 21BDA6E2 00000009 BF8A59C6 00000001 01"));
}

// --- binary ---------------------------------------------------------------------------------

TEST(FragmentBinary, OfSeveralEntriesTheLastStaysSelectedAndAllAreMarked)
{
    Fragment f;
    readFrame(f, bytes("00000020 BE2DFF74 00000000"
                       " F9E464D0 00000010 1F980517 00000008 0000000000001388"));
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_TRUE(f.IsDF_ParamsSet());
    EXPECT_TRUE(f.IsOstraInterfacePortSet());
    EXPECT_EQ(frameOf(f), bytes("00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388"));
}

TEST(FragmentBinary, AnEntryOfAnotherRecordIsSkipped)
{
    Fragment f;
    readFrame(f, bytes("00000024 E1D9E008 00000004 FFFFFFFF"
                       " 5D020EA0 00000010 1F980517 00000008 0000000000000007"));
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::RouterVtServerPort);
    EXPECT_EQ(flagsOf(f), onlySet<RouterVtServerPortPayload>());
    EXPECT_EQ(f.GetRouterVtServerPort().GetPort(), 7U);
}

TEST(FragmentBinary, AnEmptyFrameReadsNothing)
{
    Fragment f = withEverythingSet();
    readFrame(f, bytes("00000000"));
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::DF_Params);
    Fragment fresh;
    readFrame(fresh, bytes("00000000"));
    EXPECT_TRUE(fresh.IsInitialized());
    EXPECT_FALSE(fresh.AnyData());
}

TEST(FragmentBinary, AWrongLengthIsTheFragmentsError)
{
    const QString text =
        "Fragment::SetBinary(...): Length error occurred during processing of binary representation";
    const QByteArray entry = bytes("F9E464D0 00000010 1F980517 00000008 0000000000001388");
    for (const int length : {23, 25, -1}) {
        Fragment f;
        QDataStream stream(entry);
        expectThrow<BinaryParsingException>([&] { f.SetBinary(stream, length); }, text);
        EXPECT_EQ(f.IsOstraInterfacePortSet(), length > 0) << length;
    }
}

TEST(FragmentBinary, TheIdIsWrittenAsGiven)
{
    Fragment f;
    f.GetAcquireMastership();
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    EXPECT_TRUE(f.GetBinary(stream, -2, true));
    EXPECT_EQ(written, bytes("FFFFFFFE 00000008 21BDA6E2 00000000"));
}

// --- a derived class ------------------------------------------------------------------------

struct RenamedFragment : Fragment
{
    RenamedFragment() { SetObjectName("Renamed"); }
};

TEST(FragmentName, TheObjectNameStandsInMessagesAndElement)
{
    RenamedFragment f;
    expectThrow<OutOfRangeException>([&] { f.InitChoice(none); }, "Invalid enum value set in 'Renamed'.");
    QDataStream stream{QByteArray()};
    expectThrow<BinaryParsingException>(
        [&] { f.SetBinary(stream, 8); },
        "Renamed::SetBinary(...): Length error occurred during processing of binary representation");
    EXPECT_EQ(xmlOf(f), "<Renamed/>");
}

} // namespace
