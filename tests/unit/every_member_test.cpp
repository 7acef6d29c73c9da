// SPDX-License-Identifier: MIT
// Rules for every member of every record: getting, setting and resetting it and its default, alone and on a
// block that two records share.

#include "LifecycleSupport.h"

#include <type_traits>
#include <vector>

namespace {

using namespace testing_support;

// Expects that the member, whose default was its first one, has been reset. Texts and lists reset to nothing.
template <class Member>
void expectReset(typename Member::Owner& record)
{
    EXPECT_FALSE(Member::isSet(record));
    if constexpr (Member::resetsToDefault)
        EXPECT_TRUE(same(Member::get(record), Member::first()));
    else
        EXPECT_TRUE(same(Member::get(record), Member::initial()));
    EXPECT_TRUE(same(Member::getDefault(record), Member::firstDefault()));
}

// --- one member ---------------------------------------------------------------------------------

TEST(EveryMember, AskingWhetherItIsSetCreatesNoBlock)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        EXPECT_FALSE(Member::isSet(record));
        EXPECT_FALSE(record.IsInitialized());
    });
}

TEST(EveryMember, ResettingItCreatesNoBlock)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::reset(record);
        EXPECT_FALSE(record.IsInitialized());
    });
}

TEST(EveryMember, GettingItCreatesTheBlockAndGivesTheInitialValueWithoutSettingIt)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        EXPECT_TRUE(same(Member::get(record), Member::initial()));
        EXPECT_TRUE(record.IsInitialized());
        EXPECT_FALSE(Member::isSet(record));
        EXPECT_FALSE(record.AnyData());
    });
}

TEST(EveryMember, GettingItsDefaultCreatesTheBlockAndGivesTheInitialDefault)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        EXPECT_TRUE(same(Member::getDefault(record), Member::initialDefault()));
        EXPECT_TRUE(record.IsInitialized());
        EXPECT_FALSE(Member::isSet(record));
    });
}

TEST(EveryMember, SettingItCreatesTheBlockStoresTheValueAndMarksIt)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::set(record, Member::first());
        EXPECT_TRUE(record.IsInitialized());
        EXPECT_TRUE(Member::isSet(record));
        EXPECT_TRUE(same(Member::get(record), Member::first()));
        Member::set(record, Member::second());
        EXPECT_TRUE(Member::isSet(record));
        EXPECT_TRUE(same(Member::get(record), Member::second()));
    });
}

TEST(EveryMember, SettingTheInitialValueMarksItToo)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::set(record, Member::initial());
        EXPECT_TRUE(Member::isSet(record));
        EXPECT_TRUE(same(Member::get(record), Member::initial()));
    });
}

TEST(EveryMember, SettingItMarksNoOtherMemberAndLeavesTheDefaults)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        using Owner = typename Member::Owner;
        Owner record;
        Member::set(record, Member::first());
        Of<Owner>::Members::forEach([&](auto member) {
            using Other = decltype(member);
            EXPECT_TRUE(same(member.getDefault(record), member.initialDefault()));
            if (std::is_same_v<Other, Member>)
                return;
            EXPECT_FALSE(member.isSet(record));
            EXPECT_TRUE(same(member.get(record), member.initial()));
        });
    });
}

TEST(EveryMember, ChangingTheDefaultLeavesAnUnsetValueAndItsFlag)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::setDefault(record, Member::firstDefault());
        EXPECT_TRUE(record.IsInitialized());
        EXPECT_TRUE(same(Member::getDefault(record), Member::firstDefault()));
        EXPECT_TRUE(same(Member::get(record), Member::initial()));
        EXPECT_FALSE(Member::isSet(record));
        EXPECT_FALSE(record.AnyData());
    });
}

TEST(EveryMember, ChangingTheDefaultLeavesASetValueAndItsFlag)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::set(record, Member::second());
        Member::setDefault(record, Member::firstDefault());
        EXPECT_TRUE(same(Member::get(record), Member::second()));
        EXPECT_TRUE(Member::isSet(record));
    });
}

