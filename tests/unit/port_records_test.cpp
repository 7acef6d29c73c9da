// SPDX-License-Identifier: MIT
// The records with connection endpoints: OstraInterfacePort, RouterVtServerPort and PelVtConnectServer.

#include "TestSupport.h"

#include <string>
#include <type_traits>
#include <utility>

namespace {

using namespace testing_support;

// The names and ids of the three classes.
template <class R>
struct Literals;
template <>
struct Literals<OstraInterfacePort>
{
    static constexpr const char* name = "OstraInterfacePort";
    static constexpr long long id = 2130783928LL;
};
template <>
struct Literals<RouterVtServerPort>
{
    static constexpr const char* name = "RouterVtServerPort";
    static constexpr long long id = 617063688LL;
};
template <>
struct Literals<PelVtConnectServer>
{
    static constexpr const char* name = "PelVtConnectServer";
    static constexpr long long id = 140772172LL;
};

template <class R>
QString name()
{
    return QString::fromLatin1(Literals<R>::name);
}

// The record's element around the given content.
template <class R>
QString element(const char* content)
{
    return QStringLiteral("<") + name<R>() + QStringLiteral(">") + QString::fromUtf8(content)
           + QStringLiteral("</") + name<R>() + QStringLiteral(">");
}

template <class R>
QString lengthError()
{
    return name<R>()
           + QStringLiteral(
               "::SetBinary(...): Length error occurred during processing of binary representation");
}

const QString addressMessage = QStringLiteral("PelVtConnectServer: Please set Address properly.");

// A record that shows its type code.
template <class R>
struct WithTypeCode : R
{
    long long typeCode() const { return this->m_typeCode; }
};

// --- the port, which all three have -------------------------------------------------------------

template <class R>
class PortRecord : public ::testing::Test
{
};
using PortRecords = ::testing::Types<OstraInterfacePort, RouterVtServerPort, PelVtConnectServer>;
TYPED_TEST_SUITE(PortRecord, PortRecords, RecordName);

TYPED_TEST(PortRecord, NameAndIdAreThoseOfTheClass)
{
    EXPECT_EQ(TypeParam().GetObjectName(), name<TypeParam>());
    EXPECT_EQ(TypeParam::GetId(), Literals<TypeParam>::id);
    EXPECT_EQ(TypeParam::id, Literals<TypeParam>::id);
    EXPECT_EQ(WithTypeCode<TypeParam>().typeCode(), Literals<TypeParam>::id);
}

TYPED_TEST(PortRecord, AFreshRecordHoldsNothingAndReadingThePortGivesZeroAndInitialisesIt)
{
    TypeParam record;
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    EXPECT_FALSE(record.IsPortSet());
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_EQ(record.GetPort(), 0U);
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.IsPortSet());
    EXPECT_EQ(record.GetDefaultPort(), 0U);
}

TYPED_TEST(PortRecord, ADefaultPortIsGivenAfterTheNextResetOfThePort)
{
    TypeParam record;
    record.SetDefaultPort(7);
    EXPECT_EQ(record.GetPort(), 0U);
    EXPECT_FALSE(record.IsPortSet());
    record.ResetPort();
    EXPECT_EQ(record.GetPort(), 7U);
    EXPECT_FALSE(record.IsPortSet());
}

TYPED_TEST(PortRecord, ADefaultPortIsGivenAfterTheNextReset)
{
    TypeParam record;
    record.SetDefaultPort(7);
    record.Reset();
    EXPECT_EQ(record.GetPort(), 7U);
    EXPECT_FALSE(record.IsPortSet());
}

TYPED_TEST(PortRecord, ADefaultPortIsSetByResetToDefault)
{
    TypeParam record;
    record.SetDefaultPort(7);
    record.ResetToDefault();
    EXPECT_EQ(record.GetPort(), 7U);
    EXPECT_TRUE(record.IsPortSet());
    EXPECT_TRUE(record.AnyData());
}

TYPED_TEST(PortRecord, ResetToDefaultWithoutADefaultUnsetsThePort)
{
    TypeParam record;
    record.SetPort(7);
    record.ResetToDefault();
    EXPECT_EQ(record.GetPort(), 0U);
    EXPECT_FALSE(record.IsPortSet());
    EXPECT_TRUE(record.IsInitialized());
}

