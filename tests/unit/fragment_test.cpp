// SPDX-License-Identifier: MIT
// The fragment: seven payload records of which a choice selects one.

#include "TestSupport.h"

#include <array>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace {

using namespace testing_support;
using Choice = Fragment::ChoiceFragment;
using Logger = MODELKIT::Logger;

constexpr Choice none = static_cast<Choice>(-1);

// Reaches one of the seven payloads through names that do not depend on the payload's.
#define PAYLOAD(Name, number)                                                               \
    using Record = PELLU300ROUTERINTERFACEXML::Name;                                        \
    static constexpr Choice choice = static_cast<Choice>(number);                           \
    static QString name() { return #Name; }                                                 \
    static void set(Fragment& f, const Record& value) { f.Set##Name(value); }               \
    static Record& edit(Fragment& f) { return f.Get##Name(); }                              \
    static const Record& view(const Fragment& f) { return f.Get##Name(); }                  \
    static bool isSet(const Fragment& f) { return f.Is##Name##Set(); }                      \
    static void reset(Fragment& f) { f.Reset##Name(); }                                     \
    static const Record& defaultRecord(const Fragment& f) { return f.GetDefault##Name(); }  \
    static void setDefault(Fragment& f, const Record& value) { f.SetDefault##Name(value); } \
    static bool isValid(const Fragment& f, const Record& value) { return f.IsValid##Name(value); }

// The same with a Port member inside.
#define PORT_PAYLOAD                                         \
    static void setContent(Record& r) { r.SetPort(5000); }   \
    static void setOtherContent(Record& r) { r.SetPort(7); } \
    static void setDefaultContent(Record& r) { r.SetDefaultPort(5000); }

struct MastershipStatePayload
{
    PAYLOAD(MastershipState, 0)
    static void setContent(Record& r)
    {
        r.SetState(Record::MasterPresent);
        r.SetMasterClientID("c1");
    }
    static void setOtherContent(Record& r) { r.SetState(Record::RouterIsMaster); }
    static void setDefaultContent(Record& r)
    {
        r.SetDefaultState(Record::MasterPresent);
        r.SetDefaultMasterClientID("c1");
    }
    static QString xml()
    {
        return "<MastershipState><State>MasterPresent</State>"
               "<MasterClientID>c1</MasterClientID></MastershipState>";
    }
    static QByteArray tag() { return bytes("111939B4"); }
    static QByteArray frame()
    {
        return bytes("00000027 4264F498 00000011 0000000D 4D617374657250726573656E74"
                     " 0BCD2CF7 00000006 00000002 6331");
    }
};

struct AcquireMastershipPayload
{
    PAYLOAD(AcquireMastership, 1)
    static void setContent(Record& r) { r.SetSuccess(true); }
    static void setOtherContent(Record& r) { r.SetSuccess(false); }
    static void setDefaultContent(Record& r) { r.SetDefaultSuccess(true); }
    static QString xml() { return "<AcquireMastership><Success>true</Success></AcquireMastership>"; }
    static QByteArray tag() { return bytes("21BDA6E2"); }
    static QByteArray frame() { return bytes("00000009 BF8A59C6 00000001 01"); }
};

struct ReleaseMastershipPayload
{
    PAYLOAD(ReleaseMastership, 2)
    static void setContent(Record& r) { r.SetSuccess(true); }
    static void setOtherContent(Record& r) { r.SetSuccess(false); }
    static void setDefaultContent(Record& r) { r.SetDefaultSuccess(true); }
    static QString xml() { return "<ReleaseMastership><Success>true</Success></ReleaseMastership>"; }
    static QByteArray tag() { return bytes("FC38AB7C"); }
    static QByteArray frame() { return bytes("00000009 BF8A59C6 00000001 01"); }
};

struct OstraInterfacePortPayload
{
    PAYLOAD(OstraInterfacePort, 3)
    PORT_PAYLOAD
    static QString xml() { return "<OstraInterfacePort><Port>5000</Port></OstraInterfacePort>"; }
    static QByteArray tag() { return bytes("F9E464D0"); }
    static QByteArray frame() { return bytes("00000010 1F980517 00000008 0000000000001388"); }
};

struct PelVtConnectServerPayload
{
    PAYLOAD(PelVtConnectServer, 4)
    static void setContent(Record& r)
    {
        r.SetAddress("host");
        r.SetPort(80);
    }
    static void setOtherContent(Record& r) { r.SetAddress("other"); }
    static void setDefaultContent(Record& r)
    {
        r.SetDefaultAddress("host");
        r.SetDefaultPort(80);
    }
    static QString xml()
    {
        return "<PelVtConnectServer><Address>host</Address><Port>80</Port></PelVtConnectServer>";
    }
    static QByteArray tag() { return bytes("0BBAB464"); }
    static QByteArray frame()
    {
        return bytes("00000020 2AC271EC 00000008 00000004 686F7374 1F980517 00000008 0000000000000050");
    }
};

struct RouterVtServerPortPayload
{
    PAYLOAD(RouterVtServerPort, 5)
    PORT_PAYLOAD
    static QString xml() { return "<RouterVtServerPort><Port>5000</Port></RouterVtServerPort>"; }
    static QByteArray tag() { return bytes("5D020EA0"); }
    static QByteArray frame() { return bytes("00000010 1F980517 00000008 0000000000001388"); }
};

struct DF_ParamsPayload
{
    PAYLOAD(DF_Params, 6)
    static void setContent(Record& r)
    {
        r.SetFrequency(2.5);
        r.SetPanoramaSpan(10);
    }
    static void setOtherContent(Record& r) { r.SetBandwidth(1); }
    static void setDefaultContent(Record& r)
    {
        r.SetDefaultFrequency(2.5);
        r.SetDefaultPanoramaSpan(10);
    }
    static QString xml()
    {
        return "<DF_Params><Frequency>2.50</Frequency><PanoramaSpan>10.00</PanoramaSpan></DF_Params>";
    }
    static QByteArray tag() { return bytes("BE2DFF74"); }
    static QByteArray frame()
    {
        return bytes("00000021 A97DB5BE 00000008 00000004 322E3530"
                     " 7029D96C 00000009 00000005 31302E3030");
    }
};

using Payloads = ::testing::Types<MastershipStatePayload, AcquireMastershipPayload, ReleaseMastershipPayload,
                                  OstraInterfacePortPayload, PelVtConnectServerPayload,
                                  RouterVtServerPortPayload, DF_ParamsPayload>;

// Another payload than the given one.
template <class Payload>
using Another = std::conditional_t<std::is_same_v<Payload, DF_ParamsPayload>, OstraInterfacePortPayload,
                                   DF_ParamsPayload>;

template <class Payload>
typename Payload::Record withContent()
{
    typename Payload::Record record;
    Payload::setContent(record);
    return record;
}

template <class Payload>
typename Payload::Record withOtherContent()
{
    typename Payload::Record record;
    Payload::setOtherContent(record);
    return record;
}

// Four bytes, most significant first.
QByteArray lengthWord(qsizetype length)
{
    QByteArray word(4, '\0');
    word[2] = static_cast<char>(length / 256);
    word[3] = static_cast<char>(length % 256);
    return word;
}

// A fragment's frame with one entry: the tag and the payload's own frame.
QByteArray fragmentFrame(const QByteArray& entry) { return lengthWord(entry.size()) + entry; }

std::array<bool, 7> flagsOf(const Fragment& f)
{
    return {f.IsMastershipStateSet(),    f.IsAcquireMastershipSet(),  f.IsReleaseMastershipSet(),
            f.IsOstraInterfacePortSet(), f.IsPelVtConnectServerSet(), f.IsRouterVtServerPortSet(),
            f.IsDF_ParamsSet()};
}

// A fragment in which all seven payloads are set; DF_Params is selected.
Fragment withEverythingSet()
{
    Fragment f;
    f.SetMastershipState(withContent<MastershipStatePayload>());
    f.SetAcquireMastership(withContent<AcquireMastershipPayload>());
    f.SetReleaseMastership(withContent<ReleaseMastershipPayload>());
    f.SetOstraInterfacePort(withContent<OstraInterfacePortPayload>());
    f.SetPelVtConnectServer(withContent<PelVtConnectServerPayload>());
    f.SetRouterVtServerPort(withContent<RouterVtServerPortPayload>());
    f.SetDF_Params(withContent<DF_ParamsPayload>());
    return f;
}

constexpr std::array<bool, 7> allSet{true, true, true, true, true, true, true};
constexpr std::array<bool, 7> noneSet{};

template <class Payload>
std::array<bool, 7> onlySet()
{
    std::array<bool, 7> flags{};
    flags[static_cast<std::size_t>(Payload::choice)] = true;
    return flags;
}

// Calls visit(record) for the seven payloads of a fragment.
template <class Visit>
void forEachPayload(const Fragment& f, Visit&& visit)
{
    visit(f.GetMastershipState());
    visit(f.GetAcquireMastership());
    visit(f.GetReleaseMastership());
    visit(f.GetOstraInterfacePort());
    visit(f.GetPelVtConnectServer());
    visit(f.GetRouterVtServerPort());
    visit(f.GetDF_Params());
}

// --- what holds for each of the seven payloads ----------------------------------------------

template <class Payload>
class FragmentPayload : public ::testing::Test
{
protected:
    using Record = typename Payload::Record;
    using Other = Another<Payload>;

    void selectOther() { Other::set(fragment, withContent<Other>()); }

    const Fragment& constant() const { return fragment; }

    Fragment fragment;
};
struct PayloadNames
{
    template <class Payload>
    static std::string GetName(int)
    {
        return Payload::name().toStdString();
    }
};
TYPED_TEST_SUITE(FragmentPayload, Payloads, PayloadNames);

TYPED_TEST(FragmentPayload, SetterStoresSelectsAndMarks)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);
    EXPECT_EQ(flagsOf(this->fragment), onlySet<TypeParam>());
}

TYPED_TEST(FragmentPayload, SetterReplacesTheWholePayload)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    TypeParam::set(this->fragment, withOtherContent<TypeParam>());
    EXPECT_TRUE(TypeParam::view(this->fragment) == withOtherContent<TypeParam>());
    TypeParam::set(this->fragment, typename TypeParam::Record());
    EXPECT_FALSE(TypeParam::view(this->fragment).AnyData());
    EXPECT_TRUE(TypeParam::isSet(this->fragment));
}

TYPED_TEST(FragmentPayload, SetterMakesThePayloadIndependentOfItsSource)
{
    typename TypeParam::Record source = withContent<TypeParam>();
    TypeParam::set(this->fragment, source);
    TypeParam::setOtherContent(source);
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
    TypeParam::set(this->fragment, source);
    TypeParam::setContent(TypeParam::edit(this->fragment));
    typename TypeParam::Record expected = withContent<TypeParam>();
    TypeParam::setOtherContent(expected);
    EXPECT_TRUE(source == expected);
}

TYPED_TEST(FragmentPayload, MutableGetterSelectsMarksAndGivesTheDefaultPayload)
{
    const auto& payload = TypeParam::edit(this->fragment);
    EXPECT_FALSE(payload.AnyData());
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);
    EXPECT_EQ(flagsOf(this->fragment), onlySet<TypeParam>());
    EXPECT_TRUE(this->fragment.AnyData());
    EXPECT_TRUE(this->fragment.HasData());
}

TYPED_TEST(FragmentPayload, MutableGetterGivesAPlaceForEditing)
{
    TypeParam::setContent(TypeParam::edit(this->fragment));
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
    EXPECT_EQ(&TypeParam::edit(this->fragment), &TypeParam::view(this->fragment));
}

TYPED_TEST(FragmentPayload, ConstGetterGivesThePayloadAndMovesNothing)
{
    EXPECT_FALSE(TypeParam::view(this->fragment).AnyData());
    EXPECT_EQ(this->fragment.GetChoiceFragment(), none);
    EXPECT_EQ(flagsOf(this->fragment), noneSet);
    TypeParam::set(this->fragment, withContent<TypeParam>());
    this->selectOther();
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TestFixture::Other::choice);
}

TYPED_TEST(FragmentPayload, AskingWhetherItIsSetCreatesNothing)
{
    EXPECT_FALSE(TypeParam::isSet(this->fragment));
    EXPECT_FALSE(this->fragment.IsInitialized());
}

TYPED_TEST(FragmentPayload, SelectingAnotherKeepsValueAndFlag)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    this->selectOther();
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TestFixture::Other::choice);
    EXPECT_TRUE(TypeParam::isSet(this->fragment));
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
}

TYPED_TEST(FragmentPayload, EditingThroughAReferenceDoesNotMoveTheChoice)
{
    auto& payload = TypeParam::edit(this->fragment);
    this->selectOther();
    TypeParam::setContent(payload);
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TestFixture::Other::choice);
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
}

TYPED_TEST(FragmentPayload, ResettingItWithoutDataBlockCreatesNone)
{
    TypeParam::reset(this->fragment);
    EXPECT_FALSE(this->fragment.IsInitialized());
}

TYPED_TEST(FragmentPayload, ResettingItClearsFlagAndValueButLeavesTheChoice)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    TypeParam::reset(this->fragment);
    EXPECT_FALSE(TypeParam::isSet(this->fragment));
    EXPECT_FALSE(TypeParam::view(this->fragment).AnyData());
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);
    EXPECT_TRUE(this->fragment.AnyData());
    EXPECT_TRUE(this->fragment.HasData());
}