TEST(EveryMember, TheReferenceToTheDefaultStaysValidAndFollowsChanges)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        const auto& reference = Member::getDefault(record);
        Member::set(record, Member::second());
        Member::setDefault(record, Member::firstDefault());
        Member::reset(record);
        record.Reset();
        EXPECT_EQ(&Member::getDefault(record), &reference);
        EXPECT_TRUE(same(reference, Member::firstDefault()));
    });
}

TEST(EveryMember, ResettingItClearsTheFlagAndGivesTheDefaultOrForTextsAndListsNothing)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::setDefault(record, Member::firstDefault());
        Member::set(record, Member::second());
        Member::reset(record);
        expectReset<Member>(record);
        EXPECT_TRUE(record.IsInitialized());
    });
}

TEST(EveryMember, ResettingItLeavesTheOtherMembers)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        using Owner = typename Member::Owner;
        Owner record;
        fill(record);
        Member::reset(record);
        EXPECT_FALSE(Member::isSet(record));
        Of<Owner>::Members::forEach([&](auto member) {
            if (std::is_same_v<decltype(member), Member>)
                return;
            EXPECT_TRUE(member.isSet(record));
            EXPECT_TRUE(same(member.get(record), member.second()));
        });
    });
}

TEST(EveryMember, ResettingTheRecordResetsItAndKeepsTheDefault)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::setDefault(record, Member::firstDefault());
        Member::set(record, Member::second());
        record.Reset();
        expectReset<Member>(record);
    });
}

TEST(EveryMember, AnUnsetValueIsTheDefaultOfTheLastResetNotTheCurrentOne)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::setDefault(record, Member::firstDefault());
        Member::reset(record);
        Member::setDefault(record, Member::secondDefault());
        if constexpr (Member::resetsToDefault)
            EXPECT_TRUE(same(Member::get(record), Member::first()));
        else
            EXPECT_TRUE(same(Member::get(record), Member::initial()));
        record.Reset();
        if constexpr (Member::resetsToDefault)
            EXPECT_TRUE(same(Member::get(record), Member::second()));
        else
            EXPECT_TRUE(same(Member::get(record), Member::initial()));
    });
}

TEST(EveryMember, ResetToDefaultWithoutAChangedDefaultUnsetsIt)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::set(record, Member::first());
        record.ResetToDefault();
        EXPECT_FALSE(Member::isSet(record));
        EXPECT_TRUE(same(Member::get(record), Member::initial()));
        EXPECT_FALSE(record.AnyData());
    });
}

TEST(EveryMember, ADefaultChangedToTheInitialOneCountsAsChanged)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        using Owner = typename Member::Owner;
        Owner record;
        Member::setDefault(record, Member::initialDefault());
        record.ResetToDefault();
        // ResetToDefault() never marks the payloads of a fragment, and never applies a null text.
        const bool applied =
            !std::is_same_v<Owner,
                            Fragment> && !std::is_same_v<std::decay_t<decltype(Member::initial())>, QString>;
        EXPECT_EQ(Member::isSet(record), applied);
    });
}

TEST(EveryMember, ItCanBeSetToItsOwnValue)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::set(record, Member::first());
        Member::setOwnValue(record);
        EXPECT_TRUE(same(Member::get(record), Member::first()));
        EXPECT_TRUE(Member::isSet(record));
        Member::defaultOwnValue(record);
        Member::set(record, Member::second());
        EXPECT_TRUE(same(Member::get(record), Member::second()));
        if constexpr (Member::resetsToDefault) {
            EXPECT_TRUE(same(Member::getDefault(record), Member::firstDefault()));
            Member::reset(record);
            EXPECT_TRUE(same(Member::get(record), Member::first()));
        }
    });
}

