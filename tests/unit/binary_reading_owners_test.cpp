// SPDX-License-Identifier: MIT
// Reading the binary form of records that hold others: fragments, messages and documents.

#include "BinarySupport.h"

#include <memory>

namespace {

using namespace binary_support;

// --- fragments ------------------------------------------------------------------------------

TEST(BinaryReadingOfAFragment, SelectsThePayloadOfTheEntry)
{
    const struct
    {
        std::uint32_t tag;
        Fragment::ChoiceFragment choice;
    } payloads[] = {{0x111939B4, Fragment::MastershipState},    {0x21BDA6E2, Fragment::AcquireMastership},
                    {0xFC38AB7C, Fragment::ReleaseMastership},  {0xF9E464D0, Fragment::OstraInterfacePort},
                    {0x0BBAB464, Fragment::PelVtConnectServer}, {0x5D020EA0, Fragment::RouterVtServerPort},
                    {0xBE2DFF74, Fragment::DF_Params}};
    for (const auto& payload : payloads) {
        const auto record = readFrom<Fragment>(frame(entry(payload.tag, QByteArray())));
        EXPECT_EQ(record.GetChoiceFragment(), payload.choice);
        EXPECT_EQ(record.IsMastershipStateSet(), payload.choice == Fragment::MastershipState);
        EXPECT_EQ(record.IsAcquireMastershipSet(), payload.choice == Fragment::AcquireMastership);
        EXPECT_EQ(record.IsReleaseMastershipSet(), payload.choice == Fragment::ReleaseMastership);
        EXPECT_EQ(record.IsOstraInterfacePortSet(), payload.choice == Fragment::OstraInterfacePort);
        EXPECT_EQ(record.IsPelVtConnectServerSet(), payload.choice == Fragment::PelVtConnectServer);
        EXPECT_EQ(record.IsRouterVtServerPortSet(), payload.choice == Fragment::RouterVtServerPort);
        EXPECT_EQ(record.IsDF_ParamsSet(), payload.choice == Fragment::DF_Params);
    }
}

TEST(BinaryReadingOfAFragment, EndsOnTheLastOfTwoPayloadsAndKeepsBoth)
{
    const auto record = readFrom<Fragment>(frame(entry(acquireMastershipTag, entry(successTag, bytes("01")))
                                                 + entry(ostraInterfacePortTag, portEntry(4))));
    EXPECT_EQ(record.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_TRUE(record.IsAcquireMastershipSet());
    EXPECT_TRUE(record.GetAcquireMastership().GetSuccess());
    EXPECT_TRUE(record.IsOstraInterfacePortSet());
    EXPECT_EQ(record.GetOstraInterfacePort().GetPort(), 4U);
}

TEST(BinaryReadingOfAFragment, MovesTheChoiceBackToAnEarlierMember)
{
    const auto record = readFrom<Fragment>(frame(entry(dfParamsTag, entry(frequencyTag, textPayload("2.00")))
                                                 + entry(acquireMastershipTag, QByteArray())));
    EXPECT_EQ(record.GetChoiceFragment(), Fragment::AcquireMastership);
    EXPECT_TRUE(record.IsDF_ParamsSet());
    EXPECT_EQ(record.GetDF_Params().GetFrequency(), 2);
}

TEST(BinaryReadingOfAFragment, DoesNotResetWhatItHolds)
{
    Fragment record;
    record.GetPelVtConnectServer().SetAddress(QStringLiteral("old"));
    record.GetOstraInterfacePort().SetPort(1);
    readFrame(record, frame(entry(pelVtConnectServerTag, portEntry(4))));
    EXPECT_EQ(record.GetChoiceFragment(), Fragment::PelVtConnectServer);
    EXPECT_TRUE(record.IsOstraInterfacePortSet());
    const Fragment& constant = record;
    EXPECT_EQ(constant.GetOstraInterfacePort().GetPort(), 1U);
    EXPECT_EQ(constant.GetPelVtConnectServer().GetPort(), 4U);
    EXPECT_EQ(record.GetPelVtConnectServer().GetAddress(), QStringLiteral("old"));
}

TEST(BinaryReadingOfAFragment, DoesNotTakeTheDefaultOfThePayload)
{
    Fragment record;
    OstraInterfacePort port;
    port.SetPort(77);
    record.SetDefaultOstraInterfacePort(port);
    readFrame(record, frame(entry(ostraInterfacePortTag, QByteArray())));
    EXPECT_FALSE(static_cast<const Fragment&>(record).GetOstraInterfacePort().IsPortSet());
}

TEST(BinaryReadingOfAFragment, HasMovedTheChoiceButNotTheFlagWhenThePayloadFails)
{
    Fragment record;
    record.GetAcquireMastership();
    expectLengthError(record, frame(entry(ostraInterfacePortTag, portEntry(4).left(15))),
                      "OstraInterfacePort");
    EXPECT_EQ(record.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_FALSE(record.IsOstraInterfacePortSet());
    EXPECT_TRUE(record.IsAcquireMastershipSet());
}

TEST(BinaryReadingOfAFragment, AppliesItsValidationToThePayload)
{
    Fragment record;
    record.GetMastershipState().SetValidate(false);
    record.SetValidate(true);
    const QByteArray unknownState = frame(entry(mastershipStateTag, entry(stateTag, textPayload("Unknown"))));
    expectThrow<OutOfRangeException>(
        [&] { readFrame(record, unknownState); },
        QStringLiteral("enum is not valid (classname=MastershipState,membername=m_state)"));
    EXPECT_FALSE(static_cast<const Fragment&>(record).GetMastershipState().IsStateSet());

    record.SetValidate(false);
    record.GetMastershipState().SetValidate(true);
    readFrame(record, unknownState);
    EXPECT_EQ(record.GetMastershipState().GetState(), -1);
    EXPECT_FALSE(record.GetMastershipState().GetValidate());
}

TEST(BinaryReadingOfAFragment, SkipsThePayloadsMembersAtItsOwnLevel)
{
    const auto record = readFrom<Fragment>(frame(portEntry(4) + entry(successTag, bytes("01"))));
    EXPECT_FALSE(record.AnyData());
    EXPECT_FALSE(record.IsOstraInterfacePortSet());
}

// --- messages -------------------------------------------------------------------------------

TEST(BinaryReadingOfAMessage, AppendsTheItemsOfEveryListEntry)
{
    PelLu300RouterMessage message;
    Fragment fragment;
    fragment.GetOstraInterfacePort().SetPort(1);
    message.AppendFragment(fragment);
    readFrame(message, frame(entry(fragmentTag, list(2, portElement(2) + portElement(3)))
                             + entry(fragmentTag, list(1, portElement(4)))));
    ASSERT_EQ(message.GetFragment().size(), 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(portAt(message, i), static_cast<unsigned int>(i + 1));
}

TEST(BinaryReadingOfAMessage, MarksTheListAsSetByAppending)
{
    const auto message = readFrom<PelLu300RouterMessage>(frame(entry(fragmentTag, list(1, portElement(2)))));
    EXPECT_TRUE(message.IsFragmentSet());
    EXPECT_FALSE(message.IsTypeSet());
    EXPECT_FALSE(message.IsMessageIDSet());
}

TEST(BinaryReadingOfAMessage, AppendsNothingForTheCountZero)
{
    for (const bool validate : {false, true}) {
        PelLu300RouterMessage message;
        message.SetValidate(validate);
        readFrame(message,
                  frame(entry(fragmentTag, list(0, QByteArray())) + entry(messageIdTag, word(0) + word(5))));
        EXPECT_FALSE(message.IsFragmentSet());
        EXPECT_EQ(message.GetMessageID(), 5U);
        EXPECT_EQ(message.GetFragment().size(), 0);
    }
}

TEST(BinaryReadingOfAMessage, AppendsEmptyElementsWhenValidationIsOff)
{
    const auto message =
        readFrom<PelLu300RouterMessage>(frame(entry(fragmentTag, list(2, word(0) + frame(portEntry(1))))));
    ASSERT_EQ(message.GetFragment().size(), 2);
    EXPECT_FALSE(message.GetFragment().at(0).AnyData());
    EXPECT_FALSE(message.GetFragment().at(1).AnyData());
    EXPECT_TRUE(message.IsFragmentSet());
}

TEST(BinaryReadingOfAMessage, RefusesAnElementWithoutDataUnderValidation)
{
    PelLu300RouterMessage message;
    message.SetValidate(true);
    const QByteArray entries = entry(typeTag, textPayload("Reply"))
                               + entry(fragmentTag, list(3, portElement(1) + word(0) + portElement(2)))
                               + entry(messageIdTag, word(0) + word(5));
    QDataStream stream(entries);
    expectThrow<IncompleteDefinitionException>(
        [&] { message.SetBinary(stream, static_cast<int>(entries.size())); },
        QStringLiteral(
            "PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment."));
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Reply);
    EXPECT_FALSE(message.IsMessageIDSet());
    ASSERT_EQ(message.GetFragment().size(), 1);
    EXPECT_EQ(portAt(message, 0), 1U);
    // Reading ended right behind the refused element.
    EXPECT_EQ(stream.device()->pos(), 17 + 8 + 4 + 28 + 4);
}

TEST(BinaryReadingOfAMessage, AppliesItsValidationToTheElements)
{
    const QByteArray entries = frame(entry(
        fragmentTag,
        list(2, portElement(1) + frame(entry(mastershipStateTag, entry(stateTag, textPayload("Unknown")))))));
    PelLu300RouterMessage strict;
    strict.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { readFrame(strict, entries); },
        QStringLiteral("enum is not valid (classname=MastershipState,membername=m_state)"));
    ASSERT_EQ(strict.GetFragment().size(), 1);
    EXPECT_TRUE(strict.GetFragment().at(0).GetValidate());

    PelLu300RouterMessage lenient;
    readFrame(lenient, entries);
    ASSERT_EQ(lenient.GetFragment().size(), 2);
    EXPECT_EQ(lenient.GetFragment().at(1).GetMastershipState().GetState(), -1);
    EXPECT_FALSE(lenient.GetFragment().at(1).GetValidate());
}

TEST(BinaryReadingOfAMessage, ReadsItemsByTheirOwnLengths)
{
    // Items are read by their own lengths. The length of the entry only matters for that of the message.
    PelLu300RouterMessage message;
    const QByteArray elements = portElement(1) + portElement(2);
    expectLengthError(message, frame(word(fragmentTag) + word(4 + sizeOf(elements) - 1) + list(2, elements)),
                      "PelLu300RouterMessage");
    ASSERT_EQ(message.GetFragment().size(), 2);
    EXPECT_EQ(portAt(message, 1), 2U);
}

TEST(BinaryReadingOfAMessage, ThrowsForANegativeCount)
{
    for (const std::uint32_t count : {0xFFFFFFFFU, 0x80000000U}) {
        PelLu300RouterMessage message;
        expectLengthError(message,
                          frame(entry(messageIdTag, word(0) + word(5)) + entry(fragmentTag, word(count))),
                          "PelLu300RouterMessage");
        EXPECT_EQ(message.GetMessageID(), 5U);
        EXPECT_FALSE(message.IsFragmentSet());
        EXPECT_EQ(message.GetFragment().size(), 0);
    }
}

TEST(BinaryReadingOfAMessage, ThrowsForMoreAnnouncedElementsThanThereAre)
{
    PelLu300RouterMessage message;
    expectLengthError(message, frame(entry(fragmentTag, list(3, portElement(1) + portElement(2)))),
                      "PelLu300RouterMessage");
    ASSERT_EQ(message.GetFragment().size(), 2);
    EXPECT_EQ(portAt(message, 0), 1U);
    EXPECT_EQ(portAt(message, 1), 2U);
}

TEST(BinaryReadingOfAMessage, ThrowsForFewerAnnouncedElementsThanThereAre)
{
    PelLu300RouterMessage message;
    expectLengthError(message, frame(entry(fragmentTag, list(1, portElement(1) + portElement(2)))),
                      "PelLu300RouterMessage");
    ASSERT_EQ(message.GetFragment().size(), 1);
    EXPECT_EQ(portAt(message, 0), 1U);
}

TEST(BinaryReadingOfAMessage, ThrowsWhenTheListEntryEndsBeforeItsCount)
{
    PelLu300RouterMessage message;
    for (int present = 0; present < 4; ++present)
        expectLengthErrorOf(message, word(fragmentTag) + word(4) + word(0).left(present), 12,
                            "PelLu300RouterMessage");
    EXPECT_FALSE(message.IsFragmentSet());
}

TEST(BinaryReadingOfAMessage, ReportsTheElementWhoseLengthIsWrong)
{
    const QByteArray content = entry(ostraInterfacePortTag, portEntry(1));
    for (const std::uint32_t length : {sizeOf(content) - 1, sizeOf(content) + 1, 0xFFFFFFFFU}) {
        PelLu300RouterMessage message;
        expectLengthError(message, frame(entry(fragmentTag, list(1, word(length) + content))), "Fragment");
        EXPECT_FALSE(message.IsFragmentSet());
        EXPECT_EQ(message.GetFragment().size(), 0);
    }
}

// --- documents ------------------------------------------------------------------------------

TEST(BinaryReadingOfADocument, GivesBackEveryPayload)
{
    PelLu300RouterInterfaceXml expected;
    fillFullDocument(expected);
    for (const bool validate : {false, true}) {
        PelLu300RouterInterfaceXml document;
        document.SetValidate(validate);
        readFrame(document, fullDocumentFrame());
        EXPECT_TRUE(document == expected);
        EXPECT_EQ(frameOf(document), fullDocumentFrame());
    }
}

TEST(BinaryReadingOfADocument, ReadsASecondMessageOnTopOfTheFirst)
{
    PelLu300RouterInterfaceXml document;
    readFrame(document, frame(entry(messageTag, entry(typeTag, textPayload("Reply"))
                                                    + entry(messageIdTag, word(0) + word(5))
                                                    + entry(fragmentTag, list(1, portElement(1))))
                              + entry(unknownTag, QByteArray())
                              + entry(messageTag, entry(typeTag, textPayload("Event"))
                                                      + entry(fragmentTag, list(1, portElement(2))))));
    EXPECT_TRUE(document.IsPelLu300RouterMessageSet());
    const PelLu300RouterMessage& message = messageIn(document);
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    EXPECT_EQ(message.GetMessageID(), 5U);
    ASSERT_EQ(message.GetFragment().size(), 2);
    EXPECT_EQ(portAt(message, 0), 1U);
    EXPECT_EQ(portAt(message, 1), 2U);
}

TEST(BinaryReadingOfADocument, SetsTheMessageForAnEmptyRecord)
{
    const auto document = readFrom<PelLu300RouterInterfaceXml>(frame(entry(messageTag, QByteArray())));
    EXPECT_TRUE(document.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(document.AnyData());
}

TEST(BinaryReadingOfADocument, DoesNotSetAMessageThatFailedButKeepsWhatWasRead)
{
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readFrame(document, frame(entry(messageTag, entry(messageIdTag, word(0) + word(5))
                                                            + entry(typeTag, textPayload("Unknown")))));
        },
        QStringLiteral("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"));
    EXPECT_FALSE(document.IsPelLu300RouterMessageSet());
    EXPECT_EQ(messageIn(document).GetMessageID(), 5U);
    EXPECT_FALSE(messageIn(document).IsTypeSet());
}

TEST(BinaryReadingOfADocument, KeepsTheFlagOfAMessageThatWasSetBefore)
{
    auto document = sampleOf<PelLu300RouterInterfaceXml>();
    expectLengthError(document, frame(word(messageTag) + word(0xFFFFFFFF)), "PelLu300RouterMessage");
    EXPECT_TRUE(document.IsPelLu300RouterMessageSet());
    EXPECT_EQ(frameOf(document), bytes(Sample<PelLu300RouterInterfaceXml>::frame));
}

TEST(BinaryReadingOfADocument, HandsTheSettingsDownToEverythingItOwns)
{
    auto document = sampleOf<PelLu300RouterInterfaceXml>();
    const auto logger = std::make_shared<MODELKIT::Logger>();
    document.SetLogger(logger);
    const PelLu300RouterMessage& message = messageIn(document);
    message.SetValidate(true);
    message.SetLogger(nullptr);
    message.GetFragment().at(0).GetDF_Params().SetValidate(true);

    QDataStream stream((QByteArray()));
    document.SetBinary(stream, 0);
    EXPECT_FALSE(messageIn(document).GetValidate());
    EXPECT_EQ(messageIn(document).GetLogger(), logger);
    const Fragment& item = messageIn(document).GetFragment().at(0);
    EXPECT_FALSE(item.GetDF_Params().GetValidate());
    EXPECT_EQ(item.GetDF_Params().GetLogger(), logger);
}

} // namespace