TYPED_TEST(FragmentPayload, ResettingItLeavesAllOthersAlone)
{
    Fragment f = withEverythingSet();
    TypeParam::reset(f);
    std::array<bool, 7> flags = allSet;
    flags[static_cast<std::size_t>(TypeParam::choice)] = false;
    EXPECT_EQ(flagsOf(f), flags);
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_TRUE(TestFixture::Other::view(f) == withContent<typename TestFixture::Other>());
}

TYPED_TEST(FragmentPayload, AfterItsResetTheSelectedPayloadIsWrittenAsNothing)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    TypeParam::reset(this->fragment);
    EXPECT_EQ(xmlOf(this->fragment), "<Fragment/>");
    EXPECT_EQ(frameOf(this->fragment), bytes("00000000"));
    this->fragment.SetValidate(true);
    EXPECT_EQ(xmlOf(this->fragment), "<Fragment/>");
    EXPECT_EQ(frameOf(this->fragment), bytes("00000000"));
}

TYPED_TEST(FragmentPayload, DefaultIsAtFirstAnEmptyPayload)
{
    EXPECT_FALSE(TypeParam::defaultRecord(this->fragment).AnyData());
    EXPECT_EQ(this->fragment.GetChoiceFragment(), none);
    EXPECT_EQ(flagsOf(this->fragment), noneSet);
}

TYPED_TEST(FragmentPayload, SettingTheDefaultTouchesNeitherValueNorFlagNorChoice)
{
    TypeParam::setDefault(this->fragment, withContent<TypeParam>());
    EXPECT_TRUE(this->fragment.IsInitialized());
    EXPECT_TRUE(TypeParam::defaultRecord(this->fragment) == withContent<TypeParam>());
    EXPECT_FALSE(TypeParam::view(this->fragment).AnyData());
    EXPECT_EQ(this->fragment.GetChoiceFragment(), none);
    EXPECT_EQ(flagsOf(this->fragment), noneSet);
    EXPECT_FALSE(this->fragment.AnyData());

    TypeParam::set(this->fragment, withOtherContent<TypeParam>());
    this->selectOther();
    TypeParam::setDefault(this->fragment, typename TypeParam::Record());
    EXPECT_TRUE(TypeParam::view(this->fragment) == withOtherContent<TypeParam>());
    EXPECT_TRUE(TypeParam::isSet(this->fragment));
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TestFixture::Other::choice);
}

