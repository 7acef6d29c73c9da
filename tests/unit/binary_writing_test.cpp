// SPDX-License-Identifier: MIT
// Writing the binary form.
#include "BinarySupport.h"

#include <QtCore/QTemporaryFile>

#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace binary_support;

QByteArray framed(const MODELKIT::IMKObject& record, int id)
{
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    EXPECT_TRUE(record.GetBinary(stream, id, true));
    return written;
}

// --- every record ---------------------------------------------------------------------------

template <class R>
class BinaryWritingOfEveryRecord : public ::testing::Test
{
protected:
    const QByteArray m_frame = bytes(Sample<R>::frame);
    R m_record;

    void SetUp() override { Sample<R>::fill(m_record); }
};
TYPED_TEST_SUITE(BinaryWritingOfEveryRecord, RecordsWithSamples);

TYPED_TEST(BinaryWritingOfEveryRecord, WritesTheSetMembersInDeclarationOrder)
{
    EXPECT_EQ(frameOf(this->m_record), this->m_frame);
}

TYPED_TEST(BinaryWritingOfEveryRecord, WritesTheSameUnderValidation)
{
    this->m_record.SetValidate(true);
    EXPECT_EQ(frameOf(this->m_record), this->m_frame);
}

TYPED_TEST(BinaryWritingOfEveryRecord, WritesAnEmptyRecordWhenNothingIsSet)
{
    const TypeParam record;
    EXPECT_EQ(frameOf(record), bytes(Sample<TypeParam>::empty));
    EXPECT_EQ(framed(record, 0x0A0B0C0D), bytes("0A0B0C0D") + bytes(Sample<TypeParam>::empty));
}

TYPED_TEST(BinaryWritingOfEveryRecord, PutsTheIdUnchangedBeforeTheLength)
{
    EXPECT_EQ(framed(this->m_record, 0), bytes("00000000") + this->m_frame);
    EXPECT_EQ(framed(this->m_record, 1), bytes("00000001") + this->m_frame);
    EXPECT_EQ(framed(this->m_record, -1), bytes("FFFFFFFF") + this->m_frame);
    EXPECT_EQ(framed(this->m_record, -102472496), bytes("F9E464D0") + this->m_frame);
    EXPECT_EQ(framed(this->m_record, std::numeric_limits<int>::max()), bytes("7FFFFFFF") + this->m_frame);
    EXPECT_EQ(framed(this->m_record, std::numeric_limits<int>::min()), bytes("80000000") + this->m_frame);
}

TYPED_TEST(BinaryWritingOfEveryRecord, LeavesTheIdOutWhenNotAskedForIt)
{
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    EXPECT_TRUE(this->m_record.GetBinary(stream, 0x0A0B0C0D, false));
    EXPECT_EQ(written, this->m_frame);
}

TYPED_TEST(BinaryWritingOfEveryRecord, FollowsTheByteOrderOfTheStream)
{
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    stream.setByteOrder(QDataStream::LittleEndian);
    EXPECT_TRUE(this->m_record.GetBinary(stream, 0x0A0B0C0D, true));
    EXPECT_EQ(written, bytes("0D0C0B0A") + bytes(Sample<TypeParam>::littleEndianFrame));
    EXPECT_EQ(stream.byteOrder(), QDataStream::LittleEndian);
}

TYPED_TEST(BinaryWritingOfEveryRecord, IsTheSameInEveryVersionOfTheStream)
{
    const int newest = QDataStream().version();
    for (int version = QDataStream::Qt_1_0; version <= newest; ++version) {
        QByteArray written;
        QDataStream stream(&written, QIODevice::WriteOnly);
        stream.setVersion(version);
        this->m_record.GetBinary(stream, 0, false);
        EXPECT_EQ(written, this->m_frame) << "version " << version;
        EXPECT_EQ(stream.version(), version);
    }
}

TYPED_TEST(BinaryWritingOfEveryRecord, IsTheSameInEveryVersionOfALittleEndianStream)
{
    const int newest = QDataStream().version();
    for (int version = QDataStream::Qt_1_0; version <= newest; ++version) {
        QByteArray written;
        QDataStream stream(&written, QIODevice::WriteOnly);
        stream.setByteOrder(QDataStream::LittleEndian);
        stream.setVersion(version);
        this->m_record.GetBinary(stream, 0, false);
        EXPECT_EQ(written, bytes(Sample<TypeParam>::littleEndianFrame)) << "version " << version;
    }
}

TYPED_TEST(BinaryWritingOfEveryRecord, AppendsBehindWhatTheStreamHoldsAlready)
{
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    stream << static_cast<qint32>(0x11223344);
    this->m_record.GetBinary(stream, 0, false);
    stream << static_cast<qint32>(0x55667788);
    this->m_record.GetBinary(stream, -1, true);
    EXPECT_EQ(written, bytes("11223344") + this->m_frame + bytes("55667788 FFFFFFFF") + this->m_frame);
}

