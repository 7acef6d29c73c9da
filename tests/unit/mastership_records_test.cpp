// SPDX-License-Identifier: MIT
// The records about mastership: MastershipState, AcquireMastership and ReleaseMastership.

#include "TestSupport.h"

#include <string>
#include <type_traits>
#include <utility>

namespace {

using namespace testing_support;

const QString stateMessage = QStringLiteral("MastershipState: Please set State properly.");
const QString clientMessage = QStringLiteral("MastershipState: Please set MasterClientID properly.");
const QString enumeratorMessage =
    QStringLiteral("enum is not valid (classname=MastershipState,membername=m_state)");

MastershipState::State stateNumber(int number) { return static_cast<MastershipState::State>(number); }

// --- MastershipState ----------------------------------------------------------------------------

TEST(MastershipStateRecord, NameAndIdAreThoseOfTheClass)
{
    EXPECT_EQ(MastershipState().GetObjectName(), QStringLiteral("MastershipState"));
    EXPECT_EQ(MastershipState::GetId(), -687910292LL);
    EXPECT_EQ(static_cast<unsigned long long>(MastershipState::GetId()), 0xFFFFFFFFD6FF526CULL);
}

TEST(MastershipStateRecord, TheStatesAreNumberedInOrder)
{
    EXPECT_EQ(MastershipState::NoMasterPresent, 0);
    EXPECT_EQ(MastershipState::MasterPresent, 1);
    EXPECT_EQ(MastershipState::RouterIsMaster, 2);
    EXPECT_EQ(MastershipState::GetStates(),
              QStringList({QStringLiteral("NoMasterPresent"), QStringLiteral("MasterPresent"),
                           QStringLiteral("RouterIsMaster")}));
}

TEST(MastershipStateRecord, ANewRecordHasNoStateNoClientAndPassesTheCheck)
{
    MastershipState record;
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(record.HasData());
    EXPECT_EQ(record.GetState(), -1);
    EXPECT_FALSE(record.IsStateSet());
    EXPECT_TRUE(record.GetMasterClientID().isNull());
    EXPECT_FALSE(record.IsMasterClientIDSet());
    EXPECT_FALSE(record.AnyData());
    EXPECT_EQ(record.GetDefaultState(), -1);
    EXPECT_TRUE(record.GetDefaultMasterClientID().isNull());
    EXPECT_EQ(record.GetInvalidState(), -1);
    EXPECT_TRUE(record.GetStateAsString().isNull());
    EXPECT_NO_THROW(record.Check());
    record.SetValidate(true);
    EXPECT_NO_THROW(record.Check());
}

TEST(MastershipStateRecord, EveryEnumeratorIsAcceptedUnderValidation)
{
    for (const auto state : {MastershipState::NoMasterPresent, MastershipState::MasterPresent,
                             MastershipState::RouterIsMaster}) {
        MastershipState record;
        record.SetValidate(true);
        EXPECT_NO_THROW(record.SetState(state));
        EXPECT_EQ(record.GetState(), state);
        EXPECT_TRUE(record.IsStateSet());
        EXPECT_NO_THROW(record.Check());
        EXPECT_TRUE(record.IsValidState(state));
    }
}

TEST(MastershipStateRecord, AStateOutOfRangeIsRefusedUnderValidationAndChangesNothing)
{
    for (const int number : {3, -1, 2147483647, -2147483647 - 1}) {
        SCOPED_TRACE(number);
        MastershipState record;
        record.SetValidate(true);
        expectThrow<OutOfRangeException>([&] { record.SetState(stateNumber(number)); }, enumeratorMessage);
        EXPECT_FALSE(record.IsStateSet());
        EXPECT_TRUE(record.IsInitialized());
        record.SetState(MastershipState::MasterPresent);
        expectThrow<OutOfRangeException>([&] { record.SetState(stateNumber(number)); }, enumeratorMessage);
        EXPECT_EQ(record.GetState(), MastershipState::MasterPresent);
        EXPECT_TRUE(record.IsStateSet());
        EXPECT_FALSE(record.IsValidState(stateNumber(number)));
    }
}

TEST(MastershipStateRecord, AStateOutOfRangeIsStoredWithoutValidationAndFailsALaterCheck)
{
    for (const int number : {3, -1}) {
        SCOPED_TRACE(number);
        MastershipState record;
        record.SetState(stateNumber(number));
        EXPECT_EQ(record.GetState(), number);
        EXPECT_TRUE(record.IsStateSet());
        EXPECT_TRUE(record.AnyData());
        for (const bool validate : {false, true}) {
            record.SetValidate(validate);
            expectThrow<OutOfRangeException>([&] { record.Check(); }, stateMessage);
            expectThrow<OutOfRangeException>([&] { record.Check(true); }, stateMessage);
        }
        EXPECT_EQ(record.GetState(), number);
        EXPECT_TRUE(record.IsStateSet());
    }
}

TEST(MastershipStateRecord, AnUnsetStateOutOfRangePassesTheCheck)
{
    MastershipState record;
    record.SetDefaultState(stateNumber(3));
    record.Reset();
    EXPECT_EQ(record.GetState(), 3);
    EXPECT_NO_THROW(record.Check());
}

TEST(MastershipStateRecord, TheCheckJudgesTheStateBeforeTheClient)
{
    MastershipState record;
    record.SetState(stateNumber(3));
    record.SetMasterClientID(QString());
    expectThrow<OutOfRangeException>([&] { record.Check(); }, stateMessage);
    record.SetState(MastershipState::NoMasterPresent);
    expectThrow<OutOfRangeException>([&] { record.Check(); }, clientMessage);
}

TEST(MastershipStateRecord, ANullClientIsRefusedUnderValidationAndChangesNothing)
{
    MastershipState record;
    record.SetMasterClientID(QStringLiteral("c1"));
    record.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { record.SetMasterClientID(QString()); }, clientMessage);
    EXPECT_EQ(record.GetMasterClientID(), QStringLiteral("c1"));
    EXPECT_TRUE(record.IsMasterClientIDSet());
    MastershipState fresh;
    fresh.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { fresh.SetMasterClientID(QString()); }, clientMessage);
    EXPECT_FALSE(fresh.IsMasterClientIDSet());
    EXPECT_FALSE(fresh.IsValidMasterClientID(QString()));
}