TYPED_TEST(PortRecord, ADefaultPortOfZeroCountsAsADefault)
{
    TypeParam record;
    record.SetDefaultPort(0);
    record.ResetToDefault();
    EXPECT_TRUE(record.IsPortSet());
}

TYPED_TEST(PortRecord, EveryPortIsValid)
{
    const TypeParam record;
    for (const unsigned int port : {0U, 1U, 65535U, 65536U, 2147483647U, 2147483648U, 4294967295U})
        EXPECT_TRUE(record.IsValidPort(port)) << port;
}

TYPED_TEST(PortRecord, EveryPortIsAcceptedUnderValidation)
{
    for (const unsigned int port : {0U, 1U, 65535U, 65536U, 2147483647U, 2147483648U, 4294967295U}) {
        TypeParam record;
        record.SetValidate(true);
        EXPECT_NO_THROW(record.SetPort(port));
        EXPECT_EQ(record.GetPort(), port);
        EXPECT_TRUE(record.IsPortSet());
        EXPECT_NO_THROW(record.Check());
    }
}

TYPED_TEST(PortRecord, PortZeroIsSetDiffersFromAFreshRecordAndIsWritten)
{
    TypeParam record;
    record.SetPort(0);
    EXPECT_TRUE(record.IsPortSet());
    EXPECT_TRUE(record.AnyData());
    EXPECT_TRUE(record != TypeParam());
    EXPECT_FALSE(record == TypeParam());
    EXPECT_EQ(xmlOf(record), element<TypeParam>("<Port>0</Port>"));
    EXPECT_EQ(frameOf(record), bytes("00000010 1F980517 00000008 0000000000000000"));
}

TYPED_TEST(PortRecord, RecordsWithTheSamePortAndDifferentDefaultsAreEqual)
{
    TypeParam a;
    TypeParam b;
    a.SetPort(1);
    b.SetPort(1);
    a.SetDefaultPort(2);
    b.SetDefaultPort(3);
    EXPECT_TRUE(a == b);
    b.SetPort(4);
    EXPECT_TRUE(a != b);
}

TYPED_TEST(PortRecord, AssignmentThenAReadOfEitherGivesEachItsOwnBlock)
{
    TypeParam a;
    a.SetPort(1);
    TypeParam b;
    b = a;
    EXPECT_EQ(b.GetPort(), 1U);
    b.SetPort(2);
    EXPECT_EQ(a.GetPort(), 1U);
    b = a;
    EXPECT_EQ(a.GetPort(), 1U);
    a.SetPort(3);
    EXPECT_EQ(b.GetPort(), 1U);
}

TYPED_TEST(PortRecord, ItAlwaysHasData)
{
    TypeParam record;
    EXPECT_TRUE(record.HasData());
    EXPECT_FALSE(record.IsInitialized());
    record.SetPort(1);
    EXPECT_TRUE(record.HasData());
    record.Reset();
    EXPECT_TRUE(record.HasData());
}

TYPED_TEST(PortRecord, AnyDataFollowsTheFlagOfThePort)
{
    TypeParam record;
    record.SetDefaultPort(5);
    record.Reset();
    EXPECT_EQ(record.GetPort(), 5U);
    EXPECT_FALSE(record.AnyData());
    record.SetPort(0);
    EXPECT_TRUE(record.AnyData());
    record.ResetPort();
    EXPECT_FALSE(record.AnyData());
}

TYPED_TEST(PortRecord, AnUnsetRecordIsAnEmptyElementWithAndWithoutValidation)
{
    const TypeParam record;
    const QString expected = QStringLiteral("<") + name<TypeParam>() + QStringLiteral("/>");
    EXPECT_EQ(xmlOf(record), expected);
    record.SetValidate(true);
    EXPECT_EQ(xmlOf(record), expected);
}

TYPED_TEST(PortRecord, ThePortIsWrittenInDecimal)
{
    TypeParam record;
    record.SetPort(5000);
    EXPECT_EQ(xmlOf(record), element<TypeParam>("<Port>5000</Port>"));
}

TYPED_TEST(PortRecord, TheLargestPortIsWrittenButReadBackFromXmlAsZero)
{
    TypeParam record;
    record.SetPort(4294967295U);
    EXPECT_EQ(xmlOf(record), element<TypeParam>("<Port>4294967295</Port>"));
    TypeParam back;
    readXml(back, element<TypeParam>("<Port>4294967295</Port>"));
    EXPECT_EQ(back.GetPort(), 0U);
    EXPECT_TRUE(back.IsPortSet());
}

