// SPDX-License-Identifier: MIT
// The parts of RecordInfo that editors need: resetting, defaults, changing lists item by item, choosing.
#include "MemberByName.h"
#include "TestSupport.h"

#include "routerinterface/RecordInfo.h"

#include "modelkit/Logger.h"

#include <stdexcept>
#include <typeinfo>

using namespace testing_support;

namespace {

const MemberInfo& list() { return member("PelLu300RouterMessage", "Fragment"); }

PelLu300RouterMessage messageOf(const QVector<unsigned int>& ports)
{
    PelLu300RouterMessage message;
    for (const unsigned int port : ports)
        message.AppendFragment(withPort(port));
    return message;
}

using Ports = QVector<unsigned int>;

// --- resetting and defaults -----------------------------------------------------------------

TEST(RecordEditing, resetPutsEveryKindBackAsTheAccessorDoes)
{
    MastershipState state;
    state.SetDefaultState(MastershipState::RouterIsMaster);
    state.SetState(MastershipState::MasterPresent);
    state.SetDefaultMasterClientID(QStringLiteral("standard"));
    state.SetMasterClientID(QStringLiteral("client"));
    member("MastershipState", "State").Reset(state);
    EXPECT_FALSE(state.IsStateSet());
    EXPECT_EQ(state.GetState(), MastershipState::RouterIsMaster);
    EXPECT_TRUE(state.IsMasterClientIDSet());
    member("MastershipState", "MasterClientID").Reset(state);
    EXPECT_FALSE(state.IsMasterClientIDSet());
    EXPECT_TRUE(state.GetMasterClientID().isNull());

    PelLu300RouterMessage message = messageOf({1, 2});
    list().Reset(message);
    EXPECT_FALSE(message.IsFragmentSet());
    EXPECT_EQ(list().CountItems(message), 0);

    Fragment fragment = withPort(7);
    member("Fragment", "OstraInterfacePort").Reset(fragment);
    EXPECT_FALSE(fragment.IsOstraInterfacePortSet());
    EXPECT_FALSE(qAsConst(fragment).GetOstraInterfacePort().IsPortSet());
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::OstraInterfacePort);
}

TEST(RecordEditing, resetOfAnUntouchedRecordCreatesNothing)
{
    OstraInterfacePort port;
    member("OstraInterfacePort", "Port").Reset(port);
    EXPECT_FALSE(member("OstraInterfacePort", "Port").IsDefaultSet(port));
    EXPECT_FALSE(port.IsInitialized());
}

TEST(RecordEditing, defaultsTakeEffectWithTheNextReset)
{
    OstraInterfacePort port;
    const MemberInfo& info = member("OstraInterfacePort", "Port");
    EXPECT_EQ(info.GetDefault(port), QVariant(0U));
    EXPECT_FALSE(info.IsDefaultSet(port));
    info.SetDefault(port, 7);
    EXPECT_TRUE(info.IsDefaultSet(port));
    EXPECT_EQ(info.GetDefault(port), QVariant(7U));
    EXPECT_EQ(port.GetDefaultPort(), 7U);
    EXPECT_EQ(port.GetPort(), 0U);
    EXPECT_FALSE(port.IsPortSet());
    info.Reset(port);
    EXPECT_EQ(port.GetPort(), 7U);
    EXPECT_FALSE(port.IsPortSet());
    port.Reset();
    EXPECT_TRUE(info.IsDefaultSet(port));
    port.ResetToDefault();
    EXPECT_TRUE(port.IsPortSet());

    PelLu300RouterMessage message;
    const MemberInfo& type = member("PelLu300RouterMessage", "Type");
    EXPECT_EQ(type.GetDefault(message), QVariant(-1));
    type.SetDefault(message, QStringLiteral("Event"));
    EXPECT_EQ(message.GetDefaultType(), PelLu300RouterMessage::Event);
}

TEST(RecordEditing, defaultsOfNestedRecordsAndLists)
{
    Fragment fragment;
    const MemberInfo& nested = member("Fragment", "OstraInterfacePort");
    OstraInterfacePort port;
    port.SetPort(7);
    EXPECT_FALSE(dynamic_cast<const OstraInterfacePort&>(nested.GetDefaultRecord(fragment)).IsPortSet());
    nested.SetDefaultRecord(fragment, port);
    EXPECT_TRUE(nested.IsDefaultSet(fragment));
    EXPECT_TRUE(fragment.GetDefaultOstraInterfacePort() == port);
    EXPECT_EQ(&nested.GetDefaultRecord(fragment), &fragment.GetDefaultOstraInterfacePort());
    EXPECT_FALSE(nested.IsSet(fragment));
    EXPECT_FALSE(fragment.IsOstraInterfacePortSet());

    PelLu300RouterMessage message;
    list().SetDefaultRecord(message, withPort(9));
    EXPECT_TRUE(list().IsDefaultSet(message));
    EXPECT_EQ(&list().GetDefaultRecord(message), &message.GetDefaultFragment());
    EXPECT_FALSE(list().IsSet(message));
    message.ResetToDefault();
    EXPECT_EQ(portsOf(message), Ports{9});

    EXPECT_THROW(nested.SetDefaultRecord(fragment, fragment), std::bad_cast);
    EXPECT_THROW(list().SetDefaultRecord(message, message), std::bad_cast);
    EXPECT_TRUE(fragment.GetDefaultOstraInterfacePort() == port);
    EXPECT_TRUE(message.GetDefaultFragment() == withPort(9));
}