TEST(MastershipStateRecord, AnEmptyClientIsAcceptedUnderValidation)
{
    MastershipState record;
    record.SetValidate(true);
    EXPECT_NO_THROW(record.SetMasterClientID(empty()));
    EXPECT_TRUE(record.IsMasterClientIDSet());
    EXPECT_FALSE(record.GetMasterClientID().isNull());
    EXPECT_TRUE(record.AnyData());
    EXPECT_NO_THROW(record.Check());
    EXPECT_TRUE(record.IsValidMasterClientID(empty()));
}

TEST(MastershipStateRecord, ANullClientStoredWithoutValidationFailsTheCheck)
{
    MastershipState record;
    record.SetMasterClientID(QString());
    EXPECT_TRUE(record.IsMasterClientIDSet());
    EXPECT_FALSE(record.AnyData());
    expectThrow<OutOfRangeException>([&] { record.Check(); }, clientMessage);
    expectThrow<OutOfRangeException>([&] { record.Check(true); }, clientMessage);
}

TEST(MastershipStateRecord, ResettingTheClientMakesItNullWhateverItsDefault)
{
    MastershipState record;
    record.SetDefaultMasterClientID(QStringLiteral("x"));
    record.SetMasterClientID(QStringLiteral("y"));
    record.ResetMasterClientID();
    EXPECT_TRUE(record.GetMasterClientID().isNull());
    EXPECT_FALSE(record.IsMasterClientIDSet());
    EXPECT_EQ(record.GetDefaultMasterClientID(), QStringLiteral("x"));
}

TEST(MastershipStateRecord, ResettingTheStateGivesItsDefault)
{
    MastershipState record;
    record.SetDefaultState(MastershipState::MasterPresent);
    record.SetState(MastershipState::RouterIsMaster);
    record.ResetState();
    EXPECT_EQ(record.GetState(), MastershipState::MasterPresent);
    EXPECT_FALSE(record.IsStateSet());
}

