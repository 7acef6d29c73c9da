// SPDX-License-Identifier: MIT
// The life of a record: when it gets its data block, how assignment shares blocks and how they are detached,
// and what copying, resetting and comparing do.

#include "FailingAllocator.h"
#include "LifecycleSupport.h"

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;

// --- construction -------------------------------------------------------------------------------

template <class R>
class EveryRecordLifecycle : public ::testing::Test
{
};
TYPED_TEST_SUITE(EveryRecordLifecycle, RecordsWithSamples, RecordName);

template <class R>
constexpr bool alwaysHasData = !std::is_same_v<R, Fragment> && !std::is_same_v<R, PelLu300RouterMessage>;

TYPED_TEST(EveryRecordLifecycle, ANewRecordIsEmpty)
{
    const TypeParam record;
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    EXPECT_EQ(record.HasData(), alwaysHasData<TypeParam>);
    EXPECT_FALSE(record.GetValidate());
    EXPECT_EQ(record.GetLogger(), nullptr);
}

TYPED_TEST(EveryRecordLifecycle, ANewRecordCarriesItsClassIdAsTypeCode)
{
    EXPECT_EQ(Opened<TypeParam>().m_typeCode, TypeParam::GetId());
    EXPECT_EQ(Opened<TypeParam>(TypeParam()).m_typeCode, TypeParam::GetId());
    EXPECT_EQ(TypeParam::GetId(), TypeParam::id);
}

TYPED_TEST(EveryRecordLifecycle, TheTypeCodeNeverChanges)
{
    Opened<TypeParam> record;
    record.SetObjectType(MODELKIT::ObjectTypes::Document);
    EXPECT_EQ(record.m_typeCode, TypeParam::GetId());
    record = TypeParam();
    record.Reset();
    EXPECT_EQ(record.m_typeCode, TypeParam::GetId());
}

TYPED_TEST(EveryRecordLifecycle, ARecordThatIsNeverTouchedAllocatesNothing)
{
    EXPECT_EQ(allocationsIn([] {
                  TypeParam record;
                  TypeParam other(record);
                  other = record;
                  record.SetValidate(true);
                  record.Reset();
                  static_cast<void>(record.IsInitialized());
                  static_cast<void>(record.AnyData());
                  static_cast<void>(Of<TypeParam>::Any::isSet(record));
                  static_cast<void>(record == other);
              }),
              0);
}

// --- the empty state ----------------------------------------------------------------------------

TYPED_TEST(EveryRecordLifecycle, QuestionsResetsAndSettingsCreateNoBlock)
{
    TypeParam record;
    TypeParam other;
    static_cast<void>(record.HasData());
    static_cast<void>(record.AnyData());
    record.Reset();
    EXPECT_TRUE(record == other);
    EXPECT_FALSE(record != other);
    EXPECT_TRUE(record == record);
    record.SetValidate(true);
    record.SetLogger(newLogger());
    record.ResetLogger();
    record.SetObjectType(MODELKIT::ObjectTypes::Document);
    static_cast<void>(record.GetObjectType());
    static_cast<void>(record.GetObjectName());
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_FALSE(other.IsInitialized());
}

TYPED_TEST(EveryRecordLifecycle, CopyingOrAssigningAnEmptyRecordCreatesNoBlock)
{
    TypeParam source;
    TypeParam copy(source);
    EXPECT_FALSE(copy.IsInitialized());
    TypeParam target;
    target = source;
    EXPECT_FALSE(target.IsInitialized());
    EXPECT_FALSE(source.IsInitialized());
}

// --- the initialised state ----------------------------------------------------------------------