TYPED_TEST(PortRecord, ThePortIsReadAsASignedDecimalNumberWithoutComplaint)
{
    const std::pair<const char*, unsigned int> texts[] = {{"5000", 5000U},     {"0", 0U},
                                                          {"007", 7U},         {"+8", 8U},
                                                          {"-1", 4294967295U}, {"2147483647", 2147483647U},
                                                          {"2147483648", 0U},  {"-2147483648", 2147483648U},
                                                          {"abc", 0U},         {"", 0U},
                                                          {"12.5", 0U},        {"0x10", 0U},
                                                          {"1,000", 0U}};
    for (const auto& [text, port] : texts) {
        SCOPED_TRACE(text);
        TypeParam record;
        record.SetValidate(true);
        record.SetPort(99);
        readXml(record, element<TypeParam>((std::string("<Port>") + text + "</Port>").c_str()));
        EXPECT_EQ(record.GetPort(), port);
        EXPECT_TRUE(record.IsPortSet());
    }
}

TYPED_TEST(PortRecord, AnUnreadablePortIsMarkedAsSet)
{
    TypeParam record;
    readXml(record, element<TypeParam>("<Port>abc</Port>"));
    EXPECT_TRUE(record.IsPortSet());
    EXPECT_EQ(record.GetPort(), 0U);
}

TYPED_TEST(PortRecord, ReadingAnElementWithoutPortKeepsThePort)
{
    TypeParam record;
    record.SetPort(3);
    readXml(record, element<TypeParam>(""));
    EXPECT_EQ(record.GetPort(), 3U);
    EXPECT_TRUE(record.IsPortSet());
    TypeParam fresh;
    readXml(fresh, element<TypeParam>(""));
    EXPECT_FALSE(fresh.IsPortSet());
    EXPECT_TRUE(fresh.IsInitialized());
}

TYPED_TEST(PortRecord, UnknownElementsAndAttributesAreIgnored)
{
    TypeParam record;
    readXml(record, element<TypeParam>("<port>1</port><Ports>2</Ports><Other><Port>3</Port></Other>"
                                       "<Port unit=\"x\">4</Port><Unknown/>"));
    EXPECT_EQ(record.GetPort(), 4U);
    TypeParam none;
    readXml(none, QStringLiteral("<%1 Port=\"5\"/>").arg(name<TypeParam>()));
    EXPECT_FALSE(none.IsPortSet());
}

TYPED_TEST(PortRecord, TheLastOfSeveralPortElementsCounts)
{
    TypeParam record;
    readXml(record, element<TypeParam>("<Port>1</Port><Port>2</Port>"));
    EXPECT_EQ(record.GetPort(), 2U);
}

TYPED_TEST(PortRecord, AnUnsetRecordIsAnEmptyFrame)
{
    const TypeParam record;
    EXPECT_EQ(frameOf(record), bytes("00000000"));
}

TYPED_TEST(PortRecord, ThePortTakesEightBytes)
{
    TypeParam record;
    record.SetPort(5000);
    EXPECT_EQ(frameOf(record), bytes("00000010 1F980517 00000008 0000000000001388"));
    record.SetPort(4294967295U);
    EXPECT_EQ(frameOf(record), bytes("00000010 1F980517 00000008 00000000FFFFFFFF"));
}

TYPED_TEST(PortRecord, TheIdStandsInFrontWhenAskedFor)
{
    TypeParam record;
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    stream << qint16(0x0102);
    EXPECT_TRUE(record.GetBinary(stream, static_cast<int>(0xF9E464D0), true));
    record.SetPort(5000);
    EXPECT_TRUE(record.GetBinary(stream, static_cast<int>(0xF9E464D0), true));
    EXPECT_TRUE(record.GetBinary(stream, static_cast<int>(0xF9E464D0), false));
    EXPECT_EQ(written, bytes("0102"
                             "F9E464D0 00000000"
                             "F9E464D0 00000010 1F980517 00000008 0000000000001388"
                             "00000010 1F980517 00000008 0000000000001388"));
}

