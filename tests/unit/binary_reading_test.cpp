// SPDX-License-Identifier: MIT
// Reading the binary form: rules for every record, the values of members by kind, and entries in any order.

#include "BinarySupport.h"

#include <QtCore/QTemporaryFile>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace binary_support;

// --- every record ---------------------------------------------------------------------------

template <class R>
class BinaryReadingOfEveryRecord : public ::testing::Test
{
protected:
    const QByteArray m_frame = bytes(Sample<R>::frame);
    const QByteArray m_entries = m_frame.mid(4);
    const int m_length = static_cast<int>(m_entries.size());
    const R m_sample = sampleOf<R>();
    R m_record;
};
TYPED_TEST_SUITE(BinaryReadingOfEveryRecord, RecordsWithSamples);

TYPED_TEST(BinaryReadingOfEveryRecord, GivesBackWhatWasWritten)
{
    readFrame(this->m_record, this->m_frame);
    EXPECT_TRUE(this->m_record == this->m_sample);
    EXPECT_EQ(frameOf(this->m_record), this->m_frame);
}

TYPED_TEST(BinaryReadingOfEveryRecord, GivesBackTheSameUnderValidation)
{
    this->m_record.SetValidate(true);
    readFrame(this->m_record, this->m_frame);
    EXPECT_TRUE(this->m_record == this->m_sample);
}

TYPED_TEST(BinaryReadingOfEveryRecord, FollowsTheByteOrderOfTheStream)
{
    QDataStream stream(bytes(Sample<TypeParam>::littleEndianFrame));
    stream.setByteOrder(QDataStream::LittleEndian);
    int length = 0;
    stream >> length;
    this->m_record.SetBinary(stream, length);
    EXPECT_TRUE(this->m_record == this->m_sample);
    EXPECT_TRUE(stream.atEnd());
    EXPECT_EQ(stream.byteOrder(), QDataStream::LittleEndian);
}

TYPED_TEST(BinaryReadingOfEveryRecord, IsTheSameInEveryVersionOfTheStreamInBothByteOrders)
{
    const int newest = QDataStream().version();
    for (int version = QDataStream::Qt_1_0; version <= newest; ++version) {
        QDataStream bigEndian(this->m_entries);
        bigEndian.setVersion(version);
        TypeParam record;
        record.SetBinary(bigEndian, this->m_length);
        EXPECT_TRUE(record == this->m_sample) << "version " << version;
        EXPECT_EQ(bigEndian.version(), version);

        QDataStream littleEndian(bytes(Sample<TypeParam>::littleEndianFrame).mid(4));
        littleEndian.setVersion(version);
        littleEndian.setByteOrder(QDataStream::LittleEndian);
        TypeParam other;
        other.SetBinary(littleEndian, this->m_length);
        EXPECT_TRUE(other == this->m_sample) << "version " << version;
    }
}

TYPED_TEST(BinaryReadingOfEveryRecord, StopsRightBehindTheFrame)
{
    const QByteArray content = bytes("0A0B0C0D") + this->m_frame + bytes("55667788 99");
    QDataStream stream(content);
    int id = 0;
    int length = 0;
    stream >> id >> length;
    this->m_record.SetBinary(stream, length);
    EXPECT_EQ(stream.device()->pos(), 4 + this->m_frame.size());
    int next = 0;
    stream >> next;
    EXPECT_EQ(next, 0x55667788);
    EXPECT_EQ(stream.status(), QDataStream::Ok);
}

TYPED_TEST(BinaryReadingOfEveryRecord, ReadsFromAFile)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    file.write(this->m_frame + bytes("55667788"));
    ASSERT_TRUE(file.seek(0));
    QDataStream stream(&file);
    int length = 0;
    stream >> length;
    this->m_record.SetBinary(stream, length);
    EXPECT_TRUE(this->m_record == this->m_sample);
    EXPECT_EQ(file.pos(), this->m_frame.size());
}

