// SPDX-License-Identifier: MIT
// The document: the record that holds one message and is loaded and saved as a whole.

#include "DocumentParts.h"
#include "TestSupport.h"

#include <memory>
#include <utility>

namespace {

using namespace testing_support;
using Document = PelLu300RouterInterfaceXml;
using Message = PelLu300RouterMessage;
using Logger = MODELKIT::Logger;

const char* const typeMissing = "PelLu300RouterMessage: Please set Type properly.";

Message event(unsigned int number)
{
    Message message;
    message.SetType(Message::Event);
    message.SetMessageID(number);
    return message;
}

const Message& messageOf(const Document& document) { return document.GetPelLu300RouterMessage(); }

const char* const eventXml = "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type>"
                             "<MessageID>1</MessageID></PelLu300RouterMessage></PelLu300RouterInterfaceXml>";

QByteArray eventFrame()
{
    return bytes("00000029 9B1A7AD8 00000021"
                 " E1D9E008 00000009 00000005 4576656E74"
                 " EF193DE9 00000008 0000000000000001");
}

// --- a new document -------------------------------------------------------------------------

TEST(Document, ANewOneHoldsNothing)
{
    const Document d;
    EXPECT_FALSE(d.IsInitialized());
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(d.AnyData());
    EXPECT_FALSE(d.IsInitialized());
    EXPECT_EQ(d.GetObjectName(), "PelLu300RouterInterfaceXml");
    EXPECT_EQ(Document::GetId(), -2058139238);
}

TEST(Document, CountsAsHoldingDataAlsoWhenEmpty)
{
    Document d;
    EXPECT_TRUE(d.HasData());
    d.GetPelLu300RouterMessage();
    EXPECT_TRUE(d.HasData());
    d.Reset();
    EXPECT_TRUE(d.HasData());
}

TEST(Document, ANewOnePassesItsCheck)
{
    const Document d;
    EXPECT_NO_THROW(d.Check());
    EXPECT_NO_THROW(d.Check(true));
    d.SetValidate(true);
    EXPECT_NO_THROW(d.Check());
}

TEST(Document, ANewOneIsWrittenEmptyAndReadBackUnset)
{
    Document d;
    EXPECT_EQ(xmlOf(d), "<PelLu300RouterInterfaceXml/>");
    EXPECT_EQ(frameOf(d), bytes("00000000"));
    Document read;
    readXml(read, "<PelLu300RouterInterfaceXml/>");
    EXPECT_TRUE(read.IsInitialized());
    EXPECT_FALSE(read.IsPelLu300RouterMessageSet());
    readFrame(read, bytes("00000000"));
    EXPECT_FALSE(read.IsPelLu300RouterMessageSet());
}

TEST(Document, ANewOneIsWrittenUnderValidationToo)
{
    const Document d;
    d.SetValidate(true);
    EXPECT_EQ(xmlOf(d), "<PelLu300RouterInterfaceXml/>");
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    EXPECT_TRUE(d.GetBinary(stream, 2, true));
    EXPECT_EQ(written, bytes("00000002 00000000"));
}

// --- the message ----------------------------------------------------------------------------

TEST(DocumentMessage, TheModifiableGetterCountsAsSettingIt)
{
    Document d;
    EXPECT_FALSE(d.GetPelLu300RouterMessage().AnyData());
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(d.AnyData());
    EXPECT_TRUE(d.IsInitialized());
}

TEST(DocumentMessage, TheModifiableGetterGivesAPlaceForEditing)
{
    Document d;
    d.GetPelLu300RouterMessage().SetMessageID(3);
    EXPECT_EQ(messageOf(d).GetMessageID(), 3U);
    EXPECT_EQ(&d.GetPelLu300RouterMessage(), &messageOf(d));
    EXPECT_TRUE(d.AnyData());
}

TEST(DocumentMessage, TheConstGetterLeavesTheFlag)
{
    const Document d;
    EXPECT_FALSE(d.GetPelLu300RouterMessage().AnyData());
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    EXPECT_TRUE(d.IsInitialized());
}

TEST(DocumentMessage, SetterStoresAndMarks)
{
    Document d;
    d.SetPelLu300RouterMessage(event(1));
    EXPECT_TRUE(messageOf(d) == event(1));
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
    d.SetPelLu300RouterMessage(Message());
    EXPECT_FALSE(messageOf(d).AnyData());
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
}

TEST(DocumentMessage, SetterMakesItIndependentOfItsSource)
{
    Message source = event(1);
    source.AppendFragment(withPort(1));
    Document d;
    d.SetPelLu300RouterMessage(source);
    source.SetMessageID(2);
    source.GetFragment()[0].GetOstraInterfacePort().SetPort(2);
    EXPECT_EQ(messageOf(d).GetMessageID(), 1U);
    EXPECT_EQ(messageOf(d).GetFragment().at(0).GetOstraInterfacePort().GetPort(), 1U);
    d.GetPelLu300RouterMessage().GetFragment().clear();
    EXPECT_EQ(source.GetFragment().size(), 1);
}

TEST(DocumentMessage, SetterChecksNothing)
{
    Document d;
    d.SetValidate(true);
    EXPECT_NO_THROW(d.SetPelLu300RouterMessage(Message()));
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
    Message invalid;
    invalid.SetType(static_cast<Message::Type>(3));
    EXPECT_NO_THROW(d.SetPelLu300RouterMessage(invalid));
    EXPECT_EQ(messageOf(d).GetType(), 3);
}

TEST(DocumentMessage, SetterKeepsItsValidationFlagAndLogger)
{
    const auto logger = std::make_shared<Logger>();
    Document d;
    d.SetValidate(true);
    d.SetLogger(logger);
    Message source = event(1);
    source.SetLogger(std::make_shared<Logger>());
    d.SetPelLu300RouterMessage(source);
    EXPECT_TRUE(messageOf(d).GetValidate());
    EXPECT_EQ(messageOf(d).GetLogger(), logger);
    EXPECT_FALSE(source.GetValidate());
    EXPECT_NE(source.GetLogger(), logger);

    Document off;
    source.SetValidate(true);
    off.SetPelLu300RouterMessage(source);
    EXPECT_FALSE(messageOf(off).GetValidate());
    EXPECT_EQ(messageOf(off).GetLogger(), nullptr);
}

TEST(DocumentMessage, SetterTakesTheDocumentsOwnMessages)
{
    Document d;
    d.SetPelLu300RouterMessage(event(1));
    d.SetPelLu300RouterMessage(messageOf(d));
    EXPECT_TRUE(messageOf(d) == event(1));
    d.SetDefaultPelLu300RouterMessage(messageOf(d));
    EXPECT_TRUE(d.GetDefaultPelLu300RouterMessage() == event(1));
    d.SetDefaultPelLu300RouterMessage(d.GetDefaultPelLu300RouterMessage());
    d.SetPelLu300RouterMessage(event(2));
    d.SetPelLu300RouterMessage(d.GetDefaultPelLu300RouterMessage());
    EXPECT_TRUE(messageOf(d) == event(1));
    const Message& message = messageOf(d);
    Document sharing;
    sharing = d;
    d.SetPelLu300RouterMessage(message);
    EXPECT_TRUE(messageOf(d) == event(1));
    EXPECT_TRUE(messageOf(sharing) == event(1));
}

TEST(DocumentMessage, EveryMessageIsValid)
{
    Document d;
    d.SetValidate(true);
    EXPECT_TRUE(d.IsValidPelLu300RouterMessage(Message()));
    EXPECT_TRUE(d.IsValidPelLu300RouterMessage(event(1)));
}

TEST(DocumentMessage, AnyDataGoesByItsContentAndNotByItsFlag)
{
    Document d;
    Message& message = d.GetPelLu300RouterMessage();
    d.ResetPelLu300RouterMessage();
    message.SetMessageID(0);
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    EXPECT_TRUE(d.AnyData());
}

TEST(DocumentMessage, IsNotWrittenComparedOrCheckedWhileItsFlagIsOff)
{
    Document d;
    Message& message = d.GetPelLu300RouterMessage();
    d.Reset();
    message.SetMessageID(1);
    ASSERT_FALSE(d.IsPelLu300RouterMessageSet());
    EXPECT_EQ(xmlOf(d), "<PelLu300RouterInterfaceXml/>");
    EXPECT_EQ(frameOf(d), bytes("00000000"));
    EXPECT_TRUE(d == Document());
    EXPECT_NO_THROW(d.Check());
    d.SetValidate(true);
    EXPECT_EQ(xmlOf(d), "<PelLu300RouterInterfaceXml/>");
}

TEST(DocumentMessage, TheReferenceStaysValidAcrossResetsSettersAndReading)
{
    Document d;
    Message& message = d.GetPelLu300RouterMessage();
    message.SetMessageID(9);
    d.ResetPelLu300RouterMessage();
    EXPECT_FALSE(message.AnyData());
    d.SetPelLu300RouterMessage(event(2));
    EXPECT_EQ(message.GetMessageID(), 2U);
    d.SetDefaultPelLu300RouterMessage(event(5));
    d.Reset();
    EXPECT_EQ(message.GetMessageID(), 5U);
    readXml(d, eventXml);
    EXPECT_EQ(message.GetMessageID(), 1U);
    d.ResetToDefault();
    EXPECT_EQ(message.GetMessageID(), 5U);
    readFrame(d, eventFrame());
    EXPECT_EQ(message.GetMessageID(), 1U);
    d.SetValidate(true);
    d.SetLogger(std::make_shared<Logger>());
    d.Check();
    message.SetMessageID(6);
    EXPECT_EQ(messageOf(d).GetMessageID(), 6U);
    EXPECT_EQ(&message, &messageOf(d));
}

// --- defaults and resets --------------------------------------------------------------------

TEST(DocumentDefaults, TheDefaultIsAtFirstAnEmptyMessage)
{
    const Document d;
    EXPECT_FALSE(d.GetDefaultPelLu300RouterMessage().AnyData());
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(d.AnyData());
}

TEST(DocumentDefaults, SettingTheDefaultTouchesNeitherMessageNorFlag)
{
    Document d;
    Message source = event(5);
    d.SetDefaultPelLu300RouterMessage(source);
    source.SetMessageID(6);
    EXPECT_TRUE(d.GetDefaultPelLu300RouterMessage() == event(5));
    EXPECT_FALSE(messageOf(d).AnyData());
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    d.SetPelLu300RouterMessage(event(1));
    d.SetDefaultPelLu300RouterMessage(event(7));
    EXPECT_TRUE(messageOf(d) == event(1));
}

TEST(DocumentDefaults, ResetsMakeTheMessageACopyOfTheDefaultAndClearItsFlag)
{
    Document d;
    d.SetDefaultPelLu300RouterMessage(event(5));
    d.SetPelLu300RouterMessage(event(1));
    d.ResetPelLu300RouterMessage();
    EXPECT_TRUE(messageOf(d) == event(5));
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    d.SetPelLu300RouterMessage(event(1));
    d.Reset();
    EXPECT_TRUE(messageOf(d) == event(5));
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    EXPECT_TRUE(d.AnyData());
    d.GetPelLu300RouterMessage().SetMessageID(8);
    EXPECT_TRUE(d.GetDefaultPelLu300RouterMessage() == event(5));
}

TEST(DocumentDefaults, ResetsWithoutADefaultEmptyTheMessage)
{
    Document d;
    d.SetPelLu300RouterMessage(event(1));
    d.ResetPelLu300RouterMessage();
    EXPECT_FALSE(messageOf(d).AnyData());
    d.SetPelLu300RouterMessage(event(1));
    d.Reset();
    EXPECT_FALSE(d.AnyData());
}

TEST(DocumentDefaults, ResetsOfANewOneCreateNoDataBlock)
{
    Document d;
    d.Reset();
    d.ResetPelLu300RouterMessage();
    EXPECT_FALSE(d.IsInitialized());
}

TEST(DocumentDefaults, ResetToDefaultSetsTheDefaultMessage)
{
    Document d;
    d.SetPelLu300RouterMessage(event(1));
    d.SetDefaultPelLu300RouterMessage(event(5));
    d.ResetToDefault();
    EXPECT_TRUE(messageOf(d) == event(5));
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
}

TEST(DocumentDefaults, ResetToDefaultWithoutADefaultLeavesTheMessageUnset)
{
    Document d;
    d.GetDefaultPelLu300RouterMessage();
    d.SetPelLu300RouterMessage(event(1));
    d.ResetToDefault();
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(d.AnyData());
    EXPECT_TRUE(d.IsInitialized());
}

TEST(DocumentDefaults, ResetToDefaultDoesNotApplyTheDefaultsInsideTheMessage)
{
    Message message;
    message.SetDefaultMessageID(4);
    Document d;
    d.SetDefaultPelLu300RouterMessage(message);
    d.ResetToDefault();
    EXPECT_FALSE(messageOf(d).IsMessageIDSet());
    EXPECT_EQ(messageOf(d).GetDefaultMessageID(), 4U);
}

TEST(DocumentDefaults, ResetsKeepTheMessagesValidationFlagAndLogger)
{
    const auto logger = std::make_shared<Logger>();
    Document d;
    d.SetValidate(true);
    d.SetLogger(logger);
    d.SetDefaultPelLu300RouterMessage(event(5));
    d.SetPelLu300RouterMessage(event(1));
    d.Reset();
    EXPECT_TRUE(messageOf(d).GetValidate());
    EXPECT_EQ(messageOf(d).GetLogger(), logger);
    d.ResetToDefault();
    EXPECT_TRUE(messageOf(d).GetValidate());
    EXPECT_EQ(messageOf(d).GetLogger(), logger);
}

// --- comparing ------------------------------------------------------------------------------

TEST(DocumentEquality, GoesByTheMessageWhenItIsSetInBoth)
{
    Document a;
    Document b;
    EXPECT_TRUE(a == b);
    a.SetPelLu300RouterMessage(event(1));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(b != a);
    b.SetPelLu300RouterMessage(event(1));
    EXPECT_TRUE(a == b);
    b.GetPelLu300RouterMessage().SetMessageID(2);
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
}

TEST(DocumentEquality, AnEmptyMessageThatIsSetDiffersFromNone)
{
    Document a;
    a.GetPelLu300RouterMessage();
    EXPECT_FALSE(a == Document());
    EXPECT_FALSE(Document() == a);
    a.Reset();
    EXPECT_TRUE(a == Document());
}

TEST(DocumentEquality, DefaultsAndSettingsDoNotCount)
{
    Document a;
    Document b;
    a.SetPelLu300RouterMessage(event(1));
    b.SetPelLu300RouterMessage(event(1));
    a.SetDefaultPelLu300RouterMessage(event(5));
    a.SetValidate(true);
    a.SetLogger(std::make_shared<Logger>());
    EXPECT_TRUE(a == b);
}

// --- copying and sharing --------------------------------------------------------------------

TEST(DocumentCopying, ACopyIsIndependentDownToThePayloads)
{
    Document d;
    d.SetPelLu300RouterMessage(event(1));
    d.GetPelLu300RouterMessage().AppendFragment(withPort(1));
    Message& message = d.GetPelLu300RouterMessage();
    Document copy(d);
    message.GetFragment()[0].GetOstraInterfacePort().SetPort(2);
    message.SetMessageID(2);
    EXPECT_EQ(messageOf(copy).GetMessageID(), 1U);
    EXPECT_EQ(messageOf(copy).GetFragment().at(0).GetOstraInterfacePort().GetPort(), 1U);
    copy.GetPelLu300RouterMessage().Reset();
    EXPECT_EQ(messageOf(d).GetMessageID(), 2U);
    EXPECT_EQ(messageOf(d).GetFragment().size(), 1);
}

TEST(DocumentCopying, AssignedDocumentsAreIndependentOnceTouched)
{
    Document d;
    d.SetPelLu300RouterMessage(event(1));
    d.SetDefaultPelLu300RouterMessage(event(5));
    Document assigned;
    assigned = d;
    assigned.GetPelLu300RouterMessage().SetMessageID(2);
    EXPECT_TRUE(messageOf(d) == event(1));
    assigned = d;
    d.Reset();
    EXPECT_TRUE(messageOf(assigned) == event(1));
    EXPECT_TRUE(assigned.IsPelLu300RouterMessageSet());
    assigned.SetDefaultPelLu300RouterMessage(event(6));
    EXPECT_TRUE(d.GetDefaultPelLu300RouterMessage() == event(5));
}

TEST(DocumentCopying, ACopyKnowsThatTheDefaultWasSet)
{
    Document d;
    d.SetDefaultPelLu300RouterMessage(event(5));
    Document copy(d);
    copy.ResetToDefault();
    EXPECT_TRUE(copy.IsPelLu300RouterMessageSet());
    EXPECT_TRUE(messageOf(copy) == event(5));
}

TEST(DocumentCopying, AfterADetachBothHoldersMessagesKeepFlagAndLogger)
{
    const auto logger = std::make_shared<Logger>();
    for (const bool sourceTouchedFirst : {true, false}) {
        Document source;
        source.SetPelLu300RouterMessage(event(1));
        source.GetPelLu300RouterMessage().AppendFragment(withPort(1));
        source.SetValidate(true);
        source.SetLogger(logger);
        Document holder;
        holder = source;
        if (sourceTouchedFirst)
            source.AnyData();
        else
            holder.AnyData();
        for (const Document* document : {&source, &holder}) {
            EXPECT_TRUE(document->IsPelLu300RouterMessageSet());
            const Message& message = messageOf(*document);
            EXPECT_EQ(message.GetMessageID(), 1U);
            EXPECT_TRUE(message.GetValidate());
            EXPECT_EQ(message.GetLogger(), logger);
            const Fragment& item = message.GetFragment().at(0);
            EXPECT_TRUE(item.GetValidate());
            EXPECT_EQ(item.GetLogger(), logger);
            EXPECT_EQ(item.GetOstraInterfacePort().GetPort(), 1U);
            EXPECT_TRUE(item.GetOstraInterfacePort().GetValidate());
            EXPECT_EQ(item.GetOstraInterfacePort().GetLogger(), logger);
        }
    }
}

TEST(DocumentCopying, SettingsOfASharedDocumentDoNotReachTheOtherHolder)
{
    Document d;
    d.GetPelLu300RouterMessage().AppendFragment(withPort(1));
    Document holder;
    holder = d;
    holder.SetValidate(true);
    holder.SetLogger(std::make_shared<Logger>());
    EXPECT_TRUE(messageOf(holder).GetFragment().at(0).GetValidate());
    EXPECT_FALSE(messageOf(d).GetValidate());
    EXPECT_FALSE(messageOf(d).GetFragment().at(0).GetValidate());
    EXPECT_EQ(messageOf(d).GetLogger(), nullptr);
    EXPECT_EQ(messageOf(d).GetFragment().at(0).GetLogger(), nullptr);
}

// --- checking -------------------------------------------------------------------------------

TEST(DocumentCheck, IsThatOfAMessageThatIsSet)
{
    Document d;
    d.GetPelLu300RouterMessage().SetMessageID(1);
    for (const bool validate : {false, true}) {
        d.SetValidate(validate);
        expectThrow<OutOfRangeException>([&] { d.Check(); }, typeMissing);
        expectThrow<OutOfRangeException>([&] { d.Check(true); }, typeMissing);
    }
    d.GetPelLu300RouterMessage().SetType(Message::Event);
    EXPECT_NO_THROW(d.Check());
}

TEST(DocumentCheck, ReachesTheItemsOfTheMessage)
{
    Document d;
    d.SetPelLu300RouterMessage(event(1));
    d.GetPelLu300RouterMessage().AppendFragment(Fragment());
    d.Check();
    EXPECT_TRUE(messageOf(d).GetFragment().at(0).IsInitialized());
}

// --- XML ------------------------------------------------------------------------------------

TEST(DocumentXml, WritesTheMessageInside)
{
    Document d;
    d.SetPelLu300RouterMessage(event(1));
    EXPECT_EQ(xmlOf(d), eventXml);
    d.SetValidate(true);
    EXPECT_EQ(xmlOf(d), eventXml);
}

TEST(DocumentXml, WritesAnEmptyMessageThatIsSetWithoutValidation)
{
    Document d;
    d.GetPelLu300RouterMessage();
    EXPECT_EQ(xmlOf(d), "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type></Type>"
                        "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
}

TEST(DocumentXml, NeitherStartsNorEndsTheWritersDocument)
{
    const Document d;
    QString written;
    QXmlStreamWriter writer(&written);
    writer.writeStartElement("Outer");
    d.GetXml(writer);
    d.GetXml(writer);
    writer.writeEndElement();
    EXPECT_EQ(written, "<Outer><PelLu300RouterInterfaceXml/><PelLu300RouterInterfaceXml/></Outer>");
}

TEST(DocumentXml, AFailingCheckLetsNothingBeWritten)
{
    Document d;
    d.GetPelLu300RouterMessage().SetMessageID(1);
    d.SetValidate(true);
    QString written;
    QXmlStreamWriter writer(&written);
    expectThrow<OutOfRangeException>([&] { d.GetXml(writer); }, typeMissing);
    EXPECT_EQ(written, "");
}

TEST(DocumentXml, ReadsTheMessageAndMarksIt)
{
    for (const bool validate : {false, true}) {
        Document d;
        d.SetValidate(validate);
        readXml(d, eventXml);
        EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
        EXPECT_TRUE(messageOf(d) == event(1));
    }
}

TEST(DocumentXml, AnEmptyMessageElementMarksIt)
{
    Document d;
    d.SetValidate(true);
    readXml(d, "<PelLu300RouterInterfaceXml><PelLu300RouterMessage/></PelLu300RouterInterfaceXml>");
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(d.AnyData());
}

TEST(DocumentXml, ASecondMessageElementOverwritesMembersAndAppendsItems)
{
    Document d;
    readXml(d, "<PelLu300RouterInterfaceXml>"
               "<PelLu300RouterMessage><Type>Request</Type><MessageID>1</MessageID>"
               "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
               "</PelLu300RouterMessage>"
               "<PelLu300RouterMessage><Type>Reply</Type>"
               "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
               "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    EXPECT_EQ(xmlOf(d), "<PelLu300RouterInterfaceXml>"
                        "<PelLu300RouterMessage><Type>Reply</Type><MessageID>1</MessageID>"
                        "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
                        "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
                        "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
}

TEST(DocumentXml, ReadingTwiceMerges)
{
    Document d;
    d.GetPelLu300RouterMessage().AppendFragment(withPort(1));
    readXml(d, eventXml);
    readXml(d, "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><MessageID>2</MessageID>"
               "<Fragment><DF_Params/></Fragment></PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    EXPECT_EQ(messageOf(d).GetType(), Message::Event);
    EXPECT_EQ(messageOf(d).GetMessageID(), 2U);
    EXPECT_EQ(messageOf(d).GetFragment().size(), 2);
}

TEST(DocumentXml, OtherElementsAtTheTopAreIgnored)
{
    Document d;
    d.SetValidate(true);
    readXml(d, "<PelLu300RouterInterfaceXml><Message><Type>Event</Type></Message>"
               "<pellu300routermessage/><Type>Event</Type><Fragment/></PelLu300RouterInterfaceXml>");
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(d.AnyData());
}

TEST(DocumentXml, AMessageBehindAnIgnoredElementIsRead)
{
    Document d;
    readXml(d, "<PelLu300RouterInterfaceXml><Message>text</Message><PelLu300RouterMessage>"
               "<MessageID>4</MessageID></PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    EXPECT_EQ(messageOf(d).GetMessageID(), 4U);
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
}

TEST(DocumentXml, AttributesOfTheRootAndOfTheMessageAreIgnored)
{
    Document d;
    readXml(d, "<PelLu300RouterInterfaceXml version=\"2\"><PelLu300RouterMessage Type=\"Reply\">"
               "<MessageID>4</MessageID></PelLu300RouterMessage></PelLu300RouterInterfaceXml>");
    EXPECT_EQ(messageOf(d).GetMessageID(), 4U);
    EXPECT_FALSE(messageOf(d).IsTypeSet());
}

TEST(DocumentXml, ReadingWithoutAMessageKeepsTheOneItHolds)
{
    Document d;
    d.SetPelLu300RouterMessage(event(1));
    readXml(d, "<PelLu300RouterInterfaceXml/>");
    EXPECT_TRUE(messageOf(d) == event(1));
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
}

// --- failures while reading -----------------------------------------------------------------

TEST(DocumentFailure, AnInvalidTypePassesAndLeavesTheMessageUnset)
{
    Document d;
    d.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { readXml(d, inMessage(text("<MessageID>3</MessageID><Type>Question</Type>"))); },
        "enum is not valid (classname=PelLu300RouterMessage,membername=m_type)");
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    EXPECT_EQ(messageOf(d).GetMessageID(), 3U);
    EXPECT_TRUE(d.AnyData());
}

TEST(DocumentFailure, AnInvalidStatePassesAndLeavesTheMessageUnset)
{
    Document d;
    d.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readXml(d, inMessage(
                           text("<Type>Event</Type><Fragment><DF_Params/></Fragment>"
                                "<Fragment><MastershipState><State>3</State></MastershipState></Fragment>")));
        },
        "enum is not valid (classname=MastershipState,membername=m_state)");
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    EXPECT_EQ(messageOf(d).GetType(), Message::Event);
    EXPECT_EQ(messageOf(d).GetFragment().size(), 1);
}

TEST(DocumentFailure, AnItemWithoutDataPassesAndLeavesTheMessageUnset)
{
    Document d;
    d.SetValidate(true);
    expectThrow<IncompleteDefinitionException>(
        [&] { readXml(d, inMessage(text("<Type>Event</Type><Fragment/>"))); },
        "PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment.");
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
    EXPECT_EQ(messageOf(d).GetType(), Message::Event);
}

TEST(DocumentFailure, AnEmptyTruthValuePassesAndLeavesTheMessageUnset)
{
    Document d;
    d.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&] {
            readXml(d, inMessage(text("<Fragment><AcquireMastership><Success></Success></AcquireMastership>"
                                      "</Fragment>")));
        },
        "Please set a value or a default for the boolean 'Success' in 'AcquireMastership'.");
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
}

