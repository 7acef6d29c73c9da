// SPDX-License-Identifier: MIT
// The list of fragments in a message: setting it, appending to it, and sharing it with a caller.

#include "MessageSupport.h"

#include <memory>

namespace {

using namespace testing_support;

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

TEST(MessageAdd, HandsOutANewItemAtTheEnd)
{
    Message m;
    Fragment& first = m.AddFragment();
    EXPECT_TRUE(m.IsFragmentSet());
    EXPECT_FALSE(first.IsInitialized());
    EXPECT_EQ(first.GetObjectName(), "Fragment");
    first.GetOstraInterfacePort().SetPort(1);
    m.AddFragment().SetOstraInterfacePort(withPort(2).GetOstraInterfacePort());
    EXPECT_EQ(portsOf(m), (Ports{1, 2}));
    EXPECT_EQ(&itemsOf(m).last(), &m.GetFragment()[1]);
}

TEST(MessageAdd, TheItemHasTheMessagesSettings)
{
    const auto logger = std::make_shared<Logger>();
    Message m;
    m.SetValidate(true);
    m.SetLogger(logger);
    Fragment& item = m.AddFragment();
    EXPECT_TRUE(item.GetValidate());
    EXPECT_EQ(item.GetLogger(), logger);
    EXPECT_TRUE(item.GetOstraInterfacePort().GetValidate());
    EXPECT_EQ(item.GetOstraInterfacePort().GetLogger(), logger);
    EXPECT_THROW(item.GetPelVtConnectServer().SetAddress(QString()), OutOfRangeException);
}

TEST(MessageAdd, AnItemThatStaysEmptyIsNotWrittenUnderValidation)
{
    Message m;
    m.SetType(Message::Reply);
    m.SetValidate(true);
    m.AddFragment();
    m.AddFragment().GetOstraInterfacePort().SetPort(2);
    Message written;
    written.SetType(Message::Reply);
    written.AppendFragment(withPort(2));
    EXPECT_EQ(xmlOf(m), xmlOf(written));
}

TEST(MessageAdd, ChangesNoSharer)
{
    Message m;
    m.AppendFragment(withPort(1));
    Message sharing;
    sharing = m;
    const Items list = itemsOf(m);
    m.AddFragment().GetOstraInterfacePort().SetPort(2);
    EXPECT_EQ(portsOf(m), (Ports{1, 2}));
    EXPECT_EQ(portsOf(sharing), Ports{1});
    EXPECT_EQ(list.size(), 1);
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

// An item with its own HasData().
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

// --- a list that the caller shares ----------------------------------------------------------

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

TEST(MessageSharedList, TheMessagesItemsKeepTheirLoggersWhenTheyDetachFromTheCallersCopy)
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

// A message with a type and with items, but with the list not marked as set.
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
    // A check would have created the data block of the item.
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