TYPED_TEST(EveryRecordLifecycle, EachOfTheseOperationsCreatesTheBlock)
{
    using Any = typename Of<TypeParam>::Any;
    const std::vector<Operation<TypeParam>> operations{
        {"GetX", [](TypeParam& record) { static_cast<void>(Any::get(record)); }},
        {"GetDefaultX", [](TypeParam& record) { static_cast<void>(Any::getDefault(record)); }},
        {"SetX", [](TypeParam& record) { Any::set(record, Any::first()); }},
        {"SetDefaultX", [](TypeParam& record) { Any::setDefault(record, Any::firstDefault()); }},
        {"ResetToDefault", [](TypeParam& record) { record.ResetToDefault(); }},
        {"Check",
         [](TypeParam& record) {
             if (std::is_same_v<TypeParam, PelLu300RouterMessage>)
                 EXPECT_THROW(record.Check(), OutOfRangeException);
             else
                 EXPECT_NO_THROW(record.Check());
         }},
        {"GetXml", [](TypeParam& record) { xmlOf(record); }},
        {"GetBinary", [](TypeParam& record) { frameOf(record); }},
        {"SetBinary", [](TypeParam& record) { readFrame(record, bytes("00000000")); }},
        {"ProcessXml", [](TypeParam& record) { readXml(record, QStringLiteral("<a/>")); }},
    };
    for (const auto& operation : operations) {
        SCOPED_TRACE(operation.name);
        TypeParam record;
        operation.run(record);
        EXPECT_TRUE(record.IsInitialized());
    }
}

TYPED_TEST(EveryRecordLifecycle, ReadingAChildElementCreatesTheBlock)
{
    Opened<TypeParam> record;
    QXmlStreamReader reader(QStringLiteral("<unknown/>"));
    ASSERT_TRUE(reader.readNextStartElement());
    record.ProcessXmlStartElement(reader);
    EXPECT_TRUE(record.IsInitialized());
}

TYPED_TEST(EveryRecordLifecycle, CreatingTheBlockSetsNothing)
{
    TypeParam record;
    place(record);
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    Of<TypeParam>::Members::forEach([&](auto member) {
        EXPECT_FALSE(member.isSet(record));
        EXPECT_TRUE(same(member.get(record), member.initial()));
        EXPECT_TRUE(same(member.getDefault(record), member.initialDefault()));
    });
}

// Notes the calls of the two operations that hand settings down.
template <class R>
struct Recording : R
{
    mutable std::vector<std::pair<std::string, bool>> calls;

    void SetValidate(bool validate) const override
    {
        R::SetValidate(validate);
        calls.emplace_back("SetValidate", validate);
    }
    void SetLogger(std::shared_ptr<MODELKIT::Logger> logger) const override
    {
        R::SetLogger(logger);
        calls.emplace_back("SetLogger", logger != nullptr);
    }
};

TYPED_TEST(EveryRecordLifecycle, CreatingTheBlockHandsFlagAndLoggerOnOnceInThisOrder)
{
    Recording<TypeParam> record;
    record.SetValidate(true);
    record.SetLogger(newLogger());
    record.calls.clear();
    place<TypeParam>(record);
    const std::vector<std::pair<std::string, bool>> expected{{"SetValidate", true}, {"SetLogger", true}};
    EXPECT_EQ(record.calls, expected);
    record.calls.clear();
    place<TypeParam>(record);
    record.Reset();
    EXPECT_TRUE(record.calls.empty());
}

TYPED_TEST(EveryRecordLifecycle, DetachingHandsNothingOn)
{
    TypeParam source;
    fill(source);
    Recording<TypeParam> record;
    static_cast<TypeParam&>(record) = source;
    place<TypeParam>(record);
    EXPECT_TRUE(record.calls.empty());
    expectFilled<TypeParam>(record);
}

TYPED_TEST(EveryRecordLifecycle, ResettingKeepsTheBlock)
{
    TypeParam record;
    fill(record);
    const void* const before = place(record);
    record.Reset();
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_EQ(place(record), before);
    Of<TypeParam>::Members::forEach([&](auto member) { member.reset(record); });
    EXPECT_TRUE(record.IsInitialized());
    EXPECT_EQ(place(record), before);
    record.ResetToDefault();
    EXPECT_EQ(place(record), before);
}