TEST(DocumentFailure, TheSameInputIsReadWithoutValidation)
{
    Document d;
    readXml(d, inMessage(text("<Type>Question</Type><Fragment/><Fragment><AcquireMastership><Success/>"
                              "</AcquireMastership></Fragment>")));
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
    EXPECT_EQ(messageOf(d).GetType(), -1);
    ASSERT_EQ(messageOf(d).GetFragment().size(), 2);
    EXPECT_TRUE(messageOf(d).GetFragment().at(1).GetAcquireMastership().IsSuccessSet());
    EXPECT_FALSE(messageOf(d).GetFragment().at(1).GetAcquireMastership().GetSuccess());
}

TEST(DocumentFailure, ASecondMessageThatFailsLeavesTheFlagOn)
{
    Document d;
    d.SetValidate(true);
    EXPECT_THROW(readXml(d, "<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Reply</Type>"
                            "</PelLu300RouterMessage><PelLu300RouterMessage><Fragment/>"
                            "</PelLu300RouterMessage></PelLu300RouterInterfaceXml>"),
                 IncompleteDefinitionException);
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
    EXPECT_EQ(messageOf(d).GetType(), Message::Reply);
}

TEST(DocumentFailure, ALengthErrorInsideTheMessageIsTheMessages)
{
    Document d;
    expectThrow<BinaryParsingException>(
        [&] { readFrame(d, bytes("0000000C 9B1A7AD8 00000004 E1D9E008")); },
        "PelLu300RouterMessage::SetBinary(...): Length error occurred during processing of binary "
        "representation");
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
}