TYPED_TEST(BinaryWritingOfEveryRecord, OverwritesInTheMiddleOfABufferAndStopsBehindTheFrame)
{
    QByteArray content(300, '\x5A');
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::ReadWrite));
    ASSERT_TRUE(buffer.seek(100));
    QDataStream stream(&buffer);
    EXPECT_TRUE(this->m_record.GetBinary(stream, 1, true));

    const auto end = 100 + 4 + this->m_frame.size();
    EXPECT_EQ(buffer.pos(), end);
    EXPECT_EQ(content,
              QByteArray(100, '\x5A') + bytes("00000001") + this->m_frame + QByteArray(300 - end, '\x5A'));
}

TYPED_TEST(BinaryWritingOfEveryRecord, WritesToAFile)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    QDataStream stream(&file);
    EXPECT_TRUE(this->m_record.GetBinary(stream, 0, false));
    EXPECT_EQ(file.pos(), this->m_frame.size());
    ASSERT_TRUE(file.seek(0));
    EXPECT_EQ(file.readAll(), this->m_frame);
}

TYPED_TEST(BinaryWritingOfEveryRecord, OverwritesInTheMiddleOfAFileAndStopsBehindTheFrame)
{
    QTemporaryFile file;
    ASSERT_TRUE(file.open());
    ASSERT_EQ(file.write(QByteArray(300, '\x5A')), 300);
    ASSERT_TRUE(file.seek(100));
    QDataStream stream(&file);
    EXPECT_TRUE(this->m_record.GetBinary(stream, 0, false));

    const auto end = 100 + this->m_frame.size();
    EXPECT_EQ(file.pos(), end);
    ASSERT_TRUE(file.seek(0));
    EXPECT_EQ(file.readAll(), QByteArray(100, '\x5A') + this->m_frame + QByteArray(300 - end, '\x5A'));
}

TYPED_TEST(BinaryWritingOfEveryRecord, LeavesTheRecordUnchanged)
{
    const TypeParam before(this->m_record);
    EXPECT_EQ(frameOf(this->m_record), this->m_frame);
    EXPECT_EQ(frameOf(this->m_record), this->m_frame);
    EXPECT_TRUE(this->m_record == before);
}

TYPED_TEST(BinaryWritingOfEveryRecord, GivesAnEmptyRecordItsBlock)
{
    const TypeParam record;
    ASSERT_FALSE(record.IsInitialized());
    frameOf(record);
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
}

TYPED_TEST(BinaryWritingOfEveryRecord, LeavesARecordThatSharesItsBlockUnchanged)
{
    TypeParam other;
    other = this->m_record;
    EXPECT_EQ(frameOf(other), this->m_frame);
    EXPECT_EQ(frameOf(this->m_record), this->m_frame);
}

// The stream ignores what is written to it while its status is bad.
TYPED_TEST(BinaryWritingOfEveryRecord, ReportsSuccessWhateverTheStatusOfTheStream)
{
    QByteArray written = bytes("11223344 55667788");
    QBuffer buffer(&written);
    ASSERT_TRUE(buffer.open(QIODevice::ReadWrite));
    ASSERT_TRUE(buffer.seek(4));
    QDataStream stream(&buffer);
    stream.setStatus(QDataStream::WriteFailed);
    EXPECT_TRUE(this->m_record.GetBinary(stream, 0, false));
    EXPECT_EQ(stream.status(), QDataStream::WriteFailed);
    EXPECT_EQ(written, bytes("11223344 55667788"));
    EXPECT_EQ(buffer.pos(), 4);
}

// A record that notes which of its operations are called, and in which order.
template <class R>
class Watched : public R
{
public:
    mutable std::vector<std::string> m_calls;
    bool m_refused = false;
    bool m_hasData = true;

    void SetValidate(bool validate) const override
    {
        m_calls.emplace_back(validate ? "validate on" : "validate off");
        R::SetValidate(validate);
    }
    void SetLogger(std::shared_ptr<MODELKIT::Logger> logger) const override
    {
        m_calls.emplace_back("logger");
        R::SetLogger(logger);
    }
    using R::Check;
    void Check(bool flag) const override
    {
        m_calls.emplace_back(flag ? "check true" : "check false");
        if (m_refused)
            throw OutOfRangeException(QStringLiteral("refused"));
    }
    bool HasData() const override
    {
        m_calls.emplace_back("data");
        return m_hasData;
    }
};

template <class R>
class BinaryWritingUnderValidation : public ::testing::Test
{
protected:
    Watched<R> m_record;

    void SetUp() override
    {
        Sample<R>::fill(m_record);
        m_record.SetValidate(true);
        m_record.m_calls.clear();
    }
};
TYPED_TEST_SUITE(BinaryWritingUnderValidation, RecordsWithSamples);

