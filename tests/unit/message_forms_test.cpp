// SPDX-License-Identifier: MIT
// The router message as XML and in the binary form.

#include "MessageSupport.h"

#include <memory>

namespace {

using namespace testing_support;

// --- XML ------------------------------------------------------------------------------------

TEST(MessageXml, WritesTypeNumberAndItemsInOrder)
{
    const Message m = sample();
    EXPECT_EQ(xmlOf(m), sampleXml);
    m.SetValidate(true);
    EXPECT_EQ(xmlOf(m), sampleXml);
}

TEST(MessageXml, ReadsWhatItWrites)
{
    for (const bool validate : {false, true}) {
        Message m;
        m.SetValidate(validate);
        readXml(m, sampleXml);
        EXPECT_TRUE(m == sample());
        EXPECT_TRUE(m.IsFragmentSet());
    }
}

TEST(MessageXml, AnUnsetTypeIsWrittenAsTheNameOfItsValueWithoutValidation)
{
    Message m;
    EXPECT_EQ(xmlOf(m), "<PelLu300RouterMessage><Type></Type></PelLu300RouterMessage>");
    m.SetMessageID(4294967295U);
    EXPECT_EQ(xmlOf(m), "<PelLu300RouterMessage><Type></Type><MessageID>4294967295</MessageID>"
                        "</PelLu300RouterMessage>");
    m.SetDefaultType(Message::Event);
    m.Reset();
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_EQ(xmlOf(m), "<PelLu300RouterMessage><Type>Event</Type></PelLu300RouterMessage>");
}

TEST(MessageXml, AMissingTypeFailsBeforeAnythingIsWrittenUnderValidation)
{
    Message m;
    m.SetMessageID(1);
    m.SetValidate(true);
    QString written;
    QXmlStreamWriter writer(&written);
    expectThrow<OutOfRangeException>([&] { m.GetXml(writer); }, typeMissing);
    EXPECT_EQ(written, "");
}

TEST(MessageXml, ItemsWithoutDataVanishUnderValidation)
{
    Message m;
    m.SetType(Message::Reply);
    m.SetFragment({Fragment(), withPort(1), Fragment()});
    EXPECT_EQ(xmlOf(m), "<PelLu300RouterMessage><Type>Reply</Type><Fragment/>"
                        "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
                        "<Fragment/></PelLu300RouterMessage>");
    m.SetValidate(true);
    EXPECT_EQ(xmlOf(m), "<PelLu300RouterMessage><Type>Reply</Type>"
                        "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
                        "</PelLu300RouterMessage>");
}

TEST(MessageXml, ReadingAppendsToTheList)
{
    Message m;
    m.AppendFragment(withPort(1));
    readXml(m, "<PelLu300RouterMessage>"
               "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
               "<Fragment><OstraInterfacePort><Port>3</Port></OstraInterfacePort></Fragment>"
               "</PelLu300RouterMessage>");
    EXPECT_EQ(portsOf(m), (Ports{1, 2, 3}));
    EXPECT_FALSE(m.IsTypeSet());
}

TEST(MessageXml, EveryItemStartsFromAnEmptyOne)
{
    Message m;
    readXml(m, "<PelLu300RouterMessage>"
               "<Fragment><MastershipState><State>MasterPresent</State>"
               "<MasterClientID>c1</MasterClientID></MastershipState></Fragment>"
               "<Fragment><MastershipState/></Fragment><Fragment/></PelLu300RouterMessage>");
    ASSERT_EQ(itemsOf(m).size(), 3);
    EXPECT_FALSE(itemsOf(m).at(1).GetMastershipState().AnyData());
    EXPECT_EQ(itemsOf(m).at(1).GetChoiceFragment(), Fragment::MastershipState);
    EXPECT_FALSE(itemsOf(m).at(2).AnyData());
    EXPECT_FALSE(itemsOf(m).at(2).IsMastershipStateSet());
}

TEST(MessageXml, ChildrenMayComeInAnyOrder)
{
    Message m;
    readXml(m, "<PelLu300RouterMessage>"
               "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
               "<MessageID>9</MessageID>"
               "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
               "<Type>Event</Type></PelLu300RouterMessage>");
    EXPECT_EQ(portsOf(m), (Ports{1, 2}));
    EXPECT_EQ(m.GetMessageID(), 9U);
    EXPECT_EQ(m.GetType(), Message::Event);
}

TEST(MessageXml, ANumberThatIsNoneIsStoredAsZero)
{
    Message m;
    m.SetValidate(true);
    readXml(m, "<PelLu300RouterMessage><MessageID>abc</MessageID></PelLu300RouterMessage>");
    EXPECT_EQ(m.GetMessageID(), 0U);
    EXPECT_TRUE(m.IsMessageIDSet());
}

TEST(MessageXml, NumbersAreReadAsSignedOnes)
{
    const auto read = [](const QString& text) {
        Message m;
        readXml(m, "<PelLu300RouterMessage><MessageID>" + text + "</MessageID></PelLu300RouterMessage>");
        return m.GetMessageID();
    };
    EXPECT_EQ(read("2147483647"), 2147483647U);
    EXPECT_EQ(read("2147483648"), 0U);
    EXPECT_EQ(read("4294967295"), 0U);
    EXPECT_EQ(read("-1"), 4294967295U);
    EXPECT_EQ(read("1.5"), 0U);
    EXPECT_EQ(read(QString()), 0U);
}

TEST(MessageXml, UnknownElementsAreSkipped)
{
    Message m;
    m.SetValidate(true);
    readXml(m, "<PelLu300RouterMessage><type>Event</type><fragment/><Fragments><Fragment/></Fragments>"
               "<MessageId>1</MessageId><Type>Request</Type></PelLu300RouterMessage>");
    EXPECT_EQ(m.GetType(), Message::Request);
    EXPECT_FALSE(m.IsMessageIDSet());
    EXPECT_FALSE(m.IsFragmentSet());
}

TEST(MessageXml, AnUnknownTypeFailsUnderValidationAndKeepsWhatWasRead)
{
    Message m;
    m.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readXml(m, "<PelLu300RouterMessage><MessageID>3</MessageID><Type>Question</Type>"
                       "<Fragment><DF_Params/></Fragment></PelLu300RouterMessage>");
        },
        typeInvalid);
    EXPECT_EQ(m.GetMessageID(), 3U);
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_TRUE(itemsOf(m).isEmpty());
}