TYPED_TEST(FragmentPayload, TheDefaultIsIndependentOfItsSource)
{
    typename TypeParam::Record source = withContent<TypeParam>();
    TypeParam::setDefault(this->fragment, source);
    TypeParam::setOtherContent(source);
    EXPECT_TRUE(TypeParam::defaultRecord(this->fragment) == withContent<TypeParam>());
}

TYPED_TEST(FragmentPayload, ResetsGiveItItsDefault)
{
    TypeParam::setDefault(this->fragment, withContent<TypeParam>());
    TypeParam::set(this->fragment, withOtherContent<TypeParam>());
    TypeParam::reset(this->fragment);
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
    EXPECT_FALSE(TypeParam::isSet(this->fragment));

    TypeParam::set(this->fragment, withOtherContent<TypeParam>());
    this->fragment.Reset();
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
    EXPECT_FALSE(TypeParam::isSet(this->fragment));
    EXPECT_TRUE(TypeParam::defaultRecord(this->fragment) == withContent<TypeParam>());
}

TYPED_TEST(FragmentPayload, ChangingItAfterAResetLeavesTheDefaultAlone)
{
    TypeParam::setDefault(this->fragment, withContent<TypeParam>());
    this->fragment.Reset();
    TypeParam::edit(this->fragment).Reset();
    TypeParam::setOtherContent(TypeParam::edit(this->fragment));
    EXPECT_TRUE(TypeParam::defaultRecord(this->fragment) == withContent<TypeParam>());
    EXPECT_TRUE(TypeParam::view(this->fragment) == withOtherContent<TypeParam>());
}

TYPED_TEST(FragmentPayload, EveryPayloadIsValid)
{
    typename TypeParam::Record record;
    EXPECT_TRUE(TypeParam::isValid(this->fragment, record));
    TypeParam::setContent(record);
    this->fragment.SetValidate(true);
    EXPECT_TRUE(TypeParam::isValid(this->fragment, record));
}

TYPED_TEST(FragmentPayload, InitChoiceSelectsMarksAndGivesTheDefault)
{
    this->fragment.InitChoice(TypeParam::choice);
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);
    EXPECT_EQ(flagsOf(this->fragment), onlySet<TypeParam>());
    EXPECT_FALSE(TypeParam::view(this->fragment).AnyData());

    TypeParam::setDefault(this->fragment, withContent<TypeParam>());
    TypeParam::set(this->fragment, withOtherContent<TypeParam>());
    this->fragment.InitChoice(TypeParam::choice);
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
}

TYPED_TEST(FragmentPayload, InitChoiceResetsEverythingElse)
{
    Fragment f = withEverythingSet();
    f.InitChoice(TypeParam::choice);
    EXPECT_EQ(flagsOf(f), onlySet<TypeParam>());
    forEachPayload(f, [](const auto& payload) { EXPECT_FALSE(payload.AnyData()); });
}

TYPED_TEST(FragmentPayload, InitChoiceTakesTheFragmentsOwnChoice)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    this->fragment.InitChoice(this->fragment.GetChoiceFragment());
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);
    EXPECT_EQ(flagsOf(this->fragment), onlySet<TypeParam>());
    EXPECT_FALSE(TypeParam::view(this->fragment).AnyData());
}

TYPED_TEST(FragmentPayload, ResetToDefaultAppliesTheDefaultsInsideAndSelectsNothing)
{
    typename TypeParam::Record withDefaults;
    TypeParam::setDefaultContent(withDefaults);
    TypeParam::setDefault(this->fragment, withDefaults);
    TypeParam::set(this->fragment, withOtherContent<TypeParam>());
    this->fragment.ResetToDefault();
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
    EXPECT_EQ(this->fragment.GetChoiceFragment(), none);
    EXPECT_EQ(flagsOf(this->fragment), noneSet);
    EXPECT_FALSE(this->fragment.AnyData());
    EXPECT_EQ(xmlOf(this->fragment), "<Fragment/>");
    EXPECT_TRUE(TypeParam::defaultRecord(this->fragment) == withDefaults);
}

TYPED_TEST(FragmentPayload, ResetToDefaultDropsAContentThatIsNoDefaultOfThePayload)
{
    TypeParam::setDefault(this->fragment, withContent<TypeParam>());
    this->fragment.ResetToDefault();
    EXPECT_FALSE(TypeParam::view(this->fragment).AnyData());
}

TYPED_TEST(FragmentPayload, IsWrittenAsXmlWhenSelected)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    EXPECT_EQ(xmlOf(this->fragment), "<Fragment>" + TypeParam::xml() + "</Fragment>");
    this->fragment.SetValidate(true);
    EXPECT_EQ(xmlOf(this->fragment), "<Fragment>" + TypeParam::xml() + "</Fragment>");
}

TYPED_TEST(FragmentPayload, IsReadFromXmlSelectedAndMarked)
{
    for (const bool validate : {false, true}) {
        Fragment f;
        f.SetValidate(validate);
        readXml(f, "<Fragment>" + TypeParam::xml() + "</Fragment>");
        EXPECT_EQ(f.GetChoiceFragment(), TypeParam::choice);
        EXPECT_EQ(flagsOf(f), onlySet<TypeParam>());
        EXPECT_TRUE(TypeParam::view(f) == withContent<TypeParam>());
    }
}

TYPED_TEST(FragmentPayload, AnEmptyElementSelectsAndMarksIt)
{
    this->fragment.SetValidate(true);
    readXml(this->fragment, "<Fragment><" + TypeParam::name() + "/></Fragment>");
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);
    EXPECT_EQ(flagsOf(this->fragment), onlySet<TypeParam>());
    EXPECT_FALSE(TypeParam::view(this->fragment).AnyData());
    EXPECT_EQ(xmlOf(this->fragment), "<Fragment><" + TypeParam::name() + "/></Fragment>");
}

TYPED_TEST(FragmentPayload, XmlNamesAreMatchedExactly)
{
    const QString name = TypeParam::name();
    for (const QString& unknown : {name.toLower(), name.toUpper(), name + "s", "m_" + name})
        readXml(this->fragment, "<Fragment><" + unknown + "/></Fragment>");
    EXPECT_EQ(this->fragment.GetChoiceFragment(), none);
    EXPECT_EQ(flagsOf(this->fragment), noneSet);
}

TYPED_TEST(FragmentPayload, IsWrittenAsABinaryEntryWhenSelected)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    const QByteArray expected = fragmentFrame(TypeParam::tag() + TypeParam::frame());
    EXPECT_EQ(frameOf(this->fragment), expected);
    this->fragment.SetValidate(true);
    EXPECT_EQ(frameOf(this->fragment), expected);
}

TYPED_TEST(FragmentPayload, IsReadFromABinaryEntrySelectedAndMarked)
{
    for (const bool validate : {false, true}) {
        Fragment f;
        f.SetValidate(validate);
        readFrame(f, fragmentFrame(TypeParam::tag() + TypeParam::frame()));
        EXPECT_EQ(f.GetChoiceFragment(), TypeParam::choice);
        EXPECT_EQ(flagsOf(f), onlySet<TypeParam>());
        EXPECT_TRUE(TypeParam::view(f) == withContent<TypeParam>());
    }
}

TYPED_TEST(FragmentPayload, ReadingItMergesIntoWhatItHolds)
{
    typename TypeParam::Record merged = withOtherContent<TypeParam>();
    TypeParam::setContent(merged);

    TypeParam::set(this->fragment, withOtherContent<TypeParam>());
    this->selectOther();
    readXml(this->fragment, "<Fragment>" + TypeParam::xml() + "</Fragment>");
    EXPECT_TRUE(TypeParam::view(this->fragment) == merged);
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);

    TypeParam::set(this->fragment, withOtherContent<TypeParam>());
    this->selectOther();
    readFrame(this->fragment, fragmentFrame(TypeParam::tag() + TypeParam::frame()));
    EXPECT_TRUE(TypeParam::view(this->fragment) == merged);
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);
    EXPECT_TRUE(TestFixture::Other::isSet(this->fragment));
}

