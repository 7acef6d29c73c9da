// SPDX-License-Identifier: MIT
// The base object: its settings, the values that records give them, the name of an object in texts, and the
// values that mark something as missing.

#include "BaseObjectSupport.h"

#include "modelkit/Version.h"

#include <QtCore/QDateTime>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

namespace {

using namespace testing_support;
using MODELKIT::IMKObject;
using MODELKIT::Logger;
using MODELKIT::ObjectTypes;

// --- what an object holds ---------------------------------------------------------------------

TEST(BaseObjectState, ANewObjectHasNoKindNoLoggerAndNoValidation)
{
    Note note;
    EXPECT_EQ(note.GetObjectType(), ObjectTypes::Undefined);
    EXPECT_EQ(note.m_typeCode, 0);
    EXPECT_FALSE(note.GetValidate());
    EXPECT_EQ(note.GetLogger(), nullptr);
}

TEST(BaseObjectState, ANewObjectHasAnEmptyName)
{
    EXPECT_TRUE(Walker(Walker::ReadText).GetObjectName().isEmpty());
}

TEST(BaseObjectState, TheKindGivenAtConstructionIsAlsoTheTypeCode)
{
    Note settings(ObjectTypes::Settings);
    EXPECT_EQ(settings.GetObjectType(), ObjectTypes::Settings);
    EXPECT_EQ(settings.m_typeCode, 3);
    Note document(ObjectTypes::Document);
    EXPECT_EQ(document.GetObjectType(), ObjectTypes::Document);
    EXPECT_EQ(document.m_typeCode, 1);
    EXPECT_FALSE(document.GetValidate());
    EXPECT_EQ(document.GetLogger(), nullptr);
}

TEST(BaseObjectState, SetObjectTypeSetsKindAndTypeCode)
{
    Note note;
    note.SetObjectType(ObjectTypes::Record);
    EXPECT_EQ(note.GetObjectType(), ObjectTypes::Record);
    EXPECT_EQ(note.m_typeCode, 2);
}

TEST(BaseObjectState, TheNameIsHandedOutByReference)
{
    Note note;
    const QString& name = note.GetObjectName();
    note.SetObjectName(QStringLiteral("Memo"));
    EXPECT_EQ(name, QStringLiteral("Memo"));
}

TEST(BaseObjectState, ValidationIsSwitchedOnConstObjects)
{
    const Note note;
    note.SetValidate(true);
    EXPECT_TRUE(note.GetValidate());
    note.SetValidate(false);
    EXPECT_FALSE(note.GetValidate());
}

TEST(BaseObjectState, TheLoggerIsSharedWithConstObjectsUntilReset)
{
    const Note note;
    const auto logger = std::make_shared<Logger>();
    note.SetLogger(logger);
    EXPECT_EQ(note.GetLogger(), logger);
    EXPECT_EQ(logger.use_count(), 2);
    note.ResetLogger();
    EXPECT_EQ(note.GetLogger(), nullptr);
    EXPECT_EQ(logger.use_count(), 1);
}

TEST(BaseObjectState, SetLoggerReplacesAndTakesAnEmptyPointer)
{
    const Note note;
    const auto first = std::make_shared<Logger>();
    const auto second = std::make_shared<Logger>();
    note.SetLogger(first);
    note.SetLogger(second);
    EXPECT_EQ(note.GetLogger(), second);
    EXPECT_EQ(first.use_count(), 1);
    note.SetLogger(nullptr);
    EXPECT_EQ(note.GetLogger(), nullptr);
    EXPECT_EQ(second.use_count(), 1);
}

TEST(BaseObjectState, ResetLoggerWithoutALoggerDoesNothing)
{
    const Note note;
    note.ResetLogger();
    EXPECT_EQ(note.GetLogger(), nullptr);
}

TEST(BaseObjectState, AnObjectLetsGoOfItsLoggerWhenItDies)
{
    const auto logger = std::make_shared<Logger>();
    {
        const Note note;
        note.SetLogger(logger);
    }
    EXPECT_EQ(logger.use_count(), 1);
}

TEST(BaseObjectState, TheVersionIsThatOfTheLibrary)
{
    const Note note;
    const QString version = note.GetVersion();
    EXPECT_EQ(version, QStringLiteral(MODELKIT_VERSION));
    const QStringList numbers = version.split(QLatin1Char('.'));
    ASSERT_EQ(numbers.size(), 3);
    for (const QString& number : numbers) {
        bool isNumber = false;
        number.toUInt(&isNumber);
        EXPECT_TRUE(isNumber) << number.toStdString();
    }
    const DF_Params record;
    EXPECT_EQ(record.GetVersion(), version);
    EXPECT_EQ(&note.GetVersion(), &note.GetVersion());
}

TYPED_TEST_SUITE(BaseObjectOfRecord, RecordsWithSamples, );

TYPED_TEST(BaseObjectOfRecord, StartsWithClassNameClassIdAndNoSettings)
{
    Opened<TypeParam> record;
    EXPECT_EQ(record.GetObjectName(), TestFixture::name());
    EXPECT_EQ(record.m_typeCode, TestFixture::Expected::typeCode);
    EXPECT_EQ(record.GetObjectType(), ObjectTypes::Undefined);
    EXPECT_FALSE(record.GetValidate());
    EXPECT_EQ(record.GetLogger(), nullptr);
}

TYPED_TEST(BaseObjectOfRecord, SetObjectTypeIsIgnored)
{
    Opened<TypeParam> record;
    record.SetObjectType(ObjectTypes::Settings);
    EXPECT_EQ(record.GetObjectType(), ObjectTypes::Undefined);
    EXPECT_EQ(record.m_typeCode, TestFixture::Expected::typeCode);
}

TYPED_TEST(BaseObjectOfRecord, ACopyTakesTheKindButHasNameAndIdOfItsClass)
{
    Opened<TypeParam> source;
    source.MODELKIT::IMKObject::SetObjectType(ObjectTypes::Document);
    source.SetObjectName(QStringLiteral("Other"));
    Opened<TypeParam> copy(source);
    EXPECT_EQ(copy.GetObjectType(), ObjectTypes::Document);
    EXPECT_EQ(copy.m_typeCode, TestFixture::Expected::typeCode);
    EXPECT_EQ(copy.GetObjectName(), TestFixture::name());
}

TYPED_TEST(BaseObjectOfRecord, ACopyTakesTheValidationFlagButNotTheLogger)
{
    TypeParam source;
    source.SetValidate(true);
    source.SetLogger(std::make_shared<Logger>());
    const TypeParam copy(source);
    EXPECT_TRUE(copy.GetValidate());
    EXPECT_EQ(copy.GetLogger(), nullptr);
}

TYPED_TEST(BaseObjectOfRecord, AssignmentLeavesNameKindIdFlagAndLogger)
{
    Opened<TypeParam> source;
    source.MODELKIT::IMKObject::SetObjectType(ObjectTypes::Document);
    source.SetObjectName(QStringLiteral("Other"));
    source.SetValidate(true);
    source.SetLogger(std::make_shared<Logger>());
    Opened<TypeParam> target;
    target = source;
    EXPECT_EQ(target.GetObjectName(), TestFixture::name());
    EXPECT_EQ(target.GetObjectType(), ObjectTypes::Undefined);
    EXPECT_EQ(target.m_typeCode, TestFixture::Expected::typeCode);
    EXPECT_FALSE(target.GetValidate());
    EXPECT_EQ(target.GetLogger(), nullptr);
}

TYPED_TEST(BaseObjectOfRecord, CheckIsCheckOfFalseThroughTheVirtualTable)
{
    struct Judge : TypeParam
    {
        using TypeParam::Check;
        void Check(bool flag) const override { flags.push_back(flag); }
        mutable std::vector<bool> flags;
    };
    Judge judge;
    static_cast<const IMKObject&>(judge).Check();
    EXPECT_EQ(judge.flags, std::vector<bool>{false});
}

TYPED_TEST(BaseObjectOfRecord, TheWalkHandsChildrenToTheVirtualOperationOfADerivedClass)
{
    struct Listener : TypeParam
    {
        void ProcessXmlStartElement(QXmlStreamReader& reader) override
        {
            visited += reader.name().toString();
            TypeParam::ProcessXmlStartElement(reader);
        }
        QStringList visited;
    };
    Listener listener;
    readXml(listener, QLatin1Char('<') + TestFixture::name() + QStringLiteral("><A>1</A><B/></")
                          + TestFixture::name() + QLatin1Char('>'));
    EXPECT_EQ(listener.visited, (QStringList{QStringLiteral("A"), QStringLiteral("B")}));
}

// --- another name -----------------------------------------------------------------------------

TYPED_TEST(BaseObjectOfRecord, TheObjectNameIsTheElementName)
{
    auto record = renamed<TypeParam>("Other");
    record.TypeParam::operator=(TestFixture::Expected::make());
    QString expected = TestFixture::xml();
    expected.replace(QLatin1Char('<') + TestFixture::name() + QLatin1Char('>'), QStringLiteral("<Other>"));
    expected.replace(QStringLiteral("</") + TestFixture::name() + QLatin1Char('>'),
                     QStringLiteral("</Other>"));
    expected.remove(QLatin1Char('\n')).replace(QStringLiteral("  "), QString());
    EXPECT_EQ(xmlOf(record), expected);
}

TYPED_TEST(BaseObjectOfRecord, TheObjectNameIsTheNameOfTheRootElement)
{
    auto record = renamed<TypeParam>("Other");
    EXPECT_TRUE(record.SetXmlString(QStringLiteral("<Other/>"), false));
    EXPECT_FALSE(record.SetXmlString(TestFixture::emptyElement(), false));
}

TYPED_TEST(BaseObjectOfRecord, TheObjectNameBeginsTheLengthError)
{
    auto record = renamed<TypeParam>("Other");
    expectThrow<BinaryParsingException>(
        [&record] { readFrame(record, bytes("FFFFFFFF")); },
        QStringLiteral(
            "Other::SetBinary(...): Length error occurred during processing of binary representation"));
}

TEST(BaseObjectName, BeginsTheMessageOfATextThatIsNull)
{
    auto server = renamed<PelVtConnectServer>("Server");
    server.SetAddress(QString());
    expectThrow<OutOfRangeException>([&server] { server.Check(); },
                                     QStringLiteral("Server: Please set Address properly."));
    server.SetValidate(true);
    expectThrow<OutOfRangeException>([&server] { server.SetAddress(QString()); },
                                     QStringLiteral("Server: Please set Address properly."));

    auto state = renamed<MastershipState>("Master");
    state.SetMasterClientID(QString());
    expectThrow<OutOfRangeException>([&state] { state.Check(); },
                                     QStringLiteral("Master: Please set MasterClientID properly."));
    state.SetValidate(true);
    expectThrow<OutOfRangeException>([&state] { state.SetMasterClientID(QString()); },
                                     QStringLiteral("Master: Please set MasterClientID properly."));
}

TEST(BaseObjectName, BeginsTheMessageOfAnEnumeratedMemberThatIsNotProper)
{
    auto state = renamed<MastershipState>("Master");
    state.SetState(static_cast<MastershipState::State>(3));
    expectThrow<OutOfRangeException>([&state] { state.Check(); },
                                     QStringLiteral("Master: Please set State properly."));
    auto message = renamed<PelLu300RouterMessage>("Message");
    expectThrow<OutOfRangeException>([&message] { message.Check(); },
                                     QStringLiteral("Message: Please set Type properly."));
}

TEST(BaseObjectName, BeginsTheMessageOfARefusedListItem)
{
    auto message = renamed<PelLu300RouterMessage>("Message");
    message.SetValidate(true);
    expectThrow<IncompleteDefinitionException>(
        [&message] { message.AppendFragment(Fragment()); },
        QStringLiteral("Message: Tried to append not completely defined or invalid item Fragment."));
}

TEST(BaseObjectName, StandsInTheMessageOfAnInvalidChoice)
{
    auto fragment = renamed<Fragment>("Piece");
    expectThrow<OutOfRangeException>(
        [&fragment] { fragment.InitChoice(static_cast<Fragment::ChoiceFragment>(-1)); },
        QStringLiteral("Invalid enum value set in 'Piece'."));
}

TEST(BaseObjectName, StandsInTheMessageOfAnEmptyBoolean)
{
    auto acquire = renamed<AcquireMastership>("Acquire");
    acquire.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&acquire] { readXml(acquire, QStringLiteral("<Acquire><Success/></Acquire>")); },
        QStringLiteral("Please set a value or a default for the boolean 'Success' in 'Acquire'."));
    auto release = renamed<ReleaseMastership>("Release");
    release.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&release] { readXml(release, QStringLiteral("<Release><Success/></Release>")); },
        QStringLiteral("Please set a value or a default for the boolean 'Success' in 'Release'."));
}