TYPED_TEST(EveryRecordLifecycle, TheBlockIsLostByAssignmentFromAnEmptyRecord)
{
    TypeParam record;
    fill(record);
    record = TypeParam();
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    Of<TypeParam>::Members::forEach([&](auto member) { EXPECT_FALSE(member.isSet(record)); });
    Of<TypeParam>::Members::forEach([&](auto member) {
        EXPECT_TRUE(same(member.get(record), member.initial()));
        EXPECT_TRUE(same(member.getDefault(record), member.initialDefault()));
    });
}

// --- copy constructor ---------------------------------------------------------------------------

TYPED_TEST(EveryRecordLifecycle, ACopyHoldsTheSameContentAndDefaults)
{
    TypeParam source;
    fill(source);
    TypeParam copy(source);
    expectFilled(copy);
    expectFilled(source);
    EXPECT_TRUE(copy == source);
}

TYPED_TEST(EveryRecordLifecycle, ACopyHasABlockOfItsOwnAtOnce)
{
    TypeParam source;
    fill(source);
    const void* const before = place(source);
    TypeParam copy(source);
    EXPECT_EQ(allocationsIn([&] {
                  static_cast<void>(copy.IsInitialized());
                  static_cast<void>(source.IsInitialized());
              }),
              0);
    EXPECT_EQ(place(source), before);
    EXPECT_NE(place(copy), before);
}

TYPED_TEST(EveryRecordLifecycle, CopyAndSourceChangeIndependently)
{
    for (const auto& change : changingOperations<TypeParam>()) {
        SCOPED_TRACE(change.name);
        TypeParam source;
        fill(source);
        TypeParam copy(source);
        change.run(copy);
        expectFilled(source);
        TypeParam second(source);
        change.run(source);
        expectFilled(second);
    }
}

TYPED_TEST(EveryRecordLifecycle, CopyingASharedRecordLeavesItShared)
{
    TypeParam source;
    fill(source);
    const void* const before = place(source);
    TypeParam sharer;
    sharer = source;
    TypeParam copy(source);
    EXPECT_EQ(allocationsIn([&] { static_cast<void>(copy.IsInitialized()); }), 0);
    EXPECT_GT(allocationsIn([&] { static_cast<void>(sharer.IsInitialized()); }), 0);
    EXPECT_EQ(place(source), before);
    expectFilled(copy);
    expectFilled(sharer);
}

TYPED_TEST(EveryRecordLifecycle, ACopyCarriesTheValidationFlagButNoLogger)
{
    TypeParam source;
    source.SetLogger(newLogger());
    EXPECT_FALSE(TypeParam(source).GetValidate());
    source.SetValidate(true);
    EXPECT_TRUE(TypeParam(source).GetValidate());
    EXPECT_EQ(TypeParam(source).GetLogger(), nullptr);
    fill(source);
    EXPECT_TRUE(TypeParam(source).GetValidate());
    EXPECT_EQ(TypeParam(source).GetLogger(), nullptr);
    EXPECT_NE(source.GetLogger(), nullptr);
}

TYPED_TEST(EveryRecordLifecycle, ACopyIsNamedAfterItsClassWhateverTheSourceIsCalled)
{
    Opened<TypeParam> source;
    const QString className = source.GetObjectName();
    source.SetObjectName(QStringLiteral("Other"));
    const TypeParam copy(source);
    EXPECT_EQ(copy.GetObjectName(), className);
    EXPECT_EQ(source.GetObjectName(), QStringLiteral("Other"));
}

TYPED_TEST(EveryRecordLifecycle, ACopyHasTheObjectTypeOfItsSource)
{
    TypeParam source;
    TypeParam copy(source);
    EXPECT_EQ(copy.GetObjectType(), source.GetObjectType());
}

TYPED_TEST(EveryRecordLifecycle, TheCopyOutlivesItsSource)
{
    auto source = std::make_unique<TypeParam>();
    fill(*source);
    TypeParam copy(*source);
    TypeParam assigned;
    assigned = *source;
    source.reset();
    expectFilled(copy);
    expectFilled(assigned);
}