TYPED_TEST(FragmentPayload, AFailedBinaryReadMovesTheChoiceButDoesNotMarkIt)
{
    this->selectOther();
    const QByteArray cutShort = fragmentFrame(TypeParam::tag() + bytes("00000004 00000001"));
    expectThrow<BinaryParsingException>(
        [&] { readFrame(this->fragment, cutShort); },
        TypeParam::name()
            + "::SetBinary(...): Length error occurred during processing of binary representation");
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);
    EXPECT_FALSE(TypeParam::isSet(this->fragment));
    EXPECT_TRUE(TestFixture::Other::isSet(this->fragment));
    EXPECT_EQ(xmlOf(this->fragment), "<Fragment/>");
}

TYPED_TEST(FragmentPayload, AFailedReadLeavesAFlagThatWasOn)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    const QByteArray cutShort = fragmentFrame(TypeParam::tag() + bytes("00000004 00000001"));
    EXPECT_THROW(readFrame(this->fragment, cutShort), BinaryParsingException);
    EXPECT_TRUE(TypeParam::isSet(this->fragment));
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
}

TYPED_TEST(FragmentPayload, ANegativeEntryLengthIsALengthErrorOfThePayload)
{
    expectThrow<BinaryParsingException>(
        [&] { readFrame(this->fragment, fragmentFrame(TypeParam::tag() + bytes("FFFFFFFF"))); },
        TypeParam::name()
            + "::SetBinary(...): Length error occurred during processing of binary representation");
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);
    EXPECT_FALSE(TypeParam::isSet(this->fragment));
}

TYPED_TEST(FragmentPayload, SetterKeepsThePayloadsValidationFlagAndLogger)
{
    const auto logger = std::make_shared<Logger>();
    this->fragment.SetValidate(true);
    this->fragment.SetLogger(logger);
    typename TypeParam::Record value = withContent<TypeParam>();
    value.SetLogger(std::make_shared<Logger>());
    TypeParam::set(this->fragment, value);
    EXPECT_TRUE(TypeParam::view(this->fragment).GetValidate());
    EXPECT_EQ(TypeParam::view(this->fragment).GetLogger(), logger);
    EXPECT_FALSE(value.GetValidate());
}

TYPED_TEST(FragmentPayload, ResetsKeepThePayloadsValidationFlagAndLogger)
{
    const auto logger = std::make_shared<Logger>();
    this->fragment.SetLogger(logger);
    this->fragment.SetValidate(true);
    typename TypeParam::Record defaultRecord = withContent<TypeParam>();
    TypeParam::setDefault(this->fragment, defaultRecord);
    const auto& payload = TypeParam::view(this->fragment);
    TypeParam::set(this->fragment, withOtherContent<TypeParam>());
    TypeParam::reset(this->fragment);
    EXPECT_TRUE(payload.GetValidate());
    EXPECT_EQ(payload.GetLogger(), logger);
    this->fragment.Reset();
    EXPECT_TRUE(payload.GetValidate());
    EXPECT_EQ(payload.GetLogger(), logger);
    this->fragment.InitChoice(TypeParam::choice);
    EXPECT_TRUE(payload.GetValidate());
    EXPECT_EQ(payload.GetLogger(), logger);
}

TYPED_TEST(FragmentPayload, ReferenceStaysValidAcrossResetsSettersAndReading)
{
    auto& payload = TypeParam::edit(this->fragment);
    TypeParam::setContent(payload);
    TypeParam::reset(this->fragment);
    EXPECT_FALSE(payload.AnyData());
    TypeParam::set(this->fragment, withContent<TypeParam>());
    EXPECT_TRUE(payload == withContent<TypeParam>());
    this->fragment.Reset();
    EXPECT_FALSE(payload.AnyData());
    readXml(this->fragment, "<Fragment>" + TypeParam::xml() + "</Fragment>");
    EXPECT_TRUE(payload == withContent<TypeParam>());
    this->fragment.InitChoice(TypeParam::choice);
    EXPECT_FALSE(payload.AnyData());
    readFrame(this->fragment, fragmentFrame(TypeParam::tag() + TypeParam::frame()));
    EXPECT_TRUE(payload == withContent<TypeParam>());
    this->fragment.ResetToDefault();
    EXPECT_FALSE(payload.AnyData());
    this->fragment.Check();
    xmlOf(this->fragment);
    frameOf(this->fragment);
    TypeParam::setContent(payload);
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
    EXPECT_EQ(&payload, &TypeParam::view(this->fragment));
}

TYPED_TEST(FragmentPayload, SetterAndDefaultSetterTakeTheFragmentsOwnRecords)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    TypeParam::set(this->fragment, TypeParam::view(this->fragment));
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
    TypeParam::setDefault(this->fragment, TypeParam::view(this->fragment));
    EXPECT_TRUE(TypeParam::defaultRecord(this->fragment) == withContent<TypeParam>());
    TypeParam::setDefault(this->fragment, TypeParam::defaultRecord(this->fragment));
    EXPECT_TRUE(TypeParam::defaultRecord(this->fragment) == withContent<TypeParam>());
    TypeParam::set(this->fragment, withOtherContent<TypeParam>());
    TypeParam::set(this->fragment, TypeParam::defaultRecord(this->fragment));
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
}

TYPED_TEST(FragmentPayload, SetterTakesItsOwnRecordWhileTheFragmentIsShared)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    const auto& payload = TypeParam::view(this->fragment);
    Fragment sharing;
    sharing = this->fragment;
    TypeParam::set(this->fragment, payload);
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
    EXPECT_TRUE(TypeParam::view(sharing) == withContent<TypeParam>());
}

TYPED_TEST(FragmentPayload, CopyIsIndependentAlsoOfAReferenceHeldBefore)
{
    auto& payload = TypeParam::edit(this->fragment);
    TypeParam::setContent(payload);
    Fragment copy(this->fragment);
    payload.Reset();
    EXPECT_TRUE(TypeParam::view(copy) == withContent<TypeParam>());
    EXPECT_EQ(copy.GetChoiceFragment(), TypeParam::choice);
    EXPECT_TRUE(TypeParam::isSet(copy));
    TypeParam::edit(copy).Reset();
    TypeParam::setOtherContent(TypeParam::edit(copy));
    EXPECT_FALSE(TypeParam::view(this->fragment).AnyData());
}

TYPED_TEST(FragmentPayload, AssignedFragmentsAreIndependentOnceTouched)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    TypeParam::setDefault(this->fragment, withOtherContent<TypeParam>());
    Fragment assigned;
    assigned = this->fragment;
    assigned.Reset();
    EXPECT_TRUE(TypeParam::view(this->fragment) == withContent<TypeParam>());
    EXPECT_TRUE(TypeParam::isSet(this->fragment));
    EXPECT_EQ(this->fragment.GetChoiceFragment(), TypeParam::choice);
    EXPECT_TRUE(TypeParam::view(assigned) == withOtherContent<TypeParam>());
    EXPECT_EQ(assigned.GetChoiceFragment(), none);
    TypeParam::setDefault(assigned, typename TypeParam::Record());
    EXPECT_TRUE(TypeParam::defaultRecord(this->fragment) == withOtherContent<TypeParam>());
}

TYPED_TEST(FragmentPayload, AfterADetachBothHoldersKeepValueFlagsValidationAndLogger)
{
    const auto logger = std::make_shared<Logger>();
    for (const bool sourceTouchedFirst : {true, false}) {
        Fragment source;
        source.SetValidate(true);
        source.SetLogger(logger);
        TypeParam::set(source, withContent<TypeParam>());
        Fragment holder;
        holder = source;
        if (sourceTouchedFirst)
            source.AnyData();
        else
            holder.AnyData();
        for (const Fragment* f : {&source, &holder}) {
            EXPECT_TRUE(TypeParam::view(*f) == withContent<TypeParam>());
            EXPECT_EQ(flagsOf(*f), onlySet<TypeParam>());
            EXPECT_EQ(f->GetChoiceFragment(), TypeParam::choice);
            forEachPayload(*f, [&](const auto& payload) {
                EXPECT_TRUE(payload.GetValidate());
                EXPECT_EQ(payload.GetLogger(), logger);
            });
        }
    }
}