TYPED_TEST(PortRecord, TheStreamsByteOrderIsUsed)
{
    TypeParam record;
    record.SetPort(5000);
    QByteArray written;
    QDataStream out(&written, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    EXPECT_TRUE(record.GetBinary(out, 1, true));
    EXPECT_EQ(written, bytes("01000000 10000000 1705981F 08000000 8813000000000000"));
    EXPECT_EQ(out.byteOrder(), QDataStream::LittleEndian);

    QDataStream in(written);
    in.setByteOrder(QDataStream::LittleEndian);
    in.skipRawData(8);
    TypeParam back;
    back.SetBinary(in, 16);
    EXPECT_EQ(back.GetPort(), 5000U);
}

TYPED_TEST(PortRecord, ThePortIsReadFromTheLowHalfOfItsEightBytes)
{
    TypeParam record;
    readFrame(record, bytes("00000010 1F980517 00000008 0000000000001388"));
    EXPECT_EQ(record.GetPort(), 5000U);
    EXPECT_TRUE(record.IsPortSet());
    readFrame(record, bytes("00000010 1F980517 00000008 00000000FFFFFFFF"));
    EXPECT_EQ(record.GetPort(), 4294967295U);
    readFrame(record, bytes("00000010 1F980517 00000008 1234567800000002"));
    EXPECT_EQ(record.GetPort(), 2U);
    readFrame(record, bytes("00000010 1F980517 00000008 FFFFFFFFFFFFFFFF"));
    EXPECT_EQ(record.GetPort(), 4294967295U);
}

TYPED_TEST(PortRecord, ReadingLeavesTheStreamBehindTheFrame)
{
    TypeParam record;
    const QByteArray frame = bytes("1F980517 00000008 0000000000001388 ABCD");
    QDataStream stream(frame);
    record.SetBinary(stream, 16);
    quint16 behind = 0;
    stream >> behind;
    EXPECT_EQ(behind, 0xABCD);
}

TYPED_TEST(PortRecord, AFrameWithoutPortKeepsThePort)
{
    TypeParam record;
    record.SetPort(3);
    readFrame(record, bytes("00000000"));
    EXPECT_EQ(record.GetPort(), 3U);
    EXPECT_TRUE(record.IsPortSet());
}

TYPED_TEST(PortRecord, UnknownEntriesAreSkipped)
{
    TypeParam record;
    readFrame(record, bytes("00000025 11223344 00000003 AABBCC"
                            "1F980517 00000008 0000000000001388"
                            "7FFFFFFF 00000002 0000"));
    EXPECT_EQ(record.GetPort(), 5000U);
}

TYPED_TEST(PortRecord, LengthsThatDisagreeWithTheContentAreErrors)
{
    const char* const frames[] = {
        "0000000F 1F980517 00000008 0000000000001388",    // one byte too short
        "00000011 1F980517 00000008 0000000000001388",    // one byte too long, the stream ends
        "00000011 1F980517 00000008 0000000000001388 00", // one byte too long, the byte is there
        "00000010 1F980517 00000007 0000000000001388",    // the entry too short
        "00000010 1F980517 00000009 0000000000001388",    // the entry too long
        "00000010 1F980517 00000008 00000000",            // the stream ends inside the payload
        "00000010 1F980517",                              // the stream ends inside the entry's header
        "00000010",                                       // the stream ends at once
        "FFFFFFFF",                                       // a negative length
        "80000000 1F980517 00000008 0000000000001388",    // the smallest length
        "00000010 11223344 00000010 AABBCC",              // the stream ends inside an unknown entry
    };
    for (const char* const frame : frames) {
        SCOPED_TRACE(frame);
        TypeParam record;
        expectThrow<BinaryParsingException>([&] { readFrame(record, bytes(frame)); },
                                            lengthError<TypeParam>());
    }
}

TYPED_TEST(PortRecord, WhatWasReadBeforeALengthErrorStays)
{
    TypeParam record;
    expectThrow<BinaryParsingException>(
        [&] { readFrame(record, bytes("00000011 1F980517 00000008 0000000000001388")); },
        lengthError<TypeParam>());
    EXPECT_TRUE(record.IsPortSet());
    EXPECT_EQ(record.GetPort(), 5000U);
}

TYPED_TEST(PortRecord, ANegativeLengthReadsNothing)
{
    TypeParam record;
    const QByteArray frame = bytes("1F980517 00000008 0000000000001388");
    QDataStream stream(frame);
    expectThrow<BinaryParsingException>([&] { record.SetBinary(stream, -16); }, lengthError<TypeParam>());
    EXPECT_FALSE(record.IsPortSet());
    EXPECT_EQ(stream.device()->pos(), 0);
}

TYPED_TEST(PortRecord, ChecksPassWithThePortUnsetAndSet)
{
    TypeParam record;
    for (const bool validate : {false, true}) {
        record.SetValidate(validate);
        EXPECT_NO_THROW(record.Check());
        EXPECT_NO_THROW(record.Check(false));
        EXPECT_NO_THROW(record.Check(true));
        record.SetPort(4294967295U);
    }
    EXPECT_NO_THROW(record.Check());
}

// --- two similar classes ------------------------------------------------------------------------

TEST(PortClasses, RecordsOfDifferentClassesStayDifferent)
{
    OstraInterfacePort ostra;
    RouterVtServerPort router;
    ostra.SetPort(5000);
    router.SetPort(5000);
    EXPECT_NE(ostra.GetId(), router.GetId());
    EXPECT_NE(ostra.GetObjectName(), router.GetObjectName());
    EXPECT_FALSE((std::is_convertible_v<OstraInterfacePort, RouterVtServerPort>));
    EXPECT_FALSE((std::is_convertible_v<RouterVtServerPort, OstraInterfacePort>));
    EXPECT_FALSE((std::is_constructible_v<OstraInterfacePort, RouterVtServerPort>));
    EXPECT_FALSE((std::is_base_of_v<OstraInterfacePort, RouterVtServerPort>));
    EXPECT_FALSE((std::is_base_of_v<RouterVtServerPort, OstraInterfacePort>));
}

TEST(PortClasses, ThePortOfOneIsReadByTheOthersSinceTheTagNamesTheMember)
{
    OstraInterfacePort ostra;
    ostra.SetPort(5000);
    const QByteArray frame = frameOf(ostra);
    RouterVtServerPort router;
    readFrame(router, frame);
    EXPECT_EQ(router.GetPort(), 5000U);
    PelVtConnectServer server;
    readFrame(server, frame);
    EXPECT_EQ(server.GetPort(), 5000U);
    EXPECT_FALSE(server.IsAddressSet());
    server.SetAddress(QStringLiteral("a"));
    OstraInterfacePort back;
    readFrame(back, frameOf(server));
    EXPECT_EQ(back.GetPort(), 5000U);
}

// --- the address --------------------------------------------------------------------------------

TEST(ConnectServer, AFreshRecordHasNoAddress)
{
    PelVtConnectServer record;
    EXPECT_FALSE(record.IsAddressSet());
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_TRUE(record.GetAddress().isNull());
    EXPECT_TRUE(record.GetDefaultAddress().isNull());
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.IsAddressSet());
}