TYPED_TEST(BinaryReadingOfEveryRecord, ReadsFromADeviceThatOnlyGoesForwards)
{
    ForwardDevice device(entry(unknownTag, bytes("010203")) + this->m_entries
                         + entry(unknownTag, bytes("0405060708")) + bytes("55667788"));
    QDataStream stream(&device);
    this->m_record.SetBinary(stream, this->m_length + 11 + 13);
    EXPECT_TRUE(this->m_record == this->m_sample);
    EXPECT_EQ(device.left(), 4);
}

TYPED_TEST(BinaryReadingOfEveryRecord, NoticesTheEndOfADeviceThatOnlyGoesForwards)
{
    ForwardDevice device(this->m_entries);
    QDataStream stream(&device);
    expectThrow<BinaryParsingException>([&] { this->m_record.SetBinary(stream, this->m_length + 8); },
                                        lengthErrorOf(Sample<TypeParam>::name));
    EXPECT_TRUE(this->m_record == this->m_sample);
}

TYPED_TEST(BinaryReadingOfEveryRecord, IgnoresTheStatusOfTheStream)
{
    for (const auto status :
         {QDataStream::ReadPastEnd, QDataStream::ReadCorruptData, QDataStream::WriteFailed}) {
        QDataStream stream(this->m_entries);
        stream.setStatus(status);
        TypeParam record;
        record.SetBinary(stream, this->m_length);
        EXPECT_TRUE(record == this->m_sample) << status;
    }
}

TYPED_TEST(BinaryReadingOfEveryRecord, SkipsUnknownEntriesAtBothEnds)
{
    this->m_record.SetValidate(true);
    readFrame(this->m_record,
              frame(entry(unknownTag, bytes("010203")) + entry(0, QByteArray()) + this->m_entries
                    + entry(0xFFFFFFFF, QByteArray(1000, '\x7F')) + entry(unknownTag, QByteArray())));
    EXPECT_TRUE(this->m_record == this->m_sample);
}

TYPED_TEST(BinaryReadingOfEveryRecord, TakesNothingFromUnknownEntriesAlone)
{
    readFrame(this->m_record, frame(entry(unknownTag, QByteArray()) + entry(unknownTag, bytes("01"))
                                    + entry(static_cast<std::uint32_t>(TypeParam::id), this->m_entries)));
    EXPECT_FALSE(this->m_record.AnyData());
    EXPECT_TRUE(this->m_record == TypeParam());
}

TYPED_TEST(BinaryReadingOfEveryRecord, ReadsNothingFromLengthZeroAndSucceeds)
{
    QDataStream stream(this->m_frame);
    this->m_record.SetBinary(stream, 0);
    EXPECT_EQ(stream.device()->pos(), 0);
    EXPECT_TRUE(this->m_record.IsInitialized());
    EXPECT_FALSE(this->m_record.AnyData());
}

TYPED_TEST(BinaryReadingOfEveryRecord, SucceedsWithLengthZeroAtTheEndOfTheStream)
{
    Sample<TypeParam>::fill(this->m_record);
    QDataStream stream((QByteArray()));
    this->m_record.SetBinary(stream, 0);
    EXPECT_TRUE(this->m_record == this->m_sample);
}

TYPED_TEST(BinaryReadingOfEveryRecord, ReadsNothingFromANegativeLengthAndThrows)
{
    for (const int length : {-1, -8, -0x7FFFFFFF - 1}) {
        TypeParam record;
        QDataStream stream(this->m_entries);
        expectThrow<BinaryParsingException>([&] { record.SetBinary(stream, length); },
                                            lengthErrorOf(Sample<TypeParam>::name));
        EXPECT_EQ(stream.device()->pos(), 0);
        EXPECT_TRUE(record.IsInitialized());
        EXPECT_FALSE(record.AnyData());
    }
}

TYPED_TEST(BinaryReadingOfEveryRecord, ThrowsWhenTheLengthIsOneTooLargeButKeepsTheMembers)
{
    expectLengthErrorOf(this->m_record, this->m_entries, this->m_length + 1, Sample<TypeParam>::name);
    EXPECT_TRUE(this->m_record == this->m_sample);

    TypeParam moreFollows;
    expectLengthErrorOf(moreFollows, this->m_entries + QByteArray(100, '\0'), this->m_length + 1,
                        Sample<TypeParam>::name);
    EXPECT_TRUE(moreFollows == this->m_sample);
}