TEST(RecordEditing, setRecordIsTheSetter)
{
    Fragment fragment = withPort(7);
    const MemberInfo& nested = member("Fragment", "DF_Params");
    DF_Params params;
    params.SetFrequency(1);
    nested.SetRecord(fragment, params);
    EXPECT_TRUE(nested.IsSet(fragment));
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_TRUE(qAsConst(fragment).GetDF_Params() == params);

    EXPECT_THROW(member("Fragment", "OstraInterfacePort").SetRecord(fragment, params), std::bad_cast);
    EXPECT_EQ(fragment.GetChoiceFragment(), Fragment::DF_Params);
    EXPECT_EQ(qAsConst(fragment).GetOstraInterfacePort().GetPort(), 7U);
}

// --- lists ----------------------------------------------------------------------------------

TEST(RecordEditing, itemsAreEditedInPlace)
{
    PelLu300RouterMessage message = messageOf({1, 2});
    auto& item = dynamic_cast<Fragment&>(list().EditItem(message, 1));
    item.GetOstraInterfacePort().SetPort(5);
    EXPECT_EQ(portsOf(message), (Ports{1, 5}));
    EXPECT_EQ(&list().GetItem(message, 1), &item);
}

TEST(RecordEditing, editingMarksTheListAsSet)
{
    PelLu300RouterMessage message = messageOf({1});
    QVector<Fragment>& items = message.GetFragment();
    const QVector<Fragment> kept = items;
    message.ResetFragment();
    items = kept;
    ASSERT_FALSE(message.IsFragmentSet());
    list().EditItem(message, 0);
    EXPECT_TRUE(message.IsFragmentSet());
}

TEST(RecordEditing, editingAnItemDoesNotReachACopy)
{
    PelLu300RouterMessage message = messageOf({1, 2});
    const auto logger = std::make_shared<MODELKIT::Logger>();
    message.SetLogger(logger);
    const PelLu300RouterMessage copy = message;
    const QVector<Fragment> items = message.GetFragment();
    auto& item = dynamic_cast<Fragment&>(list().EditItem(message, 0));
    item.GetOstraInterfacePort().SetPort(9);
    list().RemoveItem(message, 1);
    EXPECT_EQ(portsOf(message), Ports{9});
    EXPECT_EQ(portsOf(copy), (Ports{1, 2}));
    EXPECT_EQ(items.at(0), withPort(1));
    EXPECT_EQ(list().GetItem(message, 0).GetLogger(), logger);
}

TEST(RecordEditing, itemsAreInsertedAtEveryPlace)
{
    PelLu300RouterMessage message;
    list().InsertItem(message, 0, withPort(2));
    EXPECT_TRUE(message.IsFragmentSet());
    list().InsertItem(message, 0, withPort(1));
    list().InsertItem(message, 2, withPort(4));
    list().InsertItem(message, 2, withPort(3));
    EXPECT_EQ(portsOf(message), (Ports{1, 2, 3, 4}));
    // An item of the list itself.
    list().InsertItem(message, 0, list().GetItem(message, 3));
    EXPECT_EQ(portsOf(message), (Ports{4, 1, 2, 3, 4}));
}

TEST(RecordEditing, anInsertedItemIsACopy)
{
    PelLu300RouterMessage message = messageOf({1});
    Fragment fragment = withPort(2);
    fragment.SetValidate(true);
    fragment.SetLogger(std::make_shared<MODELKIT::Logger>());
    list().InsertItem(message, 0, fragment);
    fragment.GetOstraInterfacePort().SetPort(9);
    EXPECT_EQ(portsOf(message), (Ports{2, 1}));
    EXPECT_TRUE(list().GetItem(message, 0).GetValidate());
    EXPECT_EQ(list().GetItem(message, 0).GetLogger(), nullptr);
    EXPECT_FALSE(list().GetItem(message, 1).GetValidate());
}

