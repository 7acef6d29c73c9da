// SPDX-License-Identifier: MIT
// Records written as XML: what is written, when, and in which order, with and without validation.

#include "XmlSupport.h"

namespace {

using namespace testing_support;

// --- writing ----------------------------------------------------------------------------------

TYPED_TEST_SUITE(XmlMappingOfEveryRecord, RecordsWithSamples, RecordName);

TYPED_TEST(XmlMappingOfEveryRecord, TheElementIsNamedAfterTheRecord)
{
    TypeParam record;
    EXPECT_EQ(record.GetObjectName(), elementName(record));
    EXPECT_EQ(xmlOf(record), emptyElement(record));
}

TYPED_TEST(XmlMappingOfEveryRecord, WritingGivesTheRecordItsData)
{
    TypeParam record;
    xmlOf(record);
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
}

TYPED_TEST(XmlMappingOfEveryRecord, IsWrittenAtTheWritersPositionWithoutStartingOrEndingADocument)
{
    TypeParam record;
    QString xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartElement(text("outer"));
    record.GetXml(writer);
    record.GetXml(writer);
    writer.writeTextElement(text("after"), text("x"));
    writer.writeEndElement();
    EXPECT_EQ(xml, text("<outer>") + emptyElement(record) + emptyElement(record)
                       + text("<after>x</after></outer>"));
}

TYPED_TEST(XmlMappingOfEveryRecord, ARenamedRecordWritesItsNewName)
{
    struct Renamed : TypeParam
    {
        Renamed() { this->SetObjectName(text("Other")); }
    };
    Renamed record;
    QString expected = emptyElement(static_cast<const TypeParam&>(record));
    expected.replace(elementName(static_cast<const TypeParam&>(record)), text("Other"));
    EXPECT_EQ(xmlOf(record), expected);
}

TYPED_TEST(XmlMappingOfEveryRecord, WithoutItsDataNothingIsWrittenUnderValidation)
{
    struct WithoutData : TypeParam
    {
        bool HasData() const override { return false; }
    };
    WithoutData record;
    fill(record);
    record.SetValidate(true);
    EXPECT_EQ(xmlOf(record), QString());
    record.SetValidate(false);
    EXPECT_NE(xmlOf(record), QString());
}

TYPED_TEST(XmlMappingOfEveryRecord, IsCheckedBeforeAnythingIsWritten)
{
    struct Checked : TypeParam
    {
        using TypeParam::Check;
        void Check(bool flag) const override
        {
            ++checks;
            EXPECT_FALSE(flag);
            EXPECT_EQ(*output, text("<outer>"));
            TypeParam::Check(flag);
        }
        const QString* output = nullptr;
        mutable int checks = 0;
    };
    Checked record;
    fill(record);
    record.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartElement(text("outer"));
    writer.writeCharacters(QString());
    record.output = &xml;
    record.GetXml(writer);
    EXPECT_GE(record.checks, 1);
    EXPECT_GT(xml.size(), 7);
}

TYPED_TEST(XmlMappingOfEveryRecord, AFailingCheckLetsNothingBeWritten)
{
    struct Refused : TypeParam
    {
        using TypeParam::Check;
        void Check(bool) const override { throw OutOfRangeException(text("refused")); }
    };
    Refused record;
    fill(record);
    QString xml;
    QXmlStreamWriter writer(&xml);
    record.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { record.GetXml(writer); }, text("refused"));
    EXPECT_EQ(xml, QString());
    record.SetValidate(false);
    EXPECT_NO_THROW(record.GetXml(writer));
    EXPECT_NE(xml, QString());
}

TEST(XmlMappingWriting, MembersStandInDeclarationOrderWhateverTheOrderOfSetting)
{
    PelVtConnectServer server;
    server.SetPort(5000);
    server.SetAddress(text("10.0.0.7"));
    EXPECT_EQ(xmlOf(server),
              text("<PelVtConnectServer><Address>10.0.0.7</Address><Port>5000</Port></PelVtConnectServer>"));
    MastershipState state;
    state.SetMasterClientID(text("c"));
    state.SetState(MastershipState::MasterPresent);
    EXPECT_EQ(xmlOf(state),
              text("<MastershipState><State>MasterPresent</State><MasterClientID>c</MasterClientID>"
                   "</MastershipState>"));
    PelLu300RouterMessage message;
    message.AppendFragment(withPort(1));
    message.SetMessageID(7);
    message.SetType(PelLu300RouterMessage::Event);
    EXPECT_EQ(
        xmlOf(message),
        text("<PelLu300RouterMessage><Type>Event</Type><MessageID>7</MessageID><Fragment><OstraInterfacePort>"
             "<Port>1</Port></OstraInterfacePort></Fragment></PelLu300RouterMessage>"));
}

