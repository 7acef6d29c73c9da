// SPDX-License-Identifier: MIT
// Moving and swapping records: what the target gets, what is left in the source, and that no data is copied.

#include "FailingAllocator.h"
#include "TestSupport.h"

#include "routerinterface/RecordInfo.h"

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

using namespace testing_support;
using MODELKIT::Logger;

namespace {

// Any record with all its members set. Its nested records and items are empty.
template <class R>
R filled()
{
    R record;
    for (const MemberInfo* member : RecordInfo::Of(record).GetMembers()) {
        if (member->GetKind() == MemberInfo::Record)
            member->EditRecord(record);
        else if (member->GetKind() == MemberInfo::List)
            member->AppendItem(record, *member->GetClass()->Create());
        else if (member->GetKind() == MemberInfo::Enumeration)
            member->SetValue(record, 1);
        else
            member->SetValue(record, QStringLiteral("1"));
    }
    return record;
}

std::shared_ptr<Logger> newLogger() { return std::make_shared<Logger>(); }

template <class R>
class EveryRecordMoves : public ::testing::Test
{
};
TYPED_TEST_SUITE(EveryRecordMoves, AllRecords, RecordName);

} // namespace

TYPED_TEST(EveryRecordMoves, NothingThrows)
{
    static_assert(std::is_nothrow_move_constructible_v<TypeParam>);
    static_assert(std::is_nothrow_swappable_v<TypeParam>);
    static_assert(noexcept(std::declval<TypeParam&>().swap(std::declval<TypeParam&>())));
    // Copying may throw, so containers move.
    static_assert(!std::is_nothrow_copy_constructible_v<TypeParam>);
}

TYPED_TEST(EveryRecordMoves, ConstructionTakesDataFlagAndLogger)
{
    const auto logger = newLogger();
    auto source = filled<TypeParam>();
    source.SetValidate(true);
    source.SetLogger(logger);

    const TypeParam target(std::move(source));
    EXPECT_TRUE(target == filled<TypeParam>());
    EXPECT_TRUE(target.GetValidate());
    EXPECT_EQ(target.GetLogger(), logger);
    EXPECT_EQ(target.GetObjectName(), TypeParam().GetObjectName());
    EXPECT_EQ(const_cast<TypeParam&>(target).GetObjectType(), TypeParam().GetObjectType());
    EXPECT_EQ(Opened<TypeParam>(target).m_typeCode, TypeParam::id);

    // NOLINTBEGIN(bugprone-use-after-move): the state of the source is what is tested.
    EXPECT_FALSE(source.IsInitialized());
    EXPECT_FALSE(source.AnyData());
    EXPECT_TRUE(source == TypeParam());
    EXPECT_TRUE(source.GetValidate());
    EXPECT_EQ(source.GetLogger(), logger);
    // NOLINTEND(bugprone-use-after-move)
}

TYPED_TEST(EveryRecordMoves, AssignmentSharesAsAlways)
{
    auto source = filled<TypeParam>();
    TypeParam target;
    EXPECT_EQ(allocationsIn([&] { EXPECT_EQ(&(target = std::move(source)), &target); }), 0);
    EXPECT_TRUE(source.IsInitialized()); // NOLINT(bugprone-use-after-move): that is what is tested.
    EXPECT_TRUE(target == filled<TypeParam>());
    EXPECT_TRUE(source == target);
}

TYPED_TEST(EveryRecordMoves, ASourceCanBeUsedLikeANewRecord)
{
    auto source = filled<TypeParam>();
    const TypeParam target(std::move(source));
    // NOLINTBEGIN(bugprone-use-after-move): that is what is tested.
    source.ResetToDefault();
    EXPECT_TRUE(source.IsInitialized());
    source = filled<TypeParam>();
    EXPECT_TRUE(source == target);
    // NOLINTEND(bugprone-use-after-move)
}

TYPED_TEST(EveryRecordMoves, AnEmptyRecordMovesToo)
{
    TypeParam empty;
    const TypeParam target(std::move(empty));
    EXPECT_FALSE(target.IsInitialized());

    auto full = filled<TypeParam>();
    full = TypeParam();
    EXPECT_FALSE(full.IsInitialized());
}

TYPED_TEST(EveryRecordMoves, ARecordThatIsSwappedWithItselfStays)
{
    auto record = filled<TypeParam>();
    record.swap(record);
    EXPECT_TRUE(record == filled<TypeParam>());
}

TYPED_TEST(EveryRecordMoves, AThirdRecordThatSharesTheDataKeepsIt)
{
    auto source = filled<TypeParam>();
    TypeParam third;
    third = source;
    TypeParam target(std::move(source));
    target.Reset();
    EXPECT_TRUE(third == filled<TypeParam>());
}

