// SPDX-License-Identifier: MIT
// The life of a record: when it gets its data block, how blocks are shared by assignment and told
// apart again, and what setting, resetting and comparing do. Whether two records share a block shows
// in the addresses of the defaults, which getters hand out by reference.

#include "FailingAllocator.h"
#include "TestSupport.h"

#include <cstdlib>
#include <functional>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace testing_support;

// --- the members of all records -----------------------------------------------------------------

// Null and empty texts are different values here.
bool same(const QString& a, const QString& b) { return a.isNull() == b.isNull() && a == b; }
template <class T>
bool same(const T& a, const T& b)
{
    return a == b;
}

OstraInterfacePort ostraPort(unsigned int port)
{
    OstraInterfacePort record;
    record.SetPort(port);
    return record;
}

RouterVtServerPort routerPort(unsigned int port)
{
    RouterVtServerPort record;
    record.SetPort(port);
    return record;
}

PelVtConnectServer server(const char* address)
{
    PelVtConnectServer record;
    record.SetAddress(QString::fromLatin1(address));
    return record;
}

MastershipState mastership(const char* client)
{
    MastershipState record;
    record.SetMasterClientID(QString::fromLatin1(client));
    return record;
}

AcquireMastership acquired(bool success)
{
    AcquireMastership record;
    record.SetSuccess(success);
    return record;
}

ReleaseMastership released(bool success)
{
    ReleaseMastership record;
    record.SetSuccess(success);
    return record;
}

DF_Params params(double frequency)
{
    DF_Params record;
    record.SetFrequency(frequency);
    return record;
}

Fragment fragment(const char* address)
{
    Fragment record;
    record.SetPelVtConnectServer(server(address));
    return record;
}

PelLu300RouterMessage message(unsigned int number)
{
    PelLu300RouterMessage record;
    record.SetType(PelLu300RouterMessage::Reply);
    record.SetMessageID(number);
    record.AppendFragment(fragment("a"));
    record.AppendFragment(fragment("b"));
    return record;
}