TEST(XmlMappingWriting, OnlyMembersThatAreSetAreWritten)
{
    for (int members = 0; members < 16; ++members) {
        DF_Params record;
        record.SetDefaultFrequency(8.0);
        record.Reset();
        QString expected = members == 0 ? text("<DF_Params/>") : text("<DF_Params>");
        if (members & 8)
            record.SetPanoramaSpan(4.0);
        if (members & 4)
            record.SetBandwidth(3.0);
        if (members & 2)
            record.SetDemodulationFrequency(2.0);
        if (members & 1)
            record.SetFrequency(1.0);
        if (members & 1)
            expected += text("<Frequency>1.00</Frequency>");
        if (members & 2)
            expected += text("<DemodulationFrequency>2.00</DemodulationFrequency>");
        if (members & 4)
            expected += text("<Bandwidth>3.00</Bandwidth>");
        if (members & 8)
            expected += text("<PanoramaSpan>4.00</PanoramaSpan>");
        if (members != 0)
            expected += text("</DF_Params>");
        EXPECT_EQ(xmlOf(record), expected);
    }
}

TEST(XmlMappingWriting, AMemberThatWasResetIsLeftOut)
{
    PelVtConnectServer server;
    server.SetAddress(text("a"));
    server.SetPort(1);
    server.ResetPort();
    EXPECT_EQ(xmlOf(server), text("<PelVtConnectServer><Address>a</Address></PelVtConnectServer>"));
    server.ResetAddress();
    EXPECT_EQ(xmlOf(server), text("<PelVtConnectServer/>"));
    MastershipState state;
    state.SetState(MastershipState::MasterPresent);
    state.ResetState();
    EXPECT_EQ(xmlOf(state), text("<MastershipState/>"));
    AcquireMastership acquire;
    acquire.SetSuccess(true);
    acquire.ResetSuccess();
    EXPECT_EQ(xmlOf(acquire), text("<AcquireMastership/>"));
}

TEST(XmlMappingWriting, TheTypeOfAMessageIsWrittenEvenWhenItIsNotSet)
{
    PelLu300RouterMessage message;
    message.SetMessageID(7);
    EXPECT_EQ(xmlOf(message),
              text("<PelLu300RouterMessage><Type></Type><MessageID>7</MessageID></PelLu300RouterMessage>"));
    message.SetDefaultType(PelLu300RouterMessage::Reply);
    message.Reset();
    EXPECT_FALSE(message.IsTypeSet());
    EXPECT_EQ(xmlOf(message), text("<PelLu300RouterMessage><Type>Reply</Type></PelLu300RouterMessage>"));
}

TEST(XmlMappingWriting, EachPayloadIsWrittenInsideItsFragment)
{
    Fragment fragment;
    EXPECT_EQ(xmlOf(fragment), text("<Fragment/>"));
    fragment.GetMastershipState().SetState(MastershipState::MasterPresent);
    EXPECT_EQ(xmlOf(fragment),
              text("<Fragment><MastershipState><State>MasterPresent</State></MastershipState>"
                   "</Fragment>"));
    fragment.GetAcquireMastership().SetSuccess(true);
    EXPECT_EQ(xmlOf(fragment), text("<Fragment><AcquireMastership><Success>true</Success></AcquireMastership>"
                                    "</Fragment>"));
    fragment.GetReleaseMastership().SetSuccess(false);
    EXPECT_EQ(xmlOf(fragment),
              text("<Fragment><ReleaseMastership><Success>false</Success></ReleaseMastership>"
                   "</Fragment>"));
    fragment.GetOstraInterfacePort().SetPort(1);
    EXPECT_EQ(xmlOf(fragment),
              text("<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"));
    fragment.GetPelVtConnectServer().SetAddress(text("a"));
    EXPECT_EQ(xmlOf(fragment), text("<Fragment><PelVtConnectServer><Address>a</Address></PelVtConnectServer>"
                                    "</Fragment>"));
    fragment.GetRouterVtServerPort().SetPort(2);
    EXPECT_EQ(xmlOf(fragment),
              text("<Fragment><RouterVtServerPort><Port>2</Port></RouterVtServerPort></Fragment>"));
    fragment.GetDF_Params();
    EXPECT_EQ(xmlOf(fragment), text("<Fragment><DF_Params/></Fragment>"));
}