TEST(ConnectServer, AnUnsetAddressIsNullUnderValidationToo)
{
    PelVtConnectServer record;
    record.SetValidate(true);
    EXPECT_TRUE(record.GetAddress().isNull());
    record.SetDefaultAddress(QStringLiteral("x"));
    EXPECT_TRUE(record.GetAddress().isNull());
}

TEST(ConnectServer, AnAddressIsValidUnlessItIsNull)
{
    const PelVtConnectServer record;
    EXPECT_TRUE(record.IsValidAddress(QStringLiteral("127.0.0.1")));
    EXPECT_TRUE(record.IsValidAddress(QStringLiteral("no host name at all!")));
    EXPECT_TRUE(record.IsValidAddress(empty()));
    EXPECT_FALSE(record.IsValidAddress(QString()));
}

TEST(ConnectServer, ADefaultAddressIsNotGivenAfterAResetButByResetToDefault)
{
    PelVtConnectServer record;
    record.SetDefaultAddress(QStringLiteral("host"));
    EXPECT_TRUE(record.GetAddress().isNull());
    record.Reset();
    EXPECT_TRUE(record.GetAddress().isNull());
    record.ResetAddress();
    EXPECT_TRUE(record.GetAddress().isNull());
    EXPECT_FALSE(record.IsAddressSet());
    record.ResetToDefault();
    EXPECT_EQ(record.GetAddress(), QStringLiteral("host"));
    EXPECT_TRUE(record.IsAddressSet());
}

TEST(ConnectServer, ResettingMakesTheAddressNullAndThePortItsDefault)
{
    PelVtConnectServer record;
    record.SetDefaultAddress(QStringLiteral("host"));
    record.SetDefaultPort(80);
    record.SetAddress(QStringLiteral("other"));
    record.SetPort(81);
    record.Reset();
    EXPECT_TRUE(record.GetAddress().isNull());
    EXPECT_EQ(record.GetPort(), 80U);
    EXPECT_FALSE(record.IsAddressSet());
    EXPECT_FALSE(record.IsPortSet());
    EXPECT_EQ(record.GetDefaultAddress(), QStringLiteral("host"));
}

