// SPDX-License-Identifier: MIT
// Reading the binary form.
#include "BinarySupport.h"

#include <QtCore/QTemporaryFile>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace binary_support;

template <class R>
R readFrom(const QByteArray& frame)
{
    R record;
    readFrame(record, frame);
    return record;
}

const PelLu300RouterMessage& messageIn(const PelLu300RouterInterfaceXml& document)
{
    return document.GetPelLu300RouterMessage();
}

// The port of the item at that place of the list.
unsigned int portAt(const PelLu300RouterMessage& message, int index)
{
    const Fragment& item = message.GetFragment().at(index);
    EXPECT_EQ(item.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_TRUE(item.IsOstraInterfacePortSet());
    return item.GetOstraInterfacePort().GetPort();
}

QByteArray portElement(std::uint32_t port) { return frame(entry(ostraInterfacePortTag, portEntry(port))); }

// Expects that content, announced as length bytes, ends in the length error of the record of that name.
void expectLengthErrorOf(MODELKIT::IMKObject& record, const QByteArray& content, int length, const char* name)
{
    QDataStream stream(content);
    expectThrow<BinaryParsingException>([&] { record.SetBinary(stream, length); }, lengthErrorOf(name));
}

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
TYPED_TEST_SUITE(BinaryReadingOfEveryRecord, AllRecords);

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
    // The negative length gives the entry's own header back to the record's length, so that the loop
    // goes on to the members; the bytes consumed tell in the end.
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

// A record that tells how its settings are applied.
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
    // The reading ended right behind the refused element.
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

TEST(BinaryReadingOfAMessage, DoesNotLookAtTheTagForTheLengthOfTheItems)
{
    // The element lengths count, the entry's own length only for the message's.
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
    // A known entry takes what its type takes, whatever its length; only the sums are compared.
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
    // What follows is an entry that the fragment does not know.
    Fragment record;
    readFrame(record, frame(word(ostraInterfacePortTag) + word(0) + portEntry(4)));
    EXPECT_TRUE(record.IsOstraInterfacePortSet());
    EXPECT_FALSE(static_cast<const Fragment&>(record).GetOstraInterfacePort().IsPortSet());
}

TEST(BinaryLengths, BeyondTheEndOfTheEnclosingRecordAreReportedByTheEnclosingOne)
{
    // The port is whole and says so; the fragment around it is too short for it.
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