TEST(MastershipStateRecord, ResettingTheRecordDoesBoth)
{
    MastershipState record;
    record.SetDefaultState(MastershipState::MasterPresent);
    record.SetDefaultMasterClientID(QStringLiteral("x"));
    record.SetState(MastershipState::RouterIsMaster);
    record.SetMasterClientID(QStringLiteral("y"));
    record.Reset();
    EXPECT_EQ(record.GetState(), MastershipState::MasterPresent);
    EXPECT_TRUE(record.GetMasterClientID().isNull());
    EXPECT_FALSE(record.IsStateSet());
    EXPECT_FALSE(record.IsMasterClientIDSet());
    EXPECT_FALSE(record.AnyData());
}

TEST(MastershipStateRecord, ResetToDefaultSetsTheMembersWithADefault)
{
    MastershipState record;
    record.SetDefaultState(MastershipState::RouterIsMaster);
    record.SetMasterClientID(QStringLiteral("y"));
    record.ResetToDefault();
    EXPECT_EQ(record.GetState(), MastershipState::RouterIsMaster);
    EXPECT_TRUE(record.IsStateSet());
    EXPECT_FALSE(record.IsMasterClientIDSet());
    EXPECT_TRUE(record.GetMasterClientID().isNull());
    record.SetDefaultMasterClientID(QStringLiteral("x"));
    record.ResetToDefault();
    EXPECT_EQ(record.GetMasterClientID(), QStringLiteral("x"));
    EXPECT_TRUE(record.IsMasterClientIDSet());
}

TEST(MastershipStateRecord, ResetToDefaultLeavesOutANullDefaultClient)
{
    MastershipState record;
    record.SetValidate(true);
    record.SetDefaultMasterClientID(QString());
    record.SetMasterClientID(QStringLiteral("y"));
    EXPECT_NO_THROW(record.ResetToDefault());
    EXPECT_FALSE(record.IsMasterClientIDSet());
}

TEST(MastershipStateRecord, ResetToDefaultAppliesADefaultStateThroughItsSetter)
{
    MastershipState record;
    record.SetDefaultState(stateNumber(3));
    record.SetDefaultMasterClientID(QStringLiteral("x"));
    record.ResetToDefault();
    EXPECT_TRUE(record.IsStateSet());
    EXPECT_EQ(record.GetState(), 3);
    record.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { record.ResetToDefault(); }, enumeratorMessage);
    EXPECT_FALSE(record.IsStateSet());
    EXPECT_FALSE(record.IsMasterClientIDSet());
}

TEST(MastershipStateRecord, ADefaultMayBeAnyNumberOrANullTextUnderValidation)
{
    MastershipState record;
    record.SetValidate(true);
    EXPECT_NO_THROW(record.SetDefaultState(stateNumber(9)));
    EXPECT_NO_THROW(record.SetDefaultMasterClientID(QString()));
    EXPECT_EQ(record.GetDefaultState(), 9);
    EXPECT_EQ(record.GetState(), -1);
    EXPECT_FALSE(record.IsStateSet());
}

TEST(MastershipStateRecord, AnyDataGoesByTheFlagOfTheStateAndTheTextOfTheClient)
{
    MastershipState record;
    record.SetDefaultState(MastershipState::MasterPresent);
    record.Reset();
    EXPECT_FALSE(record.AnyData());
    record.SetState(stateNumber(-1));
    EXPECT_TRUE(record.AnyData());
    record.ResetState();
    EXPECT_FALSE(record.AnyData());
    record.SetMasterClientID(QStringLiteral("x"));
    EXPECT_TRUE(record.AnyData());
    record.ResetMasterClientID();
    EXPECT_FALSE(record.AnyData());
}

TEST(MastershipStateRecord, EqualityComparesStateAndClient)
{
    MastershipState a;
    MastershipState b;
    a.SetState(MastershipState::MasterPresent);
    a.SetMasterClientID(QStringLiteral("x"));
    b.SetState(MastershipState::MasterPresent);
    EXPECT_TRUE(a != b);
    b.SetMasterClientID(QStringLiteral("x"));
    EXPECT_TRUE(a == b);
    b.SetState(MastershipState::RouterIsMaster);
    EXPECT_TRUE(a != b);
    b.SetState(MastershipState::MasterPresent);
    b.SetInvalidState(stateNumber(7));
    b.SetDefaultState(stateNumber(8));
    EXPECT_TRUE(a == b);
}

