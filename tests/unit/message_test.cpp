// SPDX-License-Identifier: MIT
// The router message: what counts as data, its type and number, defaults, copies, checks and settings.

#include "MessageSupport.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace {

using namespace testing_support;

// --- a new message --------------------------------------------------------------------------

TEST(Message, ANewOneHasNoData)
{
    const Message m;
    EXPECT_FALSE(m.HasData());
    EXPECT_FALSE(m.AnyData());
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_FALSE(m.IsMessageIDSet());
    EXPECT_FALSE(m.IsFragmentSet());
    EXPECT_FALSE(m.IsInitialized());
    EXPECT_EQ(m.GetObjectName(), "PelLu300RouterMessage");
    EXPECT_EQ(Message::GetId(), -356475558);
}

TEST(Message, ANewOneReadsAsItsInitialDefaults)
{
    const Message m;
    EXPECT_EQ(m.GetType(), -1);
    EXPECT_EQ(m.GetMessageID(), 0U);
    EXPECT_TRUE(m.GetFragment().isEmpty());
    EXPECT_EQ(m.GetDefaultType(), -1);
    EXPECT_EQ(m.GetInvalidType(), -1);
    EXPECT_EQ(m.GetDefaultMessageID(), 0U);
    EXPECT_TRUE(m.GetDefaultFragment() == Fragment());
    EXPECT_FALSE(m.GetDefaultFragment().AnyData());
    EXPECT_TRUE(m.IsInitialized());
    EXPECT_FALSE(m.AnyData());
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_FALSE(m.IsMessageIDSet());
    EXPECT_FALSE(m.IsFragmentSet());
}

TEST(Message, TheModifiableListGetterCountsAsSettingTheList)
{
    Message m;
    EXPECT_TRUE(m.GetFragment().isEmpty());
    EXPECT_TRUE(m.IsFragmentSet());
    EXPECT_FALSE(m.AnyData());
    EXPECT_FALSE(m.HasData());
}

TEST(Message, TheConstListGetterDoesNotSetTheList)
{
    const Message m = sample();
    Message fresh;
    EXPECT_TRUE(std::as_const(fresh).GetFragment().isEmpty());
    EXPECT_FALSE(fresh.IsFragmentSet());
    EXPECT_EQ(m.GetFragment().size(), 2);
}

// --- what counts as data --------------------------------------------------------------------

TEST(Message, HasDataIsWhetherTheTypeIsSet)
{
    Message m;
    m.SetMessageID(1);
    m.AppendFragment(withPort(1));
    EXPECT_FALSE(m.HasData());
    m.SetType(static_cast<Message::Type>(3));
    EXPECT_TRUE(m.HasData());
    m.ResetType();
    EXPECT_FALSE(m.HasData());
}

TEST(Message, AnyDataIsATypeOrANumberOrAnItem)
{
    Message withType;
    withType.SetType(static_cast<Message::Type>(-1));
    EXPECT_TRUE(withType.AnyData());
    withType.ResetType();
    EXPECT_FALSE(withType.AnyData());

    Message withNumber;
    withNumber.SetMessageID(0);
    EXPECT_TRUE(withNumber.AnyData());
    withNumber.ResetMessageID();
    EXPECT_FALSE(withNumber.AnyData());

    Message withItem;
    withItem.AppendFragment(Fragment());
    EXPECT_TRUE(withItem.AnyData());
    withItem.ResetFragment();
    EXPECT_FALSE(withItem.AnyData());
}

TEST(Message, AnItemCountsAsDataWhateverTheListsFlag)
{
    Message m;
    Items& items = m.GetFragment();
    m.ResetFragment();
    items.append(withPort(1));
    EXPECT_FALSE(m.IsFragmentSet());
    EXPECT_TRUE(m.AnyData());
}

// --- Type and MessageID ---------------------------------------------------------------------

TEST(Message, ATypeOutsideTheRangeIsRefusedUnderValidation)
{
    Message m;
    m.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { m.SetType(static_cast<Message::Type>(3)); }, typeInvalid);
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_EQ(m.GetType(), -1);
    m.SetType(Message::Event);
    expectThrow<OutOfRangeException>([&] { m.SetType(static_cast<Message::Type>(-1)); }, typeInvalid);
    EXPECT_EQ(m.GetType(), Message::Event);
}