// --- assignment ---------------------------------------------------------------------------------

TYPED_TEST(EveryRecordLifecycle, AssignmentAllocatesNothing)
{
    TypeParam source;
    fill(source);
    TypeParam target;
    EXPECT_EQ(allocationsIn([&] { target = source; }), 0);
    EXPECT_GT(allocationsIn([&] { static_cast<void>(target.IsInitialized()); }), 0);
}

// The record that touches the shared block gets its own, and the other keeps the old one.
template <class R>
void expectSharedUntilTouched(const Operation<R>& operation, bool isTargetTouched, bool isChanged)
{
    SCOPED_TRACE(operation.name);
    R source;
    fill(source);
    const void* const before = place(source);
    R target;
    target = source;
    R& touched = isTargetTouched ? target : source;
    R& other = isTargetTouched ? source : target;
    operation.run(touched);
    EXPECT_EQ(place(other), before);
    EXPECT_NE(place(touched), before);
    expectFilled(other);
    if (!isChanged)
        expectFilled(touched);
}

TYPED_TEST(EveryRecordLifecycle, AssignmentSharesTheBlockUntilTheTargetIsTouched)
{
    for (const auto& operation : readingOperations<TypeParam>())
        expectSharedUntilTouched(operation, true, false);
}

TYPED_TEST(EveryRecordLifecycle, AssignmentSharesTheBlockUntilTheSourceIsTouched)
{
    for (const auto& operation : readingOperations<TypeParam>())
        expectSharedUntilTouched(operation, false, false);
}

TYPED_TEST(EveryRecordLifecycle, ChangesAlsoEndTheSharingAndReachOneRecordOnly)
{
    for (const auto& operation : changingOperations<TypeParam>())
        for (const bool isTargetTouched : {true, false})
            expectSharedUntilTouched(operation, isTargetTouched, true);
}

TYPED_TEST(EveryRecordLifecycle, OfThreeSharersEachGetsItsOwnBlockAndTheLastKeepsTheOld)
{
    TypeParam a;
    fill(a);
    const void* const before = place(a);
    TypeParam b;
    b = a;
    TypeParam c;
    c = b;
    EXPECT_NE(place(b), before);
    EXPECT_NE(place(a), before);
    EXPECT_EQ(place(c), before);
    expectFilled(a);
    expectFilled(b);
    expectFilled(c);
}

TYPED_TEST(EveryRecordLifecycle, ADestroyedSharerLeavesTheBlockToTheOther)
{
    TypeParam source;
    fill(source);
    const void* const before = place(source);
    {
        TypeParam target;
        target = source;
    }
    EXPECT_EQ(place(source), before);
    TypeParam survivor;
    {
        TypeParam other;
        fill(other);
        survivor = other;
    }
    EXPECT_EQ(allocationsIn([&] { static_cast<void>(survivor.IsInitialized()); }), 0);
    expectFilled(survivor);
}

TYPED_TEST(EveryRecordLifecycle, AssigningAnotherRecordReleasesThePreviousBlock)
{
    TypeParam source;
    fill(source);
    const void* const before = place(source);
    TypeParam target;
    target = source;
    TypeParam another;
    Of<TypeParam>::Any::set(another, Of<TypeParam>::Any::first());
    target = another;
    EXPECT_EQ(place(source), before);
    EXPECT_TRUE(target == another);
    expectFilled(source);
}

TYPED_TEST(EveryRecordLifecycle, AssigningAnEmptyRecordReleasesThePreviousBlock)
{
    TypeParam source;
    fill(source);
    const void* const before = place(source);
    TypeParam target;
    target = source;
    target = TypeParam();
    EXPECT_EQ(place(source), before);
    EXPECT_FALSE(target.IsInitialized());
}

