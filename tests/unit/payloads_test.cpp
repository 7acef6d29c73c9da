// SPDX-License-Identifier: MIT
// The payload of a fragment by its type: visiting what is selected, putting payloads in, reading texts of
// const records.

#include "TestSupport.h"

#include "routerinterface/Payloads.h"

#include <memory>
#include <string>
#include <type_traits>

using namespace testing_support;

namespace {

// A name that says which function was called, and with what.
struct NameOfArgument
{
    template <class Record>
    std::string operator()(Record& record) const
    {
        return (std::is_const_v<Record> ? "const " : "") + record.GetObjectName().toStdString();
    }
    std::string operator()(NoPayload) const { return "nothing"; }
};

struct Counter
{
    int calls = 0;
    template <class Argument>
    void operator()(const Argument&)
    {
        ++calls;
    }
};

} // namespace

// --- which records are payloads ----------------------------------------------------------------------

TEST(Payloads, TheOnesThatAFragmentCanSelect)
{
#define EXPECT_ROW(Name, number, tag, id)                     \
    static_assert(machinery::IsPayload<Name>::value, #Name);  \
    static_assert(machinery::isPayload<Opened<Name>>, #Name); \
    static_assert(machinery::isRecord<Name>, #Name);          \
    EXPECT_EQ(decltype(choiceOf(machinery::Type<Name>(), machinery::Type<Fragment>()))::value, number);
    PAYLOAD_RECORDS(EXPECT_ROW)
#undef EXPECT_ROW
    static_assert(!machinery::isPayload<Fragment>);
    static_assert(!machinery::isPayload<PelLu300RouterMessage>);
    static_assert(!machinery::isPayload<PelLu300RouterInterfaceXml>);
    static_assert(!machinery::isPayload<int>);
    static_assert(!machinery::isRecord<MODELKIT::IMKObject>);
}

// --- visiting ----------------------------------------------------------------------------------------

TEST(Visit, CallsTheFunctionOfThePayloadThatIsSelected){
#define EXPECT_ROW(Name, number, tag, id)                             \
    {                                                                 \
        Fragment fragment;                                            \
        fragment.Get##Name();                                         \
        EXPECT_EQ(Visit(fragment, NameOfArgument()), "const " #Name); \
        EXPECT_EQ(VisitToChange(fragment, NameOfArgument()), #Name);  \
    }
    PAYLOAD_RECORDS(EXPECT_ROW)
#undef EXPECT_ROW
}

TEST(Visit, CallsTheOneForNothing)
{
    Fragment fragment;
    EXPECT_EQ(Visit(fragment, NameOfArgument()), "nothing");
    EXPECT_EQ(VisitToChange(fragment, NameOfArgument()), "nothing");
    fragment.GetDF_Params();
    fragment.ResetChoiceFragment();
    EXPECT_EQ(Visit(fragment, NameOfArgument()), "nothing");
    EXPECT_EQ(Visit(Fragment(), NameOfArgument()), "nothing");
}

TEST(Visit, PicksTheFunctionThatFitsBest)
{
    const auto kind = [](const Fragment& fragment) {
        return Visit(
            fragment, [](const DF_Params& params) { return params.GetFrequency(); },
            [](const OstraInterfacePort& port) { return double(port.GetPort()); },
            [](NoPayload) { return -1.0; }, [](const MODELKIT::IMKObject&) { return -2.0; });
    };
    Fragment fragment;
    EXPECT_EQ(kind(fragment), -1);
    fragment.GetDF_Params().SetFrequency(98.5e6);
    EXPECT_EQ(kind(fragment), 98.5e6);
    fragment.GetOstraInterfacePort().SetPort(5000);
    EXPECT_EQ(kind(fragment), 5000);
    fragment.GetAcquireMastership();
    EXPECT_EQ(kind(fragment), -2);
}

TEST(Visit, MarksNothingAsSetUnlessItIsToChange)
{
    Fragment fragment;
    fragment.GetDF_Params();
    fragment.ResetDF_Params();
    EXPECT_EQ(Visit(fragment, NameOfArgument()), "const DF_Params");
    EXPECT_FALSE(fragment.IsDF_ParamsSet());
    EXPECT_EQ(VisitToChange(fragment, NameOfArgument()), "DF_Params");
    EXPECT_TRUE(fragment.IsDF_ParamsSet());
}

TEST(Visit, GivesWhatIsInTheFragment)
{
    Fragment fragment;
    DF_Params& params = fragment.GetDF_Params();
    const void* const place = Visit(
        fragment, [](const MODELKIT::IMKObject& record) -> const void* { return &record; },
        [](NoPayload) -> const void* { return nullptr; });
    EXPECT_EQ(place, &params);
    VisitToChange(
        fragment, [](DF_Params& changed) { changed.SetBandwidth(7); }, [](const auto&) {});
    EXPECT_EQ(params.GetBandwidth(), 7);
}

TEST(Visit, CallsASingleFunctionInItsPlace)
{
    Fragment fragment;
    Counter counter;
    Visit(fragment, counter);
    fragment.GetDF_Params();
    Visit(fragment, counter);
    EXPECT_EQ(counter.calls, 2);
}

TEST(Visit, TakesFunctionsThatCanOnlyBeMoved)
{
    Fragment fragment;
    auto number = std::make_unique<int>(7);
    EXPECT_EQ(
        Visit(
            fragment, [held = std::move(number)](NoPayload) { return *held; }, [](const auto&) { return 0; }),
        7);
}

TEST(Visit, PassesExceptionsOn)
{
    Fragment fragment;
    EXPECT_THROW(Visit(fragment, [](const auto&) { throw std::string("x"); }), std::string);
}

TEST(Visit, ReturnsReferences)
{
    Fragment fragment;
    int number = 0;
    int& same = Visit(fragment, [&number](const auto&) -> int& { return number; });
    EXPECT_EQ(&same, &number);
}

// --- putting in --------------------------------------------------------------------------------------

TEST(SettingAPayload, DoesWhatTheSetterDoes){
#define EXPECT_ROW(Name, number, tag, id)                      \
    {                                                          \
        Fragment expected;                                     \
        expected.Set##Name(Name());                            \
        Fragment fragment;                                     \
        SetPayload(fragment, Name());                          \
        EXPECT_TRUE(fragment == expected);                     \
        EXPECT_TRUE(fragment.Is##Name##Set());                 \
        PelLu300RouterMessage message;                         \
        AppendPayload(message, Name());                        \
        AddPayload<Name>(message);                             \
        ASSERT_EQ(message.GetFragment().size(), 2);            \
        EXPECT_TRUE(message.GetFragment()[0] == expected);     \
        EXPECT_TRUE(message.GetFragment()[1] == expected);     \
        EXPECT_TRUE(message.GetFragment()[1].Is##Name##Set()); \
    }
    PAYLOAD_RECORDS(EXPECT_ROW)
#undef EXPECT_ROW
}

TEST(SettingAPayload, TakesTheDataOfADerivedRecord)
{
    Opened<OstraInterfacePort> port;
    port.SetPort(5000);
    Fragment fragment;
    SetPayload(fragment, port);
    EXPECT_EQ(fragment.GetOstraInterfacePort().GetPort(), 5000U);
}

TEST(SettingAPayload, AppendingCopies)
{
    OstraInterfacePort port;
    port.SetPort(1);
    PelLu300RouterMessage message;
    message.SetValidate(true);
    AppendPayload(message, port);
    port.SetPort(2);
    AppendPayload(message, port);
    EXPECT_EQ(portsOf(message), (QVector<unsigned int>{1, 2}));
    EXPECT_TRUE(message.IsFragmentSet());
}

TEST(SettingAPayload, AddingHandsOutWhatIsInTheMessage)
{
    PelLu300RouterMessage message;
    message.SetValidate(true);
    DF_Params& params = AddPayload<DF_Params>(message);
    params.SetFrequency(98.5e6);
    EXPECT_EQ(&params, &message.GetFragment()[0].GetDF_Params());
    EXPECT_TRUE(params.GetValidate());
}

// --- texts of const records --------------------------------------------------------------------------

TEST(TextOf, ReadsWithoutACopy)
{
    PelVtConnectServer server;
    server.SetAddress(text("192.0.2.1"));
    const PelVtConnectServer& view = server;
    EXPECT_EQ(TextOf(view, &PelVtConnectServer::GetAddress), text("192.0.2.1"));
    EXPECT_EQ(TextOf(view, &PelVtConnectServer::GetAddress).constData(), server.GetAddress().constData());

    const MastershipState state;
    EXPECT_TRUE(TextOf(state, &MastershipState::GetMasterClientID).isNull());
    EXPECT_FALSE(state.IsMasterClientIDSet());
}

TEST(TextOf, ReadsTheBaseOfADerivedRecord)
{
    Opened<PelVtConnectServer> server;
    server.SetAddress(text("a"));
    const Opened<PelVtConnectServer>& view = server;
    EXPECT_EQ(TextOf(view, &PelVtConnectServer::GetAddress), text("a"));
}