TEST(EveryMember, ItCanBeSetToItsOwnDefault)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::setDefault(record, Member::firstDefault());
        Member::setDefault(record, Member::getDefault(record));
        EXPECT_TRUE(same(Member::getDefault(record), Member::firstDefault()));
        Member::setOwnDefault(record);
        EXPECT_TRUE(Member::isSet(record));
        EXPECT_TRUE(same(Member::getDefault(record), Member::firstDefault()));
        Member::setDefault(record, Member::secondDefault());
        if constexpr (std::is_same_v<Member, PelLu300RouterMessageFragment>) {
            ASSERT_EQ(Member::get(record).size(), 1);
            EXPECT_TRUE(Member::get(record).at(0) == Member::firstDefault());
        } else {
            EXPECT_TRUE(same(Member::get(record), Member::first()));
        }
    });
}

TEST(EveryMember, ItCanBeSetToADefaultInASharedBlock)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        typename Member::Owner record;
        Member::setDefault(record, Member::firstDefault());
        typename Member::Owner sharer;
        const auto& leftBehind = Member::getDefault(record);
        sharer = record;
        Member::setDefault(record, leftBehind);
        EXPECT_TRUE(same(Member::getDefault(record), Member::firstDefault()));
        EXPECT_TRUE(same(Member::getDefault(sharer), Member::firstDefault()));

        const auto& ofTheOther = Member::getDefault(record);
        sharer = record;
        Member::setDefault(sharer, ofTheOther);
        EXPECT_TRUE(same(Member::getDefault(record), Member::firstDefault()));
        EXPECT_TRUE(same(Member::getDefault(sharer), Member::firstDefault()));
    });
}

TEST(EveryMember, ChangingItInOneOfTwoSharersLeavesTheOther)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        using Owner = typename Member::Owner;
        const std::vector<Operation<Owner>> changes{
            {"SetX", [](Owner& record) { Member::set(record, Member::first()); }},
            {"SetDefaultX", [](Owner& record) { Member::setDefault(record, Member::secondDefault()); }},
            {"ResetX", [](Owner& record) { Member::reset(record); }},
        };
        for (const auto& change : changes) {
            SCOPED_TRACE(change.name);
            Owner source;
            fill(source);
            Owner target;
            target = source;
            change.run(target);
            expectFilled(source);

            target = source;
            change.run(source);
            expectFilled(target);
        }
    });
}

TEST(EveryMember, EachOfItsOperationsEndsTheSharing)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        using Owner = typename Member::Owner;
        const std::vector<Operation<Owner>> operations{
            {"IsXSet", [](Owner& record) { static_cast<void>(Member::isSet(record)); }},
            {"GetX", [](Owner& record) { static_cast<void>(Member::get(record)); }},
            {"GetDefaultX", [](Owner& record) { static_cast<void>(Member::getDefault(record)); }},
            {"SetX", [](Owner& record) { Member::set(record, Member::first()); }},
            {"SetDefaultX", [](Owner& record) { Member::setDefault(record, Member::secondDefault()); }},
            {"ResetX", [](Owner& record) { Member::reset(record); }},
        };
        for (const auto& operation : operations) {
            SCOPED_TRACE(operation.name);
            Owner source;
            fill(source);
            const void* const before = &Member::getDefault(source);
            Owner target;
            target = source;
            operation.run(target);
            // If the target still shared the block, this getter would make the source detach.
            EXPECT_EQ(&Member::getDefault(source), before);
            EXPECT_NE(&Member::getDefault(target), before);
        }
    });
}

TEST(EveryMember, DetachingCopiesValueDefaultAndBothFlags)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        using Owner = typename Member::Owner;
        Owner source;
        Member::setDefault(source, Member::firstDefault());
        Member::set(source, Member::second());
        Owner target;
        target = source;
        EXPECT_TRUE(Member::isSet(target));
        EXPECT_TRUE(same(Member::get(target), Member::second()));
        EXPECT_TRUE(same(Member::getDefault(target), Member::firstDefault()));
        target.ResetToDefault();
        Owner expected;
        Member::setDefault(expected, Member::firstDefault());
        expected.ResetToDefault();
        EXPECT_EQ(Member::isSet(target), Member::isSet(expected));
        EXPECT_TRUE(same(Member::get(target), Member::get(expected)));
        EXPECT_EQ(Member::isSet(target), !(std::is_same_v<Owner, Fragment>));
    });
}

} // namespace
