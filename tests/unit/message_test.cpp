// SPDX-License-Identifier: MIT
// The router message: its type, its number and its list of fragments.

#include "TestSupport.h"

#include <QtCore/QVector>

#include <algorithm>
#include <memory>
#include <utility>

namespace {

using namespace testing_support;
using Message = PelLu300RouterMessage;
using Logger = MODELKIT::Logger;
using Items = QVector<Fragment>;

const char* const typeMissing = "PelLu300RouterMessage: Please set Type properly.";
const char* const typeInvalid = "enum is not valid (classname=PelLu300RouterMessage,membername=m_type)";
const char* const itemIncomplete =
    "PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment.";
const char* const lengthError =
    "PelLu300RouterMessage::SetBinary(...): Length error occurred during processing of binary representation";

// An item that has a payload, and a payload that does not pass its check.
Fragment withBadState()
{
    Fragment item;
    item.GetMastershipState().SetState(static_cast<MastershipState::State>(3));
    return item;
}

// The port of an item made by withPort.
unsigned int portOf(const Fragment& item) { return item.GetOstraInterfacePort().GetPort(); }

const Items& itemsOf(const Message& message) { return message.GetFragment(); }

using Ports = QVector<unsigned int>;

// A reply with number 7 and two items, as XML and as a frame.
Message sample()
{
    Message message;
    message.SetType(Message::Reply);
    message.SetMessageID(7);
    message.AppendFragment(withPort(5000));
    Fragment second;
    second.GetAcquireMastership().SetSuccess(true);
    message.AppendFragment(second);
    return message;
}

const char* const sampleXml =
    "<PelLu300RouterMessage><Type>Reply</Type><MessageID>7</MessageID>"
    "<Fragment><OstraInterfacePort><Port>5000</Port></OstraInterfacePort></Fragment>"
    "<Fragment><AcquireMastership><Success>true</Success></AcquireMastership></Fragment>"
    "</PelLu300RouterMessage>";

QByteArray sampleFrame()
{
    return bytes("0000005E"
                 " E1D9E008 00000009 00000005 5265706C79"
                 " EF193DE9 00000008 0000000000000007"
                 " 61023A90 00000035 00000002"
                 " 00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388"
                 " 00000011 21BDA6E2 00000009 BF8A59C6 00000001 01");
}

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

// --- setting the list -----------------------------------------------------------------------

TEST(MessageList, SetterReplacesTheWholeListAndMarksIt)
{
    Message m;
    m.AppendFragment(withPort(9));
    m.SetFragment({withPort(1), withPort(2)});
    EXPECT_EQ(portsOf(m), (Ports{1, 2}));
    EXPECT_TRUE(m.IsFragmentSet());
    m.SetFragment(Items());
    EXPECT_TRUE(itemsOf(m).isEmpty());
    EXPECT_TRUE(m.IsFragmentSet());
    EXPECT_FALSE(m.AnyData());
}

TEST(MessageList, SetterSharesTheListsData)
{
    const Items items{withPort(1), withPort(2)};
    Message m;
    m.SetFragment(items);
    EXPECT_EQ(itemsOf(m).constData(), items.constData());
}

TEST(MessageList, SetterDoesNotCheckTheItems)
{
    Message m;
    m.SetValidate(true);
    EXPECT_NO_THROW(m.SetFragment({Fragment(), withBadState()}));
    EXPECT_EQ(itemsOf(m).size(), 2);
    EXPECT_TRUE(m.IsFragmentSet());
}

TEST(MessageList, SetterTakesTheMessagesOwnList)
{
    Message m = sample();
    m.SetFragment(m.GetFragment());
    EXPECT_TRUE(m == sample());
    m.SetFragment(itemsOf(m));
    EXPECT_TRUE(m == sample());
}

TEST(MessageList, SetterTakesTheOwnListOfASharedMessage)
{
    Message m = sample();
    const Items& items = itemsOf(m);
    Message sharing;
    sharing = m;
    m.SetFragment(items);
    EXPECT_TRUE(m == sample());
    EXPECT_TRUE(sharing == sample());
}

TEST(MessageList, EveryListIsValid)
{
    Message m;
    m.SetValidate(true);
    EXPECT_TRUE(m.IsValidFragment(Items()));
    EXPECT_TRUE(m.IsValidFragment({Fragment(), withBadState()}));
}

TEST(MessageList, TheModifiableListChangesTheMessage)
{
    Message m;
    m.GetFragment().append(withPort(1));
    m.GetFragment()[0].GetOstraInterfacePort().SetPort(4);
    m.GetFragment().append(withPort(2));
    std::swap(m.GetFragment()[0], m.GetFragment()[1]);
    EXPECT_EQ(portsOf(m), (Ports{2, 4}));
    m.GetFragment().removeFirst();
    EXPECT_EQ(portsOf(m), Ports{4});
}

TEST(MessageList, ResetEmptiesItAndClearsItsFlag)
{
    Message m = sample();
    m.SetDefaultFragment(withPort(1));
    m.ResetFragment();
    EXPECT_FALSE(m.IsFragmentSet());
    EXPECT_TRUE(itemsOf(m).isEmpty());
    EXPECT_TRUE(m.IsTypeSet());
    EXPECT_TRUE(m.IsMessageIDSet());
}

TEST(MessageList, TheReferenceStaysValidAcrossResetsSettersAndReading)
{
    Message m;
    Items& items = m.GetFragment();
    m.ResetFragment();
    items.append(withPort(1));
    EXPECT_EQ(portsOf(m), Ports{1});
    m.SetFragment({withPort(2)});
    EXPECT_EQ(items.size(), 1);
    m.AppendFragment(withPort(3));
    EXPECT_EQ(items.size(), 2);
    readXml(m, sampleXml);
    EXPECT_EQ(items.size(), 4);
    readFrame(m, sampleFrame());
    EXPECT_EQ(items.size(), 6);
    m.SetValidate(true);
    m.SetLogger(std::make_shared<Logger>());
    m.Check();
    m.Reset();
    EXPECT_TRUE(items.isEmpty());
    items.append(withPort(4));
    EXPECT_EQ(portsOf(m), Ports{4});
    EXPECT_EQ(&items, &m.GetFragment());
}

// --- appending ------------------------------------------------------------------------------

TEST(MessageAppend, AddsACopyAtTheEndAndMarksTheList)
{
    Message m;
    m.AppendFragment(withPort(1));
    EXPECT_TRUE(m.IsFragmentSet());
    m.AppendFragment(withPort(2));
    m.AppendFragment(withPort(3));
    EXPECT_EQ(portsOf(m), (Ports{1, 2, 3}));
}

TEST(MessageAppend, TheCopyIsIndependentOfItsSource)
{
    Message m;
    Fragment source = withPort(1);
    m.AppendFragment(source);
    source.GetOstraInterfacePort().SetPort(2);
    EXPECT_EQ(portsOf(m), Ports{1});
    m.GetFragment()[0].GetOstraInterfacePort().SetPort(3);
    EXPECT_EQ(portOf(source), 2U);
}

TEST(MessageAppend, AnItemWithoutDataIsAppendedWithoutValidation)
{
    Message m;
    m.AppendFragment(Fragment());
    EXPECT_EQ(itemsOf(m).size(), 1);
    EXPECT_TRUE(m.IsFragmentSet());
    Fragment validating;
    validating.SetValidate(true);
    m.AppendFragment(validating);
    EXPECT_EQ(itemsOf(m).size(), 2);
}

TEST(MessageAppend, AnItemWithoutDataIsRefusedUnderValidation)
{
    Message m;
    m.SetValidate(true);
    expectThrow<IncompleteDefinitionException>([&] { m.AppendFragment(Fragment()); }, itemIncomplete);
    EXPECT_TRUE(itemsOf(m).isEmpty());
    EXPECT_FALSE(m.IsFragmentSet());
    m.AppendFragment(withPort(1));
    Fragment withoutChoice = withPort(2);
    withoutChoice.ResetChoiceFragment();
    expectThrow<IncompleteDefinitionException>([&] { m.AppendFragment(withoutChoice); }, itemIncomplete);
    EXPECT_EQ(portsOf(m), Ports{1});
    EXPECT_TRUE(m.IsFragmentSet());
}

TEST(MessageAppend, AnItemWithDataIsAppendedUnderValidationWhateverItsFlagsAndValues)
{
    Message m;
    m.SetValidate(true);
    m.AppendFragment(withBadState());
    Fragment payloadNotSet;
    payloadNotSet.GetDF_Params();
    payloadNotSet.ResetDF_Params();
    m.AppendFragment(payloadNotSet);
    EXPECT_EQ(itemsOf(m).size(), 2);
}

TEST(MessageAppend, TheMessagesOwnValidationDecides)
{
    Message m;
    m.SetValidate(true);
    Fragment item;
    item.SetValidate(false);
    EXPECT_THROW(m.AppendFragment(item), IncompleteDefinitionException);
    m.SetValidate(false);
    item.SetValidate(true);
    EXPECT_NO_THROW(m.AppendFragment(item));
}

TEST(MessageAppend, TakesAnItemOfTheMessageItself)
{
    Message m;
    m.AppendFragment(withPort(1));
    m.AppendFragment(withPort(2));
    for (int i = 0; i < 40; ++i)
        m.AppendFragment(m.GetFragment()[i]);
    ASSERT_EQ(itemsOf(m).size(), 42);
    for (int i = 0; i < 42; ++i)
        EXPECT_EQ(portOf(itemsOf(m).at(i)), i % 2 == 0 ? 1U : 2U) << i;
    m.AppendFragment(itemsOf(m).last());
    EXPECT_EQ(itemsOf(m).size(), 43);
    m.GetFragment().last().GetOstraInterfacePort().SetPort(3);
    EXPECT_EQ(portOf(itemsOf(m).at(41)), 2U);
}

TEST(MessageAppend, TakesAnItemOfTheMessageItselfWhileTheMessageIsShared)
{
    Message m;
    m.AppendFragment(withPort(1));
    const Fragment& item = itemsOf(m).at(0);
    Message sharing;
    sharing = m;
    m.AppendFragment(item);
    EXPECT_EQ(portsOf(m), (Ports{1, 1}));
    EXPECT_EQ(portsOf(sharing), Ports{1});
}

TEST(MessageAppend, TakesTheDefaultItem)
{
    Message m;
    m.SetDefaultFragment(withPort(8));
    m.AppendFragment(m.GetDefaultFragment());
    m.AppendFragment(m.GetDefaultFragment());
    m.GetFragment()[0].GetOstraInterfacePort().SetPort(1);
    EXPECT_EQ(portsOf(m), (Ports{1, 8}));
    EXPECT_EQ(portOf(m.GetDefaultFragment()), 8U);
}

TEST(MessageAppend, TheCopyHasTheSourcesValidationFlagAndNoLogger)
{
    Message m;
    m.SetLogger(std::make_shared<Logger>());
    Fragment item = withPort(1);
    item.SetLogger(std::make_shared<Logger>());
    m.AppendFragment(item);
    item.SetValidate(true);
    m.AppendFragment(item);
    EXPECT_FALSE(itemsOf(m).at(0).GetValidate());
    EXPECT_EQ(itemsOf(m).at(0).GetLogger(), nullptr);
    EXPECT_TRUE(itemsOf(m).at(1).GetValidate());
    EXPECT_TRUE(itemsOf(m).at(1).GetOstraInterfacePort().GetValidate());
    EXPECT_EQ(itemsOf(m).at(1).GetLogger(), nullptr);
    EXPECT_NE(item.GetLogger(), nullptr);
}

TEST(MessageAppend, TheCopyGetsTheMessagesSettingsWithItsNextOperation)
{
    const auto logger = std::make_shared<Logger>();
    const auto afterwards = [&](const auto& operation) {
        Message m;
        m.SetType(Message::Request);
        m.SetValidate(true);
        m.SetLogger(logger);
        m.AppendFragment(withPort(1));
        EXPECT_FALSE(itemsOf(m).at(0).GetValidate());
        operation(m);
        const Fragment& item = itemsOf(m).at(0);
        EXPECT_TRUE(item.GetValidate());
        EXPECT_EQ(item.GetLogger(), logger);
        EXPECT_TRUE(item.GetOstraInterfacePort().GetValidate());
        EXPECT_EQ(item.GetOstraInterfacePort().GetLogger(), logger);
        EXPECT_EQ(item.GetDF_Params().GetLogger(), logger);
    };
    afterwards([](Message& m) { m.Check(); });
    afterwards([](Message& m) { xmlOf(m); });
    afterwards([](Message& m) { frameOf(m); });
    afterwards([](Message& m) { readFrame(m, bytes("00000000")); });
    afterwards([](Message& m) { readXml(m, "<PelLu300RouterMessage><Unknown/></PelLu300RouterMessage>"); });
}

TEST(MessageAppend, LeavesTheDataOfTheItemsInTheListWhereItIs)
{
    Message m;
    m.AppendFragment(withPort(1));
    const OstraInterfacePort* const payload = &itemsOf(m).at(0).GetOstraInterfacePort();
    for (unsigned int i = 0; i < 1000; ++i)
        m.AppendFragment(withPort(i));
    EXPECT_EQ(&itemsOf(m).at(0).GetOstraInterfacePort(), payload);
}

// An item that answers for itself whether it is complete.
class OpinionatedItem : public Fragment
{
public:
    explicit OpinionatedItem(bool hasData) : m_hasData(hasData) {}
    bool HasData() const override { return m_hasData; }

private:
    bool m_hasData;
};

TEST(MessageAppend, AsksTheItemItselfWhetherItHasData)
{
    Message m;
    m.SetValidate(true);
    OpinionatedItem incomplete(false);
    incomplete.GetOstraInterfacePort().SetPort(1);
    expectThrow<IncompleteDefinitionException>([&] { m.AppendFragment(incomplete); }, itemIncomplete);
    EXPECT_TRUE(itemsOf(m).isEmpty());
    EXPECT_NO_THROW(m.AppendFragment(OpinionatedItem(true)));
    EXPECT_EQ(itemsOf(m).size(), 1);
    m.SetValidate(false);
    EXPECT_NO_THROW(m.AppendFragment(incomplete));
    EXPECT_EQ(itemsOf(m).size(), 2);
}

struct RenamedMessage : Message
{
    RenamedMessage() { SetObjectName("Renamed"); }
};

TEST(MessageAppend, TheObjectNameStandsInTheText)
{
    RenamedMessage m;
    m.SetValidate(true);
    expectThrow<IncompleteDefinitionException>(
        [&] { m.AppendFragment(Fragment()); },
        "Renamed: Tried to append not completely defined or invalid item Fragment.");
    expectThrow<OutOfRangeException>([&] { m.Check(); }, "Renamed: Please set Type properly.");
}

// --- a list that the caller holds too -------------------------------------------------------

TEST(MessageSharedList, SettingsOfTheMessageDoNotReachTheCallersItems)
{
    const Items items{withPort(1), withPort(2)};
    Message m;
    m.SetFragment(items);
    m.SetValidate(true);
    m.SetLogger(std::make_shared<Logger>());
    m.SetType(Message::Event);
    m.Check();
    xmlOf(m);
    frameOf(m);
    readXml(m, "<PelLu300RouterMessage><Unknown/></PelLu300RouterMessage>");
    for (const Fragment& item : items) {
        EXPECT_FALSE(item.GetValidate());
        EXPECT_EQ(item.GetLogger(), nullptr);
        EXPECT_FALSE(item.GetOstraInterfacePort().GetValidate());
        EXPECT_EQ(item.GetOstraInterfacePort().GetLogger(), nullptr);
    }
    for (const Fragment& item : itemsOf(m)) {
        EXPECT_TRUE(item.GetValidate());
        EXPECT_EQ(item.GetLogger(), m.GetLogger());
    }
    EXPECT_EQ(portsOf(m), (Ports{1, 2}));
}

TEST(MessageSharedList, ACopyOfTheListTakenOutKeepsItsItems)
{
    Message m = sample();
    const Items taken = itemsOf(m);
    m.SetValidate(true);
    m.SetLogger(std::make_shared<Logger>());
    m.AppendFragment(withPort(3));
    m.GetFragment()[0].GetOstraInterfacePort().SetPort(1);
    ASSERT_EQ(taken.size(), 2);
    EXPECT_EQ(portOf(taken.at(0)), 5000U);
    EXPECT_FALSE(taken.at(0).GetValidate());
    EXPECT_EQ(taken.at(0).GetLogger(), nullptr);
}

TEST(MessageSharedList, TheMessagesItemsKeepTheirLoggersWhenTheyPartFromTheCallersCopy)
{
    const auto logger = std::make_shared<Logger>();
    Message m = sample();
    m.SetLogger(logger);
    Items taken = itemsOf(m);
    m.SetValidate(true);
    EXPECT_EQ(itemsOf(m).at(0).GetLogger(), logger);
    EXPECT_EQ(itemsOf(m).at(1).GetLogger(), logger);
    taken = itemsOf(m);
    m.AppendFragment(withPort(1));
    EXPECT_EQ(itemsOf(m).at(0).GetLogger(), logger);
    EXPECT_EQ(itemsOf(m).at(1).GetLogger(), logger);
    EXPECT_EQ(itemsOf(m).at(2).GetLogger(), nullptr);
}

TEST(MessageSharedList, ReadingDoesNotChangeTheCallersList)
{
    const Items items{withPort(1)};
    Message m;
    m.SetFragment(items);
    readXml(m, sampleXml);
    m.SetFragment(items);
    readFrame(m, sampleFrame());
    EXPECT_EQ(items.size(), 1);
    EXPECT_EQ(portOf(items.at(0)), 1U);
    EXPECT_EQ(itemsOf(m).size(), 3);
}

TEST(MessageSharedList, TheCallersChangesDoNotReachTheMessage)
{
    Items items{withPort(1)};
    Message m;
    m.SetFragment(items);
    items[0].GetOstraInterfacePort().SetPort(2);
    items.append(withPort(3));
    EXPECT_EQ(portsOf(m), Ports{1});
}

// --- items while the list's flag is off -----------------------------------------------------

// A message with a type and with items behind a list flag that is off.
void fillBehindFlag(Message& m, const Items& added)
{
    m.SetType(Message::Event);
    Items& items = m.GetFragment();
    m.ResetFragment();
    for (const Fragment& item : added)
        items.append(item);
}

TEST(MessageUnsetList, ItsItemsAreWritten)
{
    Message m;
    fillBehindFlag(m, {withPort(5000)});
    ASSERT_FALSE(m.IsFragmentSet());
    const QString xml = "<PelLu300RouterMessage><Type>Event</Type>"
                        "<Fragment><OstraInterfacePort><Port>5000</Port></OstraInterfacePort></Fragment>"
                        "</PelLu300RouterMessage>";
    const QByteArray frame = bytes("00000039 E1D9E008 00000009 00000005 4576656E74"
                                   " 61023A90 00000020 00000001"
                                   " 00000018 F9E464D0 00000010 1F980517 00000008 0000000000001388");
    for (const bool validate : {false, true}) {
        m.SetValidate(validate);
        EXPECT_EQ(xmlOf(m), xml);
        EXPECT_EQ(frameOf(m), frame);
        EXPECT_FALSE(m.IsFragmentSet());
    }
}

TEST(MessageUnsetList, ItsItemsAreNotChecked)
{
    Message m;
    fillBehindFlag(m, {Fragment()});
    m.Check();
    // A check would have given the item its data block.
    EXPECT_FALSE(itemsOf(m).at(0).IsInitialized());
    m.GetFragment();
    m.Check();
    EXPECT_TRUE(itemsOf(m).at(0).IsInitialized());
}

TEST(MessageUnsetList, ItsPayloadsAreCheckedWhenTheyAreWrittenUnderValidation)
{
    Message m;
    fillBehindFlag(m, {withBadState()});
    m.SetValidate(true);
    EXPECT_NO_THROW(m.Check());
    expectThrow<OutOfRangeException>([&] { xmlOf(m); }, "MastershipState: Please set State properly.");
    expectThrow<OutOfRangeException>([&] { frameOf(m); }, "MastershipState: Please set State properly.");
}

TEST(MessageUnsetList, SettingsReachItsItems)
{
    Message m;
    fillBehindFlag(m, {withPort(1)});
    m.SetValidate(true);
    EXPECT_TRUE(itemsOf(m).at(0).GetValidate());
}

TEST(MessageUnsetList, ItDoesNotTakePartInComparing)
{
    Message a;
    Message b;
    fillBehindFlag(a, {withPort(1)});
    fillBehindFlag(b, {withPort(2), withPort(3)});
    EXPECT_TRUE(a == b);
    b.GetFragment();
    EXPECT_FALSE(a == b);
}

TEST(MessageUnsetList, AppendingSetsItsFlag)
{
    Message m;
    fillBehindFlag(m, {withPort(1)});
    m.AppendFragment(withPort(2));
    EXPECT_TRUE(m.IsFragmentSet());
    EXPECT_EQ(portsOf(m), (Ports{1, 2}));
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
    // Asking for the defaults does not count as setting them.
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

// --- XML ------------------------------------------------------------------------------------

TEST(MessageXml, WritesTypeNumberAndItemsInOrder)
{
    const Message m = sample();
    EXPECT_EQ(xmlOf(m), sampleXml);
    m.SetValidate(true);
    EXPECT_EQ(xmlOf(m), sampleXml);
}

TEST(MessageXml, ReadsWhatItWrites)
{
    for (const bool validate : {false, true}) {
        Message m;
        m.SetValidate(validate);
        readXml(m, sampleXml);
        EXPECT_TRUE(m == sample());
        EXPECT_TRUE(m.IsFragmentSet());
    }
}

TEST(MessageXml, AnUnsetTypeIsWrittenAsTheNameOfItsValueWithoutValidation)
{
    Message m;
    EXPECT_EQ(xmlOf(m), "<PelLu300RouterMessage><Type></Type></PelLu300RouterMessage>");
    m.SetMessageID(4294967295U);
    EXPECT_EQ(xmlOf(m), "<PelLu300RouterMessage><Type></Type><MessageID>4294967295</MessageID>"
                        "</PelLu300RouterMessage>");
    m.SetDefaultType(Message::Event);
    m.Reset();
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_EQ(xmlOf(m), "<PelLu300RouterMessage><Type>Event</Type></PelLu300RouterMessage>");
}

TEST(MessageXml, AMissingTypeFailsBeforeAnythingIsWrittenUnderValidation)
{
    Message m;
    m.SetMessageID(1);
    m.SetValidate(true);
    QString written;
    QXmlStreamWriter writer(&written);
    expectThrow<OutOfRangeException>([&] { m.GetXml(writer); }, typeMissing);
    EXPECT_EQ(written, "");
}

TEST(MessageXml, ItemsWithoutDataVanishUnderValidation)
{
    Message m;
    m.SetType(Message::Reply);
    m.SetFragment({Fragment(), withPort(1), Fragment()});
    EXPECT_EQ(xmlOf(m), "<PelLu300RouterMessage><Type>Reply</Type><Fragment/>"
                        "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
                        "<Fragment/></PelLu300RouterMessage>");
    m.SetValidate(true);
    EXPECT_EQ(xmlOf(m), "<PelLu300RouterMessage><Type>Reply</Type>"
                        "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
                        "</PelLu300RouterMessage>");
}

TEST(MessageXml, ReadingAppendsToTheList)
{
    Message m;
    m.AppendFragment(withPort(1));
    readXml(m, "<PelLu300RouterMessage>"
               "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
               "<Fragment><OstraInterfacePort><Port>3</Port></OstraInterfacePort></Fragment>"
               "</PelLu300RouterMessage>");
    EXPECT_EQ(portsOf(m), (Ports{1, 2, 3}));
    EXPECT_FALSE(m.IsTypeSet());
}

TEST(MessageXml, EveryItemStartsFromAnEmptyOne)
{
    Message m;
    readXml(m, "<PelLu300RouterMessage>"
               "<Fragment><MastershipState><State>MasterPresent</State>"
               "<MasterClientID>c1</MasterClientID></MastershipState></Fragment>"
               "<Fragment><MastershipState/></Fragment><Fragment/></PelLu300RouterMessage>");
    ASSERT_EQ(itemsOf(m).size(), 3);
    EXPECT_FALSE(itemsOf(m).at(1).GetMastershipState().AnyData());
    EXPECT_EQ(itemsOf(m).at(1).GetChoiceFragment(), Fragment::MastershipState);
    EXPECT_FALSE(itemsOf(m).at(2).AnyData());
    EXPECT_FALSE(itemsOf(m).at(2).IsMastershipStateSet());
}

TEST(MessageXml, ChildrenMayComeInAnyOrder)
{
    Message m;
    readXml(m, "<PelLu300RouterMessage>"
               "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment>"
               "<MessageID>9</MessageID>"
               "<Fragment><OstraInterfacePort><Port>2</Port></OstraInterfacePort></Fragment>"
               "<Type>Event</Type></PelLu300RouterMessage>");
    EXPECT_EQ(portsOf(m), (Ports{1, 2}));
    EXPECT_EQ(m.GetMessageID(), 9U);
    EXPECT_EQ(m.GetType(), Message::Event);
}

TEST(MessageXml, ANumberThatIsNoneIsStoredAsZero)
{
    Message m;
    m.SetValidate(true);
    readXml(m, "<PelLu300RouterMessage><MessageID>abc</MessageID></PelLu300RouterMessage>");
    EXPECT_EQ(m.GetMessageID(), 0U);
    EXPECT_TRUE(m.IsMessageIDSet());
}

TEST(MessageXml, NumbersAreReadAsSignedOnes)
{
    const auto read = [](const QString& text) {
        Message m;
        readXml(m, "<PelLu300RouterMessage><MessageID>" + text + "</MessageID></PelLu300RouterMessage>");
        return m.GetMessageID();
    };
    EXPECT_EQ(read("2147483647"), 2147483647U);
    EXPECT_EQ(read("2147483648"), 0U);
    EXPECT_EQ(read("4294967295"), 0U);
    EXPECT_EQ(read("-1"), 4294967295U);
    EXPECT_EQ(read("1.5"), 0U);
    EXPECT_EQ(read(QString()), 0U);
}

TEST(MessageXml, UnknownElementsAreSkipped)
{
    Message m;
    m.SetValidate(true);
    readXml(m, "<PelLu300RouterMessage><type>Event</type><fragment/><Fragments><Fragment/></Fragments>"
               "<MessageId>1</MessageId><Type>Request</Type></PelLu300RouterMessage>");
    EXPECT_EQ(m.GetType(), Message::Request);
    EXPECT_FALSE(m.IsMessageIDSet());
    EXPECT_FALSE(m.IsFragmentSet());
}

TEST(MessageXml, AnUnknownTypeFailsUnderValidationAndKeepsWhatWasRead)
{
    Message m;
    m.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readXml(m, "<PelLu300RouterMessage><MessageID>3</MessageID><Type>Question</Type>"
                       "<Fragment><DF_Params/></Fragment></PelLu300RouterMessage>");
        },
        typeInvalid);
    EXPECT_EQ(m.GetMessageID(), 3U);
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_TRUE(itemsOf(m).isEmpty());
}