TYPED_TEST(BinaryReadingOfEveryRecord, ThrowsWhenTheLengthIsOneTooSmallButKeepsTheMembers)
{
    expectLengthErrorOf(this->m_record, this->m_entries, this->m_length - 1, Sample<TypeParam>::name);
    EXPECT_TRUE(this->m_record == this->m_sample);
}

TYPED_TEST(BinaryReadingOfEveryRecord, ThrowsWhenTheStreamEndsInsideTheHeaderOfAnEntry)
{
    for (int present = 0; present < 8; ++present) {
        TypeParam record;
        expectLengthErrorOf(record, this->m_entries.left(present), this->m_length, Sample<TypeParam>::name);
        EXPECT_FALSE(record.AnyData()) << present;
    }
}

TYPED_TEST(BinaryReadingOfEveryRecord, ThrowsWhenAnUnknownEntryReachesBehindTheEndOfTheStream)
{
    const QByteArray header = word(unknownTag) + word(16);
    for (int present = 0; present < 16; ++present) {
        TypeParam record;
        expectLengthErrorOf(record, this->m_entries + header + QByteArray(present, '\0'),
                            this->m_length + 8 + 16, Sample<TypeParam>::name);
        EXPECT_TRUE(record == this->m_sample) << present;
    }
}

TYPED_TEST(BinaryReadingOfEveryRecord, NeverMovesBackForAnUnknownEntryWithANegativeLength)
{
    // The negative length makes up for the header of the entry, so that the members are still read. In the
    // end too many bytes have been consumed.
    expectLengthErrorOf(this->m_record, word(unknownTag) + word(0xFFFFFFF8) + this->m_entries, this->m_length,
                        Sample<TypeParam>::name);
    EXPECT_TRUE(this->m_record == this->m_sample);
}

TYPED_TEST(BinaryReadingOfEveryRecord, ThrowsWithoutADevice)
{
    QDataStream stream;
    expectThrow<BinaryParsingException>([&] { this->m_record.SetBinary(stream, 16); },
                                        lengthErrorOf(Sample<TypeParam>::name));
    EXPECT_FALSE(this->m_record.AnyData());
}

TYPED_TEST(BinaryReadingOfEveryRecord, KeepsMembersThatTheStreamDoesNotHold)
{
    Sample<TypeParam>::fill(this->m_record);
    readFrame(this->m_record, frame(entry(unknownTag, bytes("01"))));
    EXPECT_TRUE(this->m_record == this->m_sample);
    EXPECT_EQ(frameOf(this->m_record), this->m_frame);
}

TYPED_TEST(BinaryReadingOfEveryRecord, LeavesARecordAloneThatSharedItsBlockWithTheReader)
{
    TypeParam unset;
    QDataStream nothing((QByteArray()));
    unset.SetBinary(nothing, 0);
    this->m_record = unset;
    readFrame(this->m_record, this->m_frame);
    EXPECT_TRUE(this->m_record == this->m_sample);
    EXPECT_FALSE(unset.AnyData());
}

TYPED_TEST(BinaryReadingOfEveryRecord, CutOffAnywhereEndsInALengthError)
{
    for (const bool validate : {false, true}) {
        for (int present = 0; present < this->m_length; ++present) {
            TypeParam record;
            record.SetValidate(validate);
            QDataStream stream(this->m_entries.left(present));
            EXPECT_THROW(record.SetBinary(stream, this->m_length), BinaryParsingException)
                << present << " bytes, validation " << validate;
            EXPECT_LE(stream.device()->pos(), present);
        }
    }
}

TYPED_TEST(BinaryReadingOfEveryRecord, ReportsUnderTheObjectsName)
{
    struct Renamed : TypeParam
    {
        Renamed() { this->SetObjectName(QStringLiteral("Other")); }
    } record;
    expectLengthErrorOf(record, QByteArray(), 1, "Other");
}