TEST(DocumentFailure, AWrongLengthOfTheDocumentIsItsOwn)
{
    const QByteArray entry = eventFrame().mid(4);
    for (const int length : {0x28, 0x2A, -1}) {
        Document d;
        QDataStream stream(entry);
        expectThrow<BinaryParsingException>(
            [&] { d.SetBinary(stream, length); },
            "PelLu300RouterInterfaceXml::SetBinary(...): Length error occurred during processing of binary "
            "representation");
        EXPECT_EQ(d.IsPelLu300RouterMessageSet(), length > 0);
    }
}

// --- binary ---------------------------------------------------------------------------------

TEST(DocumentBinary, WritesTheMessageAsANestedRecord)
{
    Document d;
    d.SetPelLu300RouterMessage(event(1));
    EXPECT_EQ(frameOf(d), eventFrame());
    d.SetValidate(true);
    EXPECT_EQ(frameOf(d), eventFrame());
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    EXPECT_TRUE(d.GetBinary(stream, static_cast<int>(Document::GetId()), true));
    EXPECT_EQ(written, bytes("8553499A") + eventFrame());
}

TEST(DocumentBinary, WritesAnEmptyMessageThatIsSetWithoutValidation)
{
    Document d;
    d.GetPelLu300RouterMessage();
    EXPECT_EQ(frameOf(d), bytes("00000014 9B1A7AD8 0000000C E1D9E008 00000004 FFFFFFFF"));
}