TYPED_TEST(EveryRecordMoves, SwappingExchangesTheDataAlone)
{
    const auto logger = newLogger();
    auto first = filled<TypeParam>();
    first.SetValidate(true);
    TypeParam second;
    second.SetLogger(logger);

    const auto expectSwapped = [&](const TypeParam& full, const TypeParam& empty) {
        EXPECT_TRUE(full == filled<TypeParam>());
        EXPECT_FALSE(empty.IsInitialized());
        EXPECT_TRUE(first.GetValidate());
        EXPECT_EQ(first.GetLogger(), nullptr);
        EXPECT_FALSE(second.GetValidate());
        EXPECT_EQ(second.GetLogger(), logger);
    };
    first.swap(second);
    expectSwapped(second, first);
    using std::swap;
    swap(first, second);
    expectSwapped(first, second);
    std::swap(first, second);
    expectSwapped(second, first);
}

TYPED_TEST(EveryRecordMoves, NothingIsAllocatedHoweverMuchIsMoved)
{
    auto source = filled<TypeParam>();
    TypeParam target;
    EXPECT_EQ(allocationsIn([&] {
                  TypeParam moved(std::move(source));
                  target.swap(moved);
                  std::swap(source, target);
              }),
              0);
    EXPECT_TRUE(source == filled<TypeParam>());
}

TYPED_TEST(EveryRecordMoves, AGrowingVectorMoves)
{
    const auto logger = newLogger();
    std::vector<TypeParam> records(1, filled<TypeParam>());
    records.front().SetLogger(logger);
    EXPECT_EQ(allocationsIn([&records] { records.reserve(records.capacity() + 1); }), 1);
    EXPECT_TRUE(records.front() == filled<TypeParam>());
    // A copy would have no logger.
    EXPECT_EQ(records.front().GetLogger(), logger);
}

TEST(Moves, TheRecordsBelowKeepTheirSettingsAndTheirPlace)
{
    const auto logger = newLogger();
    PelLu300RouterInterfaceXml source;
    PelLu300RouterMessage& message = source.GetPelLu300RouterMessage();
    message.AddFragment().GetDF_Params().SetFrequency(1);
    source.SetLogger(logger);
    source.SetValidate(true);

    PelLu300RouterInterfaceXml target(std::move(source));
    EXPECT_EQ(&target.GetPelLu300RouterMessage(), &message);
    EXPECT_EQ(message.GetLogger(), logger);
    EXPECT_EQ(message.GetFragment()[0].GetLogger(), logger);
    EXPECT_EQ(message.GetFragment()[0].GetDF_Params().GetLogger(), logger);
    EXPECT_TRUE(message.GetFragment()[0].GetDF_Params().GetValidate());
}

// The block of a payload lies in that of its fragment. It must not stay there when the payload is moved away.
TEST(Moves, APayloadThatIsMovedOutOutlivesItsFragment)
{
    auto fragment = std::make_unique<Fragment>();
    fragment->GetPelVtConnectServer().SetAddress(QStringLiteral("192.0.2.1"));
    PelVtConnectServer server(std::move(fragment->GetPelVtConnectServer()));

    EXPECT_FALSE(fragment->GetPelVtConnectServer().IsAddressSet());
    fragment->GetPelVtConnectServer().SetAddress(QStringLiteral("other"));
    EXPECT_EQ(server.GetAddress(), QStringLiteral("192.0.2.1"));
    fragment.reset();
    EXPECT_EQ(server.GetAddress(), QStringLiteral("192.0.2.1"));
}

TEST(Moves, APayloadCanBeMovedIn)
{
    PelVtConnectServer server;
    server.SetAddress(QStringLiteral("192.0.2.1"));
    Fragment fragment;
    fragment.GetPelVtConnectServer().swap(server);
    EXPECT_EQ(fragment.GetPelVtConnectServer().GetAddress(), QStringLiteral("192.0.2.1"));

    Fragment other(fragment);
    other.GetPelVtConnectServer().SetAddress(QStringLiteral("other"));
    other.GetPelVtConnectServer().swap(fragment.GetPelVtConnectServer());
    EXPECT_EQ(other.GetPelVtConnectServer().GetAddress(), QStringLiteral("192.0.2.1"));
    EXPECT_EQ(fragment.GetPelVtConnectServer().GetAddress(), QStringLiteral("other"));
}

TEST(Moves, ARenamedRecordGivesItsDataButNotItsName)
{
    Opened<OstraInterfacePort> source;
    source.SetPort(1);
    source.SetObjectName(QStringLiteral("Renamed"));
    const Opened<OstraInterfacePort> target(std::move(source));
    EXPECT_EQ(target.GetObjectName(), QStringLiteral("OstraInterfacePort"));
    EXPECT_EQ(target.GetPort(), 1U);
    EXPECT_EQ(source.GetObjectName(), QStringLiteral("Renamed")); // NOLINT(bugprone-use-after-move)
}
