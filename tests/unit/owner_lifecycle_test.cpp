// SPDX-License-Identifier: MIT
// The life of records that own others, and of enumerated members: what is shared, and how far settings and
// defaults reach.

#include "FailingAllocator.h"
#include "LifecycleSupport.h"

#include <limits>
#include <utility>

namespace {

using namespace testing_support;

// --- enumerated members -------------------------------------------------------------------------

TEST(EnumeratedMemberLifecycle, TheInvalidValueAndTheNameLookUpCreateTheBlock)
{
    MastershipState state;
    EXPECT_EQ(state.GetInvalidState(), -1);
    EXPECT_TRUE(state.IsInitialized());
    MastershipState named;
    EXPECT_EQ(named.NameToState(QStringLiteral("no such name")), -1);
    PelLu300RouterMessage message;
    EXPECT_EQ(message.GetInvalidType(), -1);
    EXPECT_TRUE(message.IsInitialized());
    Fragment fragment;
    EXPECT_EQ(fragment.GetInvalidChoiceFragment(), -1);
    EXPECT_TRUE(fragment.IsInitialized());
    Fragment chosen;
    EXPECT_EQ(chosen.GetChoiceFragment(), -1);
    EXPECT_TRUE(chosen.IsInitialized());
}

TEST(EnumeratedMemberLifecycle, TheInvalidValueIsCopiedButResetsKeepIt)
{
    MastershipState source;
    source.SetInvalidState(MastershipState::RouterIsMaster);
    MastershipState copy(source);
    EXPECT_EQ(copy.GetInvalidState(), 2);
    MastershipState target;
    target = source;
    EXPECT_EQ(target.NameToState(QStringLiteral("no such name")), 2);
    target.Reset();
    EXPECT_EQ(target.GetInvalidState(), 2);
    target.SetInvalidState(MastershipState::NoMasterPresent);
    EXPECT_EQ(source.GetInvalidState(), 2);
}

TEST(EnumeratedMemberLifecycle, TheInvalidValueCanBeAnArgument)
{
    MastershipState state;
    state.SetDefaultState(MastershipState::MasterPresent);
    state.SetInvalidState(state.GetDefaultState());
    EXPECT_EQ(state.GetInvalidState(), 1);
    state.SetState(state.GetInvalidState());
    EXPECT_EQ(state.GetState(), 1);
    PelLu300RouterMessage message;
    message.SetDefaultType(PelLu300RouterMessage::Event);
    message.SetType(message.GetDefaultType());
    EXPECT_EQ(message.GetType(), 2);
    message.SetInvalidType(message.GetDefaultType());
    EXPECT_EQ(message.GetInvalidType(), 2);
}

TEST(EnumeratedMemberLifecycle, ResettingTheChoiceCreatesNoBlockAndEndsTheSharing)
{
    Fragment none;
    none.ResetChoiceFragment();
    EXPECT_FALSE(none.IsInitialized());

    Fragment source = fragment("a");
    const void* const before = place(source);
    Fragment target;
    target = source;
    target.ResetChoiceFragment();
    EXPECT_EQ(place(source), before);
    EXPECT_EQ(source.GetChoiceFragment(), Fragment::PelVtConnectServer);
    EXPECT_EQ(target.GetChoiceFragment(), -1);
}

TEST(MessageLifecycle, ListsAreComparedByTheirItems)
{
    // NaN is not even equal to itself.
    Fragment item;
    item.GetDF_Params().SetFrequency(std::numeric_limits<double>::quiet_NaN());
    const QVector<Fragment> items{item};
    PelLu300RouterMessage a;
    a.SetFragment(items);
    PelLu300RouterMessage b;
    b.SetFragment(items);
    EXPECT_FALSE(a == b) << "with shared items";
    b.GetFragment()[0].SetDF_Params(item.GetDF_Params());
    EXPECT_FALSE(a == b) << "with items of their own";
    EXPECT_FALSE(a == a);
    PelLu300RouterMessage sharing;
    sharing = a;
    EXPECT_FALSE(a == sharing);
    a.GetFragment()[0].GetDF_Params().SetFrequency(1);
    b = a;
    EXPECT_TRUE(a == b);
    b.AppendFragment(fragment("a"));
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(b == a);
}

// --- owners of records --------------------------------------------------------------------------

TEST(OwnerLifecycle, AskingWhetherItHasDataEndsTheSharing)
{
    Fragment source = fragment("a");
    const void* before = place(source);
    Fragment target;
    target = source;
    EXPECT_TRUE(target.HasData());
    EXPECT_EQ(place(source), before);

    PelLu300RouterMessage sourceMessage = message(1);
    before = place(sourceMessage);
    PelLu300RouterMessage targetMessage;
    targetMessage = sourceMessage;
    EXPECT_TRUE(targetMessage.HasData());
    EXPECT_EQ(place(sourceMessage), before);
}

TEST(OwnerLifecycle, TheOwnChoiceCanBeTheArgumentOfInitChoice)
{
    Fragment fragment;
    fragment.SetDefaultDF_Params(params(4.0));
    fragment.SetDF_Params(params(5.0));
    fragment.InitChoice(fragment.GetChoiceFragment());
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_TRUE(fragment.IsDF_ParamsSet());
    EXPECT_EQ(std::as_const(fragment).GetDF_Params().GetFrequency(), 4.0);
    expectThrow<OutOfRangeException>([&] { fragment.InitChoice(fragment.GetInvalidChoiceFragment()); },
                                     QStringLiteral("Invalid enum value set in 'Fragment'."));
}

TEST(OwnerLifecycle, TheOwnItemsCanBeArguments)
{
    PelLu300RouterMessage record;
    record.AppendFragment(fragment("first"));
    // The list must reallocate while one of its own items is appended.
    for (int i = 0; i < 100; ++i)
        record.AppendFragment(std::as_const(record).GetFragment().at(0));
    const QVector<Fragment>& list = std::as_const(record).GetFragment();
    ASSERT_EQ(list.size(), 101);
    for (const Fragment& item : list)
        EXPECT_TRUE(item == fragment("first"));
    record.AppendFragment(record.GetFragment()[0]);
    record.SetDefaultFragment(record.GetFragment()[0]);
    record.AppendFragment(record.GetDefaultFragment());
    EXPECT_EQ(list.size(), 103);
    EXPECT_TRUE(record.GetDefaultFragment() == fragment("first"));
    EXPECT_TRUE(list.last() == fragment("first"));
}

TEST(OwnerLifecycle, TheModifiableMemberCanBeAnArgument)
{
    PelLu300RouterInterfaceXml document;
    document.SetPelLu300RouterMessage(message(3));
    document.SetPelLu300RouterMessage(document.GetPelLu300RouterMessage());
    document.SetDefaultPelLu300RouterMessage(document.GetPelLu300RouterMessage());
    document.GetPelLu300RouterMessage() = document.GetDefaultPelLu300RouterMessage();
    EXPECT_TRUE(document.GetPelLu300RouterMessage() == message(3));
    EXPECT_TRUE(document.GetDefaultPelLu300RouterMessage() == message(3));
    document.GetPelLu300RouterMessage().SetMessageID(4);
    EXPECT_TRUE(document.GetDefaultPelLu300RouterMessage() == message(3));
}

TEST(OwnerLifecycle, AMemberSharesTheDataThatItIsSetToUntilEitherIsTouched)
{
    PelVtConnectServer value = server("a");
    const void* const before = place(value);
    Fragment record;
    record.GetPelVtConnectServer();
    EXPECT_EQ(allocationsIn([&] { record.SetPelVtConnectServer(value); }), 0);
    EXPECT_NE(place(value), before);
    record.GetPelVtConnectServer().SetAddress(QStringLiteral("b"));
    EXPECT_EQ(value.GetAddress(), QStringLiteral("a"));
}

TEST(OwnerLifecycle, ADetachedRecordHoldsRecordsOfItsOwn)
{
    PelLu300RouterInterfaceXml source;
    source.SetPelLu300RouterMessage(message(1));
    PelLu300RouterInterfaceXml target;
    target = source;
    target.GetPelLu300RouterMessage().GetFragment()[1].GetPelVtConnectServer().SetAddress(
        QStringLiteral("changed"));
    EXPECT_TRUE(std::as_const(source).GetPelLu300RouterMessage() == message(1));
    EXPECT_FALSE(std::as_const(target).GetPelLu300RouterMessage() == message(1));

    PelLu300RouterInterfaceXml copy(source);
    copy.GetPelLu300RouterMessage().GetFragment()[0].GetPelVtConnectServer().SetPort(1);
    EXPECT_TRUE(std::as_const(source).GetPelLu300RouterMessage() == message(1));
}

TEST(OwnerLifecycle, FlagAndLoggerGivenBeforeTheBlockReachTheMembersWhenItIsCreated)
{
    const auto logger = newLogger();
    PelLu300RouterInterfaceXml document;
    document.SetValidate(true);
    document.SetLogger(logger);
    const PelLu300RouterMessage& member = std::as_const(document).GetPelLu300RouterMessage();
    EXPECT_TRUE(member.GetValidate());
    EXPECT_EQ(member.GetLogger(), logger);

    Fragment fragment;
    fragment.SetValidate(true);
    fragment.SetLogger(logger);
    EXPECT_TRUE(fragment.GetDF_Params().GetValidate());
    EXPECT_EQ(fragment.GetDF_Params().GetLogger(), logger);
    EXPECT_TRUE(std::as_const(fragment).GetMastershipState().GetValidate());
}

TEST(OwnerLifecycle, FlagAndLoggerOfASharerDoNotReachTheMembersOfTheOther)
{
    const auto logger = newLogger();
    PelLu300RouterInterfaceXml source;
    source.SetPelLu300RouterMessage(message(1));
    PelLu300RouterInterfaceXml target;
    target = source;
    target.SetValidate(true);
    target.SetLogger(logger);
    const PelLu300RouterMessage& ofSource = std::as_const(source).GetPelLu300RouterMessage();
    const PelLu300RouterMessage& ofTarget = std::as_const(target).GetPelLu300RouterMessage();
    EXPECT_FALSE(ofSource.GetValidate());
    EXPECT_EQ(ofSource.GetLogger(), nullptr);
    EXPECT_FALSE(ofSource.GetFragment().at(0).GetValidate());
    EXPECT_FALSE(ofSource.GetFragment().at(0).GetPelVtConnectServer().GetValidate());
    EXPECT_TRUE(ofTarget.GetValidate());
    EXPECT_EQ(ofTarget.GetLogger(), logger);
    EXPECT_TRUE(ofTarget.GetFragment().at(0).GetPelVtConnectServer().GetValidate());
    EXPECT_EQ(ofTarget.GetFragment().at(0).GetPelVtConnectServer().GetLogger(), logger);
}

TEST(OwnerLifecycle, FlagAndLoggerOfASharerDoNotReachItemsAndPayloadsOfTheOther)
{
    const auto logger = newLogger();
    PelLu300RouterMessage source = message(1);
    PelLu300RouterMessage target;
    target = source;
    target.SetLogger(logger);
    target.SetValidate(true);
    EXPECT_EQ(std::as_const(source).GetFragment().at(1).GetLogger(), nullptr);
    EXPECT_FALSE(std::as_const(source).GetFragment().at(1).GetValidate());
    EXPECT_EQ(std::as_const(target).GetFragment().at(1).GetLogger(), logger);
    EXPECT_TRUE(std::as_const(target).GetFragment().at(1).GetValidate());

    Fragment sourceFragment = fragment("a");
    Fragment targetFragment;
    targetFragment = sourceFragment;
    targetFragment.SetValidate(true);
    targetFragment.SetLogger(logger);
    EXPECT_FALSE(std::as_const(sourceFragment).GetPelVtConnectServer().GetValidate());
    EXPECT_EQ(std::as_const(sourceFragment).GetPelVtConnectServer().GetLogger(), nullptr);
    EXPECT_TRUE(std::as_const(targetFragment).GetPelVtConnectServer().GetValidate());
    EXPECT_EQ(std::as_const(targetFragment).GetPelVtConnectServer().GetLogger(), logger);
}

TEST(OwnerLifecycle, AMemberKeepsItsOwnFlagAndLoggerWhenItIsSetOrReset)
{
    const auto logger = newLogger();
    MastershipState value = mastership("x");
    value.SetLogger(newLogger());
    Fragment record;
    record.GetMastershipState().SetValidate(true);
    record.GetMastershipState().SetLogger(logger);
    record.SetMastershipState(value);
    EXPECT_TRUE(record.GetMastershipState().GetValidate());
    EXPECT_EQ(record.GetMastershipState().GetLogger(), logger);
    record.ResetMastershipState();
    EXPECT_TRUE(std::as_const(record).GetMastershipState().GetValidate());
    EXPECT_EQ(std::as_const(record).GetMastershipState().GetLogger(), logger);
    record.Reset();
    EXPECT_TRUE(std::as_const(record).GetMastershipState().GetValidate());
    EXPECT_EQ(std::as_const(record).GetMastershipState().GetLogger(), logger);
}

// Both sharers must have the same members after the detach, no matter which one got the new block.
template <class R, class Inspect>
void expectKeptByDetach(const R& source, Inspect&& inspect)
{
    R target;
    target = source;
    static_cast<void>(target.IsInitialized());
    {
        SCOPED_TRACE("the record with the new block");
        inspect(std::as_const(target));
    }
    SCOPED_TRACE("the record with the old block");
    inspect(source);
}

TEST(OwnerLifecycle, ADetachKeepsFlagAndLoggerOfThePayloads)
{
    const auto logger = newLogger();
    Fragment source = fragment("a");
    source.GetPelVtConnectServer().SetValidate(true);
    source.GetPelVtConnectServer().SetLogger(logger);
    source.GetDF_Params().SetLogger(logger);
    expectKeptByDetach(source, [&](const Fragment& record) {
        EXPECT_TRUE(record.GetPelVtConnectServer().GetValidate());
        EXPECT_EQ(record.GetPelVtConnectServer().GetLogger(), logger);
        EXPECT_FALSE(record.GetDF_Params().GetValidate());
        EXPECT_EQ(record.GetDF_Params().GetLogger(), logger);
        EXPECT_FALSE(record.GetMastershipState().GetValidate());
        EXPECT_EQ(record.GetMastershipState().GetLogger(), nullptr);
    });
}

TEST(OwnerLifecycle, ADetachKeepsFlagAndLoggerOfTheItems)
{
    const auto logger = newLogger();
    PelLu300RouterMessage source = message(1);
    source.GetFragment()[1].SetValidate(true);
    source.GetFragment()[1].SetLogger(logger);
    expectKeptByDetach(source, [&](const PelLu300RouterMessage& record) {
        EXPECT_FALSE(record.GetFragment().at(0).GetValidate());
        EXPECT_EQ(record.GetFragment().at(0).GetLogger(), nullptr);
        EXPECT_TRUE(record.GetFragment().at(1).GetValidate());
        EXPECT_EQ(record.GetFragment().at(1).GetLogger(), logger);
    });
}

TEST(OwnerLifecycle, ADetachKeepsFlagAndLoggerOfTheMessage)
{
    const auto logger = newLogger();
    PelLu300RouterInterfaceXml source;
    source.SetPelLu300RouterMessage(message(1));
    source.GetPelLu300RouterMessage().SetValidate(true);
    source.GetPelLu300RouterMessage().SetLogger(logger);
    expectKeptByDetach(source, [&](const PelLu300RouterInterfaceXml& record) {
        EXPECT_TRUE(record.GetPelLu300RouterMessage().GetValidate());
        EXPECT_EQ(record.GetPelLu300RouterMessage().GetLogger(), logger);
    });
}

TEST(OwnerLifecycle, ADetachKeepsFlagAndLoggerOfRecordsTwoLevelsDown)
{
    const auto logger = newLogger();
    PelLu300RouterMessage source = message(1);
    source.GetFragment()[0].GetPelVtConnectServer().SetValidate(true);
    source.GetFragment()[0].GetPelVtConnectServer().SetLogger(logger);
    expectKeptByDetach(source, [&](const PelLu300RouterMessage& record) {
        EXPECT_TRUE(record.GetFragment().at(0).GetPelVtConnectServer().GetValidate());
        EXPECT_EQ(record.GetFragment().at(0).GetPelVtConnectServer().GetLogger(), logger);
        EXPECT_FALSE(record.GetFragment().at(1).GetPelVtConnectServer().GetValidate());
    });

    PelLu300RouterInterfaceXml document;
    document.SetPelLu300RouterMessage(message(1));
    document.GetPelLu300RouterMessage().GetFragment()[1].SetValidate(true);
    document.GetPelLu300RouterMessage().GetFragment()[1].SetLogger(logger);
    expectKeptByDetach(document, [&](const PelLu300RouterInterfaceXml& record) {
        const QVector<Fragment>& list = record.GetPelLu300RouterMessage().GetFragment();
        EXPECT_FALSE(list.at(0).GetValidate());
        EXPECT_TRUE(list.at(1).GetValidate());
        EXPECT_EQ(list.at(1).GetLogger(), logger);
    });
}

TEST(OwnerLifecycle, ADetachKeepsTheFlagsOfPayloadsThatAreNotSelected)
{
    Fragment source;
    source.GetAcquireMastership().SetSuccess(true);
    source.GetDF_Params();
    expectKeptByDetach(source, [](const Fragment& record) {
        EXPECT_EQ(record.GetChoiceFragment(), Fragment::DF_Params);
        EXPECT_TRUE(record.IsAcquireMastershipSet());
        EXPECT_TRUE(record.IsDF_ParamsSet());
        EXPECT_TRUE(record.GetAcquireMastership().GetSuccess());
        EXPECT_FALSE(record.IsMastershipStateSet());
    });
}

TEST(OwnerLifecycle, TheFragmentAppliesTheDefaultsInsideItsPayloadsAndSelectsNone)
{
    DF_Params withDefaults;
    withDefaults.SetDefaultBandwidth(5.0);
    withDefaults.SetFrequency(1.0);
    Fragment record;
    record.SetDefaultDF_Params(withDefaults);
    record.SetMastershipState(mastership("x"));
    record.ResetToDefault();
    EXPECT_EQ(record.GetChoiceFragment(), -1);
    EXPECT_FALSE(record.IsDF_ParamsSet());
    const DF_Params& payload = std::as_const(record).GetDF_Params();
    EXPECT_TRUE(payload.IsBandwidthSet());
    EXPECT_EQ(payload.GetBandwidth(), 5.0);
    EXPECT_FALSE(payload.IsFrequencySet());
    EXPECT_EQ(payload.GetFrequency(), 0.0);
    EXPECT_FALSE(std::as_const(record).GetMastershipState().AnyData());
}

TEST(OwnerLifecycle, TheMessageAppliesItsDefaultsThroughItsSetters)
{
    PelLu300RouterMessage record;
    record.SetDefaultType(PelLu300RouterMessage::Event);
    record.SetDefaultMessageID(9);
    record.SetDefaultFragment(fragment("item"));
    record.AppendFragment(fragment("old"));
    record.ResetToDefault();
    EXPECT_TRUE(record.IsTypeSet());
    EXPECT_EQ(record.GetType(), PelLu300RouterMessage::Event);
    EXPECT_TRUE(record.IsMessageIDSet());
    EXPECT_EQ(record.GetMessageID(), 9U);
    EXPECT_TRUE(record.IsFragmentSet());
    ASSERT_EQ(std::as_const(record).GetFragment().size(), 1);
    EXPECT_TRUE(std::as_const(record).GetFragment().at(0) == fragment("item"));

    record.SetDefaultType(static_cast<PelLu300RouterMessage::Type>(3));
    record.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] { record.ResetToDefault(); },
        QStringLiteral("enum is not valid (classname=PelLu300RouterMessage,membername=m_type)"));
    EXPECT_FALSE(record.IsTypeSet());

    PelLu300RouterMessage incomplete;
    incomplete.SetValidate(true);
    incomplete.SetDefaultFragment(Fragment());
    expectThrow<IncompleteDefinitionException>(
        [&] { incomplete.ResetToDefault(); },
        QStringLiteral(
            "PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment."));
    EXPECT_EQ(std::as_const(incomplete).GetFragment().size(), 0);
}