TEST(MastershipStateRecord, ItsMembersAreWrittenInOrderAndOnlyWhenSet)
{
    MastershipState record;
    EXPECT_EQ(xmlOf(record), QStringLiteral("<MastershipState/>"));
    record.SetMasterClientID(QStringLiteral("c1"));
    EXPECT_EQ(xmlOf(record),
              QStringLiteral("<MastershipState><MasterClientID>c1</MasterClientID></MastershipState>"));
    record.SetState(MastershipState::MasterPresent);
    EXPECT_EQ(xmlOf(record), QStringLiteral("<MastershipState><State>MasterPresent</State>"
                                            "<MasterClientID>c1</MasterClientID></MastershipState>"));
    record.ResetMasterClientID();
    record.SetState(MastershipState::RouterIsMaster);
    EXPECT_EQ(xmlOf(record),
              QStringLiteral("<MastershipState><State>RouterIsMaster</State></MastershipState>"));
    record.SetState(MastershipState::NoMasterPresent);
    EXPECT_EQ(xmlOf(record),
              QStringLiteral("<MastershipState><State>NoMasterPresent</State></MastershipState>"));
}

TEST(MastershipStateRecord, AStateOutOfRangeIsWrittenWithoutValidationAsAnEmptyText)
{
    MastershipState record;
    record.SetState(stateNumber(3));
    EXPECT_EQ(xmlOf(record), QStringLiteral("<MastershipState><State></State></MastershipState>"));
    EXPECT_EQ(frameOf(record), bytes("0000000C 4264F498 00000004 FFFFFFFF"));
}

TEST(MastershipStateRecord, AStateOutOfRangeStopsWritingUnderValidation)
{
    MastershipState record;
    record.SetState(stateNumber(3));
    record.SetValidate(true);
    QString xml;
    QXmlStreamWriter writer(&xml);
    expectThrow<OutOfRangeException>([&] { record.GetXml(writer); }, stateMessage);
    EXPECT_EQ(xml, QString());
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    expectThrow<OutOfRangeException>([&] { record.GetBinary(stream, 1, true); }, stateMessage);
    EXPECT_EQ(written.size(), 0);
}

TEST(MastershipStateRecord, ItsElementsAreReadInAnyOrder)
{
    MastershipState record;
    record.SetValidate(true);
    readXml(record, QStringLiteral("<MastershipState><MasterClientID>c1</MasterClientID><Other>x</Other>"
                                   "<State>RouterIsMaster</State></MastershipState>"));
    EXPECT_EQ(record.GetState(), MastershipState::RouterIsMaster);
    EXPECT_TRUE(record.IsStateSet());
    EXPECT_EQ(record.GetMasterClientID(), QStringLiteral("c1"));
    EXPECT_TRUE(record.IsMasterClientIDSet());
}

TEST(MastershipStateRecord, AnEmptyClientElementGivesAnEmptyTextThatIsNotNull)
{
    MastershipState record;
    record.SetValidate(true);
    readXml(record, QStringLiteral("<MastershipState><MasterClientID/></MastershipState>"));
    EXPECT_TRUE(record.IsMasterClientIDSet());
    EXPECT_FALSE(record.GetMasterClientID().isNull());
    EXPECT_TRUE(record.GetMasterClientID().isEmpty());
}

TEST(MastershipStateRecord, AnUnknownStateNameIsTheInvalidValueAndMeetsTheSetter)
{
    for (const char* const name : {"masterpresent", "", "1", " MasterPresent "}) {
        SCOPED_TRACE(name);
        const QString xml =
            QStringLiteral("<MastershipState><State>%1</State></MastershipState>").arg(QLatin1String(name));
        MastershipState record;
        record.SetState(MastershipState::MasterPresent);
        readXml(record, xml);
        EXPECT_EQ(record.GetState(), -1);
        EXPECT_TRUE(record.IsStateSet());

        MastershipState strict;
        strict.SetState(MastershipState::MasterPresent);
        strict.SetValidate(true);
        expectThrow<OutOfRangeException>([&] { readXml(strict, xml); }, enumeratorMessage);
        EXPECT_EQ(strict.GetState(), MastershipState::MasterPresent);
    }
}