TEST(RecordEditing, insertingObeysTheRuleOfAppending)
{
    PelLu300RouterMessage message = messageOf({1});
    list().InsertItem(message, 0, Fragment());
    EXPECT_EQ(list().CountItems(message), 2);
    EXPECT_FALSE(list().GetItem(message, 0).HasData());

    message.SetValidate(true);
    expectThrow<IncompleteDefinitionException>(
        [&] { list().InsertItem(message, 1, Fragment()); },
        QStringLiteral(
            "PelLu300RouterMessage: Tried to append not completely defined or invalid item Fragment."));
    EXPECT_EQ(list().CountItems(message), 2);
    list().InsertItem(message, 1, withPort(2));
    EXPECT_EQ(list().CountItems(message), 3);

    PelLu300RouterMessage fresh;
    fresh.SetValidate(true);
    EXPECT_THROW(list().InsertItem(fresh, 0, Fragment()), IncompleteDefinitionException);
    EXPECT_FALSE(fresh.IsFragmentSet());
}

TEST(RecordEditing, itemsAreRemoved)
{
    PelLu300RouterMessage message = messageOf({1, 2, 3});
    list().RemoveItem(message, 1);
    EXPECT_EQ(portsOf(message), (Ports{1, 3}));
    list().RemoveItem(message, 1);
    list().RemoveItem(message, 0);
    EXPECT_EQ(list().CountItems(message), 0);
    EXPECT_TRUE(message.IsFragmentSet());
}

TEST(RecordEditing, itemsAreMovedToTheIndexThatTheyThenHave)
{
    const auto moved = [](int from, int to) {
        PelLu300RouterMessage message = messageOf({0, 1, 2, 3});
        list().MoveItem(message, from, to);
        return portsOf(message);
    };
    EXPECT_EQ(moved(0, 3), (Ports{1, 2, 3, 0}));
    EXPECT_EQ(moved(3, 0), (Ports{3, 0, 1, 2}));
    EXPECT_EQ(moved(1, 2), (Ports{0, 2, 1, 3}));
    EXPECT_EQ(moved(2, 1), (Ports{0, 2, 1, 3}));
    EXPECT_EQ(moved(2, 2), (Ports{0, 1, 2, 3}));
}

TEST(RecordEditing, aMovedItemKeepsItsSettings)
{
    PelLu300RouterMessage message = messageOf({0, 1, 2});
    const auto logger = std::make_shared<MODELKIT::Logger>();
    list().GetItem(message, 0).SetValidate(true);
    list().GetItem(message, 0).SetLogger(logger);
    list().MoveItem(message, 0, 2);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(list().GetItem(message, i).GetValidate(), i == 2) << i;
        EXPECT_EQ(list().GetItem(message, i).GetLogger(), i == 2 ? logger : nullptr) << i;
    }
    const auto& payload = qAsConst(message).GetFragment().at(2).GetOstraInterfacePort();
    EXPECT_TRUE(payload.GetValidate());
    EXPECT_EQ(payload.GetLogger(), logger);
}

TEST(RecordEditing, wrongIndicesChangeNothing)
{
    PelLu300RouterMessage message = messageOf({1, 2});
    PelLu300RouterMessage fresh;
    for (const int wrong : {-1, 2, 3, 1000000000, -1000000000}) {
        EXPECT_THROW(list().GetItem(message, wrong), std::out_of_range);
        EXPECT_THROW(list().EditItem(message, wrong), std::out_of_range);
        EXPECT_THROW(list().RemoveItem(message, wrong), std::out_of_range);
        EXPECT_THROW(list().MoveItem(message, wrong, 0), std::out_of_range);
        EXPECT_THROW(list().MoveItem(message, 0, wrong), std::out_of_range);
        // The index behind the last item is valid for inserting.
        EXPECT_THROW(list().InsertItem(message, wrong == 2 ? 3 : wrong, withPort(3)), std::out_of_range);
    }
    EXPECT_EQ(portsOf(message), (Ports{1, 2}));

    EXPECT_THROW(list().GetItem(fresh, 0), std::out_of_range);
    EXPECT_THROW(list().EditItem(fresh, 0), std::out_of_range);
    EXPECT_THROW(list().RemoveItem(fresh, 0), std::out_of_range);
    EXPECT_THROW(list().MoveItem(fresh, 0, 0), std::out_of_range);
    EXPECT_THROW(list().InsertItem(fresh, 1, withPort(3)), std::out_of_range);
    EXPECT_FALSE(fresh.IsFragmentSet());
    EXPECT_EQ(list().CountItems(fresh), 0);
}

TEST(RecordEditing, itemsOfAnotherClassAreRefused)
{
    PelLu300RouterMessage message = messageOf({1});
    DF_Params params;
    EXPECT_THROW(list().InsertItem(message, 0, params), std::bad_cast);
    EXPECT_THROW(list().InsertItem(params, 0, withPort(2)), std::bad_cast);
    EXPECT_THROW(list().EditItem(params, 0), std::bad_cast);
    EXPECT_THROW(list().RemoveItem(params, 0), std::bad_cast);
    EXPECT_THROW(list().MoveItem(params, 0, 0), std::bad_cast);
    EXPECT_THROW(list().Reset(params), std::bad_cast);
    EXPECT_THROW(list().IsDefaultSet(params), std::bad_cast);
    EXPECT_EQ(portsOf(message), Ports{1});
}

