// SPDX-License-Identifier: MIT
// What the tests of the life of a record share: every member of every record with values for it, and the
// operations of every record. Two records share a block if their defaults, which getters return by reference,
// have the same address.
#pragma once

#include "TestSupport.h"

#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

namespace testing_support {

// --- the members of all records -----------------------------------------------------------------

// Null and empty texts count as different here.
inline bool same(const QString& a, const QString& b) { return a.isNull() == b.isNull() && a == b; }
template <class T>
bool same(const T& a, const T& b)
{
    return a == b;
}

inline OstraInterfacePort ostraPort(unsigned int port)
{
    OstraInterfacePort record;
    record.SetPort(port);
    return record;
}

inline RouterVtServerPort routerPort(unsigned int port)
{
    RouterVtServerPort record;
    record.SetPort(port);
    return record;
}

inline PelVtConnectServer server(const char* address)
{
    PelVtConnectServer record;
    record.SetAddress(QString::fromLatin1(address));
    return record;
}

inline MastershipState mastership(const char* client)
{
    MastershipState record;
    record.SetMasterClientID(QString::fromLatin1(client));
    return record;
}

inline AcquireMastership acquired(bool success)
{
    AcquireMastership record;
    record.SetSuccess(success);
    return record;
}

inline ReleaseMastership released(bool success)
{
    ReleaseMastership record;
    record.SetSuccess(success);
    return record;
}

inline DF_Params params(double frequency)
{
    DF_Params record;
    record.SetFrequency(frequency);
    return record;
}

inline Fragment fragment(const char* address)
{
    Fragment record;
    record.SetPelVtConnectServer(server(address));
    return record;
}

inline PelLu300RouterMessage message(unsigned int number)
{
    PelLu300RouterMessage record;
    record.SetType(PelLu300RouterMessage::Reply);
    record.SetMessageID(number);
    record.AppendFragment(fragment("a"));
    record.AppendFragment(fragment("b"));
    return record;
}

// A member as a type: its accessors under common names, its initial value and default, and two other values
// of each. For a bool, the second value is the initial one.
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

// The default of a list is an item, unlike that of other members.
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

// All members of a record in declaration order, and one for tests where any will do.
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

// Calls visit(member) for every member of the records above.
template <class Visit>
void forEveryMember(Visit&& visit)
{
    forEveryMemberOf(RecordsWithSamples(), visit);
}

// The address of a default. It changes when the record gets another block.
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

// The operations above and those on the written forms.
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

inline std::shared_ptr<MODELKIT::Logger> newLogger() { return std::make_shared<MODELKIT::Logger>(); }

} // namespace testing_support
