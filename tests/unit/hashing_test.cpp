// SPDX-License-Identifier: MIT
// Hashes of records: equal records have equal hashes, whatever equality leaves out, and each member counts.

#include "LifecycleSupport.h"

#include "routerinterface/Hashing.h"

#include <QtCore/QHash>
#include <QtCore/QSet>

#include <type_traits>

using namespace testing_support;

namespace {

template <class R>
void expectSameHash(const R& a, const R& b)
{
    EXPECT_TRUE(a == b);
    EXPECT_EQ(qHash(a), qHash(b));
    EXPECT_EQ(qHash(a, RecordInfo::HashValue(7)), qHash(b, RecordInfo::HashValue(7)));
}

template <class R>
class EveryRecordHash : public ::testing::Test
{
};
TYPED_TEST_SUITE(EveryRecordHash, AllRecords, RecordName);

} // namespace

TYPED_TEST(EveryRecordHash, HasTheTypeOfThoseOfQt)
{
    static_assert(std::is_same_v<decltype(qHash(TypeParam())), decltype(qHash(QString()))>);
}

TYPED_TEST(EveryRecordHash, ARecordWithoutABlockHasThatOfOneInWhichNothingIsSet)
{
    TypeParam touched;
    touched.ResetToDefault();
    EXPECT_TRUE(touched.IsInitialized());
    expectSameHash(TypeParam(), touched);
}

TYPED_TEST(EveryRecordHash, DependsOnTheSeed)
{
    EXPECT_NE(qHash(TypeParam(), RecordInfo::HashValue(1)), qHash(TypeParam(), RecordInfo::HashValue(2)));
}

TEST(Hash, EveryMemberCounts)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        SCOPED_TRACE(Member::name);
        typename Member::Owner empty;
        typename Member::Owner first;
        typename Member::Owner again;
        typename Member::Owner second;
        Member::set(first, Member::first());
        Member::set(again, Member::first());
        Member::set(second, Member::second());
        expectSameHash(first, again);
        EXPECT_EQ(first == second, qHash(first) == qHash(second));
        EXPECT_EQ(first == empty, qHash(first) == qHash(empty));
    });
}

TEST(Hash, DefaultsAndSettingsDoNotCount)
{
    PelVtConnectServer plain;
    plain.SetPort(1);
    PelVtConnectServer other;
    other.SetDefaultAddress(text("default"));
    other.SetValidate(true);
    other.SetPort(1);
    expectSameHash(plain, other);
    Opened<PelVtConnectServer> renamed;
    renamed.SetObjectName(text("Renamed"));
    renamed.SetPort(1);
    expectSameHash<PelVtConnectServer>(plain, renamed);
}

TEST(Hash, NullAndEmptyTextsAreEqual)
{
    PelVtConnectServer null;
    null.SetAddress(QString());
    PelVtConnectServer without;
    without.SetAddress(empty());
    expectSameHash(null, without);
    EXPECT_NE(qHash(null), qHash(PelVtConnectServer()));
}

TEST(Hash, TheTwoZerosAreEqual)
{
    DF_Params positive;
    positive.SetFrequency(0.0);
    DF_Params negative;
    negative.SetFrequency(-0.0);
    expectSameHash(positive, negative);
}

TEST(Hash, MembersWithTheSameValueDiffer)
{
    DF_Params frequency;
    frequency.SetFrequency(1);
    DF_Params bandwidth;
    bandwidth.SetBandwidth(1);
    EXPECT_NE(qHash(frequency), qHash(bandwidth));
}

TEST(Hash, OnlyTheSelectedPayloadCountsSetOrNot)
{
    Fragment first;
    first.GetPelVtConnectServer().SetAddress(text("unseen"));
    first.GetDF_Params().SetFrequency(1);
    Fragment second;
    second.GetDF_Params().SetFrequency(1);
    expectSameHash(first, second);

    second.ResetDF_Params();
    Fragment third;
    third.GetDF_Params();
    expectSameHash(second, third);
    EXPECT_NE(qHash(third), qHash(Fragment()));

    first.ResetChoiceFragment();
    expectSameHash(first, Fragment());
    Fragment otherPayload;
    otherPayload.GetReleaseMastership();
    Fragment payload;
    payload.GetAcquireMastership();
    EXPECT_NE(qHash(payload), qHash(otherPayload));
}

TEST(Hash, ItemsCountInTheirOrder)
{
    PelLu300RouterMessage message;
    message.AppendFragment(withPort(1));
    message.AppendFragment(withPort(2));
    PelLu300RouterMessage reversed;
    reversed.AppendFragment(withPort(2));
    reversed.AppendFragment(withPort(1));
    EXPECT_NE(qHash(message), qHash(reversed));
    PelLu300RouterMessage shorter;
    shorter.AppendFragment(withPort(1));
    EXPECT_NE(qHash(message), qHash(shorter));
    std::swap(reversed.GetFragment()[0], reversed.GetFragment()[1]);
    expectSameHash(message, reversed);
}

// A list can hold items and yet not be set. Then equality ignores them.
TEST(Hash, ItemsOfAListThatIsNotSetDoNotCount)
{
    PelLu300RouterMessage message;
    QVector<Fragment>& items = message.GetFragment();
    message.ResetFragment();
    items.append(withPort(1));
    ASSERT_FALSE(message.IsFragmentSet());
    expectSameHash(message, PelLu300RouterMessage());
}

TEST(Hash, ARecordThatSharesItsDataHasTheSame)
{
    PelLu300RouterInterfaceXml document;
    document.SetPelLu300RouterMessage(message(7));
    PelLu300RouterInterfaceXml shared;
    shared = document;
    expectSameHash(document, shared);
}

TEST(Hash, ContainersTakeRecordsAndListsOfThem)
{
    QSet<PelLu300RouterMessage> seen;
    for (unsigned int i = 0; i < 100; ++i)
        seen.insert(message(i % 10));
    EXPECT_EQ(seen.size(), 10);
    EXPECT_TRUE(seen.contains(message(3)));
    EXPECT_FALSE(seen.contains(message(10)));

    QHash<QVector<Fragment>, int> byFragments;
    byFragments[message(1).GetFragment()] = 1;
    EXPECT_EQ(byFragments.value(message(2).GetFragment()), 1);
}

TEST(Hash, IsRefusedForAnotherClass) { EXPECT_THROW(RecordInfo::Document().Hash(Fragment()), std::bad_cast); }

TEST(Hash, ADerivedRecordHasThatOfItsRecord)
{
    QHash<Opened<OstraInterfacePort>, int> byPort;
    Opened<OstraInterfacePort> port;
    port.SetPort(1);
    byPort[port] = 7;
    EXPECT_EQ(byPort.value(port), 7);
    EXPECT_EQ(qHash(port), qHash(ostraPort(1)));
}