TYPED_TEST(EveryRecordLifecycle, AssigningARecordToItselfChangesNothing)
{
    TypeParam record;
    fill(record);
    const void* const before = place(record);
    TypeParam& alias = record;
    record = alias;
    EXPECT_EQ(place(record), before);
    expectFilled(record);

    TypeParam none;
    TypeParam& noneAlias = none;
    none = noneAlias;
    EXPECT_FALSE(none.IsInitialized());
}

TYPED_TEST(EveryRecordLifecycle, AssigningToARecordThatSharesAlreadyCountsOnce)
{
    TypeParam source;
    fill(source);
    const void* const before = place(source);
    TypeParam target;
    target = source;
    target = source;
    source = target;
    EXPECT_NE(place(target), before);
    EXPECT_EQ(place(source), before);
    expectFilled(source);
    expectFilled(target);
}

TYPED_TEST(EveryRecordLifecycle, AssignmentReturnsItsTarget)
{
    TypeParam source;
    fill(source);
    TypeParam target;
    EXPECT_EQ(&(target = source), &target);
}

TYPED_TEST(EveryRecordLifecycle, AssignmentCopiesNeitherNameNorFlagNorLogger)
{
    Opened<TypeParam> source;
    fill<TypeParam>(source);
    source.SetObjectName(QStringLiteral("Source"));
    source.SetValidate(true);
    source.SetLogger(newLogger());
    Opened<TypeParam> target;
    target.SetObjectName(QStringLiteral("Target"));
    static_cast<TypeParam&>(target) = source;
    EXPECT_EQ(target.GetObjectName(), QStringLiteral("Target"));
    EXPECT_FALSE(target.GetValidate());
    EXPECT_EQ(target.GetLogger(), nullptr);

    const auto logger = newLogger();
    target.SetValidate(true);
    target.SetLogger(logger);
    static_cast<TypeParam&>(target) = TypeParam();
    EXPECT_EQ(target.GetObjectName(), QStringLiteral("Target"));
    EXPECT_TRUE(target.GetValidate());
    EXPECT_EQ(target.GetLogger(), logger);
}

// --- AnyData, HasData, Reset --------------------------------------------------------------------

TYPED_TEST(EveryRecordLifecycle, AnyDataIsTrueAsSoonAsAMemberHoldsData)
{
    Of<TypeParam>::Members::forEach([](auto member) {
        TypeParam record;
        member.set(record, member.first());
        EXPECT_TRUE(record.AnyData());
        record.Reset();
        EXPECT_FALSE(record.AnyData());
    });
}

TYPED_TEST(EveryRecordLifecycle, HasDataIsTrueInEveryStateExceptForFragmentAndMessage)
{
    TypeParam record;
    EXPECT_EQ(record.HasData(), alwaysHasData<TypeParam>);
    place(record);
    EXPECT_EQ(record.HasData(), alwaysHasData<TypeParam>);
    fill(record);
    EXPECT_TRUE(record.HasData());
    record.Reset();
    EXPECT_EQ(record.HasData(), alwaysHasData<TypeParam>);
}

TYPED_TEST(EveryRecordLifecycle, ResetClearsEveryMemberAndKeepsEveryDefault)
{
    TypeParam record;
    fill(record);
    record.Reset();
    Of<TypeParam>::Members::forEach([&](auto member) {
        EXPECT_FALSE(member.isSet(record));
        EXPECT_TRUE(same(member.getDefault(record), member.firstDefault()));
    });
    record.ResetToDefault();
    if (!std::is_same_v<TypeParam, Fragment>)
        Of<TypeParam>::Members::forEach([&](auto member) { EXPECT_TRUE(member.isSet(record)); });
}

// Counts how often it is reset.
template <class R>
struct ResetCounting : R
{
    int resets = 0;
    void Reset() override
    {
        ++resets;
        R::Reset();
    }
};

TYPED_TEST(EveryRecordLifecycle, ResetToDefaultCallsTheVirtualResetOnce)
{
    ResetCounting<TypeParam> record;
    record.ResetToDefault();
    EXPECT_EQ(record.resets, 1);
}

