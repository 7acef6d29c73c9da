// SPDX-License-Identifier: MIT
// Rules for each of the payloads of a fragment.

#include "FragmentSupport.h"

#include <array>
#include <memory>
#include <string>

namespace {

using namespace testing_support;

// --- what holds for each of the payloads ----------------------------------------------------

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
    Flags flags = allSet;
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

} // namespace