TEST(ConnectServer, ANullAddressIsRefusedUnderValidationAndChangesNothing)
{
    PelVtConnectServer record;
    record.SetAddress(QStringLiteral("host"));
    record.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { record.SetAddress(QString()); }, addressMessage);
    EXPECT_EQ(record.GetAddress(), QStringLiteral("host"));
    EXPECT_TRUE(record.IsAddressSet());

    PelVtConnectServer fresh;
    fresh.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { fresh.SetAddress(QString()); }, addressMessage);
    EXPECT_FALSE(fresh.IsAddressSet());
    EXPECT_TRUE(fresh.IsInitialized());
}

TEST(ConnectServer, AnEmptyAddressIsAcceptedUnderValidation)
{
    PelVtConnectServer record;
    record.SetValidate(true);
    EXPECT_NO_THROW(record.SetAddress(empty()));
    EXPECT_TRUE(record.IsAddressSet());
    EXPECT_TRUE(record.AnyData());
    EXPECT_FALSE(record.GetAddress().isNull());
    EXPECT_NO_THROW(record.Check());
}

TEST(ConnectServer, ANullAddressStoredWithoutValidationIsSetButNoDataAndFailsTheCheck)
{
    PelVtConnectServer record;
    record.SetAddress(QString());
    EXPECT_TRUE(record.IsAddressSet());
    EXPECT_FALSE(record.AnyData());
    for (const bool validate : {false, true}) {
        record.SetValidate(validate);
        expectThrow<OutOfRangeException>([&] { record.Check(); }, addressMessage);
        expectThrow<OutOfRangeException>([&] { record.Check(false); }, addressMessage);
        expectThrow<OutOfRangeException>([&] { record.Check(true); }, addressMessage);
    }
    EXPECT_TRUE(record.IsAddressSet());
    EXPECT_TRUE(record.GetAddress().isNull());
}

TEST(ConnectServer, AnUnsetAddressPassesTheCheck)
{
    PelVtConnectServer record;
    record.SetPort(1);
    record.SetValidate(true);
    EXPECT_NO_THROW(record.Check());
}

TEST(ConnectServer, AnyDataGoesByTheTextOfTheAddressAndTheFlagOfThePort)
{
    PelVtConnectServer record;
    record.SetAddress(QStringLiteral("host"));
    EXPECT_TRUE(record.AnyData());
    record.ResetAddress();
    EXPECT_FALSE(record.AnyData());
    record.SetPort(0);
    EXPECT_TRUE(record.AnyData());
    record.SetAddress(QStringLiteral("host"));
    record.ResetAddress();
    EXPECT_TRUE(record.AnyData());
    record.ResetPort();
    EXPECT_FALSE(record.AnyData());
}

TEST(ConnectServer, ResetToDefaultAppliesEachDefaultThatWasChanged)
{
    PelVtConnectServer addressOnly;
    addressOnly.SetDefaultAddress(QStringLiteral("host"));
    addressOnly.SetPort(9);
    addressOnly.ResetToDefault();
    EXPECT_TRUE(addressOnly.IsAddressSet());
    EXPECT_FALSE(addressOnly.IsPortSet());
    EXPECT_EQ(addressOnly.GetPort(), 0U);

    PelVtConnectServer portOnly;
    portOnly.SetDefaultPort(80);
    portOnly.SetAddress(QStringLiteral("host"));
    portOnly.ResetToDefault();
    EXPECT_FALSE(portOnly.IsAddressSet());
    EXPECT_TRUE(portOnly.GetAddress().isNull());
    EXPECT_TRUE(portOnly.IsPortSet());
    EXPECT_EQ(portOnly.GetPort(), 80U);
}

TEST(ConnectServer, ANullDefaultAddressLeavesTheAddressUnsetAndThrowsNothing)
{
    PelVtConnectServer record;
    record.SetValidate(true);
    record.SetDefaultAddress(QString());
    record.SetAddress(QStringLiteral("host"));
    EXPECT_NO_THROW(record.ResetToDefault());
    EXPECT_FALSE(record.IsAddressSet());
    EXPECT_TRUE(record.GetAddress().isNull());
}