// A member as a type: its accessors under common names, the value and the default it starts with, and
// two other values of each. Only for a bool is the second value the initial one.
#define MEMBER_COMMON(Record, Name, DefaultType)                                                     \
    using Owner = Record;                                                                            \
    static constexpr const char* name = #Record "::" #Name;                                          \
    static bool isSet(const Record& record) { return record.Is##Name##Set(); }                       \
    static void reset(Record& record) { record.Reset##Name(); }                                      \
    static const DefaultType& getDefault(const Record& record) { return record.GetDefault##Name(); } \
    static void setDefault(Record& record, const DefaultType& value) { record.SetDefault##Name(value); }

#define MEMBER(Record, Name, ValueType, initialValue, firstValue, secondValue)                       \
    struct Record##Name                                                                              \
    {                                                                                                \
        MEMBER_COMMON(Record, Name, ValueType)                                                       \
        static constexpr bool resetsToDefault = !std::is_same_v<ValueType, QString>;                 \
        static ValueType initial() { return initialValue; }                                          \
        static ValueType first() { return firstValue; }                                              \
        static ValueType second() { return secondValue; }                                            \
        static ValueType initialDefault() { return initialValue; }                                   \
        static ValueType firstDefault() { return firstValue; }                                       \
        static ValueType secondDefault() { return secondValue; }                                     \
        static ValueType get(Record& record) { return record.Get##Name(); }                          \
        static void set(Record& record, const ValueType& value) { record.Set##Name(value); }         \
        static void setOwnValue(Record& record) { record.Set##Name(record.Get##Name()); }            \
        static void setOwnDefault(Record& record) { record.Set##Name(record.GetDefault##Name()); }   \
        static void defaultOwnValue(Record& record) { record.SetDefault##Name(record.Get##Name()); } \
    };

#define NESTED_MEMBER(Record, Name, ValueType, firstValue, secondValue)                            \
    struct Record##Name                                                                            \
    {                                                                                              \
        MEMBER_COMMON(Record, Name, ValueType)                                                     \
        static constexpr bool resetsToDefault = true;                                              \
        static ValueType initial() { return ValueType(); }                                         \
        static ValueType first() { return firstValue; }                                            \
        static ValueType second() { return secondValue; }                                          \
        static ValueType initialDefault() { return ValueType(); }                                  \
        static ValueType firstDefault() { return firstValue; }                                     \
        static ValueType secondDefault() { return secondValue; }                                   \
        static const ValueType& get(const Record& record) { return record.Get##Name(); }           \
        static void set(Record& record, const ValueType& value) { record.Set##Name(value); }       \
        static void setOwnValue(Record& record) { record.Set##Name(get(record)); }                 \
        static void setOwnDefault(Record& record) { record.Set##Name(record.GetDefault##Name()); } \
        static void defaultOwnValue(Record& record) { record.SetDefault##Name(get(record)); }      \
    };

MEMBER(OstraInterfacePort, Port, unsigned int, 0, 5000, 4294967295U)
MEMBER(RouterVtServerPort, Port, unsigned int, 0, 5001, 1)
MEMBER(PelVtConnectServer, Address, QString, QString(), QStringLiteral("alpha"), QStringLiteral("beta"))
MEMBER(PelVtConnectServer, Port, unsigned int, 0, 80, 443)
MEMBER(MastershipState, State, MastershipState::State, static_cast<MastershipState::State>(-1),
       MastershipState::MasterPresent, MastershipState::RouterIsMaster)
MEMBER(MastershipState, MasterClientID, QString, QString(), QStringLiteral("client"), empty())
MEMBER(AcquireMastership, Success, bool, false, true, false)
MEMBER(ReleaseMastership, Success, bool, false, true, false)
MEMBER(DF_Params, Frequency, double, 0.0, 1.5, -2.5)
MEMBER(DF_Params, DemodulationFrequency, double, 0.0, 1e300, 0.001)
MEMBER(DF_Params, Bandwidth, double, 0.0, 3.25, 4.5)
MEMBER(DF_Params, PanoramaSpan, double, 0.0, 7.0, 8.0)
NESTED_MEMBER(Fragment, MastershipState, MastershipState, mastership("one"), mastership("two"))
NESTED_MEMBER(Fragment, AcquireMastership, AcquireMastership, acquired(true), acquired(false))
NESTED_MEMBER(Fragment, ReleaseMastership, ReleaseMastership, released(true), released(false))
NESTED_MEMBER(Fragment, OstraInterfacePort, OstraInterfacePort, ostraPort(1), ostraPort(2))
NESTED_MEMBER(Fragment, PelVtConnectServer, PelVtConnectServer, server("one"), server("two"))
NESTED_MEMBER(Fragment, RouterVtServerPort, RouterVtServerPort, routerPort(1), routerPort(2))
NESTED_MEMBER(Fragment, DF_Params, DF_Params, params(1.0), params(2.0))
MEMBER(PelLu300RouterMessage, Type, PelLu300RouterMessage::Type, static_cast<PelLu300RouterMessage::Type>(-1),
       PelLu300RouterMessage::Reply, PelLu300RouterMessage::Event)
MEMBER(PelLu300RouterMessage, MessageID, unsigned int, 0, 7, 8)
NESTED_MEMBER(PelLu300RouterInterfaceXml, PelLu300RouterMessage, PelLu300RouterMessage, message(1),
              message(2))

// The list differs from the others in that its default is an item.
struct PelLu300RouterMessageFragment
{
    using Value = QVector<Fragment>;
    MEMBER_COMMON(PelLu300RouterMessage, Fragment, Fragment)
    static constexpr bool resetsToDefault = false;
    static Value initial() { return Value(); }
    static Value first() { return Value{fragment("one")}; }
    static Value second() { return Value{fragment("two"), fragment("three")}; }
    static Fragment initialDefault() { return Fragment(); }
    static Fragment firstDefault() { return fragment("four"); }
    static Fragment secondDefault() { return fragment("five"); }
    static const Value& get(const PelLu300RouterMessage& record) { return record.GetFragment(); }
    static void set(PelLu300RouterMessage& record, const Value& value) { record.SetFragment(value); }
    static void setOwnValue(PelLu300RouterMessage& record) { record.SetFragment(get(record)); }
    static void setOwnDefault(PelLu300RouterMessage& record)
    {
        record.SetFragment(Value());
        record.AppendFragment(record.GetDefaultFragment());
    }
    static void defaultOwnValue(PelLu300RouterMessage& record)
    {
        if (!get(record).isEmpty())
            record.SetDefaultFragment(get(record).first());
    }
};

template <class... Members>
struct MemberTable
{
    template <class Visit>
    static void forEach(Visit&& visit)
    {
        (visitOne(visit, Members{}), ...);
    }

private:
    template <class Visit, class Member>
    static void visitOne(Visit&& visit, Member member)
    {
        SCOPED_TRACE(Member::name);
        visit(member);
    }
};

// All members of a record in declaration order, and the one that stands for them where any will do.
template <class R>
struct Of;
template <>
struct Of<OstraInterfacePort>
{
    using Members = MemberTable<OstraInterfacePortPort>;
    using Any = OstraInterfacePortPort;
};
template <>
struct Of<RouterVtServerPort>
{
    using Members = MemberTable<RouterVtServerPortPort>;
    using Any = RouterVtServerPortPort;
};
template <>
struct Of<PelVtConnectServer>
{
    using Members = MemberTable<PelVtConnectServerAddress, PelVtConnectServerPort>;
    using Any = PelVtConnectServerPort;
};
template <>
struct Of<MastershipState>
{
    using Members = MemberTable<MastershipStateState, MastershipStateMasterClientID>;
    using Any = MastershipStateState;
};
template <>
struct Of<AcquireMastership>
{
    using Members = MemberTable<AcquireMastershipSuccess>;
    using Any = AcquireMastershipSuccess;
};
template <>
struct Of<ReleaseMastership>
{
    using Members = MemberTable<ReleaseMastershipSuccess>;
    using Any = ReleaseMastershipSuccess;
};
template <>
struct Of<DF_Params>
{
    using Members = MemberTable<DF_ParamsFrequency, DF_ParamsDemodulationFrequency, DF_ParamsBandwidth,
                                DF_ParamsPanoramaSpan>;
    using Any = DF_ParamsBandwidth;
};
template <>
struct Of<Fragment>
{
    using Members = MemberTable<FragmentMastershipState, FragmentAcquireMastership, FragmentReleaseMastership,
                                FragmentOstraInterfacePort, FragmentPelVtConnectServer,
                                FragmentRouterVtServerPort, FragmentDF_Params>;
    using Any = FragmentPelVtConnectServer;
};
template <>
struct Of<PelLu300RouterMessage>
{
    using Members =
        MemberTable<PelLu300RouterMessageType, PelLu300RouterMessageMessageID, PelLu300RouterMessageFragment>;
    using Any = PelLu300RouterMessageMessageID;
};
template <>
struct Of<PelLu300RouterInterfaceXml>
{
    using Members = MemberTable<PelLu300RouterInterfaceXmlPelLu300RouterMessage>;
    using Any = PelLu300RouterInterfaceXmlPelLu300RouterMessage;
};

template <class Visit, class... Records>
void forEveryMemberOf(::testing::Types<Records...>, Visit&& visit)
{
    (Of<Records>::Members::forEach(visit), ...);
}

// Calls visit(member) for every member of every record.
template <class Visit>
void forEveryMember(Visit&& visit)
{
    forEveryMemberOf(AllRecords(), visit);
}

// Where a record keeps a default: the place changes when the record gets another block.
template <class R>
const void* place(const R& record)
{
    return &Of<R>::Any::getDefault(record);
}

// Gives every member its second value and its first default.
template <class R>
void fill(R& record)
{
    Of<R>::Members::forEach([&](auto member) {
        member.setDefault(record, member.firstDefault());
        member.set(record, member.second());
    });
}

template <class R>
void expectFilled(R& record)
{
    Of<R>::Members::forEach([&](auto member) {
        EXPECT_TRUE(member.isSet(record));
        EXPECT_TRUE(same(member.get(record), member.second()));
        EXPECT_TRUE(same(member.getDefault(record), member.firstDefault()));
    });
}

template <class R>
struct Operation
{
    const char* name;
    std::function<void(R&)> run;
};

// Operations on the record alone that leave its members and defaults as they are.
template <class R>
std::vector<Operation<R>> plainOperations()
{
    using Any = typename Of<R>::Any;
    return {
        {"IsInitialized", [](R& record) { static_cast<void>(record.IsInitialized()); }},
        {"AnyData", [](R& record) { static_cast<void>(record.AnyData()); }},
        {"IsXSet", [](R& record) { static_cast<void>(Any::isSet(record)); }},
        {"GetX", [](R& record) { static_cast<void>(Any::get(record)); }},
        {"GetDefaultX", [](R& record) { static_cast<void>(Any::getDefault(record)); }},
        {"== on the left",
         [other = std::make_shared<R>()](R& record) { static_cast<void>(record == *other); }},
        {"== on the right",
         [other = std::make_shared<R>()](R& record) { static_cast<void>(*other == record); }},
        {"!=", [other = std::make_shared<R>()](R& record) { static_cast<void>(record != *other); }},
        {"Check", [](R& record) { record.Check(); }},
        {"Check(bool)", [](R& record) { record.Check(true); }},
    };
}

// The same with the written forms.
template <class R>
std::vector<Operation<R>> readingOperations()
{
    auto operations = plainOperations<R>();
    operations.push_back({"GetXml", [](R& record) { xmlOf(record); }});
    operations.push_back({"GetBinary", [](R& record) { frameOf(record); }});
    operations.push_back({"SetBinary", [](R& record) { readFrame(record, bytes("00000000")); }});
    operations.push_back({"ProcessXml", [](R& record) { readXml(record, QStringLiteral("<a/>")); }});
    return operations;
}

// Operations that change something.
template <class R>
std::vector<Operation<R>> changingOperations()
{
    using Any = typename Of<R>::Any;
    return {
        {"SetX", [](R& record) { Any::set(record, Any::first()); }},
        {"ResetX", [](R& record) { Any::reset(record); }},
        {"SetDefaultX", [](R& record) { Any::setDefault(record, Any::secondDefault()); }},
        {"Reset", [](R& record) { record.Reset(); }},
        {"ResetToDefault", [](R& record) { record.ResetToDefault(); }},
    };
}

std::shared_ptr<MODELKIT::Logger> newLogger() { return std::make_shared<MODELKIT::Logger>(); }

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
        EXPECT_FALSE(Member::isSet(record));
        if constexpr (Member::resetsToDefault)
            EXPECT_TRUE(same(Member::get(record), Member::first()));
        else
            EXPECT_TRUE(same(Member::get(record), Member::initial()));
        EXPECT_TRUE(same(Member::getDefault(record), Member::firstDefault()));
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
        EXPECT_FALSE(Member::isSet(record));
        if constexpr (Member::resetsToDefault)
            EXPECT_TRUE(same(Member::get(record), Member::first()));
        else
            EXPECT_TRUE(same(Member::get(record), Member::initial()));
        EXPECT_TRUE(same(Member::getDefault(record), Member::firstDefault()));
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
        // Payloads of a fragment are never marked by this, and a null text is never applied.
        const bool applied =
            !std::is_same_v<Owner,
                            Fragment> && !std::is_same_v<std::decay_t<decltype(Member::initial())>, QString>;
        EXPECT_EQ(Member::isSet(record), applied);
    });
}

TEST(EveryMember, ItsOwnValueIsARightArgument)
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

TEST(EveryMember, ItsOwnDefaultIsARightArgument)
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

TEST(EveryMember, ADefaultInASharedBlockIsARightArgument)
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
            // Had the target not left, asking the source would make the source leave.
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

TEST(EveryMember, AFailedAllocationLeavesItUnset)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        using Owner = typename Member::Owner;
        const auto value = Member::first();
        long successes = 0;
        for (;; ++successes) {
            Owner record;
            if (!failsOutOfMemory(successes, [&] { Member::set(record, value); }))
                break;
            SCOPED_TRACE(successes);
            EXPECT_FALSE(Member::isSet(record));
            EXPECT_FALSE(record.AnyData());
            EXPECT_TRUE(same(Member::get(record), Member::initial()));
        }
        EXPECT_GT(successes, 0);
    });
}

TEST(EveryMember, AFailedAllocationLeavesTheOldDefault)
{
    forEveryMember([](auto tested) {
        using Member = decltype(tested);
        using Owner = typename Member::Owner;
        const auto value = Member::firstDefault();
        long successes = 0;
        for (;; ++successes) {
            Owner record;
            if (!failsOutOfMemory(successes, [&] { Member::setDefault(record, value); }))
                break;
            SCOPED_TRACE(successes);
            EXPECT_TRUE(same(Member::getDefault(record), Member::initialDefault()));
            record.ResetToDefault();
            EXPECT_FALSE(Member::isSet(record));
        }
        EXPECT_GT(successes, 0);
    });
}

// --- construction -------------------------------------------------------------------------------

template <class R>
class EveryRecordLifecycle : public ::testing::Test
{
};
TYPED_TEST_SUITE(EveryRecordLifecycle, AllRecords, RecordName);

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

// Notes the calls of the two operations that hand settings on.
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

TYPED_TEST(EveryRecordLifecycle, AssignmentSharesTheBlockUntilTheTargetIsTouched)
{
    for (const auto& operation : readingOperations<TypeParam>()) {
        SCOPED_TRACE(operation.name);
        TypeParam source;
        fill(source);
        const void* const before = place(source);
        TypeParam target;
        target = source;
        operation.run(target);
        EXPECT_EQ(place(source), before);
        EXPECT_NE(place(target), before);
        expectFilled(source);
        expectFilled(target);
    }
}

TYPED_TEST(EveryRecordLifecycle, AssignmentSharesTheBlockUntilTheSourceIsTouched)
{
    for (const auto& operation : readingOperations<TypeParam>()) {
        SCOPED_TRACE(operation.name);
        TypeParam source;
        fill(source);
        const void* const before = place(source);
        TypeParam target;
        target = source;
        operation.run(source);
        EXPECT_EQ(place(target), before);
        EXPECT_NE(place(source), before);
        expectFilled(source);
        expectFilled(target);
    }
}

TYPED_TEST(EveryRecordLifecycle, ChangesAlsoEndTheSharingAndReachOneRecordOnly)
{
    for (const auto& operation : changingOperations<TypeParam>()) {
        SCOPED_TRACE(operation.name);
        TypeParam source;
        fill(source);
        const void* const before = place(source);
        TypeParam target;
        target = source;
        operation.run(target);
        EXPECT_EQ(place(source), before);
        EXPECT_NE(place(target), before);
        expectFilled(source);

        target = source;
        operation.run(source);
        EXPECT_EQ(place(target), before);
        EXPECT_NE(place(source), before);
        expectFilled(target);
    }
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

// --- running out of memory ----------------------------------------------------------------------

TYPED_TEST(EveryRecordLifecycle, AFailedAllocationOfTheFirstBlockLeavesTheRecordEmpty)
{
    TypeParam record;
    EXPECT_TRUE(failsOutOfMemory(0, [&] { place(record); }));
    EXPECT_FALSE(record.IsInitialized());
    EXPECT_FALSE(record.AnyData());
    place(record);
    EXPECT_TRUE(record.IsInitialized());
}

TYPED_TEST(EveryRecordLifecycle, AFailedCopyLeavesTheSource)
{
    TypeParam source;
    fill(source);
    const void* const before = place(source);
    long successes = 0;
    while (failsOutOfMemory(successes, [&] { TypeParam copy(source); })) {
        SCOPED_TRACE(successes);
        EXPECT_EQ(place(source), before);
        expectFilled(source);
        ++successes;
    }
    EXPECT_GT(successes, 0);
}

TYPED_TEST(EveryRecordLifecycle, AFailedDetachLeavesBothSharersAsTheyWere)
{
    auto operations = plainOperations<TypeParam>();
    for (const auto& change : changingOperations<TypeParam>())
        if (change.name != std::string("ResetToDefault"))
            operations.push_back(change);
    for (const auto& operation : operations) {
        SCOPED_TRACE(operation.name);
        for (const bool targetFails : {true, false}) {
            long successes = 0;
            for (;; ++successes) {
                TypeParam source;
                fill(source);
                TypeParam target;
                target = source;
                if (!failsOutOfMemory(successes, [&] { operation.run(targetFails ? target : source); }))
                    break;
                SCOPED_TRACE(successes);
                expectFilled(source);
                expectFilled(target);
                if (this->HasFailure())
                    return;
            }
            EXPECT_GT(successes, 0);
        }
    }
}

TYPED_TEST(EveryRecordLifecycle, AFailedDetachStopsWritingAndReading)
{
    QString xml;
    QXmlStreamWriter writer(&xml);
    QXmlStreamReader reader(QStringLiteral("<a/>"));
    ASSERT_TRUE(reader.readNextStartElement());
    QByteArray frame;
    QDataStream stream(&frame, QIODevice::ReadWrite);
    const std::vector<Operation<TypeParam>> operations{
        {"GetXml", [&](TypeParam& record) { record.GetXml(writer); }},
        {"GetBinary", [&](TypeParam& record) { record.GetBinary(stream, 1, true); }},
        {"SetBinary", [&](TypeParam& record) { record.SetBinary(stream, 0); }},
        {"ProcessXml", [&](TypeParam& record) { record.ProcessXml(reader); }},
    };
    for (const auto& operation : operations) {
        SCOPED_TRACE(operation.name);
        TypeParam source;
        fill(source);
        TypeParam target;
        target = source;
        EXPECT_TRUE(failsOutOfMemory(0, [&] { operation.run(target); }));
        EXPECT_EQ(xml, QString());
        EXPECT_EQ(frame.size(), 0);
        expectFilled(source);
        expectFilled(target);
    }
}

TYPED_TEST(EveryRecordLifecycle, AFailedDetachLeavesTheBlockShared)
{
    TypeParam source;
    fill(source);
    const void* const before = place(source);
    TypeParam target;
    target = source;
    EXPECT_TRUE(failsOutOfMemory(0, [&] { static_cast<void>(target.IsInitialized()); }));
    // Still shared: the source leaves the block to the target.
    EXPECT_NE(place(source), before);
    EXPECT_EQ(place(target), before);
}

// What a record shows, put together without creating anything in it that it does not have.
template <class R>
QString contentOf(const R& record)
{
    if (!record.IsInitialized())
        return QStringLiteral("empty");
    R copy(record);
    QString content = xmlOf(copy);
    if constexpr (std::is_same_v<R, Fragment>)
        content += QString::number(copy.GetChoiceFragment());
    Of<R>::Members::forEach([&](auto member) { content += QString::number(member.isSet(copy)); });
    return content;
}

// Changes that may run out of memory half-way, on an empty record and on one that holds something.
template <class R>
void expectAllOrNothing(const std::function<void(R&)>& prepare, const std::function<void(R&)>& change)
{
    for (const bool isEmpty : {true, false}) {
        SCOPED_TRACE(isEmpty ? "empty" : "prepared");
        long successes = 0;
        for (;; ++successes) {
            R record;
            if (!isEmpty)
                prepare(record);
            const QString before = contentOf(record);
            if (!failsOutOfMemory(successes, [&] { change(record); }))
                break;
            EXPECT_EQ(contentOf(record), before) << "after " << successes << " allocations";
        }
        EXPECT_GT(successes, 0);
    }
}

TEST(OutOfMemory, AFailedHandingOutOfAMemberSelectsAndMarksNothing)
{
    const auto prepare = [](Fragment& record) { record.SetAcquireMastership(acquired(true)); };
    expectAllOrNothing<Fragment>(prepare, [](Fragment& record) { record.GetDF_Params(); });
    expectAllOrNothing<Fragment>(prepare, [](Fragment& record) { record.GetMastershipState(); });
    expectAllOrNothing<Fragment>(prepare,
                                 [](Fragment& record) { std::as_const(record).GetPelVtConnectServer(); });
    expectAllOrNothing<Fragment>(prepare,
                                 [](Fragment& record) { record.SetOstraInterfacePort(ostraPort(1)); });
    expectAllOrNothing<Fragment>(prepare, [](Fragment& record) { record.GetDefaultDF_Params(); });
    expectAllOrNothing<Fragment>(
        prepare, [](Fragment& record) { record.SetDefaultPelVtConnectServer(server("one")); });
    expectAllOrNothing<PelLu300RouterInterfaceXml>(
        [](PelLu300RouterInterfaceXml& record) { record.SetDefaultPelLu300RouterMessage(message(1)); },
        [](PelLu300RouterInterfaceXml& record) { record.GetPelLu300RouterMessage(); });
}

TEST(OutOfMemory, AFailedChangeOfAMessageLeavesItAsItWas)
{
    const QVector<Fragment> items{fragment("a"), fragment("b")};
    const auto prepare = [&items](PelLu300RouterMessage& record) {
        record.SetFragment(items);
        record.ResetFragment();
        record.SetFragment(items);
    };
    expectAllOrNothing<PelLu300RouterMessage>(
        prepare, [](PelLu300RouterMessage& record) { record.SetDefaultFragment(Fragment()); });
    const Fragment item = fragment("c");
    expectAllOrNothing<PelLu300RouterMessage>(
        prepare, [&item](PelLu300RouterMessage& record) { record.AppendFragment(item); });
}

TEST(OutOfMemory, AFailedInitChoiceLeavesTheChoiceAndEveryPayload)
{
    const auto prepare = [](Fragment& record) {
        record.SetAcquireMastership(acquired(true));
        record.SetDefaultDF_Params(params(2));
        record.SetDefaultPelVtConnectServer(server("one"));
    };
    for (const auto choice : {Fragment::DF_Params, Fragment::MastershipState, Fragment::AcquireMastership})
        expectAllOrNothing<Fragment>(prepare, [choice](Fragment& record) { record.InitChoice(choice); });
}

TEST(OutOfMemory, AFailedResetLeavesEveryMember)
{
    const auto prepare = [](Fragment& record) {
        record.SetAcquireMastership(acquired(true));
        record.SetDefaultDF_Params(params(2));
        record.SetDefaultPelVtConnectServer(server("one"));
    };
    long successes = 0;
    for (;; ++successes) {
        Fragment record;
        prepare(record);
        const QString before = contentOf(record);
        if (!failsOutOfMemory(successes, [&] { record.Reset(); }))
            break;
        EXPECT_EQ(contentOf(record), before);
    }
    EXPECT_GT(successes, 0);
    Fragment record;
    record.SetDefaultDF_Params(params(2));
    record.GetAcquireMastership();
    EXPECT_TRUE(failsOutOfMemory(0, [&] { record.ResetDF_Params(); }));
    EXPECT_EQ(record.GetChoiceFragment(), Fragment::AcquireMastership);
}

TEST(OutOfMemory, APayloadThatCannotBeMadeIsNotSelectedByReading)
{
    for (const bool asXml : {true, false}) {
        SCOPED_TRACE(asXml);
        Fragment record;
        record.SetAcquireMastership(acquired(true));
        bool hasFailed = false;
        for (long successes = 0;; ++successes) {
            Fragment target(record);
            QXmlStreamReader reader(QStringLiteral("<Fragment><DF_Params/></Fragment>"));
            ASSERT_TRUE(reader.readNextStartElement());
            const QByteArray entry = bytes("BE2DFF74 00000000");
            QDataStream stream(entry);
            const auto read = [&] {
                if (asXml)
                    target.ProcessXml(reader);
                else
                    target.SetBinary(stream, 8);
            };
            if (!failsOutOfMemory(successes, read))
                break;
            hasFailed = true;
            // Once it is there it is selected, whatever happens next.
            const Fragment& view = target;
            const bool isThere = !failsOutOfMemory(0, [&view] { view.GetDF_Params(); });
            EXPECT_EQ(target.GetChoiceFragment(),
                      isThere ? Fragment::DF_Params : Fragment::AcquireMastership);
        }
        EXPECT_TRUE(hasFailed);
    }
}

TEST(MessageLifecycle, ListsAreComparedByTheirItems)
{
    // What is no number equals nothing, not even itself.
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

TEST(MessageLifecycle, AFailedAppendLeavesTheListAsItWas)
{
    const Fragment item = fragment("new");
    for (const bool sharedList : {false, true}) {
        SCOPED_TRACE(sharedList);
        long successes = 0;
        for (;; ++successes) {
            PelLu300RouterMessage record;
            record.AppendFragment(fragment("one"));
            record.AppendFragment(fragment("two"));
            const QVector<Fragment> kept =
                sharedList ? std::as_const(record).GetFragment() : QVector<Fragment>();
            if (!failsOutOfMemory(successes, [&] { record.AppendFragment(item); }))
                break;
            SCOPED_TRACE(successes);
            const QVector<Fragment>& list = std::as_const(record).GetFragment();
            ASSERT_EQ(list.size(), 2);
            EXPECT_TRUE(list.at(0) == fragment("one"));
            EXPECT_TRUE(list.at(1) == fragment("two"));
        }
        EXPECT_GT(successes, 0);
    }
}

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

TEST(EnumeratedMemberLifecycle, TheInvalidValueIsARightArgument)
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

TEST(OwnerLifecycle, TheOwnChoiceIsARightArgumentOfInitChoice)
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

TEST(OwnerLifecycle, TheOwnItemsAreRightArguments)
{
    PelLu300RouterMessage record;
    record.AppendFragment(fragment("first"));
    // Often enough that the list moves while its own item is being appended.
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

TEST(OwnerLifecycle, TheModifiableMemberIsARightArgument)
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

TEST(OwnerLifecycle, TheSameHoldsForTheListOfAMessageAndThePayloadsOfAFragment)
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

// Both sharers must show the same members after the detach, whoever got the new block.
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
    // The document is judged by its message, whether that is set or not.
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
