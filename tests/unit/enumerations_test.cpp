// SPDX-License-Identifier: MIT
// The enumerated members: name tables, conversions between value, name and display text, the invalid
// value of each record, and the translation helpers.

#include "TestSupport.h"

#include "modelkit/Logger.h"
#include "routerinterface/NameTables.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QStringList>
#include <QtCore/QTranslator>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;

const QStringList typeNames() { return {"Request", "Reply", "Event"}; }
const QStringList stateNames() { return {"NoMasterPresent", "MasterPresent", "RouterIsMaster"}; }

// Gets all tables while the static objects of this program are constructed.
struct SeenBeforeMain
{
    QStringList types = PelLu300RouterMessage::GetTypes();
    QStringList states = MastershipState::GetStates();
    QStringList choices = Fragment::GetChoiceFragments();
    QStringList levels = LevelNames();
};
const SeenBeforeMain seenBeforeMain;

template <class E>
E number(int value)
{
    return static_cast<E>(value);
}

// --- the name tables ------------------------------------------------------------------------

TEST(NameTables, MessageTypesAreRequestReplyEvent)
{
    EXPECT_EQ(PelLu300RouterMessage::GetTypes(), typeNames());
}

TEST(NameTables, MastershipStatesAreInOrder) { EXPECT_EQ(MastershipState::GetStates(), stateNames()); }

TEST(NameTables, ChoicesAreTheNamesOfThePayloadRecordsInOrder)
{
    EXPECT_EQ(Fragment::GetChoiceFragments(), payloadNames())
        << "The rows of tests/PayloadRecords.h must be those of routerinterface/Fragment.cpp.";
}

TEST(NameTables, EveryChoiceNameIsTheObjectNameOfItsPayload)
{
    const QStringList names = Fragment::GetChoiceFragments();
    ASSERT_EQ(names.size(), payloadCount);
#define EXPECT_NAME(Name, value, tag, id) EXPECT_EQ(names.at(value), Name().GetObjectName());
    PAYLOAD_RECORDS(EXPECT_NAME)
#undef EXPECT_NAME
}

TEST(NameTables, LevelNamesAreInfoWarningError)
{
    const QStringList levels{"INFO", "WARNING", "ERROR"};
    EXPECT_EQ(LevelNames(), levels);
    EXPECT_EQ(MODELKIT::Logger::GetLevelNames(), levels);
}

TEST(NameTables, ExistBeforeMainAndBeforeAnyRecord)
{
    EXPECT_EQ(seenBeforeMain.types, typeNames());
    EXPECT_EQ(seenBeforeMain.states, stateNames());
    EXPECT_EQ(seenBeforeMain.choices, payloadNames());
    EXPECT_EQ(seenBeforeMain.levels, (QStringList{"INFO", "WARNING", "ERROR"}));
}

TEST(NameTables, AreTheListsOfTheEnumerations)
{
    EXPECT_EQ(NamesOf(PelLu300RouterMessage::Request), typeNames());
    EXPECT_EQ(NamesOf(MastershipState::MasterPresent), stateNames());
    EXPECT_EQ(NamesOf(Fragment::DF_Params), payloadNames());
}

TEST(NameTables, CallersGetSharedCopiesThatTheyMayChange)
{
    const QStringList untouched = PelLu300RouterMessage::GetTypes();
    QStringList mine = PelLu300RouterMessage::GetTypes();
    EXPECT_EQ(&std::as_const(mine).at(0), &untouched.at(0));
    mine[0] = QStringLiteral("changed");
    mine.removeLast();
    EXPECT_EQ(PelLu300RouterMessage::GetTypes(), typeNames());

    MastershipState::GetStates().clear();
    EXPECT_EQ(MastershipState::GetStates(), stateNames());
    Fragment::GetChoiceFragments().clear();
    EXPECT_EQ(Fragment::GetChoiceFragments(), payloadNames());
}