TEST(MessageXml, AnUnknownTypeIsStoredAsTheInvalidValueWithoutValidation)
{
    Message m;
    readXml(m, "<PelLu300RouterMessage><Type>Question</Type></PelLu300RouterMessage>");
    EXPECT_EQ(m.GetType(), -1);
    EXPECT_TRUE(m.IsTypeSet());
}

TEST(MessageXml, AnItemWithoutPayloadIsRefusedUnderValidation)
{
    for (const char* const item : {"<Fragment/>", "<Fragment></Fragment>", "<Fragment><Unknown/></Fragment>",
                                   "<Fragment>text</Fragment>"}) {
        Message m;
        m.SetValidate(true);
        expectThrow<IncompleteDefinitionException>(
            [&] {
                readXml(m, QString("<PelLu300RouterMessage><Type>Event</Type>"
                                   "<Fragment><DF_Params/></Fragment>%1<MessageID>1</MessageID>"
                                   "</PelLu300RouterMessage>")
                               .arg(item));
            },
            itemIncomplete);
        EXPECT_EQ(itemsOf(m).size(), 1);
        EXPECT_EQ(m.GetType(), Message::Event);
        EXPECT_FALSE(m.IsMessageIDSet());
    }
}

TEST(MessageXml, AnItemWhoseReadingFailsIsNotAppended)
{
    Message m;
    m.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&] {
            readXml(m, "<PelLu300RouterMessage><Fragment><ReleaseMastership><Success/></ReleaseMastership>"
                       "</Fragment></PelLu300RouterMessage>");
        },
        "Please set a value or a default for the boolean 'Success' in 'ReleaseMastership'.");
    EXPECT_TRUE(itemsOf(m).isEmpty());
    EXPECT_FALSE(m.IsFragmentSet());
    // The next item has nothing of the failed one.
    readXml(m, "<PelLu300RouterMessage><Fragment><DF_Params/></Fragment></PelLu300RouterMessage>");
    ASSERT_EQ(itemsOf(m).size(), 1);
    EXPECT_EQ(itemsOf(m).at(0).GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_FALSE(itemsOf(m).at(0).IsReleaseMastershipSet());
}