TEST(ConnectServer, AnEmptyDefaultAddressIsApplied)
{
    PelVtConnectServer record;
    record.SetValidate(true);
    record.SetDefaultAddress(empty());
    record.ResetToDefault();
    EXPECT_TRUE(record.IsAddressSet());
    EXPECT_FALSE(record.GetAddress().isNull());
    EXPECT_TRUE(record.GetAddress().isEmpty());
}

TEST(ConnectServer, EqualityComparesAddressAndPort)
{
    PelVtConnectServer a;
    PelVtConnectServer b;
    a.SetAddress(QStringLiteral("host"));
    b.SetAddress(QStringLiteral("host"));
    a.SetPort(1);
    EXPECT_TRUE(a != b);
    b.SetPort(1);
    EXPECT_TRUE(a == b);
    b.SetAddress(QStringLiteral("Host"));
    EXPECT_TRUE(a != b);
    b.ResetAddress();
    EXPECT_TRUE(a != b);
    a.ResetAddress();
    EXPECT_TRUE(a == b);
}

TEST(ConnectServer, NullAndEmptyAddressesAreEqualTexts)
{
    PelVtConnectServer a;
    PelVtConnectServer b;
    a.SetAddress(QString());
    b.SetAddress(empty());
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a != PelVtConnectServer());
}

TEST(ConnectServer, TheCopyCarriesTheValidationFlagButNoLogger)
{
    PelVtConnectServer source;
    source.SetAddress(QStringLiteral("host"));
    source.SetValidate(true);
    source.SetLogger(std::make_shared<MODELKIT::Logger>());
    PelVtConnectServer copy(source);
    EXPECT_EQ(copy.GetAddress(), QStringLiteral("host"));
    EXPECT_TRUE(copy.GetValidate());
    EXPECT_EQ(copy.GetLogger(), nullptr);
    expectThrow<OutOfRangeException>([&] { copy.SetAddress(QString()); }, addressMessage);
}

TEST(ConnectServer, AddressAndPortAreWrittenInThisOrderWhicheverIsSetFirst)
{
    PelVtConnectServer record;
    record.SetPort(80);
    record.SetAddress(QStringLiteral("127.0.0.1"));
    EXPECT_EQ(xmlOf(record), QStringLiteral("<PelVtConnectServer><Address>127.0.0.1</Address><Port>80</Port>"
                                            "</PelVtConnectServer>"));
    record.ResetPort();
    EXPECT_EQ(xmlOf(record),
              QStringLiteral("<PelVtConnectServer><Address>127.0.0.1</Address></PelVtConnectServer>"));
}

TEST(ConnectServer, TheAddressIsEscapedAsTheXmlWriterDoes)
{
    PelVtConnectServer record;
    record.SetAddress(QStringLiteral("a<b&c"));
    EXPECT_EQ(xmlOf(record),
              QStringLiteral("<PelVtConnectServer><Address>a&lt;b&amp;c</Address></PelVtConnectServer>"));
    PelVtConnectServer back;
    readXml(back, xmlOf(record));
    EXPECT_EQ(back.GetAddress(), QStringLiteral("a<b&c"));
}

TEST(ConnectServer, AnEmptyAddressIsWrittenAndComesBackEmptyAndNotNull)
{
    PelVtConnectServer record;
    record.SetAddress(empty());
    EXPECT_EQ(xmlOf(record), QStringLiteral("<PelVtConnectServer><Address></Address></PelVtConnectServer>"));
    for (const char* const xml : {"<Address></Address>", "<Address/>"}) {
        PelVtConnectServer back;
        back.SetValidate(true);
        readXml(back, element<PelVtConnectServer>(xml));
        EXPECT_TRUE(back.IsAddressSet());
        EXPECT_TRUE(back.GetAddress().isEmpty());
        EXPECT_FALSE(back.GetAddress().isNull());
    }
}

TEST(ConnectServer, TheAddressIsReadAsItStands)
{
    PelVtConnectServer record;
    readXml(record, element<PelVtConnectServer>("<Port>1</Port><Address> Z\xC3\xBCrich:1 </Address>"));
    EXPECT_EQ(record.GetAddress(), QString::fromUtf8(" Z\xC3\xBCrich:1 "));
    EXPECT_EQ(record.GetPort(), 1U);
}