TYPED_TEST(BinaryWritingUnderValidation, ReappliesTheSettingsThenChecksThenAsksForData)
{
    EXPECT_EQ(frameOf(this->m_record), bytes(Sample<TypeParam>::frame));
    EXPECT_EQ(this->m_record.m_calls,
              (std::vector<std::string>{"validate on", "logger", "check false", "data"}));
}

TYPED_TEST(BinaryWritingUnderValidation, NeitherChecksNorAsksForDataWhenValidationIsOff)
{
    this->m_record.SetValidate(false);
    this->m_record.m_calls.clear();
    this->m_record.m_refused = true;
    this->m_record.m_hasData = false;
    EXPECT_EQ(frameOf(this->m_record), bytes(Sample<TypeParam>::frame));
    EXPECT_EQ(this->m_record.m_calls, (std::vector<std::string>{"validate off", "logger"}));
}

TYPED_TEST(BinaryWritingUnderValidation, WritesNothingWhenTheCheckThrows)
{
    this->m_record.m_refused = true;
    QByteArray written = bytes("11223344 55667788");
    QBuffer buffer(&written);
    ASSERT_TRUE(buffer.open(QIODevice::ReadWrite));
    ASSERT_TRUE(buffer.seek(4));
    QDataStream stream(&buffer);
    expectThrow<OutOfRangeException>([&] { this->m_record.GetBinary(stream, 1, true); },
                                     QStringLiteral("refused"));
    EXPECT_EQ(written, bytes("11223344 55667788"));
    EXPECT_EQ(buffer.pos(), 4);
}

TYPED_TEST(BinaryWritingUnderValidation, ReturnsFalseAndWritesNothingWithoutData)
{
    this->m_record.m_hasData = false;
    QByteArray written = bytes("11223344 55667788");
    QBuffer buffer(&written);
    ASSERT_TRUE(buffer.open(QIODevice::ReadWrite));
    ASSERT_TRUE(buffer.seek(4));
    QDataStream stream(&buffer);
    EXPECT_FALSE(this->m_record.GetBinary(stream, 1, true));
    EXPECT_EQ(written, bytes("11223344 55667788"));
    EXPECT_EQ(buffer.pos(), 4);
}

// --- the worked example ---------------------------------------------------------------------

TEST(BinaryWritingOfAPort, TakesTwentyBytesWithoutId)
{
    OstraInterfacePort record;
    record.SetPort(5000);
    EXPECT_EQ(frameOf(record), bytes("00 00 00 10 1F 98 05 17 00 00 00 08 00 00 00 00 00 00 13 88"));
}

TEST(BinaryWritingOfAPort, TakesTwentyFourBytesWithTheTagAsId)
{
    OstraInterfacePort record;
    record.SetPort(5000);
    EXPECT_EQ(framed(record, static_cast<int>(0xF9E464D0)),
              bytes("F9 E4 64 D0 00 00 00 10 1F 98 05 17 00 00 00 08 00 00 00 00 00 00 13 88"));
}

TEST(BinaryWritingOfAPort, TakesOnlyTheLengthWhenThePortIsNotSet)
{
    OstraInterfacePort record;
    record.SetPort(5000);
    record.ResetPort();
    EXPECT_EQ(frameOf(record), bytes("00 00 00 00"));
    EXPECT_EQ(framed(record, static_cast<int>(0xF9E464D0)), bytes("F9 E4 64 D0 00 00 00 00"));
}

// --- tags: each member alone ----------------------------------------------------------------

// The frame of a record after set().
template <class R, class Set>
std::function<QByteArray()> with(const Set& set)
{
    return [set] {
        R record;
        set(record);
        return frameOf(record);
    };
}

struct TaggedMember
{
    const char* name;
    std::function<QByteArray()> write;
    const char* frame;
};

void PrintTo(const TaggedMember& member, std::ostream* out) { *out << member.name; }