TEST(MastershipStateRecord, ItsMembersAreFramedInOrderAndOnlyWhenSet)
{
    MastershipState record;
    EXPECT_EQ(frameOf(record), bytes("00000000"));
    record.SetMasterClientID(QStringLiteral("c1"));
    EXPECT_EQ(frameOf(record), bytes("0000000E 0BCD2CF7 00000006 00000002 6331"));
    record.SetState(MastershipState::MasterPresent);
    EXPECT_EQ(frameOf(record), bytes("00000027"
                                     "4264F498 00000011 0000000D 4D617374657250726573656E74"
                                     "0BCD2CF7 00000006 00000002 6331"));
    record.ResetMasterClientID();
    record.SetState(MastershipState::RouterIsMaster);
    EXPECT_EQ(frameOf(record), bytes("0000001A 4264F498 00000012 0000000E 526F7574657249734D6173746572"));
    record.SetState(MastershipState::NoMasterPresent);
    EXPECT_EQ(frameOf(record), bytes("0000001B 4264F498 00000013 0000000F 4E6F4D617374657250726573656E74"));
}

TEST(MastershipStateRecord, TheClientTravelsAsUtf8AndNullAndEmptyStayApart)
{
    MastershipState record;
    record.SetMasterClientID(QString::fromUtf8("\xCE\xA9"));
    EXPECT_EQ(frameOf(record), bytes("0000000E 0BCD2CF7 00000006 00000002 CEA9"));
    record.SetMasterClientID(empty());
    EXPECT_EQ(frameOf(record), bytes("0000000C 0BCD2CF7 00000004 00000000"));
    record.SetMasterClientID(QString());
    EXPECT_EQ(frameOf(record), bytes("0000000C 0BCD2CF7 00000004 FFFFFFFF"));

    MastershipState back;
    readFrame(back, bytes("0000000E 0BCD2CF7 00000006 00000002 CEA9"));
    EXPECT_EQ(back.GetMasterClientID(), QString::fromUtf8("\xCE\xA9"));
    readFrame(back, bytes("0000000C 0BCD2CF7 00000004 00000000"));
    EXPECT_FALSE(back.GetMasterClientID().isNull());
    readFrame(back, bytes("0000000C 0BCD2CF7 00000004 FFFFFFFF"));
    EXPECT_TRUE(back.GetMasterClientID().isNull());
    EXPECT_TRUE(back.IsMasterClientIDSet());
}

TEST(MastershipStateRecord, ANullClientInAFrameIsRefusedUnderValidation)
{
    MastershipState record;
    record.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { readFrame(record, bytes("0000000C 0BCD2CF7 00000004 FFFFFFFF")); },
                                     clientMessage);
    EXPECT_FALSE(record.IsMasterClientIDSet());
}

TEST(MastershipStateRecord, ItsEntriesAreReadInAnyOrder)
{
    MastershipState record;
    record.SetValidate(true);
    readFrame(record, bytes("00000027"
                            "0BCD2CF7 00000006 00000002 6331"
                            "4264F498 00000011 0000000D 4D617374657250726573656E74"));
    EXPECT_EQ(record.GetState(), MastershipState::MasterPresent);
    EXPECT_EQ(record.GetMasterClientID(), QStringLiteral("c1"));
}

TEST(MastershipStateRecord, AnUnknownStateNameInAFrameIsRefusedUnderValidationAndStoredAsInvalidWithout)
{
    // An unknown name, a null name and an empty one.
    for (const char* const frame :
         {"00000010 4264F498 00000008 00000004 4E6F6E65", "0000000C 4264F498 00000004 FFFFFFFF",
          "0000000C 4264F498 00000004 00000000"}) {
        SCOPED_TRACE(frame);
        MastershipState strict;
        strict.SetState(MastershipState::RouterIsMaster);
        strict.SetValidate(true);
        expectThrow<OutOfRangeException>([&] { readFrame(strict, bytes(frame)); }, enumeratorMessage);
        EXPECT_EQ(strict.GetState(), MastershipState::RouterIsMaster);

        MastershipState record;
        readFrame(record, bytes(frame));
        EXPECT_TRUE(record.IsStateSet());
        EXPECT_EQ(record.GetState(), -1);
        record.SetInvalidState(stateNumber(7));
        readFrame(record, bytes(frame));
        EXPECT_EQ(record.GetState(), 7);
    }
}