// A record that notes how its settings are applied.
template <class R>
class SettingsWatched : public R
{
public:
    mutable std::vector<std::string> m_calls;

    void SetValidate(bool validate) const override
    {
        m_calls.emplace_back(validate ? "validate on" : "validate off");
        R::SetValidate(validate);
    }
    void SetLogger(std::shared_ptr<MODELKIT::Logger> logger) const override
    {
        m_calls.emplace_back(logger ? "logger" : "no logger");
        R::SetLogger(logger);
    }
    using R::Check;
    void Check(bool flag) const override
    {
        m_calls.emplace_back("check");
        R::Check(flag);
    }
};

TYPED_TEST(BinaryReadingOfEveryRecord, ReappliesTheSettingsFirstAndDoesNotCheck)
{
    SettingsWatched<TypeParam> record;
    Sample<TypeParam>::fill(record);
    record.SetValidate(true);
    record.SetLogger(std::make_shared<MODELKIT::Logger>());
    record.m_calls.clear();
    readFrame(record, this->m_frame);
    EXPECT_EQ(record.m_calls, (std::vector<std::string>{"validate on", "logger"}));
}

TYPED_TEST(BinaryReadingOfEveryRecord, ReappliesTheSettingsEvenForANegativeLength)
{
    SettingsWatched<TypeParam> record;
    Sample<TypeParam>::fill(record);
    record.m_calls.clear();
    QDataStream stream(this->m_entries);
    EXPECT_THROW(record.SetBinary(stream, -1), BinaryParsingException);
    EXPECT_EQ(record.m_calls, (std::vector<std::string>{"validate off", "no logger"}));
}

// --- the worked example ---------------------------------------------------------------------

TEST(BinaryReadingOfAPort, ReadsTheSixteenBytesBehindTheLength)
{
    QDataStream stream(bytes("00 00 00 10 1F 98 05 17 00 00 00 08 00 00 00 00 00 00 13 88"));
    int length = 0;
    stream >> length;
    ASSERT_EQ(length, 16);
    OstraInterfacePort record;
    record.SetBinary(stream, 16);
    EXPECT_TRUE(record.IsPortSet());
    EXPECT_EQ(record.GetPort(), 5000U);
    EXPECT_TRUE(stream.atEnd());
}

TEST(BinaryReadingOfAPort, TakesThePortOfAnyRecordThatHasOne)
{
    EXPECT_EQ(readFrom<RouterVtServerPort>(bytes(Sample<OstraInterfacePort>::frame)).GetPort(), 5000U);
    EXPECT_EQ(readFrom<PelVtConnectServer>(bytes(Sample<OstraInterfacePort>::frame)).GetPort(), 5000U);
    const auto record = readFrom<OstraInterfacePort>(bytes(Sample<PelVtConnectServer>::frame));
    EXPECT_TRUE(record.IsPortSet());
    EXPECT_EQ(record.GetPort(), 7000U);
}

TEST(BinaryReadingOfSuccess, TakesTheSuccessOfTheOtherRecord)
{
    EXPECT_TRUE(readFrom<ReleaseMastership>(bytes(Sample<AcquireMastership>::frame)).GetSuccess());
}

// --- payloads -------------------------------------------------------------------------------

TEST(BinaryReading, TakesTheLargestPort)
{
    const auto record = readFrom<OstraInterfacePort>(frame(entry(portTag, bytes("00000000FFFFFFFF"))));
    EXPECT_EQ(record.GetPort(), 4294967295U);
    EXPECT_TRUE(record.IsPortSet());
}