const TaggedMember taggedMembers[] = {
    {"OfTheDocumentsMessage", with<PelLu300RouterInterfaceXml>([](auto& record) {
         record.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Event);
     }),
     "00000019 9B1A7AD8 00000011 E1D9E008 00000009 00000005 4576656E74"},
    {"OfTheMessagesType",
     with<PelLu300RouterMessage>([](auto& record) { record.SetType(PelLu300RouterMessage::Request); }),
     "00000013 E1D9E008 0000000B 00000007 52657175657374"},
    {"OfTheMessagesMessageID", with<PelLu300RouterMessage>([](auto& record) { record.SetMessageID(9); }),
     "0000001C E1D9E008 00000004 FFFFFFFF EF193DE9 00000008 0000000000000009"},
    {"OfTheMessagesFragment",
     with<PelLu300RouterMessage>([](auto& record) { record.AppendFragment(Fragment()); }),
     "0000001C E1D9E008 00000004 FFFFFFFF 61023A90 00000008 00000001 00000000"},
    {"OfTheFragmentsMastershipState", with<Fragment>([](auto& record) { record.GetMastershipState(); }),
     "00000008 111939B4 00000000"},
    {"OfTheFragmentsAcquireMastership", with<Fragment>([](auto& record) { record.GetAcquireMastership(); }),
     "00000008 21BDA6E2 00000000"},
    {"OfTheFragmentsReleaseMastership", with<Fragment>([](auto& record) { record.GetReleaseMastership(); }),
     "00000008 FC38AB7C 00000000"},
    {"OfTheFragmentsOstraInterfacePort", with<Fragment>([](auto& record) { record.GetOstraInterfacePort(); }),
     "00000008 F9E464D0 00000000"},
    {"OfTheFragmentsPelVtConnectServer", with<Fragment>([](auto& record) { record.GetPelVtConnectServer(); }),
     "00000008 0BBAB464 00000000"},
    {"OfTheFragmentsRouterVtServerPort", with<Fragment>([](auto& record) { record.GetRouterVtServerPort(); }),
     "00000008 5D020EA0 00000000"},
    {"OfTheFragmentsDF_Params", with<Fragment>([](auto& record) { record.GetDF_Params(); }),
     "00000008 BE2DFF74 00000000"},
    {"OfTheMastershipStatesState",
     with<MastershipState>([](auto& record) { record.SetState(MastershipState::RouterIsMaster); }),
     "0000001A 4264F498 00000012 0000000E 526F7574657249734D6173746572"},
    {"OfTheMastershipStatesMasterClientID",
     with<MastershipState>([](auto& record) { record.SetMasterClientID(QStringLiteral("c")); }),
     "0000000D 0BCD2CF7 00000005 00000001 63"},
    {"OfTheSuccessOfAcquireMastership",
     with<AcquireMastership>([](auto& record) { record.SetSuccess(true); }), "00000009 BF8A59C6 00000001 01"},
    {"OfTheSuccessOfReleaseMastership",
     with<ReleaseMastership>([](auto& record) { record.SetSuccess(true); }), "00000009 BF8A59C6 00000001 01"},
    {"OfThePortOfOstraInterfacePort", with<OstraInterfacePort>([](auto& record) { record.SetPort(1); }),
     "00000010 1F980517 00000008 0000000000000001"},
    {"OfThePortOfRouterVtServerPort", with<RouterVtServerPort>([](auto& record) { record.SetPort(1); }),
     "00000010 1F980517 00000008 0000000000000001"},
    {"OfTheConnectServersAddress",
     with<PelVtConnectServer>([](auto& record) { record.SetAddress(QStringLiteral("a")); }),
     "0000000D 2AC271EC 00000005 00000001 61"},
    {"OfTheConnectServersPort", with<PelVtConnectServer>([](auto& record) { record.SetPort(1); }),
     "00000010 1F980517 00000008 0000000000000001"},
    {"OfTheParamsFrequency", with<DF_Params>([](auto& record) { record.SetFrequency(1); }),
     "00000010 A97DB5BE 00000008 00000004 312E3030"},
    {"OfTheParamsDemodulationFrequency",
     with<DF_Params>([](auto& record) { record.SetDemodulationFrequency(1); }),
     "00000010 5255927F 00000008 00000004 312E3030"},
    {"OfTheParamsBandwidth", with<DF_Params>([](auto& record) { record.SetBandwidth(1); }),
     "00000010 104A95AB 00000008 00000004 312E3030"},
    {"OfTheParamsPanoramaSpan", with<DF_Params>([](auto& record) { record.SetPanoramaSpan(1); }),
     "00000010 7029D96C 00000008 00000004 312E3030"},
};

class BinaryTags : public ::testing::TestWithParam<TaggedMember>
{
};
INSTANTIATE_TEST_SUITE_P(Alone, BinaryTags, ::testing::ValuesIn(taggedMembers),
                         [](const ::testing::TestParamInfo<TaggedMember>& tested) {
                             return tested.param.name;
                         });

TEST_P(BinaryTags, StandInFrontOfTheMember) { EXPECT_EQ(GetParam().write(), bytes(GetParam().frame)); }

// --- payloads -------------------------------------------------------------------------------

TEST(BinaryPayloads, UnsignedNumbersTakeEightBytesWithoutSign)
{
    OstraInterfacePort record;
    record.SetPort(0);
    EXPECT_EQ(frameOf(record), bytes("00000010 1F980517 00000008 0000000000000000"));
    record.SetPort(2147483648U);
    EXPECT_EQ(frameOf(record), bytes("00000010 1F980517 00000008 0000000080000000"));
    record.SetPort(4294967295U);
    EXPECT_EQ(frameOf(record), bytes("00000010 1F980517 00000008 00000000FFFFFFFF"));

    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Event);
    message.SetMessageID(4294967295U);
    EXPECT_EQ(frameOf(message),
              bytes("00000021 E1D9E008 00000009 00000005 4576656E74 EF193DE9 00000008 00000000FFFFFFFF"));
}