TEST(BaseObjectName, IsNotInTheMessagesThatNameTheirClass)
{
    auto state = renamed<MastershipState>("Master");
    state.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&state] { state.SetState(static_cast<MastershipState::State>(3)); },
        QStringLiteral("enum is not valid (classname=MastershipState,membername=m_state)"));
    auto message = renamed<PelLu300RouterMessage>("Message");
    message.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&message] { message.SetType(static_cast<PelLu300RouterMessage::Type>(3)); },
        QStringLiteral("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"));
}

// --- invalid markers --------------------------------------------------------------------------

TEST(BaseObjectMarkers, NotANumberIsTheInvalidFloat)
{
    const Note note;
    float value = 1.0F;
    note.SetInvalid(value);
    EXPECT_TRUE(std::isnan(value));
    EXPECT_FALSE(note.IsValid(value));
    EXPECT_FALSE(note.IsValid(-std::numeric_limits<float>::quiet_NaN()));
    for (const float valid :
         {0.0F, -0.0F, 1.5F, std::numeric_limits<float>::max(), std::numeric_limits<float>::lowest(),
          std::numeric_limits<float>::denorm_min(), std::numeric_limits<float>::infinity(),
          -std::numeric_limits<float>::infinity()})
        EXPECT_TRUE(note.IsValid(valid)) << valid;
}