TEST(OwnerLifecycle, TheDocumentAppliesItsDefaultMessageAndResetsToIt)
{
    PelLu300RouterInterfaceXml record;
    record.SetDefaultPelLu300RouterMessage(message(5));
    record.ResetToDefault();
    EXPECT_TRUE(record.IsPelLu300RouterMessageSet());
    EXPECT_TRUE(std::as_const(record).GetPelLu300RouterMessage() == message(5));
    record.GetPelLu300RouterMessage().SetMessageID(6);
    record.Reset();
    EXPECT_FALSE(record.IsPelLu300RouterMessageSet());
    EXPECT_TRUE(std::as_const(record).GetPelLu300RouterMessage() == message(5));
    // The data of the message counts whether the message is set or not.
    EXPECT_TRUE(record.AnyData());
}

TEST(OwnerLifecycle, HandingOutAMemberForChangingSetsIt)
{
    PelLu300RouterInterfaceXml document;
    document.GetPelLu300RouterMessage();
    EXPECT_TRUE(document.IsPelLu300RouterMessageSet());
    EXPECT_FALSE(document.AnyData());
    PelLu300RouterMessage record;
    record.GetFragment();
    EXPECT_TRUE(record.IsFragmentSet());
    EXPECT_FALSE(record.AnyData());
    Fragment choice;
    choice.GetOstraInterfacePort();
    EXPECT_TRUE(choice.IsOstraInterfacePortSet());
    EXPECT_TRUE(choice.AnyData());
}

} // namespace
