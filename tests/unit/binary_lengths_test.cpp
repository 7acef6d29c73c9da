// SPDX-License-Identifier: MIT
// Binary forms whose lengths are wrong, and streams that end too early.

#include "BinarySupport.h"

namespace {

using namespace binary_support;

// --- wrong lengths --------------------------------------------------------------------------

TEST(BinaryLengths, OfAKnownEntryTooLargeByOne)
{
    const QByteArray content = word(portTag) + word(9) + word(0) + word(5);
    OstraInterfacePort record;
    expectLengthErrorOf(record, content, 16, "OstraInterfacePort");
    EXPECT_EQ(record.GetPort(), 5U);
    EXPECT_TRUE(record.IsPortSet());
}

TEST(BinaryLengths, OfAKnownEntryTooSmallByOne)
{
    const QByteArray content = word(portTag) + word(7) + word(0) + word(5);
    OstraInterfacePort record;
    expectLengthErrorOf(record, content, 16, "OstraInterfacePort");
    EXPECT_EQ(record.GetPort(), 5U);
}

TEST(BinaryLengths, OfAKnownEntryAndItsRecordWrongByTheSame)
{
    OstraInterfacePort record;
    // The lengths agree with each other, but not with the bytes that the value takes.
    expectLengthErrorOf(record, word(portTag) + word(9) + word(0) + word(5) + bytes("00"), 17,
                        "OstraInterfacePort");
    EXPECT_EQ(record.GetPort(), 5U);
    expectLengthErrorOf(record, word(portTag) + word(7) + word(0) + word(6), 15, "OstraInterfacePort");
    EXPECT_EQ(record.GetPort(), 6U);
    expectLengthErrorOf(record, word(portTag) + word(0) + word(0) + word(7), 8, "OstraInterfacePort");
    EXPECT_EQ(record.GetPort(), 7U);
}

TEST(BinaryLengths, OfTwoKnownEntriesWrongByTheOppositeAreNotNoticed)
{
    // A known entry consumes the bytes of its type, whatever its length. Only the sums are compared.
    PelVtConnectServer record;
    readFrame(record, frame(word(addressTag) + word(5 + 3) + textPayload("a") + word(portTag) + word(8 - 3)
                            + word(0) + word(9)));
    EXPECT_EQ(record.GetAddress(), QStringLiteral("a"));
    EXPECT_EQ(record.GetPort(), 9U);
}

TEST(BinaryLengths, OfAKnownEntryThatSwallowsTheNextOne)
{
    PelVtConnectServer record;
    expectLengthError(record, frame(word(addressTag) + word(5 + 16) + textPayload("a") + portEntry(9)),
                      "PelVtConnectServer");
    EXPECT_EQ(record.GetAddress(), QStringLiteral("a"));
    EXPECT_FALSE(record.IsPortSet());
}

TEST(BinaryLengths, OfAStringThatIsLongerThanItsEntry)
{
    PelVtConnectServer record;
    expectLengthError(record, frame(word(addressTag) + word(4) + textPayload("ab")), "PelVtConnectServer");
    EXPECT_EQ(record.GetAddress(), QStringLiteral("ab"));
}

TEST(BinaryLengths, OfAnUnknownEntryTooLarge)
{
    PelVtConnectServer record;
    expectLengthError(record,
                      frame(entry(addressTag, textPayload("a")) + word(unknownTag) + word(17) + portEntry(9)),
                      "PelVtConnectServer");
    EXPECT_EQ(record.GetAddress(), QStringLiteral("a"));
    EXPECT_FALSE(record.IsPortSet());
}

TEST(BinaryLengths, OfANestedRecordAreReportedByIt)
{
    const QByteArray content = portEntry(4);
    for (const std::uint32_t length : {15U, 17U, 0xFFFFFFFFU, 0x80000000U}) {
        Fragment record;
        expectLengthError(record, frame(word(ostraInterfacePortTag) + word(length) + content),
                          "OstraInterfacePort");
        EXPECT_FALSE(record.IsOstraInterfacePortSet());
    }
}

TEST(BinaryLengths, OfANestedRecordOfLengthZeroLeaveItsBytesToTheOwner)
{
    // The following bytes are an entry that the fragment does not know.
    Fragment record;
    readFrame(record, frame(word(ostraInterfacePortTag) + word(0) + portEntry(4)));
    EXPECT_TRUE(record.IsOstraInterfacePortSet());
    EXPECT_FALSE(static_cast<const Fragment&>(record).GetOstraInterfacePort().IsPortSet());
}

TEST(BinaryLengths, BeyondTheEndOfTheEnclosingRecordAreReportedByTheEnclosingOne)
{
    // The port has the right length, but the fragment around it is too short.
    Fragment record;
    const QByteArray content = entry(ostraInterfacePortTag, portEntry(4));
    expectLengthErrorOf(record, content, static_cast<int>(content.size()) - 4, "Fragment");
    EXPECT_TRUE(record.IsOstraInterfacePortSet());
    EXPECT_EQ(record.GetOstraInterfacePort().GetPort(), 4U);
}

// --- streams that end too early -------------------------------------------------------------

TEST(BinaryReadingOfACutStream, EndsInALengthErrorAtEveryByteOfADocument)
{
    const QByteArray entries = fullDocumentFrame().mid(4);
    const int length = static_cast<int>(entries.size());
    for (const bool validate : {false, true}) {
        for (int present = 0; present < length; ++present) {
            PelLu300RouterInterfaceXml document;
            document.SetValidate(validate);
            QDataStream stream(entries.left(present));
            EXPECT_THROW(document.SetBinary(stream, length), BinaryParsingException)
                << present << " bytes, validation " << validate;
            EXPECT_FALSE(document.IsPelLu300RouterMessageSet()) << present;
            EXPECT_LE(messageIn(document).GetFragment().size(), 6) << present;
        }
    }
}

TEST(BinaryReadingOfACutStream, EndsInALengthErrorOnADeviceThatOnlyGoesForwards)
{
    const QByteArray entries = fullDocumentFrame().mid(4);
    const int length = static_cast<int>(entries.size());
    for (int present = 0; present < length; ++present) {
        PelLu300RouterInterfaceXml document;
        ForwardDevice device(entries.left(present));
        QDataStream stream(&device);
        EXPECT_THROW(document.SetBinary(stream, length), BinaryParsingException) << present;
    }
}

TEST(BinaryReadingOfACutStream, KeepsEveryItemThatWasWhole)
{
    const QByteArray entries =
        entry(typeTag, textPayload("Event"))
        + entry(fragmentTag, list(3, portElement(1) + portElement(2) + portElement(3)));
    const int length = static_cast<int>(entries.size());
    const int items = 17 + 8 + 4;
    for (int present = items; present < length; ++present) {
        PelLu300RouterMessage message;
        QDataStream stream(entries.left(present));
        EXPECT_THROW(message.SetBinary(stream, length), BinaryParsingException) << present;
        EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
        EXPECT_EQ(message.IsFragmentSet(), present >= items + 28) << present;
        EXPECT_EQ(message.GetFragment().size(), (present - items) / 28) << present;
    }
}

TEST(BinaryReadingOfACutStream, NamesTheInnermostRecordThatIsNotWhole)
{
    const QByteArray whole = bytes(Sample<PelLu300RouterInterfaceXml>::frame);
    const struct
    {
        int present;
        const char* name;
    } cuts[] = {
        {4, "PelLu300RouterInterfaceXml"}, // nothing
        {8, "PelLu300RouterInterfaceXml"}, // inside the entry's length
        {12, "PelLu300RouterMessage"},     // before the first entry
        {26, "PelLu300RouterMessage"},     // inside the type's name
        {40, "PelLu300RouterMessage"},     // inside the number
        {55, "PelLu300RouterMessage"},     // inside the count
        {59, "PelLu300RouterMessage"},     // inside the element's length
        {61, "Fragment"},                  // before the element's entry
        {65, "Fragment"},                  // inside the entry's header
        {69, "OstraInterfacePort"},        // before the port's entry
        {84, "OstraInterfacePort"},        // inside the port's value
    };
    for (const auto& cut : cuts) {
        PelLu300RouterInterfaceXml document;
        expectLengthError(document, whole.left(cut.present), cut.name);
        EXPECT_FALSE(document.IsPelLu300RouterMessageSet());
    }
}

TEST(BinaryReadingOfACutStream, KeepsValueAndFlagOfAMemberWhosePayloadIsNotWhole)
{
    for (const bool validate : {false, true}) {
        for (int missing = 1; missing <= 8; ++missing) {
            const QByteArray entries = portEntry(5);
            const QByteArray cut = entries.left(entries.size() - missing);
            OstraInterfacePort set;
            set.SetPort(3);
            set.SetValidate(validate);
            expectLengthErrorOf(set, cut, 16, "OstraInterfacePort");
            EXPECT_EQ(set.GetPort(), 3U);
            EXPECT_TRUE(set.IsPortSet());
            OstraInterfacePort unset;
            unset.SetValidate(validate);
            expectLengthErrorOf(unset, cut, 16, "OstraInterfacePort");
            EXPECT_FALSE(unset.IsPortSet());
        }
    }
}

TEST(BinaryReadingOfACutStream, KeepsATruthValueWhoseByteIsMissing)
{
    AcquireMastership record;
    record.SetSuccess(true);
    expectLengthErrorOf(record, word(successTag) + word(1), 9, "AcquireMastership");
    EXPECT_TRUE(record.GetSuccess());
    ReleaseMastership unset;
    expectLengthErrorOf(unset, word(successTag) + word(1), 9, "ReleaseMastership");
    EXPECT_FALSE(unset.IsSuccessSet());
}

TEST(BinaryReadingOfACutStream, KeepsTextsWhoseBytesAreMissing)
{
    for (const bool validate : {false, true}) {
        const QByteArray address = entry(addressTag, textPayload("new"));
        const QByteArray state = entry(stateTag, textPayload("RouterIsMaster"));
        const QByteArray frequency = entry(frequencyTag, textPayload("12.50"));
        for (int present = 8; present < address.size(); ++present) {
            PelVtConnectServer record;
            record.SetAddress(QStringLiteral("old"));
            record.SetValidate(validate);
            expectLengthErrorOf(record, portEntry(4) + address.left(present), 16 + 15, "PelVtConnectServer");
            EXPECT_EQ(record.GetAddress(), QStringLiteral("old"));
            EXPECT_EQ(record.GetPort(), 4U);
        }
        for (int present = 8; present < state.size(); ++present) {
            MastershipState record;
            record.SetValidate(validate);
            expectLengthErrorOf(record, state.left(present), static_cast<int>(state.size()),
                                "MastershipState");
            EXPECT_FALSE(record.IsStateSet());
        }
        for (int present = 8; present < frequency.size(); ++present) {
            DF_Params record;
            record.SetFrequency(1);
            record.SetValidate(validate);
            expectLengthErrorOf(record, frequency.left(present), static_cast<int>(frequency.size()),
                                "DF_Params");
            EXPECT_EQ(record.GetFrequency(), 1);
            EXPECT_FALSE(record.IsBandwidthSet());
        }
    }
}

// --- skipping -------------------------------------------------------------------------------

TEST(BinarySkipping, ConsumesExactlyThePayload)
{
    const OstraInterfacePort record;
    QDataStream stream(QByteArray(10, '\0'));
    EXPECT_EQ(record.skipCurrentElement(stream, 0, 1), 0);
    EXPECT_EQ(stream.device()->pos(), 0);
    EXPECT_EQ(record.skipCurrentElement(stream, 3, 1), 3);
    EXPECT_EQ(stream.device()->pos(), 3);
    EXPECT_EQ(record.skipCurrentElement(stream, -3, 1), 0);
    EXPECT_EQ(stream.device()->pos(), 3);
    EXPECT_EQ(record.skipCurrentElement(stream, 100, 1), 7);
    EXPECT_TRUE(stream.atEnd());
}

} // namespace