TEST(BaseObjectMarkers, NotANumberIsTheInvalidDouble)
{
    const Note note;
    double value = 1.0;
    note.SetInvalid(value);
    EXPECT_TRUE(std::isnan(value));
    EXPECT_FALSE(note.IsValid(value));
    EXPECT_FALSE(note.IsValid(-std::numeric_limits<double>::quiet_NaN()));
    for (const double valid :
         {0.0, -0.0, 1.5, std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest(),
          std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::infinity(),
          -std::numeric_limits<double>::infinity()})
        EXPECT_TRUE(note.IsValid(valid)) << valid;
}

TEST(BaseObjectMarkers, TheLargestIsTheInvalidUnsignedNumber)
{
    const Note note;
    unsigned int value = 1;
    note.SetInvalid(value);
    EXPECT_EQ(value, 4294967295U);
    EXPECT_FALSE(note.IsValid(4294967295U));
    EXPECT_TRUE(note.IsValid(4294967294U));
    EXPECT_TRUE(note.IsValid(0U));
}

TEST(BaseObjectMarkers, TheSmallestIsTheInvalidSignedNumber)
{
    const Note note;
    int value = 1;
    note.SetInvalid(value);
    EXPECT_EQ(value, INT_MIN);
    EXPECT_FALSE(note.IsValid(INT_MIN));
    EXPECT_TRUE(note.IsValid(INT_MIN + 1));
    EXPECT_TRUE(note.IsValid(-1));
    EXPECT_TRUE(note.IsValid(0));
    EXPECT_TRUE(note.IsValid(INT_MAX));

    long long wide = 1;
    note.SetInvalid(wide);
    EXPECT_EQ(wide, LLONG_MIN);
    EXPECT_FALSE(note.IsValid(LLONG_MIN));
    EXPECT_TRUE(note.IsValid(LLONG_MIN + 1));
    EXPECT_TRUE(note.IsValid(-1LL));
    EXPECT_TRUE(note.IsValid(static_cast<long long>(INT_MIN)));
    EXPECT_TRUE(note.IsValid(LLONG_MAX));
}