TEST(MessageXml, AnUnknownTypeIsStoredAsTheInvalidValueWithoutValidation)
{
    Message m;
    readXml(m, "<PelLu300RouterMessage><Type>Question</Type></PelLu300RouterMessage>");
    EXPECT_EQ(m.GetType(), -1);
    EXPECT_TRUE(m.IsTypeSet());
}

TEST(MessageXml, AnItemWithoutPayloadIsRefusedUnderValidation)
{
    for (const char* const item : {"<Fragment/>", "<Fragment></Fragment>", "<Fragment><Unknown/></Fragment>",
                                   "<Fragment>text</Fragment>"}) {
        Message m;
        m.SetValidate(true);
        expectThrow<IncompleteDefinitionException>(
            [&] {
                readXml(m, QString("<PelLu300RouterMessage><Type>Event</Type>"
                                   "<Fragment><DF_Params/></Fragment>%1<MessageID>1</MessageID>"
                                   "</PelLu300RouterMessage>")
                               .arg(item));
            },
            itemIncomplete);
        EXPECT_EQ(itemsOf(m).size(), 1);
        EXPECT_EQ(m.GetType(), Message::Event);
        EXPECT_FALSE(m.IsMessageIDSet());
    }
}

TEST(MessageXml, AnItemWhoseReadingFailsIsNotAppended)
{
    Message m;
    m.SetValidate(true);
    expectThrow<InvalidXmlException>(
        [&] {
            readXml(m, "<PelLu300RouterMessage><Fragment><ReleaseMastership><Success/></ReleaseMastership>"
                       "</Fragment></PelLu300RouterMessage>");
        },
        "Please set a value or a default for the boolean 'Success' in 'ReleaseMastership'.");
    EXPECT_TRUE(itemsOf(m).isEmpty());
    EXPECT_FALSE(m.IsFragmentSet());
    // The next item does not begin with what the failed one had read.
    readXml(m, "<PelLu300RouterMessage><Fragment><DF_Params/></Fragment></PelLu300RouterMessage>");
    ASSERT_EQ(itemsOf(m).size(), 1);
    EXPECT_EQ(itemsOf(m).at(0).GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_FALSE(itemsOf(m).at(0).IsReleaseMastershipSet());
}

TEST(MessageXml, ItemsAreReadWithTheMessagesSettings)
{
    const auto logger = std::make_shared<Logger>();
    Message m;
    m.SetValidate(true);
    m.SetLogger(logger);
    readXml(m, sampleXml);
    ASSERT_EQ(itemsOf(m).size(), 2);
    EXPECT_TRUE(itemsOf(m).at(0).GetValidate());
    EXPECT_TRUE(itemsOf(m).at(1).GetValidate());
    // Every child element hands the settings down again; behind the last item there is none.
    EXPECT_EQ(itemsOf(m).at(0).GetLogger(), logger);
    EXPECT_EQ(itemsOf(m).at(1).GetLogger(), nullptr);
}

TEST(MessageXml, AFailingPayloadLeavesTheOuterElementsOpen)
{
    Message m;
    m.SetType(Message::Request);
    m.AppendFragment(withPort(1));
    m.AppendFragment(withBadState());
    m.SetValidate(true);
    QString written;
    QXmlStreamWriter writer(&written);
    expectThrow<OutOfRangeException>([&] { m.GetXml(writer); },
                                     "MastershipState: Please set State properly.");
    EXPECT_TRUE(written.startsWith(
        "<PelLu300RouterMessage><Type>Request</Type>"
        "<Fragment><OstraInterfacePort><Port>1</Port></OstraInterfacePort></Fragment><Fragment"))
        << written.toStdString();
    EXPECT_FALSE(written.contains("</PelLu300RouterMessage>"));
    EXPECT_FALSE(written.contains("MastershipState"));
}

// --- binary ---------------------------------------------------------------------------------

TEST(MessageBinary, WritesTypeNumberAndItemsInOrder)
{
    const Message m = sample();
    EXPECT_EQ(frameOf(m), sampleFrame());
    m.SetValidate(true);
    EXPECT_EQ(frameOf(m), sampleFrame());
}

TEST(MessageBinary, ReadsWhatItWrites)
{
    for (const bool validate : {false, true}) {
        Message m;
        m.SetValidate(validate);
        readFrame(m, sampleFrame());
        EXPECT_TRUE(m == sample());
    }
}

TEST(MessageBinary, AnUnsetTypeIsWrittenAsANullName)
{
    const Message m;
    EXPECT_EQ(frameOf(m), bytes("0000000C E1D9E008 00000004 FFFFFFFF"));
}

TEST(MessageBinary, AMissingTypeFailsBeforeAnythingIsWrittenUnderValidation)
{
    Message m;
    m.SetMessageID(1);
    m.SetValidate(true);
    QByteArray written;
    QDataStream stream(&written, QIODevice::WriteOnly);
    expectThrow<OutOfRangeException>([&] { m.GetBinary(stream, 5, true); }, typeMissing);
    EXPECT_TRUE(written.isEmpty());
}

TEST(MessageBinary, AnEmptyListIsNotWritten)
{
    Message m;
    m.SetType(Message::Reply);
    m.GetFragment();
    EXPECT_EQ(frameOf(m), bytes("00000011 E1D9E008 00000009 00000005 5265706C79"));
}

TEST(MessageBinary, ItemsWithoutPayloadAreEmptyRecords)
{
    Message m;
    m.SetType(Message::Reply);
    m.SetFragment({Fragment(), Fragment()});
    EXPECT_EQ(frameOf(m), bytes("00000025 E1D9E008 00000009 00000005 5265706C79"
                                " 61023A90 0000000C 00000002 00000000 00000000"));
}

TEST(MessageBinary, ItemsThatValidationKeepsBackAreCountedAllTheSame)
{
    Message m;
    m.SetType(Message::Reply);
    m.SetFragment({Fragment(), Fragment()});
    m.SetValidate(true);
    EXPECT_EQ(frameOf(m), bytes("0000001D E1D9E008 00000009 00000005 5265706C79 61023A90 00000004 00000002"));
}

TEST(MessageBinary, ReadingAppendsToTheList)
{
    Message m;
    m.AppendFragment(withPort(1));
    readFrame(m, bytes("0000002C 61023A90 00000024 00000002"
                       " 00000018 F9E464D0 00000010 1F980517 00000008 0000000000000002 00000000"));
    ASSERT_EQ(itemsOf(m).size(), 3);
    EXPECT_EQ(portOf(itemsOf(m).at(1)), 2U);
    EXPECT_FALSE(itemsOf(m).at(2).AnyData());
    EXPECT_FALSE(m.IsTypeSet());
    EXPECT_FALSE(m.IsMessageIDSet());
}

TEST(MessageBinary, AListWithoutElementsAppendsNothing)
{
    Message m;
    readFrame(m, bytes("0000000C 61023A90 00000004 00000000"));
    EXPECT_TRUE(itemsOf(m).isEmpty());
    EXPECT_FALSE(m.IsFragmentSet());
}

TEST(MessageBinary, ANegativeCountIsALengthError)
{
    Message m;
    m.AppendFragment(withPort(1));
    expectThrow<BinaryParsingException>([&] { readFrame(m, bytes("0000000C 61023A90 00000004 FFFFFFFF")); },
                                        lengthError);
    EXPECT_EQ(portsOf(m), Ports{1});
}

TEST(MessageBinary, ACountLargerThanTheInputIsALengthErrorThatKeepsTheElementsRead)
{
    for (const char* const count : {"00000002", "7FFFFFFF"}) {
        Message m;
        expectThrow<BinaryParsingException>(
            [&] {
                readFrame(m, bytes("00000028 61023A90 00000020") + bytes(count)
                                 + bytes("00000018 F9E464D0 00000010 1F980517 00000008 0000000000000002"));
            },
            lengthError);
        EXPECT_EQ(portsOf(m), Ports{2});
    }
}

TEST(MessageBinary, AnElementWithoutDataIsRefusedUnderValidation)
{
    Message m;
    m.SetValidate(true);
    expectThrow<IncompleteDefinitionException>(
        [&] {
            readFrame(m, bytes("0000002C 61023A90 00000024 00000002"
                               " 00000018 F9E464D0 00000010 1F980517 00000008 0000000000000002 00000000"));
        },
        itemIncomplete);
    EXPECT_EQ(portsOf(m), Ports{2});
}

TEST(MessageBinary, AnElementWhoseReadingFailsIsNotAppended)
{
    Message m;
    m.SetValidate(true);
    expectThrow<OutOfRangeException>(
        [&] {
            readFrame(m, bytes("00000026 61023A90 0000001E 00000001"
                               " 00000016 111939B4 0000000E 4264F498 00000006 00000002 4E6F"));
        },
        "enum is not valid (classname=MastershipState,membername=m_state)");
    EXPECT_TRUE(itemsOf(m).isEmpty());
    expectThrow<BinaryParsingException>(
        [&] { readFrame(m, bytes("00000014 61023A90 0000000C 00000001 00000004 F9E464D0")); },
        "Fragment::SetBinary(...): Length error occurred during processing of binary representation");
    EXPECT_TRUE(itemsOf(m).isEmpty());
}

TEST(MessageBinary, ElementsAreReadWithTheMessagesValidationAndHaveNoLogger)
{
    Message m;
    m.SetValidate(true);
    m.SetLogger(std::make_shared<Logger>());
    readFrame(m, sampleFrame());
    for (const Fragment& item : itemsOf(m)) {
        EXPECT_TRUE(item.GetValidate());
        EXPECT_EQ(item.GetLogger(), nullptr);
    }
    m.Check();
    for (const Fragment& item : itemsOf(m))
        EXPECT_EQ(item.GetLogger(), m.GetLogger());
}

TEST(MessageBinary, AnUnknownTypeNameFailsUnderValidationAndIsStoredAsInvalidWithout)
{
    const QByteArray frame = bytes("0000000E E1D9E008 00000006 00000002 4E6F");
    Message m;
    m.SetValidate(true);
    expectThrow<OutOfRangeException>([&] { readFrame(m, frame); }, typeInvalid);
    EXPECT_FALSE(m.IsTypeSet());
    m.SetValidate(false);
    readFrame(m, frame);
    EXPECT_EQ(m.GetType(), -1);
    EXPECT_TRUE(m.IsTypeSet());
}

TEST(MessageBinary, LargeNumbersSurvive)
{
    Message m;
    m.SetType(Message::Event);
    m.SetMessageID(4294967295U);
    const QByteArray frame =
        bytes("00000021 E1D9E008 00000009 00000005 4576656E74 EF193DE9 00000008 00000000FFFFFFFF");
    EXPECT_EQ(frameOf(m), frame);
    Message read;
    readFrame(read, frame);
    EXPECT_EQ(read.GetMessageID(), 4294967295U);
}

TEST(MessageBinary, AWrongLengthIsTheMessagesError)
{
    const QByteArray entries = sampleFrame().mid(4);
    for (const int length : {0x5D, 0x5F, -1}) {
        Message m;
        QDataStream stream(entries);
        expectThrow<BinaryParsingException>([&] { m.SetBinary(stream, length); }, lengthError);
        EXPECT_EQ(m.IsTypeSet(), length > 0);
        EXPECT_EQ(itemsOf(m).size(), length > 0 ? 2 : 0);
    }
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

// --- many items -----------------------------------------------------------------------------

TEST(MessageManyItems, AreAppendedCopiedComparedWrittenAndRead)
{
    constexpr int count = 10000;
    Message m;
    m.SetType(Message::Event);
    for (int i = 0; i < count; ++i)
        m.AppendFragment(withPort(static_cast<unsigned int>(i)));
    ASSERT_EQ(itemsOf(m).size(), count);
    EXPECT_EQ(portOf(itemsOf(m).at(0)), 0U);
    EXPECT_EQ(portOf(itemsOf(m).at(count - 1)), 9999U);

    Message copy(m);
    EXPECT_TRUE(copy == m);
    copy.GetFragment()[count - 1].GetOstraInterfacePort().SetPort(1);
    EXPECT_FALSE(copy == m);
    EXPECT_EQ(portOf(itemsOf(m).at(count - 1)), 9999U);

    const QString xml = xmlOf(m);
    EXPECT_EQ(xml.count("<Fragment>"), count);
    Message fromXml;
    readXml(fromXml, xml);
    EXPECT_TRUE(fromXml == m);

    const QByteArray frame = frameOf(m);
    EXPECT_EQ(frame.size(), 4 + 17 + 12 + count * 28);
    Message fromBinary;
    readFrame(fromBinary, frame);
    EXPECT_TRUE(fromBinary == m);
}

} // namespace