TEST(Message, ATypeOutsideTheRangeIsStoredWithoutValidation)
{
    Message m;
    m.SetType(static_cast<Message::Type>(3));
    EXPECT_EQ(m.GetType(), 3);
    EXPECT_TRUE(m.IsTypeSet());
}

TEST(Message, EveryNumberIsAccepted)
{
    Message m;
    m.SetValidate(true);
    for (const unsigned int number : {0U, 1U, 2147483647U, 2147483648U, 4294967295U}) {
        m.SetMessageID(number);
        EXPECT_EQ(m.GetMessageID(), number);
        EXPECT_TRUE(m.IsMessageIDSet());
        EXPECT_TRUE(m.IsValidMessageID(number));
    }
}

TEST(Message, ResettingANumberGivesItsDefault)
{
    Message m;
    m.SetDefaultMessageID(9);
    EXPECT_EQ(m.GetDefaultMessageID(), 9U);
    EXPECT_EQ(m.GetMessageID(), 0U);
    m.SetMessageID(5);
    m.ResetMessageID();
    EXPECT_EQ(m.GetMessageID(), 9U);
    EXPECT_FALSE(m.IsMessageIDSet());
}

TEST(Message, ResettingMembersOfANewOneCreatesNoDataBlock)
{
    Message m;
    m.ResetType();
    m.ResetMessageID();
    m.ResetFragment();
    m.Reset();
    EXPECT_FALSE(m.IsInitialized());
}

// --- defaults and resets --------------------------------------------------------------------

TEST(MessageDefaults, TheDefaultItemIsStoredAndTouchesNothingElse)
{
    Message m;
    Fragment item = withPort(8);
    m.SetDefaultFragment(item);
    EXPECT_TRUE(m.IsInitialized());
    EXPECT_EQ(portOf(m.GetDefaultFragment()), 8U);
    EXPECT_FALSE(m.IsFragmentSet());
    EXPECT_TRUE(itemsOf(m).isEmpty());
    EXPECT_FALSE(m.AnyData());
    item.GetOstraInterfacePort().SetPort(9);
    EXPECT_EQ(portOf(m.GetDefaultFragment()), 8U);
    EXPECT_EQ(portOf(item), 9U);
}

TEST(MessageDefaults, TheDefaultItemMayBeSetToItselfOrToAnItemOfTheList)
{
    Message m;
    m.SetDefaultFragment(withPort(8));
    m.SetDefaultFragment(m.GetDefaultFragment());
    EXPECT_EQ(portOf(m.GetDefaultFragment()), 8U);
    m.AppendFragment(withPort(9));
    m.SetDefaultFragment(m.GetFragment()[0]);
    EXPECT_EQ(portOf(m.GetDefaultFragment()), 9U);
    m.GetFragment()[0].GetOstraInterfacePort().SetPort(1);
    EXPECT_EQ(portOf(m.GetDefaultFragment()), 9U);
}

TEST(MessageDefaults, ResetGivesTypeAndNumberTheirDefaultsAndEmptiesTheList)
{
    Message m = sample();
    m.SetDefaultType(Message::Event);
    m.SetDefaultMessageID(70);
    m.SetDefaultFragment(withPort(8));
    m.Reset();
    EXPECT_EQ(m.GetType(), Message::Event);
    EXPECT_EQ(m.GetMessageID(), 70U);
    EXPECT_TRUE(itemsOf(m).isEmpty());
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_FALSE(m.IsMessageIDSet());
    EXPECT_FALSE(m.IsFragmentSet());
    EXPECT_FALSE(m.AnyData());
    EXPECT_FALSE(m.HasData());
    EXPECT_EQ(portOf(m.GetDefaultFragment()), 8U);
}

TEST(MessageDefaults, ResetToDefaultSetsWhatHasADefault)
{
    Message m = sample();
    m.SetDefaultType(Message::Event);
    m.SetDefaultMessageID(70);
    m.SetDefaultFragment(withPort(8));
    for (int i = 0; i < 2; ++i) {
        m.ResetToDefault();
        EXPECT_EQ(m.GetType(), Message::Event);
        EXPECT_EQ(m.GetMessageID(), 70U);
        ASSERT_EQ(portsOf(m), Ports{8});
        EXPECT_TRUE(m.IsTypeSet());
        EXPECT_TRUE(m.IsMessageIDSet());
        EXPECT_TRUE(m.IsFragmentSet());
    }
    m.GetFragment()[0].GetOstraInterfacePort().SetPort(1);
    EXPECT_EQ(portOf(m.GetDefaultFragment()), 8U);
}