TEST(MastershipStateRecord, ALengthErrorCarriesItsName)
{
    MastershipState record;
    expectThrow<BinaryParsingException>(
        [&] { readFrame(record, bytes("0000000F 0BCD2CF7 00000006 00000002 6331")); },
        QStringLiteral("MastershipState::SetBinary(...): Length error occurred during processing of binary "
                       "representation"));
    EXPECT_EQ(record.GetMasterClientID(), QStringLiteral("c1"));
}

// --- AcquireMastership and ReleaseMastership ----------------------------------------------------

template <class R>
struct SuccessLiterals;
template <>
struct SuccessLiterals<AcquireMastership>
{
    static constexpr const char* name = "AcquireMastership";
    static constexpr long long id = 444824266LL;
};
template <>
struct SuccessLiterals<ReleaseMastership>
{
    static constexpr const char* name = "ReleaseMastership";
    static constexpr long long id = 1597604052LL;
};

// The element of the record around the given content.
template <class R>
QString element(const std::string& content)
{
    const std::string name = SuccessLiterals<R>::name;
    return QString::fromStdString("<" + name + ">" + content + "</" + name + ">");
}

template <class R>
QString emptyBooleanMessage()
{
    return QStringLiteral("Please set a value or a default for the boolean 'Success' in '%1'.")
        .arg(QLatin1String(SuccessLiterals<R>::name));
}

template <class R>
class SuccessRecord : public ::testing::Test
{
};
TYPED_TEST_SUITE(SuccessRecord, SuccessRecords, RecordName);

TYPED_TEST(SuccessRecord, NameAndIdAreThoseOfTheClass)
{
    EXPECT_EQ(TypeParam().GetObjectName(), QLatin1String(SuccessLiterals<TypeParam>::name));
    EXPECT_EQ(TypeParam::GetId(), SuccessLiterals<TypeParam>::id);
}

TYPED_TEST(SuccessRecord, ANewRecordHasNoSuccess)
{
    TypeParam record;
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_FALSE(record.GetSuccess());
    EXPECT_FALSE(record.IsSuccessSet());
    EXPECT_FALSE(record.GetDefaultSuccess());
    EXPECT_FALSE(record.AnyData());
    EXPECT_TRUE(record.HasData());
    EXPECT_TRUE(record.IsInitialized());
}

TYPED_TEST(SuccessRecord, BothValuesAreAcceptedAndMarkTheMember)
{
    for (const bool success : {false, true}) {
        TypeParam record;
        record.SetValidate(true);
        EXPECT_TRUE(record.IsValidSuccess(success));
        record.SetSuccess(success);
        EXPECT_EQ(record.GetSuccess(), success);
        EXPECT_TRUE(record.IsSuccessSet());
        EXPECT_TRUE(record.AnyData());
    }
}

TYPED_TEST(SuccessRecord, TheDefaultTakesEffectAtResets)
{
    TypeParam record;
    record.SetDefaultSuccess(true);
    EXPECT_FALSE(record.GetSuccess());
    EXPECT_FALSE(record.IsSuccessSet());
    record.ResetSuccess();
    EXPECT_TRUE(record.GetSuccess());
    EXPECT_FALSE(record.IsSuccessSet());
    EXPECT_FALSE(record.AnyData());
    record.SetSuccess(false);
    record.Reset();
    EXPECT_TRUE(record.GetSuccess());
    EXPECT_FALSE(record.IsSuccessSet());
    record.SetSuccess(false);
    record.ResetToDefault();
    EXPECT_TRUE(record.GetSuccess());
    EXPECT_TRUE(record.IsSuccessSet());
}