TEST(DocumentBinary, AFailingCheckLetsNothingBeWritten)
{
    Document d;
    d.GetPelLu300RouterMessage().SetMessageID(1);
    d.SetValidate(true);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    expectThrow<OutOfRangeException>([&] { d.GetBinary(stream, 1, true); }, typeMissing);
    EXPECT_TRUE(written.isEmpty());
}

TEST(DocumentBinary, ReadsTheMessageAndMarksIt)
{
    for (const bool validate : {false, true}) {
        Document d;
        d.SetValidate(validate);
        readFrame(d, eventFrame());
        EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
        EXPECT_TRUE(messageOf(d) == event(1));
    }
}

TEST(DocumentBinary, ASecondMessageEntryOverwritesMembersAndAppendsItems)
{
    Document d;
    const QByteArray list = bytes("61023A90 0000000C 00000002 00000000 00000000");
    readFrame(d, bytes("00000058 9B1A7AD8 00000024 EF193DE9 00000008 0000000000000001") + list
                     + bytes("9B1A7AD8 00000024 EF193DE9 00000008 0000000000000002") + list);
    EXPECT_EQ(messageOf(d).GetMessageID(), 2U);
    EXPECT_EQ(messageOf(d).GetFragment().size(), 4);
    EXPECT_FALSE(messageOf(d).IsTypeSet());
}