TEST(MessageDefaults, ResetToDefaultWithoutDefaultsLeavesANewMessage)
{
    Message m = sample();
    // Getting the defaults does not count as setting them.
    m.GetDefaultType();
    m.GetDefaultMessageID();
    m.GetDefaultFragment();
    m.ResetToDefault();
    EXPECT_TRUE(m == Message());
    EXPECT_FALSE(m.AnyData());
    EXPECT_FALSE(m.IsFragmentSet());
}

TEST(MessageDefaults, ResetToDefaultAppliesOnlyTheDefaultThatWasSet)
{
    Message m = sample();
    m.SetDefaultMessageID(0);
    m.ResetToDefault();
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_TRUE(m.IsMessageIDSet());
    EXPECT_FALSE(m.IsFragmentSet());
    EXPECT_TRUE(itemsOf(m).isEmpty());
}

TEST(MessageDefaults, ResetToDefaultPassesWhatTheTypesSetterThrows)
{
    Message m = sample();
    m.SetDefaultType(static_cast<Message::Type>(3));
    m.SetDefaultMessageID(70);
    m.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { m.ResetToDefault(); }, typeInvalid);
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_FALSE(m.IsMessageIDSet());
    EXPECT_TRUE(itemsOf(m).isEmpty());
}

TEST(MessageDefaults, ResetToDefaultAppendsADefaultItemWithoutDataOnlyWithoutValidation)
{
    Message m;
    m.SetDefaultType(Message::Request);
    m.SetDefaultMessageID(70);
    m.SetDefaultFragment(Fragment());
    m.ResetToDefault();
    EXPECT_EQ(itemsOf(m).size(), 1);
    m.SetValidate(true);
    expectThrow<IncompleteDefinitionException>([&] { m.ResetToDefault(); }, itemIncomplete);
    EXPECT_TRUE(itemsOf(m).isEmpty());
    EXPECT_FALSE(m.IsFragmentSet());
    EXPECT_EQ(m.GetType(), Message::Request);
    EXPECT_EQ(m.GetMessageID(), 70U);
}

// --- comparing ------------------------------------------------------------------------------

TEST(MessageEquality, EveryMemberCounts)
{
    EXPECT_TRUE(sample() == sample());
    EXPECT_FALSE(sample() != sample());
    Message other = sample();
    other.SetType(Message::Event);
    EXPECT_FALSE(other == sample());
    other = sample();
    other.SetMessageID(8);
    EXPECT_TRUE(other != sample());
    other = sample();
    other.GetFragment()[1].GetAcquireMastership().SetSuccess(false);
    EXPECT_FALSE(other == sample());
    other = sample();
    other.AppendFragment(withPort(1));
    EXPECT_FALSE(other == sample());
    other = sample();
    std::reverse(other.GetFragment().begin(), other.GetFragment().end());
    EXPECT_FALSE(other == sample());
}

TEST(MessageEquality, AMemberThatIsSetInOneOnlyMakesADifference)
{
    Message a;
    Message b;
    EXPECT_TRUE(a == b);
    a.SetMessageID(0);
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(b == a);
    a.Reset();
    EXPECT_TRUE(a == b);
    a.GetFragment();
    EXPECT_FALSE(a == b);
    EXPECT_FALSE(b == a);
    b.SetFragment(Items());
    EXPECT_TRUE(a == b);
}

TEST(MessageEquality, DefaultsAndSettingsDoNotCount)
{
    Message a = sample();
    a.SetDefaultType(Message::Event);
    a.SetDefaultMessageID(3);
    a.SetDefaultFragment(withPort(8));
    a.SetInvalidType(Message::Event);
    a.SetValidate(true);
    a.SetLogger(std::make_shared<Logger>());
    EXPECT_TRUE(a == sample());
    EXPECT_TRUE(sample() == a);
}

// --- copying and sharing --------------------------------------------------------------------