TEST(ConnectServer, ANullAddressFailsTheCheckBeforeAnythingIsWritten)
{
    PelVtConnectServer record;
    record.SetAddress(QString());
    record.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    expectThrow<OutOfRangeException>([&] { record.GetXml(writer); }, addressMessage);
    EXPECT_EQ(xml, QString());
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    expectThrow<OutOfRangeException>([&] { record.GetBinary(stream, 1, true); }, addressMessage);
    EXPECT_EQ(written.size(), 0);
}

TEST(ConnectServer, AddressAndPortAreFramedInThisOrder)
{
    PelVtConnectServer record;
    record.SetPort(80);
    record.SetAddress(QStringLiteral("127.0.0.1"));
    EXPECT_EQ(frameOf(record), bytes("00000025"
                                     "2AC271EC 0000000D 00000009 3132372E302E302E31"
                                     "1F980517 00000008 0000000000000050"));
}

TEST(ConnectServer, TheAddressTravelsAsUtf8)
{
    PelVtConnectServer record;
    record.SetAddress(QString::fromUtf8("Z\xC3\xBCrich"));
    const QByteArray frame = bytes("00000013 2AC271EC 0000000B 00000007 5AC3BC72696368");
    EXPECT_EQ(frameOf(record), frame);
    PelVtConnectServer back;
    readFrame(back, frame);
    EXPECT_EQ(back.GetAddress(), QString::fromUtf8("Z\xC3\xBCrich"));
}

TEST(ConnectServer, ANullCharacterInsideTheAddressSurvivesTheBinaryForm)
{
    PelVtConnectServer record;
    record.SetAddress(QString::fromUtf8("a\0b", 3));
    const QByteArray frame = bytes("0000000F 2AC271EC 00000007 00000003 610062");
    EXPECT_EQ(frameOf(record), frame);
    PelVtConnectServer back;
    readFrame(back, frame);
    EXPECT_EQ(back.GetAddress().size(), 3);
    EXPECT_EQ(back.GetAddress(), QString::fromUtf8("a\0b", 3));
}

TEST(ConnectServer, NullAndEmptyAddressesStayApartInTheBinaryForm)
{
    PelVtConnectServer null;
    null.SetAddress(QString());
    EXPECT_EQ(frameOf(null), bytes("0000000C 2AC271EC 00000004 FFFFFFFF"));
    PelVtConnectServer none;
    none.SetAddress(empty());
    EXPECT_EQ(frameOf(none), bytes("0000000C 2AC271EC 00000004 00000000"));

    PelVtConnectServer back;
    readFrame(back, bytes("0000000C 2AC271EC 00000004 FFFFFFFF"));
    EXPECT_TRUE(back.IsAddressSet());
    EXPECT_TRUE(back.GetAddress().isNull());
    readFrame(back, bytes("0000000C 2AC271EC 00000004 00000000"));
    EXPECT_FALSE(back.GetAddress().isNull());
    EXPECT_TRUE(back.GetAddress().isEmpty());
}

TEST(ConnectServer, ANullAddressInAFrameIsRefusedUnderValidation)
{
    PelVtConnectServer record;
    record.SetAddress(QStringLiteral("host"));
    record.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readFrame(record, bytes("0000001C 1F980517 00000008 0000000000000050"
                                    "2AC271EC 00000004 FFFFFFFF"));
        },
        addressMessage);
    EXPECT_EQ(record.GetAddress(), QStringLiteral("host"));
    EXPECT_EQ(record.GetPort(), 80U);
}

TEST(ConnectServer, EntriesAreReadInAnyOrder)
{
    PelVtConnectServer record;
    readFrame(record, bytes("0000001D 1F980517 00000008 0000000000000050"
                            "2AC271EC 00000005 00000001 61"));
    EXPECT_EQ(record.GetAddress(), QStringLiteral("a"));
    EXPECT_EQ(record.GetPort(), 80U);
}

TEST(ConnectServer, AnAddressLongerThanItsFrameIsALengthError)
{
    for (const char* const frame :
         {"0000000D 2AC271EC 00000005 00000002 61", "0000000D 2AC271EC 00000005 00000002 6162",
          "0000000D 2AC271EC 00000005 7FFFFFFF 61"}) {
        SCOPED_TRACE(frame);
        PelVtConnectServer record;
        expectThrow<BinaryParsingException>([&] { readFrame(record, bytes(frame)); },
                                            lengthError<PelVtConnectServer>());
    }
}

} // namespace