TEST(BinaryReading, KeepsTheLowBitsOfAWiderNumber)
{
    EXPECT_EQ(readFrom<OstraInterfacePort>(frame(entry(portTag, bytes("0000000100000005")))).GetPort(), 5U);
    EXPECT_EQ(readFrom<OstraInterfacePort>(frame(entry(portTag, bytes("FFFFFFFFFFFFFFFF")))).GetPort(),
              4294967295U);
    EXPECT_EQ(readFrom<OstraInterfacePort>(frame(entry(portTag, bytes("8000000080000000")))).GetPort(),
              2147483648U);
    EXPECT_EQ(
        readFrom<PelLu300RouterMessage>(frame(entry(messageIdTag, bytes("7FFFFFFF00000000")))).GetMessageID(),
        0U);
}

TEST(BinaryReading, TakesEveryByteButZeroForTrue)
{
    for (const char* byte : {"01", "02", "7F", "80", "FF"})
        EXPECT_TRUE(readFrom<AcquireMastership>(frame(entry(successTag, bytes(byte)))).GetSuccess()) << byte;
    AcquireMastership record;
    record.SetSuccess(true);
    readFrame(record, frame(entry(successTag, bytes("00"))));
    EXPECT_FALSE(record.GetSuccess());
    EXPECT_TRUE(record.IsSuccessSet());
}

TEST(BinaryReading, TakesDoublesFromTheirText)
{
    const auto record = readFrom<DF_Params>(frame(
        entry(frequencyTag, textPayload("1234.57")) + entry(demodulationFrequencyTag, textPayload("-0.25"))
        + entry(bandwidthTag, textPayload("1.5e3")) + entry(panoramaSpanTag, textPayload("0.125"))));
    EXPECT_EQ(record.GetFrequency(), 1234.57);
    EXPECT_EQ(record.GetDemodulationFrequency(), -0.25);
    EXPECT_EQ(record.GetBandwidth(), 1500);
    EXPECT_EQ(record.GetPanoramaSpan(), 0.125);
}

TEST(BinaryReading, GivesBackDoublesAtTwoDecimals)
{
    DF_Params written;
    written.SetFrequency(1234.5678);
    written.SetBandwidth(2.004);
    const auto record = readFrom<DF_Params>(frameOf(written));
    EXPECT_EQ(record.GetFrequency(), 1234.57);
    EXPECT_EQ(record.GetBandwidth(), 2.0);
    EXPECT_FALSE(record.IsDemodulationFrequencySet());
    EXPECT_FALSE(record.IsPanoramaSpanSet());
}

TEST(BinaryReading, GivesBackDoublesWithoutDigits)
{
    DF_Params written;
    written.SetFrequency(std::nan(""));
    written.SetBandwidth(-HUGE_VAL);
    const auto record = readFrom<DF_Params>(frameOf(written));
    EXPECT_TRUE(std::isnan(record.GetFrequency()));
    EXPECT_EQ(record.GetBandwidth(), -HUGE_VAL);
}

TEST(BinaryReading, TakesZeroForATextThatIsNoNumber)
{
    for (const bool validate : {false, true}) {
        for (const QByteArray& payload : {textPayload("abc"), textPayload(""), textPayload("1,5"),
                                          textPayload("12 34"), textPayload("\xFF\xFE"), word(0xFFFFFFFF)}) {
            DF_Params record;
            record.SetFrequency(7);
            record.SetValidate(validate);
            readFrame(record, frame(entry(frequencyTag, payload) + entry(bandwidthTag, payload)));
            EXPECT_EQ(record.GetFrequency(), 0.0) << payload.toHex().constData();
            EXPECT_EQ(record.GetBandwidth(), 0.0);
            EXPECT_TRUE(record.IsFrequencySet());
            EXPECT_TRUE(record.IsBandwidthSet());
        }
    }
}

TEST(BinaryReading, DecodesStringsFromUtf8)
{
    auto server =
        readFrom<PelVtConnectServer>(frame(entry(addressTag, textPayload("Z\xC3\xBCrich \xF0\x9F\x93\xA1"))));
    EXPECT_EQ(server.GetAddress(), QString::fromUtf8("Z\xC3\xBCrich \xF0\x9F\x93\xA1"));
    auto state = readFrom<MastershipState>(frame(entry(masterClientIdTag, textPayload("\xE2\x82\xAC"))));
    EXPECT_EQ(state.GetMasterClientID(), QString(QChar(0x20AC)));
}