TEST(MessageCopying, ACopyIsIndependentDownToThePayloads)
{
    Message m = sample();
    OstraInterfacePort& port = m.GetFragment()[0].GetOstraInterfacePort();
    Message copy(m);
    port.SetPort(1);
    EXPECT_TRUE(copy == sample());
    EXPECT_FALSE(m == copy);
    copy.GetFragment()[1].GetAcquireMastership().SetSuccess(false);
    copy.GetFragment().removeFirst();
    EXPECT_EQ(itemsOf(m).size(), 2);
    EXPECT_TRUE(itemsOf(m).at(1).GetAcquireMastership().GetSuccess());
}

TEST(MessageCopying, AssignedMessagesAreIndependentOnceTouched)
{
    Message m = sample();
    m.SetDefaultFragment(withPort(8));
    Message assigned;
    assigned = m;
    assigned.AppendFragment(withPort(1));
    assigned.SetDefaultFragment(withPort(9));
    EXPECT_TRUE(m == sample());
    EXPECT_EQ(itemsOf(assigned).size(), 3);
    EXPECT_EQ(portOf(m.GetDefaultFragment()), 8U);
    assigned = m;
    m.Reset();
    EXPECT_TRUE(assigned == sample());
}

TEST(MessageCopying, ACopyKnowsWhichDefaultsWereSet)
{
    Message m;
    m.SetDefaultFragment(withPort(8));
    m.SetDefaultType(Message::Reply);
    Message copy(m);
    copy.ResetToDefault();
    EXPECT_EQ(portsOf(copy), Ports{8});
    EXPECT_EQ(copy.GetType(), Message::Reply);
    EXPECT_FALSE(copy.IsMessageIDSet());
}

TEST(MessageCopying, AfterADetachBothHoldersItemsKeepFlagAndLogger)
{
    const auto logger = std::make_shared<Logger>();
    for (const bool sourceTouchedFirst : {true, false}) {
        Message source = sample();
        source.SetValidate(true);
        source.SetLogger(logger);
        Message holder;
        holder = source;
        if (sourceTouchedFirst)
            source.AnyData();
        else
            holder.AnyData();
        for (const Message* message : {&source, &holder}) {
            EXPECT_TRUE(*message == sample());
            for (const Fragment& item : itemsOf(*message)) {
                EXPECT_TRUE(item.GetValidate());
                EXPECT_EQ(item.GetLogger(), logger);
                EXPECT_TRUE(item.GetOstraInterfacePort().GetValidate());
                EXPECT_EQ(item.GetOstraInterfacePort().GetLogger(), logger);
            }
        }
    }
}

TEST(MessageCopying, SettingsOfASharedMessageDoNotReachTheOtherHoldersItems)
{
    Message m = sample();
    Message holder;
    holder = m;
    holder.SetValidate(true);
    holder.SetLogger(std::make_shared<Logger>());
    EXPECT_TRUE(itemsOf(holder).at(0).GetValidate());
    EXPECT_FALSE(itemsOf(m).at(0).GetValidate());
    EXPECT_EQ(itemsOf(m).at(0).GetLogger(), nullptr);
}

TEST(MessageCopying, ACopyHasTheValidationFlagButNoLogger)
{
    Message m = sample();
    m.SetValidate(true);
    m.SetLogger(std::make_shared<Logger>());
    const Message copy(m);
    EXPECT_TRUE(copy.GetValidate());
    EXPECT_EQ(copy.GetLogger(), nullptr);
    copy.Check();
    EXPECT_TRUE(itemsOf(copy).at(0).GetValidate());
    EXPECT_EQ(itemsOf(copy).at(0).GetLogger(), nullptr);
}

TEST(MessageCopying, ItemsOfOneMessageMayBeAssignedToEachOther)
{
    Message m;
    m.SetFragment({withPort(1), withPort(2)});
    m.GetFragment()[0] = itemsOf(m).at(1);
    EXPECT_EQ(portsOf(m), (Ports{2, 2}));
    m.GetFragment()[0].GetOstraInterfacePort().SetPort(3);
    EXPECT_EQ(portsOf(m), (Ports{3, 2}));
}

// --- checking -------------------------------------------------------------------------------