TYPED_TEST(FragmentPayload, SettingsOfASharedFragmentDoNotReachTheOtherHoldersPayloads)
{
    TypeParam::set(this->fragment, withContent<TypeParam>());
    Fragment holder;
    holder = this->fragment;
    holder.SetValidate(true);
    EXPECT_TRUE(TypeParam::view(holder).GetValidate());
    EXPECT_FALSE(TypeParam::view(this->fragment).GetValidate());
    const auto logger = std::make_shared<Logger>();
    holder = this->fragment;
    holder.SetLogger(logger);
    EXPECT_EQ(TypeParam::view(holder).GetLogger(), logger);
    EXPECT_EQ(TypeParam::view(this->fragment).GetLogger(), nullptr);
}

TYPED_TEST(FragmentPayload, EqualityComparesTheSelectedPayload)
{
    Fragment other;
    TypeParam::set(this->fragment, withContent<TypeParam>());
    TypeParam::set(other, withContent<TypeParam>());
    EXPECT_TRUE(this->fragment == other);
    EXPECT_FALSE(this->fragment != other);
    TypeParam::set(other, withOtherContent<TypeParam>());
    EXPECT_FALSE(this->fragment == other);
    EXPECT_TRUE(this->fragment != other);
}

TYPED_TEST(FragmentPayload, EqualityIgnoresTheFlagOfTheSelectedPayload)
{
    Fragment other;
    TypeParam::edit(this->fragment);
    TypeParam::edit(other);
    TypeParam::reset(other);
    ASSERT_NE(TypeParam::isSet(this->fragment), TypeParam::isSet(other));
    EXPECT_TRUE(this->fragment == other);
}

TYPED_TEST(FragmentPayload, EqualityIgnoresPayloadsAndDefaultsThatAreNotSelected)
{
    Fragment other;
    TypeParam::set(this->fragment, withContent<TypeParam>());
    TypeParam::setDefault(this->fragment, withOtherContent<TypeParam>());
    this->selectOther();
    TestFixture::Other::set(other, withContent<typename TestFixture::Other>());
    EXPECT_TRUE(this->fragment == other);
    EXPECT_TRUE(other == this->fragment);
}

TYPED_TEST(FragmentPayload, FragmentsWithDifferentChoicesDiffer)
{
    Fragment other;
    TypeParam::edit(this->fragment);
    EXPECT_FALSE(this->fragment == other);
    EXPECT_FALSE(other == this->fragment);
    TestFixture::Other::edit(other);
    EXPECT_FALSE(this->fragment == other);
    EXPECT_TRUE(this->fragment != other);
}

TYPED_TEST(FragmentPayload, CheckPassesForTheSelectedPayloadSetOrNot)
{
    for (const bool validate : {false, true}) {
        this->fragment.SetValidate(validate);
        TypeParam::edit(this->fragment);
        EXPECT_NO_THROW(this->fragment.Check());
        TypeParam::reset(this->fragment);
        EXPECT_NO_THROW(this->fragment.Check());
        EXPECT_NO_THROW(this->fragment.Check(true));
    }
}

TYPED_TEST(FragmentPayload, HasDataDoesNotAskTheFlag)
{
    TypeParam::edit(this->fragment);
    TypeParam::reset(this->fragment);
    EXPECT_TRUE(this->fragment.HasData());
}

// --- a new fragment -------------------------------------------------------------------------

TEST(FragmentRecord, ANewOneHasNoDataAndNoChoice)
{
    const Fragment f;
    EXPECT_FALSE(f.IsInitialized());
    EXPECT_FALSE(f.AnyData());
    EXPECT_FALSE(f.HasData());
    EXPECT_EQ(flagsOf(f), noneSet);
    EXPECT_FALSE(f.IsInitialized());
    EXPECT_EQ(f.GetChoiceFragment(), -1);
    EXPECT_TRUE(f.IsInitialized());
    EXPECT_FALSE(f.AnyData());
    EXPECT_FALSE(f.HasData());
    EXPECT_EQ(f.GetObjectName(), "Fragment");
    EXPECT_EQ(Fragment::GetId(), -767521452);
}

TEST(FragmentRecord, ANewOneIsWrittenEmpty)
{
    const Fragment f;
    EXPECT_EQ(xmlOf(f), "<Fragment/>");
    EXPECT_EQ(frameOf(f), bytes("00000000"));
    QByteArray withId;
    QDataStream stream(&withId, QIODevice::WriteOnly);
    EXPECT_TRUE(f.GetBinary(stream, 0x61023A90, true));
    EXPECT_EQ(withId, bytes("61023A90 00000000"));
}

TEST(FragmentRecord, ANewOneIsNotWrittenUnderValidation)
{
    const Fragment f;
    f.SetValidate(true);
    EXPECT_EQ(xmlOf(f), "");
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    EXPECT_FALSE(f.GetBinary(stream, 1, true));
    EXPECT_TRUE(written.isEmpty());
}

TEST(FragmentRecord, ANewOnePassesTheCheck)
{
    const Fragment f;
    EXPECT_NO_THROW(f.Check());
    f.SetValidate(true);
    EXPECT_NO_THROW(f.Check());
    EXPECT_NO_THROW(f.Check(true));
}

TEST(FragmentRecord, ResetsOfANewOneCreateNoDataBlock)
{
    Fragment f;
    f.Reset();
    f.ResetChoiceFragment();
    EXPECT_FALSE(f.IsInitialized());
    f.ResetToDefault();
    EXPECT_TRUE(f.IsInitialized());
    EXPECT_FALSE(f.AnyData());
}

// --- the choice -----------------------------------------------------------------------------

TEST(FragmentChoice, TheLastPayloadSetIsSelectedAndTheOthersStaySet)
{
    Fragment f;
    f.SetAcquireMastership(withContent<AcquireMastershipPayload>());
    f.SetDF_Params(withContent<DF_ParamsPayload>());
    EXPECT_EQ(f.GetChoiceFragment(), 6);
    EXPECT_TRUE(f.IsAcquireMastershipSet());
    EXPECT_EQ(xmlOf(f), "<Fragment><DF_Params><Frequency>2.50</Frequency><PanoramaSpan>10.00</PanoramaSpan>"
                        "</DF_Params></Fragment>");
    EXPECT_EQ(frameOf(f), bytes("00000029 BE2DFF74 00000021 A97DB5BE 00000008 00000004 322E3530"
                                " 7029D96C 00000009 00000005 31302E3030"));
}

TEST(FragmentChoice, AllSevenFlagsStayOnWhileOnlyTheSelectedPayloadIsWritten)
{
    Fragment f = withEverythingSet();
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::DF_Params);
    f.GetAcquireMastership();
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_EQ(xmlOf(f),
              "<Fragment><AcquireMastership><Success>true</Success></AcquireMastership></Fragment>");
}

TEST(FragmentChoice, TheMutablePortGetterOnANewFragmentSelectsTheDefaultPort)
{
    Fragment f;
    EXPECT_EQ(f.GetOstraInterfacePort().GetPort(), 0U);
    EXPECT_EQ(f.GetChoiceFragment(), 3);
    EXPECT_TRUE(f.IsOstraInterfacePortSet());
    EXPECT_FALSE(f.GetOstraInterfacePort().IsPortSet());
}

TEST(FragmentChoice, InitChoiceAfterAnotherPayloadUnsetsThatPayload)
{
    Fragment f;
    OstraInterfacePort port;
    port.SetPort(99);
    f.SetDefaultOstraInterfacePort(port);
    f.SetDF_Params(withContent<DF_ParamsPayload>());
    f.InitChoice(Fragment::OstraInterfacePort);
    EXPECT_FALSE(f.IsDF_ParamsSet());
    EXPECT_EQ(f.GetChoiceFragment(), 3);
    EXPECT_EQ(std::as_const(f).GetOstraInterfacePort().GetPort(), 99U);
    EXPECT_TRUE(std::as_const(f).GetOstraInterfacePort().IsPortSet());
}