TYPED_TEST(EveryRecordLifecycle, ResetKeepsFlagAndLogger)
{
    TypeParam record;
    const auto logger = newLogger();
    record.SetValidate(true);
    record.SetLogger(logger);
    fill(record);
    record.Reset();
    EXPECT_TRUE(record.GetValidate());
    EXPECT_EQ(record.GetLogger(), logger);
}

// --- equality -----------------------------------------------------------------------------------

template <class R>
void expectEqual(const R& a, const R& b)
{
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(b == a);
    EXPECT_FALSE(a != b);
    EXPECT_FALSE(b != a);
}

template <class R>
void expectDifferent(const R& a, const R& b)
{
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(b == a);
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(b != a);
}

TYPED_TEST(EveryRecordLifecycle, AnEmptyRecordEqualsOneInWhichNothingIsSet)
{
    TypeParam initialised;
    place(initialised);
    expectEqual(TypeParam(), initialised);
    expectEqual(initialised, initialised);
}

TYPED_TEST(EveryRecordLifecycle, RecordsWithTheSameMembersSetToEqualValuesAreEqual)
{
    TypeParam a;
    TypeParam b;
    fill(a);
    fill(b);
    expectEqual(a, b);
    expectEqual(a, a);
}

TYPED_TEST(EveryRecordLifecycle, RecordsThatShareABlockAreEqual)
{
    TypeParam a;
    fill(a);
    TypeParam b;
    b = a;
    EXPECT_TRUE(a == b);
    b = a;
    EXPECT_FALSE(a != b);
}

TYPED_TEST(EveryRecordLifecycle, AMemberSetInOneRecordOnlyMakesThemDifferent)
{
    Of<TypeParam>::Members::forEach([](auto member) {
        TypeParam a;
        member.set(a, member.first());
        expectDifferent(a, TypeParam());
        TypeParam initialised;
        place(initialised);
        expectDifferent(a, initialised);
    });
}

TYPED_TEST(EveryRecordLifecycle, AMemberSetToItsInitialValueDiffersFromAnUnsetOne)
{
    Of<TypeParam>::Members::forEach([](auto member) {
        TypeParam a;
        member.set(a, member.initial());
        expectDifferent(a, TypeParam());
    });
}

TYPED_TEST(EveryRecordLifecycle, ADifferentValueMakesThemDifferent)
{
    Of<TypeParam>::Members::forEach([](auto member) {
        TypeParam a;
        TypeParam b;
        member.set(a, member.first());
        member.set(b, member.second());
        expectDifferent(a, b);
        member.set(b, member.first());
        expectEqual(a, b);
    });
}

TYPED_TEST(EveryRecordLifecycle, DefaultsAndTheirFlagsAreNotCompared)
{
    Of<TypeParam>::Members::forEach([](auto member) {
        TypeParam a;
        TypeParam b;
        member.setDefault(a, member.firstDefault());
        expectEqual(a, b);
        member.set(a, member.second());
        member.set(b, member.second());
        expectEqual(a, b);
    });
}

TYPED_TEST(EveryRecordLifecycle, ValuesOfUnsetMembersAreNotCompared)
{
    Of<TypeParam>::Members::forEach([](auto member) {
        TypeParam a;
        member.setDefault(a, member.firstDefault());
        a.Reset();
        expectEqual(a, TypeParam());
    });
}

TYPED_TEST(EveryRecordLifecycle, NameFlagAndLoggerAreNotCompared)
{
    Opened<TypeParam> a;
    fill<TypeParam>(a);
    a.SetObjectName(QStringLiteral("Other"));
    a.SetValidate(true);
    a.SetLogger(newLogger());
    TypeParam b;
    fill(b);
    expectEqual<TypeParam>(a, b);
}

TYPED_TEST(EveryRecordLifecycle, AResetRecordEqualsANewOne)
{
    TypeParam a;
    fill(a);
    a.Reset();
    expectEqual(a, TypeParam());
}

} // namespace