TEST(MessageCheck, AMissingTypeFailsWhateverTheValidation)
{
    Message m;
    m.SetMessageID(1);
    for (const bool validate : {false, true}) {
        m.SetValidate(validate);
        expectThrow<OutOfRangeException>([&] { m.Check(); }, typeMissing);
        expectThrow<OutOfRangeException>([&] { m.Check(true); }, typeMissing);
    }
    expectThrow<OutOfRangeException>([] { Message().Check(); }, typeMissing);
}

TEST(MessageCheck, AnUnsetTypeFailsAlsoWhenItsDefaultIsAnEnumerator)
{
    Message m;
    m.SetDefaultType(Message::Event);
    m.SetType(Message::Reply);
    m.ResetType();
    ASSERT_EQ(m.GetType(), Message::Event);
    expectThrow<OutOfRangeException>([&] { m.Check(); }, typeMissing);
}

TEST(MessageCheck, ATypeOutsideTheRangeFails)
{
    Message m;
    for (const int type : {-1, 3, 2147483647}) {
        m.SetType(static_cast<Message::Type>(type));
        expectThrow<OutOfRangeException>([&] { m.Check(); }, typeMissing);
    }
}

TEST(MessageCheck, EveryEnumeratorPasses)
{
    Message m;
    for (const auto type : {Message::Request, Message::Reply, Message::Event}) {
        m.SetType(type);
        EXPECT_NO_THROW(m.Check());
        EXPECT_NO_THROW(m.Check(true));
    }
}

TEST(MessageCheck, ReachesEveryItemOfAListThatIsSet)
{
    Message m;
    m.SetType(Message::Request);
    m.SetFragment({Fragment(), Fragment(), Fragment()});
    m.Check();
    for (const Fragment& item : itemsOf(m))
        EXPECT_TRUE(item.IsInitialized());
}

TEST(MessageCheck, FailsAtTheTypeBeforeItReachesTheItems)
{
    Message m;
    m.SetFragment({Fragment()});
    EXPECT_THROW(m.Check(), OutOfRangeException);
    EXPECT_FALSE(itemsOf(m).at(0).IsInitialized());
}

TEST(MessageCheck, DoesNotReachIntoThePayloads)
{
    Message m;
    m.SetType(Message::Request);
    m.AppendFragment(withBadState());
    m.SetValidate(true);
    EXPECT_NO_THROW(m.Check());
}

TEST(MessageCheck, ChangesNoMember)
{
    const Message m = sample();
    m.Check();
    EXPECT_TRUE(m == sample());
}

// --- validation flag and logger -------------------------------------------------------------

TEST(MessageSettings, ReachEveryItemAndItsPayloads)
{
    const auto logger = std::make_shared<Logger>();
    Message m = sample();
    m.SetValidate(true);
    m.SetLogger(logger);
    for (const Fragment& item : itemsOf(m)) {
        EXPECT_TRUE(item.GetValidate());
        EXPECT_EQ(item.GetLogger(), logger);
        EXPECT_TRUE(item.GetRouterVtServerPort().GetValidate());
        EXPECT_EQ(item.GetRouterVtServerPort().GetLogger(), logger);
    }
    m.SetValidate(false);
    EXPECT_FALSE(itemsOf(m).at(0).GetValidate());
    EXPECT_FALSE(itemsOf(m).at(1).GetAcquireMastership().GetValidate());
}

TEST(MessageSettings, AreNotHandedDownByGettersSettersAndAnElementWithoutChildren)
{
    Message m;
    m.SetValidate(true);
    m.AppendFragment(withPort(1));
    m.SetType(Message::Event);
    m.SetMessageID(2);
    m.GetFragment();
    m.HasData();
    m.AnyData();
    m.AppendFragment(withPort(2));
    readXml(m, "<PelLu300RouterMessage/>");
    EXPECT_FALSE(itemsOf(m).at(0).GetValidate());
    EXPECT_FALSE(itemsOf(m).at(1).GetValidate());
}

TEST(MessageSettings, DoNotCreateTheDataBlock)
{
    const Message m;
    m.SetValidate(true);
    m.SetLogger(std::make_shared<Logger>());
    EXPECT_FALSE(m.IsInitialized());
}

TEST(MessageSettings, DoNotSetTheList)
{
    Message m;
    m.GetType();
    m.SetValidate(true);
    m.SetLogger(std::make_shared<Logger>());
    EXPECT_FALSE(m.IsFragmentSet());
}

} // namespace