TEST(BinaryReading, ReplacesBytesThatAreNoUtf8)
{
    auto server = readFrom<PelVtConnectServer>(frame(entry(addressTag, textPayload("a\xFFz"))));
    EXPECT_EQ(server.GetAddress(),
              QLatin1String("a") + QChar(QChar::ReplacementCharacter) + QLatin1String("z"));
}

TEST(BinaryReading, KeepsNullCharactersInStrings)
{
    const QString expected = QString::fromUtf8("\0a\0", 3);
    auto state =
        readFrom<MastershipState>(frame(entry(masterClientIdTag, textPayload(QByteArray("\0a\0", 3)))));
    EXPECT_EQ(state.GetMasterClientID().size(), 3);
    EXPECT_EQ(state.GetMasterClientID(), expected);
    auto server = readFrom<PelVtConnectServer>(frame(entry(addressTag, textPayload(QByteArray("\0a\0", 3)))));
    EXPECT_EQ(server.GetAddress(), expected);
}

TEST(BinaryReading, TakesLongStringsWhole)
{
    const QByteArray content(3 * 1024 * 1024 + 1, 'y');
    auto server = readFrom<PelVtConnectServer>(frame(entry(addressTag, textPayload(content)) + portEntry(1)));
    EXPECT_EQ(server.GetAddress().size(), content.size());
    EXPECT_TRUE(server.GetAddress() == QString::fromLatin1(content));
    EXPECT_EQ(server.GetPort(), 1U);
}

TEST(BinaryReading, TellsEmptyStringsFromNullStrings)
{
    auto state = readFrom<MastershipState>(frame(entry(masterClientIdTag, textPayload(""))));
    EXPECT_TRUE(state.GetMasterClientID().isEmpty());
    EXPECT_FALSE(state.GetMasterClientID().isNull());
    EXPECT_TRUE(state.IsMasterClientIDSet());
    readFrame(state, frame(entry(masterClientIdTag, word(0xFFFFFFFF))));
    EXPECT_TRUE(state.GetMasterClientID().isNull());
    EXPECT_TRUE(state.IsMasterClientIDSet());

    auto server = readFrom<PelVtConnectServer>(frame(entry(addressTag, textPayload(""))));
    EXPECT_FALSE(server.GetAddress().isNull());
    readFrame(server, frame(entry(addressTag, word(0xFFFFFFFF))));
    EXPECT_TRUE(server.GetAddress().isNull());
    EXPECT_TRUE(server.IsAddressSet());
}

TEST(BinaryReading, TakesEmptyStringsUnderValidation)
{
    MastershipState state;
    state.SetValidate(true);
    readFrame(state, frame(entry(masterClientIdTag, textPayload(""))));
    EXPECT_FALSE(state.GetMasterClientID().isNull());
    EXPECT_TRUE(state.IsMasterClientIDSet());
}

TEST(BinaryReading, RefusesNullStringsUnderValidationAndKeepsTheOldOne)
{
    MastershipState state;
    state.SetMasterClientID(QStringLiteral("old"));
    state.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { readFrame(state, frame(entry(masterClientIdTag, word(0xFFFFFFFF)))); },
        QStringLiteral("MastershipState: Please set MasterClientID properly."));
    EXPECT_EQ(state.GetMasterClientID(), QStringLiteral("old"));

    PelVtConnectServer server;
    server.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { readFrame(server, frame(portEntry(5) + entry(addressTag, word(0xFFFFFFFF)))); },
        QStringLiteral("PelVtConnectServer: Please set Address properly."));
    EXPECT_FALSE(server.IsAddressSet());
    EXPECT_EQ(server.GetPort(), 5U);
}