TEST(BaseObjectMarkers, TheNullStringIsTheInvalidText)
{
    const Note note;
    QString value = QStringLiteral("text");
    note.SetInvalid(value);
    EXPECT_TRUE(value.isNull());
    EXPECT_FALSE(note.IsValid(value));
    EXPECT_TRUE(note.IsValid(empty()));
    EXPECT_TRUE(note.IsValid(QStringLiteral("text")));
}

TEST(BaseObjectMarkers, AnInvalidDateTimeIsInvalid)
{
    const Note note;
    EXPECT_FALSE(note.IsValid(QDateTime()));
    EXPECT_TRUE(note.IsValid(QDateTime(QDate(2020, 2, 29), QTime(12, 0))));
}

TEST(BaseObjectMarkers, EveryBoolIsValid)
{
    const Note note;
    EXPECT_TRUE(note.IsValid(true));
    EXPECT_TRUE(note.IsValid(false));
}

TEST(BaseObjectMarkers, DoNotLimitWhatTheMembersOfARecordAccept)
{
    OstraInterfacePort port;
    port.SetValidate(true);
    port.SetPort(4294967295U);
    EXPECT_NO_THROW(port.Check());
    EXPECT_TRUE(port.IsValidPort(4294967295U));
    EXPECT_FALSE(port.IsValid(port.GetPort()));
}

// --- the logger of owned records --------------------------------------------------------------

TEST(BaseObjectState, OwnedRecordsLetGoOfTheLoggerAtTheirOwnersNextOperation)
{
    auto document = Sample<PelLu300RouterInterfaceXml>::make();
    const auto logger = std::make_shared<Logger>();
    document.SetLogger(logger);
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetLogger(), logger);
    document.ResetLogger();
    EXPECT_EQ(document.GetLogger(), nullptr);
    document.Check();
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetLogger(), nullptr);
    EXPECT_EQ(document.GetPelLu300RouterMessage().GetFragment().at(0).GetLogger(), nullptr);
    EXPECT_EQ(logger.use_count(), 1);
}

} // namespace