TEST(MessageXml, ItemsAreReadWithTheMessagesSettings)
{
    const auto logger = std::make_shared<Logger>();
    Message m;
    m.SetValidate(true);
    m.SetLogger(logger);
    readXml(m, sampleXml);
    ASSERT_EQ(itemsOf(m).size(), 2);
    EXPECT_TRUE(itemsOf(m).at(0).GetValidate());
    EXPECT_TRUE(itemsOf(m).at(1).GetValidate());
    // Every child element hands the settings down to the items before it, but none follows the last item.
    EXPECT_EQ(itemsOf(m).at(0).GetLogger(), logger);
    EXPECT_EQ(itemsOf(m).at(1).GetLogger(), nullptr);
}

TEST(MessageXml, AFailingPayloadLeavesTheOuterElementsOpen)
{
    Message m;
    m.SetType(Message::Request);
    m.AppendFragment(withPort(1));
    m.AppendFragment(withBadState());
    m.SetValidate(true);
    QString written;
    QXmlStreamWriter writer(&written);
    expectThrow<OutOfRangeException>([&] { m.GetXml(writer); },
                                     "MastershipState: Please set State properly.");
    EXPECT_TRUE(written.startsWith(
        "<PelLu300RouterMessage><Type>Request</Type>"
        "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment><Fragment"))
        << written.toStdString();
    EXPECT_FALSE(written.contains("</PelLu300RouterMessage>"));
    EXPECT_FALSE(written.contains("MastershipState"));
}

// --- binary ---------------------------------------------------------------------------------

TEST(MessageBinary, WritesTypeNumberAndItemsInOrder)
{
    const Message m = sample();
    EXPECT_EQ(frameOf(m), sampleFrame());
    m.SetValidate(true);
    EXPECT_EQ(frameOf(m), sampleFrame());
}

TEST(MessageBinary, ReadsWhatItWrites)
{
    for (const bool validate : {false, true}) {
        Message m;
        m.SetValidate(validate);
        readFrame(m, sampleFrame());
        EXPECT_TRUE(m == sample());
    }
}

TEST(MessageBinary, AnUnsetTypeIsWrittenAsANullName)
{
    const Message m;
    EXPECT_EQ(frameOf(m), bytes("0000000C E1D9E008 00000004 FFFFFFFF"));
}

TEST(MessageBinary, AMissingTypeFailsBeforeAnythingIsWrittenUnderValidation)
{
    Message m;
    m.SetMessageID(1);
    m.SetValidate(true);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    expectThrow<OutOfRangeException>([&] { m.GetBinary(stream, 5, true); }, typeMissing);
    EXPECT_TRUE(written.isEmpty());
}

TEST(MessageBinary, AnEmptyListIsNotWritten)
{
    Message m;
    m.SetType(Message::Reply);
    m.GetFragment();
    EXPECT_EQ(frameOf(m), bytes("00000011 E1D9E008 00000009 00000005 5265706C79"));
}

TEST(MessageBinary, ItemsWithoutPayloadAreEmptyRecords)
{
    Message m;
    m.SetType(Message::Reply);
    m.SetFragment({Fragment(), Fragment()});
    EXPECT_EQ(frameOf(m), bytes("00000025 E1D9E008 00000009 00000005 5265706C79"
                                " 61023A90 0000000C 00000002 00000000 00000000"));
}

TEST(MessageBinary, ItemsThatValidationLeavesOutAreStillCounted)
{
    Message m;
    m.SetType(Message::Reply);
    m.SetFragment({Fragment(), Fragment()});
    m.SetValidate(true);
    EXPECT_EQ(frameOf(m), bytes("0000001D E1D9E008 00000009 00000005 5265706C79 61023A90 00000004 00000002"));
}

TEST(MessageBinary, ReadingAppendsToTheList)
{
    Message m;
    m.AppendFragment(withPort(1));
    readFrame(m, bytes("0000002C 61023A90 00000024 00000002"
                       " 00000018 F9E464D0 00000010 1F980517 00000008 0000000000000002 00000000"));
    ASSERT_EQ(itemsOf(m).size(), 3);
    EXPECT_EQ(portOf(itemsOf(m).at(1)), 2U);
    EXPECT_FALSE(itemsOf(m).at(2).AnyData());
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_FALSE(m.IsMessageIDSet());
}

TEST(MessageBinary, AListWithoutElementsAppendsNothing)
{
    Message m;
    readFrame(m, bytes("0000000C 61023A90 00000004 00000000"));
    EXPECT_TRUE(itemsOf(m).isEmpty());
    EXPECT_FALSE(m.IsFragmentSet());
}