TEST(BinaryPayloads, TruthValuesTakeOneByte)
{
    AcquireMastership acquire;
    acquire.SetSuccess(false);
    EXPECT_EQ(frameOf(acquire), bytes("00000009 BF8A59C6 00000001 00"));
    acquire.SetSuccess(true);
    EXPECT_EQ(frameOf(acquire), bytes("00000009 BF8A59C6 00000001 01"));
}

// The text of a double in its entry.
QByteArray textOfDouble(double value)
{
    DF_Params record;
    record.SetBandwidth(value);
    const QByteArray written = frameOf(record);
    const QByteArray content = written.mid(16);
    EXPECT_EQ(written, frame(entry(bandwidthTag, textPayload(content))));
    return content;
}

TEST(BinaryPayloads, DoublesTravelAsTextWithTwoDecimals)
{
    EXPECT_EQ(textOfDouble(2.004), QByteArray("2.00"));
    EXPECT_EQ(textOfDouble(1234.5678), QByteArray("1234.57"));
    EXPECT_EQ(textOfDouble(1234567.891), QByteArray("1234567.89"));
    EXPECT_EQ(textOfDouble(0), QByteArray("0.00"));
    EXPECT_EQ(textOfDouble(-98.765), QByteArray("-98.77"));
    EXPECT_EQ(textOfDouble(-0.001), QByteArray("-0.00"));
    EXPECT_EQ(textOfDouble(5e9), QByteArray("5000000000.00"));
    EXPECT_EQ(textOfDouble(1e22), QByteArray("10000000000000000000000.00"));
}

TEST(BinaryPayloads, HugeDoublesTravelWithoutExponent)
{
    const QByteArray content = textOfDouble(1e300);
    EXPECT_EQ(content.size(), 304);
    EXPECT_TRUE(content.startsWith("1000000000000000"));
    EXPECT_TRUE(content.endsWith(".00"));
    EXPECT_FALSE(content.contains('e'));
}

TEST(BinaryPayloads, DoublesWithoutDigitsTravelAsTheirNames)
{
    EXPECT_EQ(textOfDouble(std::numeric_limits<double>::quiet_NaN()), QByteArray("nan"));
    EXPECT_EQ(textOfDouble(std::numeric_limits<double>::infinity()), QByteArray("inf"));
    EXPECT_EQ(textOfDouble(-std::numeric_limits<double>::infinity()), QByteArray("-inf"));
}

TEST(BinaryPayloads, ADoubleIsASevenByteTextWithItsCount)
{
    DF_Params record;
    record.SetFrequency(1234.5678);
    EXPECT_EQ(frameOf(record), bytes("00000013 A97DB5BE 0000000B 00000007 313233342E3537"));
}

TEST(BinaryPayloads, StringsTravelInUtf8)
{
    PelVtConnectServer server;
    server.SetAddress(QString::fromUtf8("Z\xC3\xBCrich"));
    EXPECT_EQ(frameOf(server), bytes("00000013 2AC271EC 0000000B 00000007 5A C3BC 72696368"));
    server.SetAddress(QString::fromUtf8("\xE2\x82\xAC\xF0\x9F\x93\xA1"));
    EXPECT_EQ(frameOf(server), bytes("00000013 2AC271EC 0000000B 00000007 E282AC F09F93A1"));

    MastershipState state;
    state.SetMasterClientID(QString::fromUtf8("\xC3\xA9"));
    EXPECT_EQ(frameOf(state), bytes("0000000E 0BCD2CF7 00000006 00000002 C3A9"));
}

TEST(BinaryPayloads, StringsKeepNullCharacters)
{
    MastershipState state;
    state.SetMasterClientID(QString::fromUtf8("a\0b\0", 4));
    EXPECT_EQ(frameOf(state), bytes("00000010 0BCD2CF7 00000008 00000004 61006200"));
}

TEST(BinaryPayloads, EmptyStringsHaveTheCountZero)
{
    PelVtConnectServer server;
    server.SetAddress(empty());
    EXPECT_EQ(frameOf(server), bytes("0000000C 2AC271EC 00000004 00000000"));
    MastershipState state;
    state.SetMasterClientID(empty());
    EXPECT_EQ(frameOf(state), bytes("0000000C 0BCD2CF7 00000004 00000000"));
}

TEST(BinaryPayloads, NullStringsHaveACountOfTheirOwn)
{
    PelVtConnectServer server;
    server.SetAddress(QString());
    EXPECT_EQ(frameOf(server), bytes("0000000C 2AC271EC 00000004 FFFFFFFF"));
    MastershipState state;
    state.SetMasterClientID(QString());
    EXPECT_EQ(frameOf(state), bytes("0000000C 0BCD2CF7 00000004 FFFFFFFF"));
}