TEST(FragmentChoice, InitChoiceWithTheInvalidChoiceResetsAndThrowsWhateverTheValidation)
{
    for (const bool validate : {false, true}) {
        Fragment f = withEverythingSet();
        f.SetValidate(validate);
        expectThrow<OutOfRangeException>([&] { f.InitChoice(none); },
                                         "Invalid enum value set in 'Fragment'.");
        EXPECT_EQ(f.GetChoiceFragment(), none);
        EXPECT_EQ(flagsOf(f), noneSet);
        forEachPayload(f, [](const auto& payload) { EXPECT_FALSE(payload.AnyData()); });
    }
}

TEST(FragmentChoice, InitChoiceOfANewFragmentWithTheInvalidChoiceThrows)
{
    Fragment f;
    expectThrow<OutOfRangeException>([&] { f.InitChoice(none); }, "Invalid enum value set in 'Fragment'.");
    EXPECT_FALSE(f.AnyData());
}

TEST(FragmentChoice, InitChoiceTakesTheFragmentsOwnInvalidChoice)
{
    Fragment f = withEverythingSet();
    expectThrow<OutOfRangeException>([&] { f.InitChoice(f.GetInvalidChoiceFragment()); },
                                     "Invalid enum value set in 'Fragment'.");
    f = withEverythingSet();
    f.ResetChoiceFragment();
    expectThrow<OutOfRangeException>([&] { f.InitChoice(f.GetChoiceFragment()); },
                                     "Invalid enum value set in 'Fragment'.");
    EXPECT_EQ(flagsOf(f), noneSet);
}

TEST(FragmentChoice, InitChoiceTakesTheOwnChoiceOfASharedFragment)
{
    Fragment f = withEverythingSet();
    const Choice& choice = f.GetChoiceFragment();
    Fragment sharing;
    sharing = f;
    f.InitChoice(choice);
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_EQ(flagsOf(f), onlySet<DF_ParamsPayload>());
    EXPECT_EQ(flagsOf(sharing), allSet);
    EXPECT_EQ(sharing.GetChoiceFragment(), Fragment::DF_Params);
}

TEST(FragmentChoice, InitChoiceWithAnyOtherNumberResetsAndUnderValidationThrows)
{
    for (const bool validate : {false, true})
        for (const int number : {7, 9, -2, 2147483647, -2147483647 - 1}) {
            Fragment f = withEverythingSet();
            f.SetDefaultDF_Params(withOtherContent<DF_ParamsPayload>());
            f.SetValidate(validate);
            const auto choose = [&f, number] { f.InitChoice(static_cast<Choice>(number)); };
            if (validate)
                expectThrow<OutOfRangeException>(choose, "Invalid enum value set in 'Fragment'.");
            else
                EXPECT_NO_THROW(choose()) << number;
            EXPECT_EQ(f.GetChoiceFragment(), none) << number;
            EXPECT_EQ(flagsOf(f), noneSet) << number;
            EXPECT_FALSE(f.AnyData()) << number;
            EXPECT_FALSE(f.HasData()) << number;
            EXPECT_TRUE(std::as_const(f).GetDF_Params() == withOtherContent<DF_ParamsPayload>()) << number;
        }
}

TEST(FragmentChoice, InitChoiceResetsThroughTheVirtualOperation)
{
    struct Counting : Fragment
    {
        void Reset() override
        {
            ++resets;
            Fragment::Reset();
        }
        int resets = 0;
    };
    Counting f;
    f.InitChoice(Fragment::DF_Params);
    EXPECT_EQ(f.resets, 1);
    EXPECT_THROW(f.InitChoice(none), OutOfRangeException);
    EXPECT_EQ(f.resets, 2);
    f.ResetToDefault();
    EXPECT_EQ(f.resets, 3);
}

TEST(FragmentChoice, ResetChoiceSelectsNothingAndKeepsFlagsAndPayloads)
{
    Fragment f = withEverythingSet();
    f.ResetChoiceFragment();
    EXPECT_EQ(f.GetChoiceFragment(), none);
    EXPECT_FALSE(f.AnyData());
    EXPECT_FALSE(f.HasData());
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_TRUE(std::as_const(f).GetDF_Params() == withContent<DF_ParamsPayload>());
    EXPECT_TRUE(std::as_const(f).GetPelVtConnectServer() == withContent<PelVtConnectServerPayload>());
    EXPECT_EQ(xmlOf(f), "<Fragment/>");
    EXPECT_EQ(frameOf(f), bytes("00000000"));
    EXPECT_NO_THROW(f.Check());
}

TEST(FragmentChoice, ResetChoiceOfASharedFragmentLeavesTheOtherHolderSelected)
{
    Fragment f = withEverythingSet();
    Fragment sharing;
    sharing = f;
    f.ResetChoiceFragment();
    EXPECT_EQ(sharing.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_EQ(f.GetChoiceFragment(), none);
}

TEST(FragmentChoice, WithoutChoiceNothingIsWrittenUnderValidation)
{
    Fragment f = withEverythingSet();
    f.ResetChoiceFragment();
    f.SetValidate(true);
    EXPECT_EQ(xmlOf(f), "");
    EXPECT_EQ(frameOf(f), QByteArray());
}

TEST(FragmentChoice, ResetSelectsNothingClearsAllFlagsAndKeepsDefaults)
{
    Fragment f = withEverythingSet();
    f.SetDefaultDF_Params(withOtherContent<DF_ParamsPayload>());
    f.Reset();
    EXPECT_TRUE(f.IsInitialized());
    EXPECT_EQ(f.GetChoiceFragment(), none);
    EXPECT_EQ(flagsOf(f), noneSet);
    EXPECT_FALSE(f.AnyData());
    EXPECT_TRUE(f.GetDefaultDF_Params() == withOtherContent<DF_ParamsPayload>());
    EXPECT_TRUE(std::as_const(f).GetDF_Params() == withOtherContent<DF_ParamsPayload>());
    EXPECT_FALSE(std::as_const(f).GetMastershipState().AnyData());
}

TEST(FragmentChoice, ResetToDefaultReachesAllSevenPayloads)
{
    Fragment f;
    MastershipState state;
    MastershipStatePayload::setDefaultContent(state);
    f.SetDefaultMastershipState(state);
    DF_Params params;
    DF_ParamsPayload::setDefaultContent(params);
    f.SetDefaultDF_Params(params);
    f.ResetToDefault();
    EXPECT_TRUE(std::as_const(f).GetMastershipState() == withContent<MastershipStatePayload>());
    EXPECT_TRUE(std::as_const(f).GetDF_Params() == withContent<DF_ParamsPayload>());
    forEachPayload(f, [](const auto& payload) { EXPECT_TRUE(payload.IsInitialized()); });
    EXPECT_EQ(f.GetChoiceFragment(), none);
    EXPECT_EQ(flagsOf(f), noneSet);
}

TEST(FragmentChoice, ResetToDefaultPassesWhatThePayloadsSetterThrows)
{
    Fragment f;
    MastershipState state;
    state.SetDefaultState(static_cast<MastershipState::State>(3));
    f.SetDefaultMastershipState(state);
    f.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { f.ResetToDefault(); },
                                     "enum is not valid (classname=MastershipState,membername=m_state)");
    EXPECT_EQ(flagsOf(f), noneSet);
    f.SetValidate(false);
    EXPECT_NO_THROW(f.ResetToDefault());
    EXPECT_EQ(std::as_const(f).GetMastershipState().GetState(), 3);
}

// --- comparing ------------------------------------------------------------------------------

TEST(FragmentEquality, TwoNewOnesAreEqualAndStayWithoutDataBlock)
{
    const Fragment a;
    const Fragment b;
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    EXPECT_FALSE(a.IsInitialized());
    EXPECT_FALSE(b.IsInitialized());
}