TEST(BinaryReading, TakesEveryEnumeratorByItsName)
{
    const struct
    {
        const char* name;
        MastershipState::State value;
    } states[] = {{"NoMasterPresent", MastershipState::NoMasterPresent},
                  {"MasterPresent", MastershipState::MasterPresent},
                  {"RouterIsMaster", MastershipState::RouterIsMaster}};
    for (const auto& expected : states) {
        const auto record = readFrom<MastershipState>(frame(entry(stateTag, textPayload(expected.name))));
        EXPECT_EQ(record.GetState(), expected.value);
        EXPECT_TRUE(record.IsStateSet());
    }
    const struct
    {
        const char* name;
        PelLu300RouterMessage::Type value;
    } types[] = {{"Request", PelLu300RouterMessage::Request},
                 {"Reply", PelLu300RouterMessage::Reply},
                 {"Event", PelLu300RouterMessage::Event}};
    for (const auto& expected : types) {
        const auto record =
            readFrom<PelLu300RouterMessage>(frame(entry(typeTag, textPayload(expected.name))));
        EXPECT_EQ(record.GetType(), expected.value);
        EXPECT_TRUE(record.IsTypeSet());
    }
}

TEST(BinaryReading, StoresTheInvalidValueForAnUnknownName)
{
    for (const QByteArray& payload :
         {textPayload("masterPresent"), textPayload("MasterPresent "), textPayload(""), textPayload("1"),
          textPayload(QByteArray("MasterPresent\0", 14)), word(0xFFFFFFFF)}) {
        MastershipState record;
        record.SetState(MastershipState::MasterPresent);
        readFrame(record, frame(entry(stateTag, payload)));
        EXPECT_EQ(record.GetState(), -1) << payload.toHex().constData();
        EXPECT_TRUE(record.IsStateSet());
    }
    const auto message = readFrom<PelLu300RouterMessage>(frame(entry(typeTag, textPayload("request"))));
    EXPECT_EQ(message.GetType(), -1);
    EXPECT_TRUE(message.IsTypeSet());
}

TEST(BinaryReading, ThrowsForAnUnknownNameUnderValidationAndKeepsTheOldValue)
{
    MastershipState state;
    state.SetState(MastershipState::MasterPresent);
    state.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readFrame(state, frame(entry(masterClientIdTag, textPayload("c"))
                                   + entry(stateTag, textPayload("Unknown"))));
        },
        QStringLiteral("enum is not valid (classname=MastershipState,membername=m_state)"));
    EXPECT_EQ(state.GetState(), MastershipState::MasterPresent);
    EXPECT_EQ(state.GetMasterClientID(), QStringLiteral("c"));

    PelLu300RouterMessage message;
    message.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readFrame(message,
                      frame(entry(typeTag, textPayload("Unknown")) + entry(messageIdTag, word(0) + word(3))));
        },
        QStringLiteral("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"));
    EXPECT_FALSE(message.IsTypeSet());
    EXPECT_FALSE(message.IsMessageIDSet());
}

TEST(BinaryReading, UsesTheRecordsOwnInvalidValueForAnUnknownName)
{
    MastershipState state;
    state.SetInvalidState(MastershipState::RouterIsMaster);
    state.SetValidate(true);
    readFrame(state, frame(entry(stateTag, textPayload("Unknown"))));
    EXPECT_EQ(state.GetState(), MastershipState::RouterIsMaster);
    EXPECT_TRUE(state.IsStateSet());

    PelLu300RouterMessage message;
    message.SetInvalidType(static_cast<PelLu300RouterMessage::Type>(9));
    readFrame(message, frame(entry(typeTag, textPayload("Unknown"))));
    EXPECT_EQ(message.GetType(), 9);
}

TEST(BinaryReading, GivesAnUnsetTypeBackAsSetToTheInvalidValue)
{
    PelLu300RouterMessage written;
    written.SetMessageID(4);
    const auto record = readFrom<PelLu300RouterMessage>(frameOf(written));
    EXPECT_EQ(record.GetType(), -1);
    EXPECT_TRUE(record.IsTypeSet());
    EXPECT_EQ(record.GetMessageID(), 4U);
}

// --- merging --------------------------------------------------------------------------------