TEST(BinaryPayloads, LongStringsAreWrittenWhole)
{
    PelVtConnectServer server;
    server.SetAddress(QString(70000, QLatin1Char('x')));
    EXPECT_EQ(frameOf(server), bytes("0001117C 2AC271EC 00011174 00011170") + QByteArray(70000, 'x'));
}

TEST(BinaryPayloads, StatesTravelByName)
{
    MastershipState record;
    record.SetState(MastershipState::NoMasterPresent);
    EXPECT_EQ(frameOf(record), bytes("0000001B 4264F498 00000013 0000000F 4E6F4D617374657250726573656E74"));
    record.SetState(MastershipState::MasterPresent);
    EXPECT_EQ(frameOf(record), bytes("00000019 4264F498 00000011 0000000D 4D617374657250726573656E74"));
    record.SetState(MastershipState::RouterIsMaster);
    EXPECT_EQ(frameOf(record), bytes("0000001A 4264F498 00000012 0000000E 526F7574657249734D6173746572"));
}

TEST(BinaryPayloads, TypesTravelByName)
{
    PelLu300RouterMessage record;
    record.SetType(PelLu300RouterMessage::Request);
    EXPECT_EQ(frameOf(record), bytes("00000013 E1D9E008 0000000B 00000007 52657175657374"));
    record.SetType(PelLu300RouterMessage::Reply);
    EXPECT_EQ(frameOf(record), bytes("00000011 E1D9E008 00000009 00000005 5265706C79"));
    record.SetType(PelLu300RouterMessage::Event);
    EXPECT_EQ(frameOf(record), bytes("00000011 E1D9E008 00000009 00000005 4576656E74"));
}

TEST(BinaryPayloads, ANumberThatIsNoEnumeratorHasANullName)
{
    MastershipState state;
    state.SetState(static_cast<MastershipState::State>(3));
    EXPECT_EQ(frameOf(state), bytes("0000000C 4264F498 00000004 FFFFFFFF"));
    PelLu300RouterMessage message;
    message.SetType(static_cast<PelLu300RouterMessage::Type>(-1));
    EXPECT_EQ(frameOf(message), bytes("0000000C E1D9E008 00000004 FFFFFFFF"));
}

TEST(BinaryPayloads, AnEnumeratorThatServesAsInvalidValueKeepsItsName)
{
    MastershipState state;
    state.SetInvalidState(MastershipState::MasterPresent);
    state.SetState(MastershipState::MasterPresent);
    EXPECT_EQ(frameOf(state), bytes("00000019 4264F498 00000011 0000000D 4D617374657250726573656E74"));
}

// --- which members are written --------------------------------------------------------------

TEST(BinaryWriting, KeepsDeclarationOrderWhateverTheOrderOfSetting)
{
    PelVtConnectServer server;
    server.SetPort(7000);
    server.SetAddress(QStringLiteral("vt.example"));
    EXPECT_EQ(frameOf(server), bytes(Sample<PelVtConnectServer>::frame));

    DF_Params tuning;
    tuning.SetPanoramaSpan(-2);
    tuning.SetBandwidth(120000);
    tuning.SetDemodulationFrequency(98.75);
    tuning.SetFrequency(98.5);
    EXPECT_EQ(frameOf(tuning), bytes(Sample<DF_Params>::frame));
}

TEST(BinaryWriting, LeavesOutMembersThatOnlyHaveADefault)
{
    PelVtConnectServer server;
    server.SetDefaultAddress(QStringLiteral("vt.example"));
    server.SetDefaultPort(5);
    EXPECT_EQ(frameOf(server), bytes("00000000"));
    server.Reset();
    EXPECT_EQ(frameOf(server), bytes("00000000"));
    server.ResetToDefault();
    EXPECT_EQ(frameOf(server), bytes("00000026 2AC271EC 0000000E 0000000A 76742E6578616D706C65"
                                     "1F980517 00000008 0000000000000005"));
}

TEST(BinaryWritingOfAMessage, WritesAnUnsetTypeWithTheNameOfItsValue)
{
    PelLu300RouterMessage message;
    message.SetDefaultType(PelLu300RouterMessage::Event);
    EXPECT_EQ(frameOf(message), bytes("0000000C E1D9E008 00000004 FFFFFFFF"));
    message.Reset();
    ASSERT_FALSE(message.IsTypeSet());
    EXPECT_EQ(frameOf(message), bytes("00000011 E1D9E008 00000009 00000005 4576656E74"));
}

TEST(BinaryWritingOfAMessage, LeavesOutAnEmptyListEvenWhenItIsSet)
{
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Reply);
    message.GetFragment();
    ASSERT_TRUE(message.IsFragmentSet());
    EXPECT_EQ(frameOf(message), bytes("00000011 E1D9E008 00000009 00000005 5265706C79"));
}