TEST(FragmentEquality, ANewOneEqualsOneThatSelectsNothing)
{
    Fragment a = withEverythingSet();
    a.ResetChoiceFragment();
    const Fragment b;
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(b == a);
    EXPECT_TRUE(b.IsInitialized());
}

TEST(FragmentEquality, SettingsAreNotCompared)
{
    Fragment a = withEverythingSet();
    Fragment b = a;
    b.SetValidate(true);
    b.SetLogger(std::make_shared<Logger>());
    EXPECT_TRUE(a == b);
}

// --- validation flag and logger -------------------------------------------------------------

TEST(FragmentSettings, ReachAllSevenPayloadsWhateverTheChoice)
{
    const auto logger = std::make_shared<Logger>();
    for (Fragment f : {Fragment(), withEverythingSet()}) {
        f.GetChoiceFragment();
        f.SetValidate(true);
        f.SetLogger(logger);
        forEachPayload(f, [&](const auto& payload) {
            EXPECT_TRUE(payload.GetValidate());
            EXPECT_EQ(payload.GetLogger(), logger);
        });
        f.SetValidate(false);
        f.SetLogger(nullptr);
        forEachPayload(f, [&](const auto& payload) {
            EXPECT_FALSE(payload.GetValidate());
            EXPECT_EQ(payload.GetLogger(), nullptr);
        });
    }
}

TEST(FragmentSettings, GivenBeforeTheDataBlockExistsReachThePayloadsWithIt)
{
    const auto logger = std::make_shared<Logger>();
    const Fragment f;
    f.SetValidate(true);
    f.SetLogger(logger);
    EXPECT_FALSE(f.IsInitialized());
    forEachPayload(f, [&](const auto& payload) {
        EXPECT_TRUE(payload.GetValidate());
        EXPECT_EQ(payload.GetLogger(), logger);
    });
}

TEST(FragmentSettings, EveryCheckWriteAndReadHandsThemDownAgain)
{
    Fragment f;
    f.SetValidate(true);
    const auto logger = std::make_shared<Logger>();
    f.SetLogger(logger);
    OstraInterfacePort& port = f.GetOstraInterfacePort();
    const auto changeAndExpectRestored = [&](const auto& operation) {
        port.SetValidate(false);
        port.SetLogger(nullptr);
        operation();
        EXPECT_TRUE(port.GetValidate());
        EXPECT_EQ(port.GetLogger(), logger);
    };
    changeAndExpectRestored([&] { f.Check(); });
    changeAndExpectRestored([&] { f.Check(true); });
    changeAndExpectRestored([&] { xmlOf(f); });
    changeAndExpectRestored([&] { frameOf(f); });
    changeAndExpectRestored([&] { readFrame(f, bytes("00000000")); });
    changeAndExpectRestored([&] { readXml(f, "<Fragment><Unknown/></Fragment>"); });
}

TEST(FragmentSettings, GettersAndSettersDoNotHandThemDown)
{
    Fragment f;
    f.SetValidate(true);
    OstraInterfacePort& port = f.GetOstraInterfacePort();
    port.SetValidate(false);
    f.SetDF_Params(DF_Params());
    f.GetChoiceFragment();
    f.Reset();
    f.InitChoice(Fragment::OstraInterfacePort);
    EXPECT_FALSE(port.GetValidate());
    readXml(f, "<Fragment/>");
    EXPECT_FALSE(port.GetValidate());
}

TEST(FragmentSettings, ResettingTheLoggerReachesThePayloadsWithTheNextOperation)
{
    Fragment f;
    f.SetLogger(std::make_shared<Logger>());
    const OstraInterfacePort& port = f.GetOstraInterfacePort();
    f.ResetLogger();
    EXPECT_NE(port.GetLogger(), nullptr);
    f.Check();
    EXPECT_EQ(port.GetLogger(), nullptr);
}

TEST(FragmentSettings, ACopyHasTheValidationFlagButNoLogger)
{
    Fragment f = withEverythingSet();
    f.SetValidate(true);
    f.SetLogger(std::make_shared<Logger>());
    const Fragment copy(f);
    EXPECT_TRUE(copy.GetValidate());
    EXPECT_EQ(copy.GetLogger(), nullptr);
    forEachPayload(copy, [](const auto& payload) { EXPECT_TRUE(payload.GetValidate()); });
    copy.Check();
    forEachPayload(copy, [](const auto& payload) { EXPECT_EQ(payload.GetLogger(), nullptr); });
}

TEST(FragmentSettings, AssignmentKeepsTheOwnFlagAndLogger)
{
    Fragment source = withEverythingSet();
    source.SetValidate(true);
    source.SetLogger(std::make_shared<Logger>());
    Fragment f;
    const auto logger = std::make_shared<Logger>();
    f.SetLogger(logger);
    f = source;
    EXPECT_FALSE(f.GetValidate());
    EXPECT_EQ(f.GetLogger(), logger);
    f.Check();
    forEachPayload(f, [&](const auto& payload) {
        EXPECT_FALSE(payload.GetValidate());
        EXPECT_EQ(payload.GetLogger(), logger);
    });
    forEachPayload(source, [&](const auto& payload) {
        EXPECT_TRUE(payload.GetValidate());
        EXPECT_NE(payload.GetLogger(), logger);
    });
}

// --- copying --------------------------------------------------------------------------------

TEST(FragmentCopying, ACopyHasChoiceFlagsPayloadsAndDefaults)
{
    Fragment f = withEverythingSet();
    f.SetDefaultDF_Params(withOtherContent<DF_ParamsPayload>());
    Fragment copy(f);
    EXPECT_EQ(flagsOf(copy), allSet);
    EXPECT_EQ(copy.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_TRUE(std::as_const(copy).GetMastershipState() == withContent<MastershipStatePayload>());
    copy.ResetDF_Params();
    EXPECT_TRUE(std::as_const(copy).GetDF_Params() == withOtherContent<DF_ParamsPayload>());
    EXPECT_TRUE(std::as_const(f).GetDF_Params() == withContent<DF_ParamsPayload>());
}

TEST(FragmentCopying, ACopyRemembersWhichDefaultsWereSetInsideThePayloads)
{
    Fragment f;
    f.GetOstraInterfacePort().SetDefaultPort(12);
    Fragment copy(f);
    copy.GetOstraInterfacePort().ResetToDefault();
    EXPECT_EQ(copy.GetOstraInterfacePort().GetPort(), 12U);
    EXPECT_FALSE(f.GetOstraInterfacePort().IsPortSet());
}

TEST(FragmentCopying, SelfAssignmentChangesNothing)
{
    Fragment f = withEverythingSet();
    const Fragment& same = f;
    f = same;
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::DF_Params);
}

TEST(FragmentCopying, AssigningANewOneTakesAllDataAway)
{
    Fragment f = withEverythingSet();
    f = Fragment();
    EXPECT_FALSE(f.IsInitialized());
    EXPECT_EQ(flagsOf(f), noneSet);
}

TEST(FragmentCopying, ACopyOfACopyIsIndependentOfBoth)
{
    Fragment first = withEverythingSet();
    Fragment second(first);
    Fragment third;
    third = second;
    second.GetDF_Params().SetFrequency(1);
    third.GetDF_Params().SetFrequency(2);
    EXPECT_EQ(std::as_const(first).GetDF_Params().GetFrequency(), 2.5);
    EXPECT_EQ(std::as_const(second).GetDF_Params().GetFrequency(), 1.0);
    EXPECT_EQ(std::as_const(third).GetDF_Params().GetFrequency(), 2.0);
}

// --- XML ------------------------------------------------------------------------------------