// --- choices --------------------------------------------------------------------------------

TEST(RecordEditing, aChoiceTellsWhatIsSelected)
{
    const RecordInfo& info = *RecordInfo::Find(QStringLiteral("Fragment"));
    Fragment fragment;
    EXPECT_EQ(info.GetSelected(fragment), nullptr);
    EXPECT_FALSE(fragment.IsInitialized());
    for (const MemberInfo* each : info.GetMembers()) {
        each->Select(fragment);
        EXPECT_EQ(info.GetSelected(fragment), each) << each->GetName().toStdString();
        EXPECT_TRUE(each->IsSet(fragment));
        EXPECT_EQ(fragment.ChoiceFragmentToName(fragment.GetChoiceFragment()), each->GetName());
    }
    member("Fragment", "DF_Params").Select(fragment);
    fragment.ResetDF_Params();
    EXPECT_EQ(info.GetSelected(fragment), &member("Fragment", "DF_Params"));
    fragment.Reset();
    EXPECT_EQ(info.GetSelected(fragment), nullptr);
}

TEST(RecordEditing, selectingKeepsTheContentOfAll)
{
    Fragment fragment = withPort(7);
    member("Fragment", "DF_Params").Select(fragment);
    EXPECT_TRUE(fragment.IsOstraInterfacePortSet());
    member("Fragment", "OstraInterfacePort").Select(fragment);
    EXPECT_TRUE(fragment == withPort(7));
}

TEST(RecordEditing, clearingTheSelectionIsResetChoiceFragment)
{
    const RecordInfo& info = *RecordInfo::Find(QStringLiteral("Fragment"));
    Fragment fragment;
    info.ClearSelection(fragment);
    EXPECT_FALSE(fragment.IsInitialized());
    fragment = withPort(7);
    info.ClearSelection(fragment);
    EXPECT_EQ(info.GetSelected(fragment), nullptr);
    EXPECT_EQ(int(fragment.GetChoiceFragment()), -1);
    EXPECT_TRUE(fragment.IsOstraInterfacePortSet());
    EXPECT_EQ(qAsConst(fragment).GetOstraInterfacePort().GetPort(), 7U);
}

TEST(RecordEditing, onlyChoicesAreSelectedFrom)
{
    PelLu300RouterInterfaceXml document;
    const RecordInfo& info = RecordInfo::Document();
    EXPECT_THROW(info.GetSelected(document), std::logic_error);
    EXPECT_THROW(info.ClearSelection(document), std::logic_error);
    EXPECT_THROW(member("PelLu300RouterInterfaceXml", "PelLu300RouterMessage").Select(document),
                 std::logic_error);
    EXPECT_FALSE(document.IsPelLu300RouterMessageSet());

    const RecordInfo& choice = *RecordInfo::Find(QStringLiteral("Fragment"));
    EXPECT_THROW(choice.GetSelected(document), std::bad_cast);
    EXPECT_THROW(choice.ClearSelection(document), std::bad_cast);
    EXPECT_THROW(member("Fragment", "DF_Params").Select(document), std::bad_cast);
}

// --- kinds ----------------------------------------------------------------------------------

TEST(RecordEditing, operationsOfAnotherKindAreRefused)
{
    OstraInterfacePort port;
    const MemberInfo& value = member("OstraInterfacePort", "Port");
    EXPECT_THROW(value.SetRecord(port, port), std::logic_error);
    EXPECT_THROW(value.Select(port), std::logic_error);
    EXPECT_THROW(value.GetDefaultRecord(port), std::logic_error);
    EXPECT_THROW(value.SetDefaultRecord(port, port), std::logic_error);
    EXPECT_THROW(value.EditItem(port, 0), std::logic_error);
    EXPECT_THROW(value.InsertItem(port, 0, port), std::logic_error);
    EXPECT_THROW(value.RemoveItem(port, 0), std::logic_error);
    EXPECT_THROW(value.MoveItem(port, 0, 0), std::logic_error);
    EXPECT_FALSE(port.IsInitialized());

    PelLu300RouterMessage message = messageOf({1});
    EXPECT_THROW(list().SetRecord(message, withPort(2)), std::logic_error);
    EXPECT_THROW(list().Select(message), std::logic_error);
    EXPECT_THROW(list().GetDefault(message), std::logic_error);
    EXPECT_THROW(list().SetDefault(message, 1), std::logic_error);
    EXPECT_EQ(portsOf(message), Ports{1});
}

} // namespace