TEST(BinaryWritingOfAMessage, WritesTheItemsOfAListThatIsNotSet)
{
    for (const bool validate : {false, true}) {
        PelLu300RouterMessage message;
        message.SetType(PelLu300RouterMessage::Reply);
        QVector<Fragment>& items = message.GetFragment();
        message.ResetFragment();
        items.append(sampleOf<Fragment>());
        message.SetValidate(validate);
        ASSERT_FALSE(message.IsFragmentSet());
        EXPECT_EQ(frameOf(message), bytes("00000039 E1D9E008 00000009 00000005 5265706C79"
                                          "61023A90 00000020 00000001 00000018 F9E464D0 00000010"
                                          "1F980517 00000008 0000000000001388"))
            << validate;
    }
}

TEST(BinaryWritingOfAMessage, WritesTheItemsInListOrder)
{
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Reply);
    Fragment fragment;
    fragment.GetOstraInterfacePort().SetPort(1);
    message.AppendFragment(fragment);
    fragment.GetOstraInterfacePort().SetPort(2);
    message.AppendFragment(fragment);
    fragment.GetAcquireMastership();
    message.AppendFragment(fragment);
    EXPECT_EQ(frameOf(message), bytes("00000061 E1D9E008 00000009 00000005 5265706C79"
                                      "61023A90 00000048 00000003"
                                      "00000018 F9E464D0 00000010 1F980517 00000008 0000000000000001"
                                      "00000018 F9E464D0 00000010 1F980517 00000008 0000000000000002"
                                      "00000008 21BDA6E2 00000000"));
}

TEST(BinaryWritingOfAMessage, CountsAnItemWithoutDataButWritesNoFrameForItUnderValidation)
{
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Reply);
    message.AppendFragment(Fragment());
    message.AppendFragment(sampleOf<Fragment>());
    message.AppendFragment(Fragment());
    EXPECT_EQ(frameOf(message), bytes("00000041 E1D9E008 00000009 00000005 5265706C79"
                                      "61023A90 00000028 00000003 00000000"
                                      "00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388"
                                      "00000000"));
    message.SetValidate(true);
    EXPECT_EQ(frameOf(message), bytes("00000039 E1D9E008 00000009 00000005 5265706C79"
                                      "61023A90 00000020 00000003"
                                      "00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388"));
}

TEST(BinaryWritingOfAMessage, ThrowsUnderValidationWhenTheTypeIsNotSetAndWritesNothing)
{
    PelLu300RouterMessage message;
    message.SetMessageID(7);
    message.SetValidate(true);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    expectThrow<OutOfRangeException>([&] { message.GetBinary(stream, 0, true); },
                                     QStringLiteral("PelLu300RouterMessage: Please set Type properly."));
    EXPECT_EQ(written, QByteArray());
    EXPECT_EQ(stream.device()->pos(), 0);
}

TEST(BinaryWritingOfAFragment, WritesOnlyTheChosenPayload)
{
    Fragment fragment;
    fragment.SetAcquireMastership(sampleOf<AcquireMastership>());
    fragment.SetDF_Params(DF_Params());
    ASSERT_TRUE(fragment.IsAcquireMastershipSet());
    EXPECT_EQ(frameOf(fragment), bytes("00000008 BE2DFF74 00000000"));
    fragment.GetAcquireMastership();
    EXPECT_EQ(frameOf(fragment), bytes("00000011 21BDA6E2 00000009 BF8A59C6 00000001 01"));
}

TEST(BinaryWritingOfAFragment, WritesAnEmptyRecordWhenTheChosenPayloadIsNotSet)
{
    for (const bool validate : {false, true}) {
        Fragment fragment;
        fragment.GetAcquireMastership().SetSuccess(true);
        fragment.GetOstraInterfacePort().SetPort(5000);
        fragment.ResetOstraInterfacePort();
        ASSERT_EQ(fragment.GetChoiceFragment(), Fragment::OstraInterfacePort);
        fragment.SetValidate(validate);
        EXPECT_EQ(frameOf(fragment), bytes("00000000")) << validate;
    }
}

TEST(BinaryWritingOfAFragment, WritesAnEmptyRecordWithoutAChoice)
{
    Fragment fragment;
    fragment.GetOstraInterfacePort().SetPort(5000);
    fragment.ResetChoiceFragment();
    ASSERT_TRUE(fragment.IsOstraInterfacePortSet());
    EXPECT_EQ(frameOf(fragment), bytes("00000000"));
}

TEST(BinaryWritingOfAFragment, IsRefusedUnderValidationWithoutAChoice)
{
    Fragment fragment;
    fragment.SetValidate(true);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    EXPECT_FALSE(fragment.GetBinary(stream, 1, true));
    EXPECT_EQ(written, QByteArray());
    fragment.GetOstraInterfacePort();
    EXPECT_TRUE(fragment.GetBinary(stream, 1, true));
    EXPECT_EQ(written, bytes("00000001 00000008 F9E464D0 00000000"));
    fragment.ResetChoiceFragment();
    EXPECT_FALSE(fragment.GetBinary(stream, 2, true));
    EXPECT_EQ(written, bytes("00000001 00000008 F9E464D0 00000000"));
}