TEST(FragmentXml, OfSeveralPayloadElementsTheLastStaysSelectedAndAllAreMarked)
{
    Fragment f;
    readXml(f, "<Fragment><DF_Params><Bandwidth>1</Bandwidth></DF_Params>"
               "<OstraInterfacePort><Port>3</Port></OstraInterfacePort></Fragment>");
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_TRUE(f.IsDF_ParamsSet());
    EXPECT_TRUE(f.IsOstraInterfacePortSet());
    EXPECT_EQ(std::as_const(f).GetDF_Params().GetBandwidth(), 1.0);
    EXPECT_EQ(xmlOf(f), "<Fragment><OstraInterfacePort><Port>3</Port></OstraInterfacePort></Fragment>");
}

TEST(FragmentXml, ASecondElementOfOnePayloadIsReadOnTopOfTheFirst)
{
    Fragment f;
    readXml(f, "<Fragment><MastershipState><State>MasterPresent</State>"
               "<MasterClientID>c1</MasterClientID></MastershipState>"
               "<MastershipState><State>RouterIsMaster</State></MastershipState></Fragment>");
    EXPECT_EQ(f.GetMastershipState().GetState(), MastershipState::RouterIsMaster);
    EXPECT_EQ(f.GetMastershipState().GetMasterClientID(), "c1");
}

TEST(FragmentXml, UnknownElementsAndAttributesAreIgnored)
{
    Fragment f;
    f.SetValidate(true);
    readXml(f, "<Fragment number=\"1\"><Choice>6</Choice><Other><DF_Params/></Other>"
               "<RouterVtServerPort x=\"y\"><Port>8</Port><Address>a</Address></RouterVtServerPort>"
               "<Later/></Fragment>");
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::RouterVtServerPort);
    EXPECT_EQ(flagsOf(f), onlySet<RouterVtServerPortPayload>());
    EXPECT_EQ(f.GetRouterVtServerPort().GetPort(), 8U);
}

TEST(FragmentXml, AnEmptyElementReadsNothing)
{
    Fragment f;
    readXml(f, "<Fragment/>");
    EXPECT_TRUE(f.IsInitialized());
    EXPECT_FALSE(f.AnyData());
    EXPECT_EQ(flagsOf(f), noneSet);
}

TEST(FragmentXml, ReadingKeepsWhatTheElementDoesNotHold)
{
    Fragment f = withEverythingSet();
    readXml(f, "<Fragment/>");
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::DF_Params);
}

TEST(FragmentXml, AFailedReadMovesTheChoiceButDoesNotMarkIt)
{
    Fragment f;
    f.SetDF_Params(withContent<DF_ParamsPayload>());
    f.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readXml(f, "<Fragment><MastershipState><MasterClientID>c1</MasterClientID><State>No</State>"
                       "</MastershipState></Fragment>");
        },
        "enum is not valid (classname=MastershipState,membername=m_state)");
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::MastershipState);
    EXPECT_FALSE(f.IsMastershipStateSet());
    EXPECT_TRUE(f.IsDF_ParamsSet());
    EXPECT_TRUE(std::as_const(f).GetMastershipState().IsMasterClientIDSet());

    expectThrow<InvalidXmlException>(
        [&] { readXml(f, "<Fragment><AcquireMastership><Success/></AcquireMastership></Fragment>"); },
        "Please set a value or a default for the boolean 'Success' in 'AcquireMastership'.");
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::AcquireMastership);
    EXPECT_FALSE(f.IsAcquireMastershipSet());

    expectThrow<InvalidXmlException>(
        [&] {
            readXml(f, "<Fragment><ReleaseMastership><Success></Success></ReleaseMastership></Fragment>");
        },
        "Please set a value or a default for the boolean 'Success' in 'ReleaseMastership'.");
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::ReleaseMastership);
    EXPECT_FALSE(f.IsReleaseMastershipSet());
}

TEST(FragmentXml, TheCheckOfAPayloadFailsBehindTheFragmentsStart)
{
    Fragment f;
    f.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    f.SetValidate(true);
    EXPECT_NO_THROW(f.Check());
    QString written;
    QXmlStreamWriter writer(&written);
    expectThrow<OutOfRangeException>([&] { f.GetXml(writer); },
                                     "MastershipState: Please set State properly.");
    EXPECT_TRUE(written.startsWith("<Fragment")) << written.toStdString();
    EXPECT_FALSE(written.contains("MastershipState"));
    EXPECT_FALSE(written.contains("</Fragment>"));
    EXPECT_THROW(frameOf(f), OutOfRangeException);
}

TEST(FragmentXml, APayloadThatIsNotSelectedIsNotChecked)
{
    Fragment f;
    f.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    f.SetAcquireMastership(withContent<AcquireMastershipPayload>());
    f.SetValidate(true);
    EXPECT_EQ(xmlOf(f),
              "<Fragment><AcquireMastership><Success>true</Success></AcquireMastership></Fragment>");
    EXPECT_EQ(frameOf(f), bytes("00000011 21BDA6E2 00000009 BF8A59C6 00000001 01"));
}

// --- binary ---------------------------------------------------------------------------------

TEST(FragmentBinary, OfSeveralEntriesTheLastStaysSelectedAndAllAreMarked)
{
    Fragment f;
    readFrame(f, bytes("00000020 BE2DFF74 00000000"
                       " F9E464D0 00000010 1F980517 00000008 0000000000001388"));
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::OstraInterfacePort);
    EXPECT_TRUE(f.IsDF_ParamsSet());
    EXPECT_TRUE(f.IsOstraInterfacePortSet());
    EXPECT_EQ(frameOf(f), bytes("00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388"));
}

TEST(FragmentBinary, AnEntryOfAnotherRecordIsSkipped)
{
    Fragment f;
    readFrame(f, bytes("00000024 E1D9E008 00000004 FFFFFFFF"
                       " 5D020EA0 00000010 1F980517 00000008 0000000000000007"));
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::RouterVtServerPort);
    EXPECT_EQ(flagsOf(f), onlySet<RouterVtServerPortPayload>());
    EXPECT_EQ(f.GetRouterVtServerPort().GetPort(), 7U);
}

TEST(FragmentBinary, AnEmptyFrameReadsNothing)
{
    Fragment f = withEverythingSet();
    readFrame(f, bytes("00000000"));
    EXPECT_EQ(flagsOf(f), allSet);
    EXPECT_EQ(f.GetChoiceFragment(), Fragment::DF_Params);
    Fragment fresh;
    readFrame(fresh, bytes("00000000"));
    EXPECT_TRUE(fresh.IsInitialized());
    EXPECT_FALSE(fresh.AnyData());
}

TEST(FragmentBinary, AWrongLengthIsTheFragmentsError)
{
    const QString text =
        "Fragment::SetBinary(...): Length error occurred during processing of binary representation";
    const QByteArray entry = bytes("F9E464D0 00000010 1F980517 00000008 0000000000001388");
    for (const int length : {23, 25, -1}) {
        Fragment f;
        QDataStream stream(entry);
        expectThrow<BinaryParsingException>([&] { f.SetBinary(stream, length); }, text);
        EXPECT_EQ(f.IsOstraInterfacePortSet(), length > 0) << length;
    }
}

TEST(FragmentBinary, TheIdIsWrittenAsGiven)
{
    Fragment f;
    f.GetAcquireMastership();
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    EXPECT_TRUE(f.GetBinary(stream, -2, true));
    EXPECT_EQ(written, bytes("FFFFFFFE 00000008 21BDA6E2 00000000"));
}

// --- a derived class ------------------------------------------------------------------------

struct RenamedFragment : Fragment
{
    RenamedFragment() { SetObjectName("Renamed"); }
};

TEST(FragmentName, TheObjectNameStandsInMessagesAndElement)
{
    RenamedFragment f;
    expectThrow<OutOfRangeException>([&] { f.InitChoice(none); }, "Invalid enum value set in 'Renamed'.");
    QDataStream stream{QByteArray()};
    expectThrow<BinaryParsingException>(
        [&] { f.SetBinary(stream, 8); },
        "Renamed::SetBinary(...): Length error occurred during processing of binary representation");
    EXPECT_EQ(xmlOf(f), "<Renamed/>");
}

} // namespace