TEST(DocumentBinary, AnEmptyMessageEntryMarksIt)
{
    Document d;
    readFrame(d, bytes("00000008 9B1A7AD8 00000000"));
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(d.AnyData());
}

TEST(DocumentBinary, AnEntryOfAnotherRecordIsSkipped)
{
    Document d;
    readFrame(d, bytes("00000014 EF193DE9 00000004 00000001 9B1A7AD8 00000000"));
    EXPECT_TRUE(d.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(d.AnyData());
}

// --- validation flag and logger -------------------------------------------------------------

TEST(DocumentSettings, ReachMessageItemsAndPayloads)
{
    const auto logger = std::make_shared<Logger>();
    Document d;
    d.GetPelLu300RouterMessage().AppendFragment(withPort(1));
    d.SetValidate(true);
    d.SetLogger(logger);
    const Fragment& item = messageOf(d).GetFragment().at(0);
    EXPECT_TRUE(messageOf(d).GetValidate());
    EXPECT_TRUE(item.GetValidate());
    EXPECT_TRUE(item.GetOstraInterfacePort().GetValidate());
    EXPECT_TRUE(item.GetDF_Params().GetValidate());
    EXPECT_EQ(messageOf(d).GetLogger(), logger);
    EXPECT_EQ(item.GetLogger(), logger);
    EXPECT_EQ(item.GetOstraInterfacePort().GetLogger(), logger);
    EXPECT_EQ(item.GetDF_Params().GetLogger(), logger);
}

TEST(DocumentSettings, ReachTheMessageAlsoWhileItIsNotSet)
{
    Document d;
    messageOf(d);
    d.SetValidate(true);
    EXPECT_TRUE(messageOf(d).GetValidate());
    EXPECT_FALSE(d.IsPelLu300RouterMessageSet());
}

TEST(DocumentSettings, GivenBeforeTheDataBlockExistsReachTheMessageWithIt)
{
    const auto logger = std::make_shared<Logger>();
    const Document d;
    d.SetValidate(true);
    d.SetLogger(logger);
    EXPECT_FALSE(d.IsInitialized());
    EXPECT_TRUE(messageOf(d).GetValidate());
    EXPECT_EQ(messageOf(d).GetLogger(), logger);
}

TEST(DocumentSettings, EveryCheckWriteAndReadHandsThemDownAgain)
{
    const auto logger = std::make_shared<Logger>();
    Document d;
    d.SetPelLu300RouterMessage(event(1));
    d.GetPelLu300RouterMessage().AppendFragment(withPort(1));
    d.SetValidate(true);
    d.SetLogger(logger);
    Message& message = d.GetPelLu300RouterMessage();
    const auto changeAndExpectRestored = [&](const auto& operation) {
        message.SetValidate(false);
        message.SetLogger(nullptr);
        operation();
        EXPECT_TRUE(message.GetValidate());
        EXPECT_EQ(message.GetLogger(), logger);
        EXPECT_TRUE(std::as_const(message).GetFragment().at(0).GetValidate());
        EXPECT_EQ(std::as_const(message).GetFragment().at(0).GetLogger(), logger);
    };
    changeAndExpectRestored([&] { d.Check(); });
    changeAndExpectRestored([&] { xmlOf(d); });
    changeAndExpectRestored([&] { frameOf(d); });
    changeAndExpectRestored([&] { readFrame(d, bytes("00000000")); });
    changeAndExpectRestored(
        [&] { readXml(d, "<PelLu300RouterInterfaceXml><A/></PelLu300RouterInterfaceXml>"); });
}

TEST(DocumentSettings, EveryMessageElementHandsThemDownToTheItemsReadBefore)
{
    const auto logger = std::make_shared<Logger>();
    Document d;
    d.SetValidate(true);
    d.SetLogger(logger);
    readXml(d, "<PelLu300RouterInterfaceXml>"
               "<PelLu300RouterMessage><Fragment><DF_Params/></Fragment></PelLu300RouterMessage>"
               "<PelLu300RouterMessage><Fragment><DF_Params/></Fragment></PelLu300RouterMessage>"
               "</PelLu300RouterInterfaceXml>");
    ASSERT_EQ(messageOf(d).GetFragment().size(), 2);
    EXPECT_EQ(messageOf(d).GetFragment().at(0).GetLogger(), logger);
    EXPECT_EQ(messageOf(d).GetFragment().at(1).GetLogger(), nullptr);
    EXPECT_TRUE(messageOf(d).GetFragment().at(1).GetValidate());
}

TEST(DocumentSettings, EveryMessageEntryHandsThemDownToTheItemsReadBefore)
{
    const auto logger = std::make_shared<Logger>();
    Document d;
    d.SetLogger(logger);
    const QByteArray entry = bytes("9B1A7AD8 00000010 61023A90 00000008 00000001 00000000");
    readFrame(d, bytes("00000030") + entry + entry);
    ASSERT_EQ(messageOf(d).GetFragment().size(), 2);
    EXPECT_EQ(messageOf(d).GetFragment().at(0).GetLogger(), logger);
    EXPECT_EQ(messageOf(d).GetFragment().at(1).GetLogger(), nullptr);
}

TEST(DocumentSettings, TheMessagesSettingsDecideInItsOwnSetters)
{
    Document d;
    Message& message = d.GetPelLu300RouterMessage();
    d.SetValidate(true);
    EXPECT_THROW(message.AppendFragment(Fragment()), IncompleteDefinitionException);
    message.SetValidate(false);
    EXPECT_NO_THROW(message.AppendFragment(Fragment()));
    EXPECT_TRUE(d.GetValidate());
}

} // namespace