TEST(XmlMappingWriting, AFragmentWithoutChoiceOrWithItsPayloadResetWritesNoPayload)
{
    Fragment fragment = withPort(1);
    fragment.ResetOstraInterfacePort();
    ASSERT_EQ(fragment.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_EQ(xmlOf(fragment), text("<Fragment/>"));
    fragment.SetValidate(true);
    EXPECT_EQ(xmlOf(fragment), text("<Fragment/>"));
    fragment.SetValidate(false);
    fragment = withPort(1);
    fragment.ResetChoiceFragment();
    ASSERT_TRUE(fragment.IsOstraInterfacePortSet());
    EXPECT_EQ(xmlOf(fragment), text("<Fragment/>"));
}

TEST(XmlMappingWriting, AListStandsWithoutWrapperInItsOrder)
{
    PelLu300RouterMessage message = messageOfType(PelLu300RouterMessage::Reply);
    message.SetMessageID(7);
    for (const unsigned int port : {3U, 1U, 2U})
        message.AppendFragment(withPort(port));
    EXPECT_EQ(xmlOf(message),
              text("<PelLu300RouterMessage><Type>Reply</Type><MessageID>7</MessageID>"
                   "<Fragment><OstraInterfacePort><Port>3</Port></OstraInterfacePort></Fragment>"
                   "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
                   "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
                   "</PelLu300RouterMessage>"));
}

TEST(XmlMappingWriting, AListGoesByItsItemsAndNotByItsFlag)
{
    PelLu300RouterMessage message = messageOfType(PelLu300RouterMessage::Reply);
    QVector<Fragment>& list = message.GetFragment();
    ASSERT_TRUE(message.IsFragmentSet());
    EXPECT_EQ(xmlOf(message), text("<PelLu300RouterMessage><Type>Reply</Type></PelLu300RouterMessage>"));
    message.ResetFragment();
    list.append(withPort(4));
    ASSERT_FALSE(message.IsFragmentSet());
    EXPECT_EQ(xmlOf(message),
              text("<PelLu300RouterMessage><Type>Reply</Type><Fragment><OstraInterfacePort><Port>4</Port>"
                   "</OstraInterfacePort></Fragment></PelLu300RouterMessage>"));
}

TEST(XmlMappingWriting, TheMessageOfADocumentIsWrittenOnlyWhileItIsSet)
{
    PelLu300RouterInterfaceXml document;
    EXPECT_EQ(xmlOf(document), text("<PelLu300RouterInterfaceXml/>"));
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Event);
    message.SetMessageID(1);
    EXPECT_EQ(
        xmlOf(document),
        text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type><MessageID>1</MessageID>"
             "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
    document.ResetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Event);
    EXPECT_EQ(xmlOf(document), text("<PelLu300RouterInterfaceXml/>"));
}

TEST(XmlMappingWriting, LeavesTheRecordAsItWas)
{
    PelLu300RouterMessage message = messageOfType(PelLu300RouterMessage::Reply);
    message.AppendFragment(withPort(4));
    const PelLu300RouterMessage before(message);
    EXPECT_EQ(xmlOf(message), xmlOf(message));
    EXPECT_TRUE(message == before);
    EXPECT_FALSE(message.IsMessageIDSet());
}

// --- writing under validation -----------------------------------------------------------------