TEST(BinaryReading, TakesEntriesInAnyOrder)
{
    const auto record = readFrom<DF_Params>(frame(
        entry(panoramaSpanTag, textPayload("4.00")) + entry(frequencyTag, textPayload("1.00"))
        + entry(bandwidthTag, textPayload("3.00")) + entry(demodulationFrequencyTag, textPayload("2.00"))));
    EXPECT_EQ(record.GetFrequency(), 1);
    EXPECT_EQ(record.GetDemodulationFrequency(), 2);
    EXPECT_EQ(record.GetBandwidth(), 3);
    EXPECT_EQ(record.GetPanoramaSpan(), 4);

    const auto message = readFrom<PelLu300RouterMessage>(
        frame(entry(fragmentTag, list(1, portElement(8))) + entry(messageIdTag, bytes("0000000000000002"))
              + entry(typeTag, textPayload("Event"))));
    EXPECT_EQ(message.GetType(), PelLu300RouterMessage::Event);
    EXPECT_EQ(message.GetMessageID(), 2U);
    ASSERT_EQ(message.GetFragment().size(), 1);
    EXPECT_EQ(portAt(message, 0), 8U);
}

TEST(BinaryReading, SkipsUnknownEntriesBetweenKnownOnes)
{
    auto record = readFrom<PelVtConnectServer>(
        frame(entry(addressTag, textPayload("a")) + entry(unknownTag, portEntry(1))
              + entry(stateTag, textPayload("MasterPresent")) + portEntry(2)));
    EXPECT_EQ(record.GetAddress(), QStringLiteral("a"));
    EXPECT_EQ(record.GetPort(), 2U);
}

TEST(BinaryReading, KeepsValueAndFlagOfAbsentMembers)
{
    PelVtConnectServer server;
    server.SetAddress(QStringLiteral("old"));
    readFrame(server, frame(portEntry(2)));
    EXPECT_EQ(server.GetAddress(), QStringLiteral("old"));
    EXPECT_TRUE(server.IsAddressSet());
    EXPECT_EQ(server.GetPort(), 2U);
    EXPECT_TRUE(server.IsPortSet());

    DF_Params tuning;
    tuning.SetDefaultFrequency(5);
    tuning.Reset();
    readFrame(tuning, frame(entry(bandwidthTag, textPayload("3.00"))));
    EXPECT_FALSE(tuning.IsFrequencySet());
    EXPECT_EQ(tuning.GetFrequency(), 5);
    EXPECT_EQ(tuning.GetBandwidth(), 3);
}

TEST(BinaryReading, KeepsTheLastOfRepeatedEntries)
{
    EXPECT_EQ(readFrom<OstraInterfacePort>(frame(portEntry(1) + portEntry(2) + portEntry(3))).GetPort(), 3U);
    const auto state = readFrom<MastershipState>(frame(entry(stateTag, textPayload("RouterIsMaster"))
                                                       + entry(stateTag, textPayload("NoMasterPresent"))));
    EXPECT_EQ(state.GetState(), MastershipState::NoMasterPresent);
}

TEST(BinaryReading, LeavesDefaultsAlone)
{
    PelVtConnectServer server;
    server.SetDefaultAddress(QStringLiteral("default"));
    server.SetDefaultPort(9);
    readFrame(server, bytes(Sample<PelVtConnectServer>::frame));
    EXPECT_EQ(server.GetDefaultAddress(), QStringLiteral("default"));
    EXPECT_EQ(server.GetDefaultPort(), 9U);
    server.ResetToDefault();
    EXPECT_EQ(server.GetPort(), 9U);
}

TEST(BinaryReading, LeavesARecordAloneThatSharedItsBlockWithTheReader)
{
    const auto original = sampleOf<PelLu300RouterInterfaceXml>();
    PelLu300RouterInterfaceXml reader;
    reader = original;
    readFrame(reader, bytes(Sample<PelLu300RouterInterfaceXml>::frame));
    EXPECT_EQ(messageIn(reader).GetFragment().size(), 2);
    EXPECT_EQ(frameOf(original), bytes(Sample<PelLu300RouterInterfaceXml>::frame));
}

} // namespace