TEST(NameTables, ValuesAreThePositionsOfTheNames)
{
    EXPECT_EQ(PelLu300RouterMessage::Request, 0);
    EXPECT_EQ(PelLu300RouterMessage::Reply, 1);
    EXPECT_EQ(PelLu300RouterMessage::Event, 2);
    EXPECT_EQ(MastershipState::NoMasterPresent, 0);
    EXPECT_EQ(MastershipState::MasterPresent, 1);
    EXPECT_EQ(MastershipState::RouterIsMaster, 2);
#define EXPECT_VALUE(Name, value, tag, id) \
    EXPECT_EQ(Fragment::Name, value);      \
    EXPECT_EQ(payloadNames().at(value), QStringLiteral(#Name));
    PAYLOAD_RECORDS(EXPECT_VALUE)
#undef EXPECT_VALUE
}

// --- what Type and State have in common -----------------------------------------------------

// An enumerated member, with accessors that have the same names for all.
#define ENUMERATED_MEMBER(Record_, Name)                                                             \
    using Record = Record_;                                                                          \
    using Enum = Record_::Name;                                                                      \
    static QString toName(Record& r, Enum value) { return r.Name##ToName(value); }                   \
    static QString toNameConst(const Record& r, Enum value) { return r.Name##ToName(value); }        \
    static Enum fromName(Record& r, const QString& name) { return r.NameTo##Name(name); }            \
    static Enum fromNameConst(const Record& r, const QString& name) { return r.NameTo##Name(name); } \
    static bool isValid(const Record& r, Enum value) { return r.IsValid##Name(value); }              \
    static const Enum& invalid(const Record& r) { return r.GetInvalid##Name(); }                     \
    static void setInvalid(Record& r, const Enum& value) { r.SetInvalid##Name(value); }              \
    static Enum get(const Record& r) { return r.Get##Name(); }                                       \
    static void set(Record& r, const Enum& value) { r.Set##Name(value); }                            \
    static bool isSet(const Record& r) { return r.Is##Name##Set(); }                                 \
    static void reset(Record& r) { r.Reset##Name(); }                                                \
    static const Enum& defaultValue(const Record& r) { return r.GetDefault##Name(); }                \
    static void setDefault(Record& r, const Enum& value) { r.SetDefault##Name(value); }              \
    static QString asString(Record& r) { return r.Get##Name##AsString(); }                           \
    static QString asStringConst(const Record& r) { return r.Get##Name##AsString(); }                \
    static QStringList names() { return Record_::Get##Name##s(); }                                   \
    static QStringList displayNames() { return Record_::GetGUI##Name##s(); }

struct TypeMember
{
    ENUMERATED_MEMBER(PelLu300RouterMessage, Type)

    static QStringList expectedNames() { return typeNames(); }
    static QString error() { return "enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"; }
    static QString xml(const QString& name)
    {
        return "<PelLu300RouterMessage><Type>" + name + "</Type></PelLu300RouterMessage>";
    }
    static QByteArray frameHead(int nameLength)
    {
        return nameLength == 5 ? bytes("00000011 E1D9E008 00000009 00000005")
                               : bytes("00000013 E1D9E008 0000000B 00000007");
    }
};

struct StateMember
{
    ENUMERATED_MEMBER(MastershipState, State)

    static QStringList expectedNames() { return stateNames(); }
    static QString error() { return "enum is not valid (classname=MastershipState,membername=m_state)"; }
    static QString xml(const QString& name)
    {
        return "<MastershipState><State>" + name + "</State></MastershipState>";
    }
    static QByteArray frameHead(int nameLength)
    {
        return nameLength == 13   ? bytes("00000019 4264F498 00000011 0000000D")
               : nameLength == 14 ? bytes("0000001A 4264F498 00000012 0000000E")
                                  : bytes("0000001B 4264F498 00000013 0000000F");
    }
};

template <class Member>
class EnumeratedMember : public ::testing::Test
{
protected:
    using Record = typename Member::Record;
    using Enum = typename Member::Enum;

    static Enum value(int value) { return number<Enum>(value); }

    Record record;
};
using EnumeratedMembers = ::testing::Types<TypeMember, StateMember>;
struct MemberNames
{
    template <class Member>
    static std::string GetName(int)
    {
        return std::is_same_v<Member, TypeMember> ? "Type" : "State";
    }
};
TYPED_TEST_SUITE(EnumeratedMember, EnumeratedMembers, MemberNames);

TYPED_TEST(EnumeratedMember, NameOfEveryEnumerator)
{
    const QStringList names = TypeParam::expectedNames();
    ASSERT_EQ(names.size(), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(TypeParam::toName(this->record, this->value(i)), names.at(i));
}

TYPED_TEST(EnumeratedMember, NameOfAnyOtherNumberIsANullString)
{
    for (const int i : {-1, 3, 4, -2, 2147483647, -2147483647 - 1})
        EXPECT_TRUE(TypeParam::toName(this->record, this->value(i)).isNull()) << i;
}

TYPED_TEST(EnumeratedMember, EveryNameGivesItsValue)
{
    const QStringList names = TypeParam::expectedNames();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(TypeParam::fromName(this->record, names.at(i)), i);
}

TYPED_TEST(EnumeratedMember, AnUnknownNameGivesMinusOneUnlessChanged)
{
    const QString name = TypeParam::expectedNames().at(1);
    for (const QString& unknown : {name.toLower(), name.toUpper(), name + " ", " " + name, name.left(3),
                                   QString("1"), empty(), QString()})
        EXPECT_EQ(TypeParam::fromName(this->record, unknown), -1) << unknown.toStdString();
}

TYPED_TEST(EnumeratedMember, AnUnknownNameGivesTheRecordsOwnInvalidValue)
{
    TypeParam::setInvalid(this->record, this->value(1));
    EXPECT_EQ(TypeParam::fromName(this->record, "Unknown"), 1);
    EXPECT_EQ(TypeParam::fromName(this->record, empty()), 1);
    TypeParam::setInvalid(this->record, this->value(-77));
    EXPECT_EQ(TypeParam::fromName(this->record, "Unknown"), -77);
    EXPECT_EQ(TypeParam::fromName(this->record, TypeParam::expectedNames().at(0)), 0);
}

TYPED_TEST(EnumeratedMember, NamesAndValuesConvertOnConstAndOnMutableRecords)
{
    const auto& constant = this->record;
    EXPECT_EQ(TypeParam::toNameConst(constant, this->value(2)), TypeParam::expectedNames().at(2));
    EXPECT_EQ(TypeParam::fromNameConst(constant, TypeParam::expectedNames().at(2)), 2);
    EXPECT_TRUE(TypeParam::asStringConst(constant).isNull());
}

TYPED_TEST(EnumeratedMember, TheRangeAloneDecidesValidity)
{
    for (const int invalid : {-1, 0, 1, 3, 7}) {
        TypeParam::setInvalid(this->record, this->value(invalid));
        for (int i = 0; i < 3; ++i)
            EXPECT_TRUE(TypeParam::isValid(this->record, this->value(i))) << invalid << " " << i;
        for (const int i : {-1, 3, 7, -2147483647 - 1, 2147483647})
            EXPECT_FALSE(TypeParam::isValid(this->record, this->value(i))) << invalid << " " << i;
    }
}

TYPED_TEST(EnumeratedMember, AnInvalidValueInsideTheRangeKeepsItsName)
{
    TypeParam::setInvalid(this->record, this->value(1));
    EXPECT_EQ(TypeParam::toName(this->record, this->value(1)), TypeParam::expectedNames().at(1));
}

TYPED_TEST(EnumeratedMember, InvalidValueIsMinusOneInANewRecord)
{
    EXPECT_EQ(TypeParam::invalid(this->record), -1);
}

TYPED_TEST(EnumeratedMember, InvalidValueBelongsToOneRecord)
{
    typename TypeParam::Record other;
    TypeParam::setInvalid(this->record, this->value(2));
    EXPECT_EQ(TypeParam::invalid(this->record), 2);
    EXPECT_EQ(TypeParam::invalid(other), -1);
    typename TypeParam::Record later;
    EXPECT_EQ(TypeParam::invalid(later), -1);
}

TYPED_TEST(EnumeratedMember, InvalidValueSurvivesResets)
{
    TypeParam::setInvalid(this->record, this->value(2));
    TypeParam::reset(this->record);
    this->record.Reset();
    this->record.ResetToDefault();
    EXPECT_EQ(TypeParam::invalid(this->record), 2);
}

TYPED_TEST(EnumeratedMember, InvalidValueTravelsWithTheData)
{
    TypeParam::setInvalid(this->record, this->value(2));
    const typename TypeParam::Record copy(this->record);
    EXPECT_EQ(TypeParam::invalid(copy), 2);
    typename TypeParam::Record assigned;
    assigned = this->record;
    EXPECT_EQ(TypeParam::invalid(assigned), 2);
    TypeParam::setInvalid(assigned, this->value(0));
    EXPECT_EQ(TypeParam::invalid(this->record), 2);
    assigned = typename TypeParam::Record();
    EXPECT_EQ(TypeParam::invalid(assigned), -1);
}

TYPED_TEST(EnumeratedMember, InvalidValueMayBeSetToItself)
{
    TypeParam::setInvalid(this->record, this->value(2));
    const typename TypeParam::Record sharing = this->record;
    TypeParam::setInvalid(this->record, TypeParam::invalid(this->record));
    EXPECT_EQ(TypeParam::invalid(this->record), 2);
}

TYPED_TEST(EnumeratedMember, ChangingTheInvalidValueChangesNeitherValueNorDefaultNorEquality)
{
    TypeParam::setInvalid(this->record, this->value(2));
    EXPECT_EQ(TypeParam::get(this->record), -1);
    EXPECT_EQ(TypeParam::defaultValue(this->record), -1);
    EXPECT_FALSE(TypeParam::isSet(this->record));
    EXPECT_TRUE(this->record == typename TypeParam::Record());
}

TYPED_TEST(EnumeratedMember, ANewRecordHasMinusOneAndNoName)
{
    EXPECT_EQ(TypeParam::get(this->record), -1);
    EXPECT_FALSE(TypeParam::isSet(this->record));
    EXPECT_TRUE(TypeParam::asString(this->record).isNull());
}

TYPED_TEST(EnumeratedMember, AsStringIsTheNameOfTheCurrentValue)
{
    for (int i = 0; i < 3; ++i) {
        TypeParam::set(this->record, this->value(i));
        EXPECT_EQ(TypeParam::asString(this->record), TypeParam::expectedNames().at(i));
    }
    TypeParam::set(this->record, this->value(3));
    EXPECT_TRUE(TypeParam::asString(this->record).isNull());
    TypeParam::setDefault(this->record, this->value(1));
    TypeParam::reset(this->record);
    EXPECT_EQ(TypeParam::asString(this->record), TypeParam::expectedNames().at(1));
}

TYPED_TEST(EnumeratedMember, EveryEnumeratorIsStoredUnderValidation)
{
    this->record.SetValidate(true);
    for (int i = 0; i < 3; ++i) {
        TypeParam::reset(this->record);
        TypeParam::set(this->record, this->value(i));
        EXPECT_EQ(TypeParam::get(this->record), i);
        EXPECT_TRUE(TypeParam::isSet(this->record));
    }
}

TYPED_TEST(EnumeratedMember, AnyOtherNumberIsRefusedUnderValidationAndChangesNothing)
{
    this->record.SetValidate(true);
    for (const int i : {-1, 3, -2147483647 - 1, 2147483647}) {
        expectThrow<OutOfRangeException>([&] { TypeParam::set(this->record, this->value(i)); },
                                         TypeParam::error());
        EXPECT_EQ(TypeParam::get(this->record), -1) << i;
        EXPECT_FALSE(TypeParam::isSet(this->record)) << i;
    }
    TypeParam::set(this->record, this->value(2));
    expectThrow<OutOfRangeException>([&] { TypeParam::set(this->record, this->value(3)); },
                                     TypeParam::error());
    EXPECT_EQ(TypeParam::get(this->record), 2);
    EXPECT_TRUE(TypeParam::isSet(this->record));
}

TYPED_TEST(EnumeratedMember, AnyNumberIsStoredAndCountsAsSetWithoutValidation)
{
    for (const int i : {-1, 3, -2147483647 - 1, 2147483647}) {
        TypeParam::reset(this->record);
        TypeParam::set(this->record, this->value(i));
        EXPECT_EQ(TypeParam::get(this->record), i);
        EXPECT_TRUE(TypeParam::isSet(this->record)) << i;
        EXPECT_TRUE(this->record.AnyData()) << i;
    }
}

TYPED_TEST(EnumeratedMember, TheInvalidValueDoesNotDecideWhatTheSetterAccepts)
{
    this->record.SetValidate(true);
    TypeParam::setInvalid(this->record, this->value(1));
    TypeParam::set(this->record, this->value(1));
    EXPECT_EQ(TypeParam::get(this->record), 1);
    TypeParam::setInvalid(this->record, this->value(9));
    expectThrow<OutOfRangeException>([&] { TypeParam::set(this->record, this->value(9)); },
                                     TypeParam::error());
    expectThrow<OutOfRangeException>([&] { TypeParam::set(this->record, this->value(-1)); },
                                     TypeParam::error());
}

TYPED_TEST(EnumeratedMember, TheDefaultTakesEffectAtTheNextReset)
{
    EXPECT_EQ(TypeParam::defaultValue(this->record), -1);
    TypeParam::setDefault(this->record, this->value(2));
    EXPECT_EQ(TypeParam::defaultValue(this->record), 2);
    EXPECT_EQ(TypeParam::get(this->record), -1);
    TypeParam::set(this->record, this->value(1));
    TypeParam::reset(this->record);
    EXPECT_EQ(TypeParam::get(this->record), 2);
    EXPECT_FALSE(TypeParam::isSet(this->record));
    this->record.ResetToDefault();
    EXPECT_EQ(TypeParam::get(this->record), 2);
    EXPECT_TRUE(TypeParam::isSet(this->record));
}

TYPED_TEST(EnumeratedMember, ADefaultOutsideTheRangeFailsAtResetToDefaultUnderValidationOnly)
{
    TypeParam::setDefault(this->record, this->value(5));
    this->record.ResetToDefault();
    EXPECT_EQ(TypeParam::get(this->record), 5);
    EXPECT_TRUE(TypeParam::isSet(this->record));
    this->record.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { this->record.ResetToDefault(); }, TypeParam::error());
    EXPECT_FALSE(TypeParam::isSet(this->record));
}

TYPED_TEST(EnumeratedMember, TheNameIsTheXmlText)
{
    const QStringList names = TypeParam::expectedNames();
    for (int i = 0; i < 3; ++i) {
        TypeParam::set(this->record, this->value(i));
        EXPECT_EQ(xmlOf(this->record), TypeParam::xml(names.at(i)));
        typename TypeParam::Record read;
        read.SetValidate(true);
        readXml(read, TypeParam::xml(names.at(i)));
        EXPECT_EQ(TypeParam::get(read), i);
        EXPECT_TRUE(TypeParam::isSet(read));
    }
}

TYPED_TEST(EnumeratedMember, TheNameIsTheBinaryPayload)
{
    const QStringList names = TypeParam::expectedNames();
    for (int i = 0; i < 3; ++i) {
        TypeParam::set(this->record, this->value(i));
        const QByteArray name = names.at(i).toLatin1();
        const QByteArray frame = TypeParam::frameHead(static_cast<int>(name.size())) + name;
        EXPECT_EQ(frameOf(this->record), frame);
        typename TypeParam::Record read;
        read.SetValidate(true);
        readFrame(read, frame);
        EXPECT_EQ(TypeParam::get(read), i);
        EXPECT_TRUE(TypeParam::isSet(read));
    }
}

TYPED_TEST(EnumeratedMember, ReadingAnUnknownNameStoresTheInvalidValueWithoutValidation)
{
    readXml(this->record, TypeParam::xml("nonsense"));
    EXPECT_EQ(TypeParam::get(this->record), -1);
    EXPECT_TRUE(TypeParam::isSet(this->record));
    TypeParam::setInvalid(this->record, this->value(12));
    readXml(this->record, TypeParam::xml("nonsense"));
    EXPECT_EQ(TypeParam::get(this->record), 12);
    readXml(this->record, TypeParam::xml(QString()));
    EXPECT_EQ(TypeParam::get(this->record), 12);
}

TYPED_TEST(EnumeratedMember, ReadingAnUnknownNameFailsInTheSetterUnderValidation)
{
    TypeParam::set(this->record, this->value(1));
    this->record.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { readXml(this->record, TypeParam::xml("nonsense")); },
                                     TypeParam::error());
    EXPECT_EQ(TypeParam::get(this->record), 1);
    const QByteArray frame = TypeParam::frameHead(TypeParam::expectedNames().at(0).size() == 7 ? 7 : 15);
    const QByteArray wrongName = frame.at(3) == 0x13 ? QByteArray("REQUEST") : QByteArray("NOMASTERPRESENT");
    expectThrow<OutOfRangeException>([&] { readFrame(this->record, frame + wrongName); }, TypeParam::error());
    EXPECT_EQ(TypeParam::get(this->record), 1);
}

TYPED_TEST(EnumeratedMember, ReadingAnUnknownNamePassesValidationWhenTheInvalidValueIsAnEnumerator)
{
    this->record.SetValidate(true);
    TypeParam::setInvalid(this->record, this->value(1));
    readXml(this->record, TypeParam::xml("nonsense"));
    EXPECT_EQ(TypeParam::get(this->record), 1);
    EXPECT_TRUE(TypeParam::isSet(this->record));
}

TYPED_TEST(EnumeratedMember, AStoredNumberOutsideTheRangeHasAnEmptyTextAndFailsTheCheck)
{
    TypeParam::set(this->record, this->value(3));
    EXPECT_EQ(xmlOf(this->record), TypeParam::xml(QString()));
    const QString object = this->record.GetObjectName();
    const QString member = object == "MastershipState" ? "State" : "Type";
    expectThrow<OutOfRangeException>([&] { this->record.Check(); },
                                     object + ": Please set " + member + " properly.");
}

// --- the choice -----------------------------------------------------------------------------

TEST(ChoiceNames, NameOfEveryChoice)
{
    Fragment fragment;
    for (int i = 0; i < payloadCount; ++i)
        EXPECT_EQ(fragment.ChoiceFragmentToName(number<Fragment::ChoiceFragment>(i)), payloadNames().at(i));
}

TEST(ChoiceNames, NameOfTheInvalidChoiceIsANullString)
{
    const Fragment fragment;
    EXPECT_TRUE(fragment.ChoiceFragmentToName(number<Fragment::ChoiceFragment>(-1)).isNull());
    EXPECT_TRUE(fragment.ChoiceFragmentToName(fragment.GetInvalidChoiceFragment()).isNull());
    EXPECT_TRUE(fragment.ChoiceFragmentToName(fragment.GetChoiceFragment()).isNull());
}

TEST(ChoiceNames, NameOfANumberOutsideTheRangeIsANullString)
{
    Fragment fragment;
    for (const int i : {payloadCount, payloadCount + 2, -2, 2147483647, -2147483647 - 1})
        EXPECT_TRUE(fragment.ChoiceFragmentToName(number<Fragment::ChoiceFragment>(i)).isNull()) << i;
}

TEST(ChoiceNames, EveryNameGivesItsChoice)
{
    const Fragment fragment;
    for (int i = 0; i < payloadCount; ++i)
        EXPECT_EQ(fragment.NameToChoiceFragment(payloadNames().at(i)), i);
}

TEST(ChoiceNames, AnUnknownNameGivesTheInvalidChoice)
{
    Fragment fragment;
    for (const QString& unknown : {QString("df_params"), QString("DF_PARAMS"), QString("Fragment"),
                                   QString("DFParams"), empty(), QString()})
        EXPECT_EQ(fragment.NameToChoiceFragment(unknown), -1) << unknown.toStdString();
}

TEST(ChoiceNames, EveryChoiceButTheInvalidOneIsValid)
{
    const Fragment fragment;
    EXPECT_FALSE(fragment.IsValidChoiceFragment(number<Fragment::ChoiceFragment>(-1)));
    for (const int i : {0, payloadCount - 1, payloadCount, payloadCount + 2, -2, 2147483647, -2147483647 - 1})
        EXPECT_TRUE(fragment.IsValidChoiceFragment(number<Fragment::ChoiceFragment>(i))) << i;
}

TEST(ChoiceNames, TheInvalidChoiceIsMinusOne)
{
    Fragment fragment;
    EXPECT_EQ(fragment.GetInvalidChoiceFragment(), -1);
    fragment.SetDF_Params(DF_Params());
    fragment.Reset();
    fragment.ResetToDefault();
    EXPECT_EQ(fragment.GetInvalidChoiceFragment(), -1);
}

// --- translation ----------------------------------------------------------------------------

// Notes the calls, and returns texts that show the arguments.
class RecordingTranslator : public QTranslator
{
public:
    struct Request
    {
        QByteArray context;
        QByteArray text;
        QByteArray disambiguation;
        int n;
    };

    QString translate(const char* context, const char* text, const char* disambiguation, int n) const override
    {
        requests.push_back({context, text, disambiguation, n});
        return prefix + QString::fromUtf8(text);
    }

    bool isEmpty() const override { return false; }

    QString prefix = "translated ";
    mutable std::vector<Request> requests;
};

class Translation : public ::testing::Test
{
protected:
    Translation()
    {
        if (!QCoreApplication::instance())
            m_application = std::make_unique<QCoreApplication>(s_argumentCount, s_arguments);
    }

    ~Translation() override { QCoreApplication::removeTranslator(&translator); }

    void install()
    {
        QCoreApplication::installTranslator(&translator);
        translator.requests.clear();
    }

    void expectOneRequest(const QByteArray& context, const QByteArray& text, const QByteArray& disambiguation,
                          int n)
    {
        ASSERT_EQ(translator.requests.size(), 1U);
        const RecordingTranslator::Request& request = translator.requests.front();
        EXPECT_EQ(request.context, context);
        EXPECT_EQ(request.text, text);
        EXPECT_EQ(request.disambiguation, disambiguation);
        EXPECT_EQ(request.n, n);
        translator.requests.clear();
    }

private:
    static int s_argumentCount;
    static char s_name[];
    static char* s_arguments[];
    std::unique_ptr<QCoreApplication> m_application;

protected:
    RecordingTranslator translator;
};

int Translation::s_argumentCount = 1;
char Translation::s_name[] = "tests";
char* Translation::s_arguments[] = {s_name, nullptr};

TEST_F(Translation, DisplayNamesAreTheNamesWhileNothingIsInstalled)
{
    EXPECT_EQ(PelLu300RouterMessage::GetGUITypes(), typeNames());
    EXPECT_EQ(MastershipState::GetGUIStates(), stateNames());
    EXPECT_EQ(Fragment::GetGUIChoiceFragments(), payloadNames());
}

TEST_F(Translation, DisplayNamesAreTranslatedInValueOrder)
{
    install();
    EXPECT_EQ(PelLu300RouterMessage::GetGUITypes(),
              (QStringList{"translated Request", "translated Reply", "translated Event"}));
    EXPECT_EQ(
        MastershipState::GetGUIStates(),
        (QStringList{"translated NoMasterPresent", "translated MasterPresent", "translated RouterIsMaster"}));
    QStringList translated;
    for (const QString& name : payloadNames())
        translated.append("translated " + name);
    EXPECT_EQ(Fragment::GetGUIChoiceFragments(), translated);
}

TEST_F(Translation, DisplayNamesAreLookedUpInTheGeneralContextWithoutDisambiguation)
{
    const auto expectRequests = [this](const QStringList& names) {
        ASSERT_EQ(translator.requests.size(), static_cast<std::size_t>(names.size()));
        for (std::size_t i = 0; i < translator.requests.size(); ++i) {
            EXPECT_EQ(translator.requests[i].context, QByteArray("QObject"));
            EXPECT_EQ(translator.requests[i].text, names.at(static_cast<int>(i)).toUtf8());
            EXPECT_TRUE(translator.requests[i].disambiguation.isEmpty());
            EXPECT_EQ(translator.requests[i].n, -1);
        }
        translator.requests.clear();
    };
    install();
    PelLu300RouterMessage::GetGUITypes();
    expectRequests(typeNames());
    MastershipState::GetGUIStates();
    expectRequests(stateNames());
    Fragment::GetGUIChoiceFragments();
    expectRequests(payloadNames());
}

TEST_F(Translation, DisplayNamesAreBuiltAfreshOnEveryCall)
{
    EXPECT_EQ(MastershipState::GetGUIStates().at(0), "NoMasterPresent");
    install();
    EXPECT_EQ(MastershipState::GetGUIStates().at(0), "translated NoMasterPresent");
    EXPECT_EQ(PelLu300RouterMessage::GetGUITypes().at(0), "translated Request");
    EXPECT_EQ(Fragment::GetGUIChoiceFragments().at(0), "translated MastershipState");
    translator.prefix = "again ";
    EXPECT_EQ(MastershipState::GetGUIStates().at(0), "again NoMasterPresent");
    EXPECT_EQ(PelLu300RouterMessage::GetGUITypes().at(0), "again Request");
    EXPECT_EQ(Fragment::GetGUIChoiceFragments().at(0), "again MastershipState");
    QCoreApplication::removeTranslator(&translator);
    EXPECT_EQ(MastershipState::GetGUIStates().at(0), "NoMasterPresent");
}

TEST_F(Translation, NamesAndWrittenFormsAreNeverTranslated)
{
    install();
    PelLu300RouterMessage message;
    message.SetType(PelLu300RouterMessage::Reply);
    EXPECT_EQ(PelLu300RouterMessage::GetTypes(), typeNames());
    EXPECT_EQ(message.GetTypeAsString(), "Reply");
    EXPECT_EQ(message.NameToType("translated Reply"), -1);
    EXPECT_EQ(xmlOf(message), "<PelLu300RouterMessage><Type>Reply</Type></PelLu300RouterMessage>");
    EXPECT_TRUE(translator.requests.empty());
}

template <class Record>
class TranslationHelpers : public Translation
{
protected:
    static QByteArray context();
};
template <>
QByteArray TranslationHelpers<MastershipState>::context()
{
    return "PELLU300ROUTERINTERFACEXML::MastershipState";
}
template <>
QByteArray TranslationHelpers<PelLu300RouterMessage>::context()
{
    return "PELLU300ROUTERINTERFACEXML::PelLu300RouterMessage";
}
using TranslatingRecords = ::testing::Types<MastershipState, PelLu300RouterMessage>;
struct RecordNames
{
    template <class Record>
    static std::string GetName(int)
    {
        return Record().GetObjectName().toStdString();
    }
};
TYPED_TEST_SUITE(TranslationHelpers, TranslatingRecords, RecordNames);

TYPED_TEST(TranslationHelpers, TrLooksUpInTheClassesContext)
{
    this->install();
    EXPECT_EQ(TypeParam::tr("Master", "menu"), "translated Master");
    this->expectOneRequest(this->context(), "Master", "menu", -1);
}

TYPED_TEST(TranslationHelpers, TrHandsTheCountOn)
{
    this->install();
    EXPECT_EQ(TypeParam::tr("%n clients", "menu", 3), "translated 3 clients");
    this->expectOneRequest(this->context(), "%n clients", "menu", 3);
    EXPECT_EQ(TypeParam::tr("%n clients", "menu", 0), "translated 0 clients");
    this->expectOneRequest(this->context(), "%n clients", "menu", 0);
}

TYPED_TEST(TranslationHelpers, TrUtf8LooksUpInTheClassesContext)
{
    this->install();
    EXPECT_EQ(TypeParam::trUtf8("Ger\xC3\xA4t", "menu"), QString::fromUtf8("translated Ger\xC3\xA4t"));
    this->expectOneRequest(this->context(), "Ger\xC3\xA4t", "menu", -1);
}

TYPED_TEST(TranslationHelpers, TrUtf8HandsTheCountOn)
{
    this->install();
    EXPECT_EQ(TypeParam::trUtf8("%n Ger\xC3\xA4te", "menu", 2),
              QString::fromUtf8("translated 2 Ger\xC3\xA4te"));
    this->expectOneRequest(this->context(), "%n Ger\xC3\xA4te", "menu", 2);
}

TYPED_TEST(TranslationHelpers, TheDisambiguationMayBeNull)
{
    this->install();
    TypeParam::tr("Master", nullptr);
    this->expectOneRequest(this->context(), "Master", QByteArray(), -1);
    TypeParam::trUtf8("Master", nullptr, 4);
    this->expectOneRequest(this->context(), "Master", QByteArray(), 4);
}

TYPED_TEST(TranslationHelpers, WithoutTranslationTheTextItselfComesBack)
{
    EXPECT_EQ(TypeParam::tr("%n clients", "menu"), "%n clients");
    EXPECT_EQ(TypeParam::tr("%n clients", "menu", 5), "5 clients");
    EXPECT_EQ(TypeParam::trUtf8("Ger\xC3\xA4t", "menu"), QString::fromUtf8("Ger\xC3\xA4t"));
    EXPECT_EQ(TypeParam::trUtf8("%n Ger\xC3\xA4te", "menu", 5), QString::fromUtf8("5 Ger\xC3\xA4te"));
}

} // namespace