TEST(XmlMappingValidation, RecordsThatAlwaysHoldTheirDataAreWrittenEvenWhenEmpty)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    EXPECT_EQ(xmlOf(document), text("<PelLu300RouterInterfaceXml/>"));
    DF_Params params;
    params.SetValidate(true);
    EXPECT_EQ(xmlOf(params), text("<DF_Params/>"));
    MastershipState state;
    state.SetValidate(true);
    EXPECT_EQ(xmlOf(state), text("<MastershipState/>"));
    PelVtConnectServer server;
    server.SetValidate(true);
    EXPECT_EQ(xmlOf(server), text("<PelVtConnectServer/>"));
}

TEST(XmlMappingValidation, AFragmentWithoutChoiceVanishes)
{
    Fragment fragment;
    fragment.SetValidate(true);
    EXPECT_EQ(xmlOf(fragment), QString());
    fragment.GetDF_Params();
    EXPECT_EQ(xmlOf(fragment), text("<Fragment><DF_Params/></Fragment>"));
}

TEST(XmlMappingValidation, AListItemWithoutDataVanishesFromItsMessage)
{
    PelLu300RouterMessage message = messageOfType(PelLu300RouterMessage::Event);
    message.AppendFragment(Fragment());
    message.AppendFragment(withPort(1));
    message.AppendFragment(Fragment());
    message.SetValidate(true);
    EXPECT_EQ(xmlOf(message),
              text("<PelLu300RouterMessage><Type>Event</Type><Fragment><OstraInterfacePort><Port>1"
                   "</Port></OstraInterfacePort></Fragment></PelLu300RouterMessage>"));
    EXPECT_EQ(message.GetFragment().size(), 3);
}

TEST(XmlMappingValidation, AMessageWithoutTypeThrowsAndNothingIsWritten)
{
    PelLu300RouterMessage message;
    message.SetMessageID(7);
    message.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    expectThrow<OutOfRangeException>([&] { message.GetXml(writer); },
                                     text("PelLu300RouterMessage: Please set Type properly."));
    EXPECT_EQ(xml, QString());
}

TEST(XmlMappingValidation, ADocumentIsCheckedAsAWholeBeforeItIsWritten)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().SetMessageID(7);
    document.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    expectThrow<OutOfRangeException>([&] { document.GetXml(writer); },
                                     text("PelLu300RouterMessage: Please set Type properly."));
    EXPECT_EQ(xml, QString());
}

TEST(XmlMappingValidation, AFailingPayloadLeavesTheElementsAroundItOpen)
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Event);
    message.AppendFragment(withPort(1));
    Fragment fragment;
    fragment.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    message.AppendFragment(fragment);
    message.AppendFragment(withPort(2));
    document.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    expectThrow<OutOfRangeException>([&] { document.GetXml(writer); },
                                     text("MastershipState: Please set State properly."));
    EXPECT_TRUE(
        xml.startsWith(text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type><Fragment>"
                            "<OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment><Fragment")));
    // Three elements are open: the document's, the message's and the second fragment's.
    writer.writeEndElement();
    writer.writeEndElement();
    writer.writeEndElement();
    writer.writeTextElement(text("behind"), text("x"));
    EXPECT_EQ(xml, text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type><Fragment>"
                        "<OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment><Fragment/>"
                        "</PelLu300RouterMessage></PelLu300RouterInterfaceXml><behind>x</behind>"));
}

TEST(XmlMappingValidation, ThePayloadThatFailsHasWrittenNothingItself)
{
    Fragment fragment;
    fragment.GetPelVtConnectServer().SetAddress(QString());
    fragment.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    expectThrow<OutOfRangeException>([&] { fragment.GetXml(writer); },
                                     text("PelVtConnectServer: Please set Address properly."));
    writer.writeEndElement();
    EXPECT_EQ(xml, text("<Fragment/>"));
}

TEST(XmlMappingValidation, WithoutItInvalidContentIsWrittenUnchecked)
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    Fragment fragment;
    fragment.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    fragment.GetMastershipState().SetMasterClientID(QString());
    message.AppendFragment(fragment);
    message.AppendFragment(Fragment());
    EXPECT_EQ(xmlOf(document),
              text("<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type></"
                   "Type><Fragment><MastershipState><State>"
                   "</State><MasterClientID></MasterClientID></MastershipState></Fragment><Fragment/>"
                   "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"));
}

} // namespace