TEST(MessageBinary, ANegativeCountIsALengthError)
{
    Message m;
    m.AppendFragment(withPort(1));
    expectThrow<BinaryParsingException>([&] { readFrame(m, bytes("0000000C 61023A90 00000004 FFFFFFFF")); },
                                        lengthError);
    EXPECT_EQ(portsOf(m), Ports{1});
}

TEST(MessageBinary, ACountLargerThanTheInputIsALengthErrorThatKeepsTheElementsRead)
{
    for (const char* const count : {"00000002", "7FFFFFFF"}) {
        Message m;
        expectThrow<BinaryParsingException>(
            [&] {
                readFrame(m, bytes("00000028 61023A90 00000020") + bytes(count)
                                 + bytes("00000018 F9E464D0 00000010 1F980517 00000008 0000000000000002"));
            },
            lengthError);
        EXPECT_EQ(portsOf(m), Ports{2});
    }
}

TEST(MessageBinary, AnElementWithoutDataIsRefusedUnderValidation)
{
    Message m;
    m.SetValidate(true);
    expectThrow<IncompleteDefinitionException>(
        [&] {
            readFrame(m, bytes("0000002C 61023A90 00000024 00000002"
                               " 00000018 F9E464D0 00000010 1F980517 00000008 0000000000000002 00000000"));
        },
        itemIncomplete);
    EXPECT_EQ(portsOf(m), Ports{2});
}

TEST(MessageBinary, AnElementWhoseReadingFailsIsNotAppended)
{
    Message m;
    m.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readFrame(m, bytes("00000026 61023A90 0000001E 00000001"
                               " 00000016 111939B4 0000000E 4264F498 00000006 00000002 4E6F"));
        },
        "enum is not valid (classname=MastershipState,membername=m_state)");
    EXPECT_TRUE(itemsOf(m).isEmpty());
    expectThrow<BinaryParsingException>(
        [&] { readFrame(m, bytes("00000014 61023A90 0000000C 00000001 00000004 F9E464D0")); },
        "Fragment::SetBinary(...): Length error occurred during processing of binary representation");
    EXPECT_TRUE(itemsOf(m).isEmpty());
}

TEST(MessageBinary, ElementsAreReadWithTheMessagesValidationAndHaveNoLogger)
{
    Message m;
    m.SetValidate(true);
    m.SetLogger(std::make_shared<Logger>());
    readFrame(m, sampleFrame());
    for (const Fragment& item : itemsOf(m)) {
        EXPECT_TRUE(item.GetValidate());
        EXPECT_EQ(item.GetLogger(), nullptr);
    }
    m.Check();
    for (const Fragment& item : itemsOf(m))
        EXPECT_EQ(item.GetLogger(), m.GetLogger());
}

TEST(MessageBinary, AnUnknownTypeNameFailsUnderValidationAndIsStoredAsInvalidWithout)
{
    const QByteArray frame = bytes("0000000E E1D9E008 00000006 00000002 4E6F");
    Message m;
    m.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { readFrame(m, frame); }, typeInvalid);
    EXPECT_FALSE(m.IsTypeSet());
    m.SetValidate(false);
    readFrame(m, frame);
    EXPECT_EQ(m.GetType(), -1);
    EXPECT_TRUE(m.IsTypeSet());
}

TEST(MessageBinary, LargeNumbersSurvive)
{
    Message m;
    m.SetType(Message::Event);
    m.SetMessageID(4294967295U);
    const QByteArray frame =
        bytes("00000021 E1D9E008 00000009 00000005 4576656E74 EF193DE9 00000008 00000000FFFFFFFF");
    EXPECT_EQ(frameOf(m), frame);
    Message read;
    readFrame(read, frame);
    EXPECT_EQ(read.GetMessageID(), 4294967295U);
}

TEST(MessageBinary, AWrongLengthIsTheMessagesError)
{
    const QByteArray entries = sampleFrame().mid(4);
    for (const int length : {0x5D, 0x5F, -1}) {
        Message m;
        QDataStream stream(entries);
        expectThrow<BinaryParsingException>([&] { m.SetBinary(stream, length); }, lengthError);
        EXPECT_EQ(m.IsTypeSet(), length > 0);
        EXPECT_EQ(itemsOf(m).size(), length > 0 ? 2 : 0);
    }
}

} // namespace