TYPED_TEST(SuccessRecord, ADefaultOfFalseIsAppliedByResetToDefaultToo)
{
    TypeParam record;
    record.ResetToDefault();
    EXPECT_FALSE(record.IsSuccessSet());
    record.SetDefaultSuccess(false);
    record.ResetToDefault();
    EXPECT_TRUE(record.IsSuccessSet());
    EXPECT_FALSE(record.GetSuccess());
}

TYPED_TEST(SuccessRecord, ItNeverFailsACheck)
{
    TypeParam record;
    for (const bool validate : {false, true}) {
        record.SetValidate(validate);
        EXPECT_NO_THROW(record.Check());
        EXPECT_NO_THROW(record.Check(true));
        record.SetSuccess(validate);
        EXPECT_NO_THROW(record.Check(false));
    }
}

TYPED_TEST(SuccessRecord, SuccessIsWrittenWhenSetAsTrueOrFalse)
{
    TypeParam record;
    EXPECT_EQ(xmlOf(record), QStringLiteral("<%1/>").arg(QLatin1String(SuccessLiterals<TypeParam>::name)));
    record.SetSuccess(true);
    EXPECT_EQ(xmlOf(record), element<TypeParam>("<Success>true</Success>"));
    record.SetSuccess(false);
    EXPECT_EQ(xmlOf(record), element<TypeParam>("<Success>false</Success>"));
    record.SetValidate(true);
    EXPECT_EQ(xmlOf(record), element<TypeParam>("<Success>false</Success>"));
}

TYPED_TEST(SuccessRecord, FalseInAnyCaseAndZeroAreReadAsFalse)
{
    for (const char* const text : {"false", "FALSE", "False", "fAlSe", "0"}) {
        SCOPED_TRACE(text);
        TypeParam record;
        record.SetValidate(true);
        record.SetSuccess(true);
        readXml(record, element<TypeParam>(std::string("<Success>") + text + "</Success>"));
        EXPECT_FALSE(record.GetSuccess());
        EXPECT_TRUE(record.IsSuccessSet());
    }
}

TYPED_TEST(SuccessRecord, EveryOtherTextIsReadAsTrue)
{
    for (const char* const text :
         {"true", "TRUE", "True", "1", "yes", "no", "x", "00", "0.0", " ", " false"}) {
        SCOPED_TRACE(text);
        TypeParam record;
        record.SetValidate(true);
        readXml(record, element<TypeParam>(std::string("<Success>") + text + "</Success>"));
        EXPECT_TRUE(record.GetSuccess());
        EXPECT_TRUE(record.IsSuccessSet());
    }
}

TYPED_TEST(SuccessRecord, AnEmptyTextIsFalseWithoutValidationWhateverTheDefault)
{
    for (const char* const xml : {"<Success></Success>", "<Success/>"}) {
        TypeParam record;
        record.SetDefaultSuccess(true);
        record.SetSuccess(true);
        readXml(record, element<TypeParam>(xml));
        EXPECT_FALSE(record.GetSuccess());
        EXPECT_TRUE(record.IsSuccessSet());
    }
}

TYPED_TEST(SuccessRecord, AnEmptyTextIsAnErrorUnderValidationWhateverTheDefault)
{
    for (const char* const xml : {"<Success></Success>", "<Success/>"}) {
        TypeParam record;
        record.SetValidate(true);
        record.SetDefaultSuccess(true);
        expectThrow<InvalidXmlException>([&] { readXml(record, element<TypeParam>(xml)); },
                                         emptyBooleanMessage<TypeParam>());
        EXPECT_FALSE(record.IsSuccessSet());
        record.SetSuccess(true);
        expectThrow<InvalidXmlException>([&] { readXml(record, element<TypeParam>(xml)); },
                                         emptyBooleanMessage<TypeParam>());
        EXPECT_TRUE(record.IsSuccessSet());
        EXPECT_TRUE(record.GetSuccess());
    }
}

TYPED_TEST(SuccessRecord, TheErrorAboutAnEmptyTextComesAfterTheElementIsConsumed)
{
    TypeParam record;
    record.SetValidate(true);
    QXmlStreamReader reader(element<TypeParam>("<Success></Success>"));
    ASSERT_TRUE(reader.readNextStartElement());
    EXPECT_THROW(record.ProcessXml(reader), InvalidXmlException);
    EXPECT_TRUE(reader.isEndElement());
    EXPECT_EQ(reader.name().toString(), QStringLiteral("Success"));
}