TEST(BinaryWritingOfADocument, WritesEveryPayloadOfEveryFragment)
{
    PelLu300RouterInterfaceXml document;
    fillFullDocument(document);
    EXPECT_EQ(frameOf(document), fullDocumentFrame());
    document.SetValidate(true);
    EXPECT_EQ(frameOf(document), fullDocumentFrame());
}

TEST(BinaryWritingOfADocument, WritesAnEmptyRecordWhenTheMessageWasNeverSet)
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Event);
    document.SetDefaultPelLu300RouterMessage(message);
    EXPECT_EQ(frameOf(document), bytes("00000000"));
    document.SetValidate(true);
    EXPECT_EQ(frameOf(document), bytes("00000000"));
    document.GetPelLu300RouterMessage().SetType(PelLu300RouterMessage::Event);
    document.ResetPelLu300RouterMessage();
    EXPECT_EQ(frameOf(document), bytes("00000000"));
}

TEST(BinaryWritingOfADocument, WritesAMessageThatWasOnlyHandedOut)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage();
    EXPECT_EQ(frameOf(document), bytes("00000014 9B1A7AD8 0000000C E1D9E008 00000004 FFFFFFFF"));
}

TEST(BinaryWritingOfADocument, WritesNothingWhenTheMessageFailsItsCheck)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().SetMessageID(7);
    document.SetValidate(true);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    expectThrow<OutOfRangeException>([&] { document.GetBinary(stream, 1, true); },
                                     QStringLiteral("PelLu300RouterMessage: Please set Type properly."));
    EXPECT_EQ(written, QByteArray());
}

// The check of a fragment does not include its payload, which is checked when it is written.
TEST(BinaryWritingOfAFragment, HasWrittenItsEmptyLengthWhenThePayloadFailsItsCheck)
{
    Fragment fragment;
    fragment.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    fragment.SetValidate(true);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    expectThrow<OutOfRangeException>([&] { fragment.GetBinary(stream, 1, true); },
                                     QStringLiteral("MastershipState: Please set State properly."));
    EXPECT_EQ(written, bytes("00000001 00000000"));
}

TEST(BinaryWritingOfADocument, LeavesTheEnclosingLengthsEmptyWhenAPayloadFailsItsCheck)
{
    PelLu300RouterInterfaceXml document;
    PelLu300RouterMessage& message = document.GetPelLu300RouterMessage();
    message.SetType(PelLu300RouterMessage::Request);
    Fragment fragment;
    fragment.SetOstraInterfacePort(sampleOf<OstraInterfacePort>());
    message.AppendFragment(fragment);
    fragment.GetPelVtConnectServer().SetAddress(QString());
    message.AppendFragment(fragment);
    document.SetValidate(true);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    expectThrow<OutOfRangeException>([&] { document.GetBinary(stream, 0, false); },
                                     QStringLiteral("PelVtConnectServer: Please set Address properly."));
    EXPECT_EQ(written, bytes("00000000 9B1A7AD8 00000000"
                             "E1D9E008 0000000B 00000007 52657175657374"
                             "61023A90 00000000 00000002"
                             "00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388"
                             "00000000"));
}

TEST(BinaryWritingOfADocument, IgnoresBrokenRulesWhenValidationIsOff)
{
    PelLu300RouterInterfaceXml document;
    Fragment fragment;
    fragment.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    document.GetPelLu300RouterMessage().AppendFragment(fragment);
    EXPECT_EQ(frameOf(document), bytes("00000038 9B1A7AD8 00000030 E1D9E008 00000004 FFFFFFFF"
                                       "61023A90 0000001C 00000001"
                                       "00000014 111939B4 0000000C 4264F498 00000004 FFFFFFFF"));
}

TEST(BinaryWritingOfADocument, HandsTheSettingsDownToEverythingItOwns)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage().AppendFragment(sampleOf<Fragment>());
    const auto logger = std::make_shared<MODELKIT::Logger>();
    document.SetLogger(logger);
    const PelLu300RouterMessage& message =
        static_cast<const PelLu300RouterInterfaceXml&>(document).GetPelLu300RouterMessage();
    const Fragment& fragment = message.GetFragment().at(0);
    message.SetValidate(true);
    message.SetLogger(nullptr);
    fragment.GetDF_Params().SetValidate(true);

    frameOf(document);
    EXPECT_FALSE(message.GetValidate());
    EXPECT_EQ(message.GetLogger(), logger);
    const Fragment& after = message.GetFragment().at(0);
    EXPECT_FALSE(after.GetValidate());
    EXPECT_EQ(after.GetLogger(), logger);
    EXPECT_FALSE(after.GetDF_Params().GetValidate());
    EXPECT_EQ(after.GetDF_Params().GetLogger(), logger);
    EXPECT_EQ(after.GetOstraInterfacePort().GetLogger(), logger);
}

} // namespace