TYPED_TEST(SuccessRecord, OtherElementsAreSkippedWhole)
{
    TypeParam record;
    record.SetValidate(true);
    readXml(record, element<TypeParam>("<Other><Success>true</Success></Other><success>true</success>"));
    EXPECT_FALSE(record.IsSuccessSet());
    readXml(record,
            element<TypeParam>("<Other/><Success>true</Success><Other><Success>false</Success></Other>"));
    EXPECT_TRUE(record.GetSuccess());
}

TYPED_TEST(SuccessRecord, SuccessTakesOneByte)
{
    TypeParam record;
    EXPECT_EQ(frameOf(record), bytes("00000000"));
    record.SetSuccess(true);
    EXPECT_EQ(frameOf(record), bytes("00000009 BF8A59C6 00000001 01"));
    record.SetSuccess(false);
    EXPECT_EQ(frameOf(record), bytes("00000009 BF8A59C6 00000001 00"));
}

TYPED_TEST(SuccessRecord, AnyByteButZeroIsReadAsTrue)
{
    const std::pair<const char*, bool> frames[] = {{"00000009 BF8A59C6 00000001 00", false},
                                                   {"00000009 BF8A59C6 00000001 01", true},
                                                   {"00000009 BF8A59C6 00000001 02", true},
                                                   {"00000009 BF8A59C6 00000001 FF", true}};
    for (const auto& [frame, success] : frames) {
        SCOPED_TRACE(frame);
        TypeParam record;
        record.SetValidate(true);
        record.SetSuccess(!success);
        readFrame(record, bytes(frame));
        EXPECT_EQ(record.GetSuccess(), success);
        EXPECT_TRUE(record.IsSuccessSet());
    }
}

TYPED_TEST(SuccessRecord, ALengthErrorCarriesItsName)
{
    for (const char* const frame : {"00000008 BF8A59C6 00000001 01", "0000000A BF8A59C6 00000001 01",
                                    "00000009 BF8A59C6 00000001", "0000000C BF8A59C6 00000004 00000001"}) {
        SCOPED_TRACE(frame);
        TypeParam record;
        expectThrow<BinaryParsingException>(
            [&] { readFrame(record, bytes(frame)); },
            QLatin1String(SuccessLiterals<TypeParam>::name)
                + QStringLiteral(
                    "::SetBinary(...): Length error occurred during processing of binary representation"));
    }
}

TEST(SuccessClasses, AcquiringAndReleasingAreTwoClassesThatNeitherCompareNorConvert)
{
    AcquireMastership acquire;
    ReleaseMastership release;
    acquire.SetSuccess(true);
    release.SetSuccess(true);
    EXPECT_NE(acquire.GetId(), release.GetId());
    EXPECT_NE(acquire.GetObjectName(), release.GetObjectName());
    EXPECT_NE(xmlOf(acquire), xmlOf(release));
    EXPECT_FALSE((AreComparable<AcquireMastership, ReleaseMastership>::value));
    EXPECT_FALSE((AreComparable<ReleaseMastership, AcquireMastership>::value));
    EXPECT_TRUE((AreComparable<AcquireMastership, AcquireMastership>::value));
    EXPECT_FALSE((std::is_constructible_v<AcquireMastership, ReleaseMastership>));
    EXPECT_FALSE((std::is_constructible_v<ReleaseMastership, AcquireMastership>));
    EXPECT_FALSE((std::is_assignable_v<AcquireMastership&, ReleaseMastership>));
    EXPECT_FALSE((std::is_assignable_v<ReleaseMastership&, AcquireMastership>));
}

TEST(SuccessClasses, AnElementOfTheOtherClassIsNotAChildOfEither)
{
    AcquireMastership acquire;
    readXml(acquire, QStringLiteral("<AcquireMastership><ReleaseMastership><Success>true</Success>"
                                    "</ReleaseMastership></AcquireMastership>"));
    EXPECT_FALSE(acquire.IsSuccessSet());
}

} // namespace
