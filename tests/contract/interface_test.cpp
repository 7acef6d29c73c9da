// SPDX-License-Identifier: MIT
// The interface that programs are written against: names, signatures and constness of every operation,
// the constants, the enumerations and the layout of the objects. What this file asserts may be added
// to, never changed.

#include "TestSupport.h"

#include <climits>
#include <type_traits>
#include <utility>

namespace {

using namespace testing_support;
using MODELKIT::IMKObject;
using MODELKIT::Logger;
using MODELKIT::ObjectTypes;

// The exact type of an operation that has no overloads. For a virtual operation the class in the type
// is the one that declares it, so the type also tells who overrides.
#define EXPECT_OPERATION(Class, operation, ...)                             \
    static_assert(std::is_same_v<decltype(&Class::operation), __VA_ARGS__>, \
                  #Class "::" #operation " has another signature")

// As above for one of several overloads.
#define EXPECT_OVERLOAD(Class, operation, ...)                                                        \
    static_assert(std::is_same_v<decltype(static_cast<__VA_ARGS__>(&Class::operation)), __VA_ARGS__>, \
                  #Class "::" #operation " lacks an overload")

// --- the base object --------------------------------------------------------------------------

EXPECT_OPERATION(IMKObject, HasData, bool (IMKObject::*)() const);
EXPECT_OPERATION(IMKObject, Reset, void (IMKObject::*)());
EXPECT_OVERLOAD(IMKObject, Check, void (IMKObject::*)(bool) const);
EXPECT_OVERLOAD(IMKObject, Check, void (IMKObject::*)() const);
EXPECT_OVERLOAD(IMKObject, IsValid, bool (IMKObject::*)(float) const);
EXPECT_OVERLOAD(IMKObject, IsValid, bool (IMKObject::*)(bool) const);
EXPECT_OVERLOAD(IMKObject, IsValid, bool (IMKObject::*)(unsigned int) const);
EXPECT_OVERLOAD(IMKObject, IsValid, bool (IMKObject::*)(long long) const);
EXPECT_OVERLOAD(IMKObject, IsValid, bool (IMKObject::*)(const QDateTime&) const);
EXPECT_OVERLOAD(IMKObject, IsValid, bool (IMKObject::*)(const QString&) const);
EXPECT_OVERLOAD(IMKObject, IsValid, bool (IMKObject::*)(double) const);
EXPECT_OVERLOAD(IMKObject, IsValid, bool (IMKObject::*)(int) const);
EXPECT_OVERLOAD(IMKObject, SetInvalid, void (IMKObject::*)(float&) const);
EXPECT_OVERLOAD(IMKObject, SetInvalid, void (IMKObject::*)(unsigned int&) const);
EXPECT_OVERLOAD(IMKObject, SetInvalid, void (IMKObject::*)(long long&) const);
EXPECT_OVERLOAD(IMKObject, SetInvalid, void (IMKObject::*)(QString&) const);
EXPECT_OVERLOAD(IMKObject, SetInvalid, void (IMKObject::*)(double&) const);
EXPECT_OVERLOAD(IMKObject, SetInvalid, void (IMKObject::*)(int&) const);
EXPECT_OPERATION(IMKObject, GetXml, void (IMKObject::*)(QXmlStreamWriter&) const);
EXPECT_OPERATION(IMKObject, GetBinary, bool (IMKObject::*)(QDataStream&, int, bool) const);
EXPECT_OPERATION(IMKObject, SetBinary, void (IMKObject::*)(QDataStream&, int));
EXPECT_OPERATION(IMKObject, SetXmlString, bool (IMKObject::*)(const QString&, bool));
EXPECT_OVERLOAD(IMKObject, SetBinaryRepresentation, bool (IMKObject::*)(QByteArray&));
EXPECT_OVERLOAD(IMKObject, SetBinaryRepresentation, bool (IMKObject::*)(QDataStream&));
EXPECT_OPERATION(IMKObject, MergeMKObject, bool (IMKObject::*)(const IMKObject&));
EXPECT_OPERATION(IMKObject, GetObjectType, ObjectTypes (IMKObject::*)());
EXPECT_OPERATION(IMKObject, GetObjectName, const QString& (IMKObject::*)() const);
EXPECT_OPERATION(IMKObject, ProcessXml, void (IMKObject::*)(QXmlStreamReader&));
EXPECT_OPERATION(IMKObject, GetXmlString, QString (IMKObject::*)());
EXPECT_OPERATION(IMKObject, GetBinaryRepresentation, void (IMKObject::*)(QDataStream&) const);
EXPECT_OPERATION(IMKObject, GetBinaryRepresentationAsQByteArray, QByteArray (IMKObject::*)());
EXPECT_OPERATION(IMKObject, GetCompressedBinaryRepresentation, void (IMKObject::*)(QDataStream&, int) const);
EXPECT_OPERATION(IMKObject, GetCompressedBinaryRepresentationAsQByteArray, QByteArray (IMKObject::*)(int));
EXPECT_OVERLOAD(IMKObject, LoadXml, bool (IMKObject::*)(const QString&));
EXPECT_OVERLOAD(IMKObject, LoadXml, bool (IMKObject::*)(QFile*));
EXPECT_OVERLOAD(IMKObject, LoadBinary, bool (IMKObject::*)(QFile*));
EXPECT_OPERATION(IMKObject, SaveXml, bool (IMKObject::*)(const QString&) const);
EXPECT_OPERATION(IMKObject, SetValidate, void (IMKObject::*)(bool) const);
EXPECT_OPERATION(IMKObject, GetValidate, bool (IMKObject::*)() const);
EXPECT_OPERATION(IMKObject, SetLogger, void (IMKObject::*)(std::shared_ptr<Logger>) const);
EXPECT_OPERATION(IMKObject, ResetLogger, void (IMKObject::*)() const);
EXPECT_OPERATION(IMKObject, GetVersion, const QString& (IMKObject::*)() const);
EXPECT_OPERATION(IMKObject, SetObjectType, void (IMKObject::*)(ObjectTypes));
EXPECT_OPERATION(IMKObject, GetLogger, std::shared_ptr<Logger> (IMKObject::*)() const);
EXPECT_OPERATION(IMKObject, skipCurrentElement, int (IMKObject::*)(QDataStream&, int, int) const);

static_assert(std::is_abstract_v<IMKObject>);
static_assert(std::has_virtual_destructor_v<IMKObject>);
static_assert(!std::is_final_v<IMKObject>);
static_assert(!std::is_copy_constructible_v<IMKObject> && !std::is_copy_assignable_v<IMKObject>);
static_assert(std::is_enum_v<ObjectTypes>);

// What derived classes see. `using` declarations would not do: they would make the operations public here,
// but would not show whether they are protected in the base.
class DerivedFromBase : public IMKObject
{
public:
    DerivedFromBase() = default;
    explicit DerivedFromBase(ObjectTypes type) : IMKObject(type) {}
    bool HasData() const override { return true; }
    void Reset() override {}
    void Check(bool) const override {}
    void Check() const override {}
    void GetXml(QXmlStreamWriter&) const override {}
    bool GetBinary(QDataStream&, int, bool) const override { return true; }
    void SetBinary(QDataStream&, int) override {}

    EXPECT_OPERATION(DerivedFromBase, SetObjectName, void (IMKObject::*)(const QString&));
    EXPECT_OPERATION(DerivedFromBase, GetTextValue, QString (IMKObject::*)(QXmlStreamReader&));
    EXPECT_OPERATION(DerivedFromBase, m_typeCode, long long IMKObject::*);

protected:
    void ProcessXmlStartElement(QXmlStreamReader&) override {}
};

static_assert(!std::is_abstract_v<DerivedFromBase>,
              "the base object demands more than its abstract operations");

// Detects whether an expression on an object is allowed outside its class.
#define DETECT(Name, expression)                                       \
    template <class T, class = void>                                   \
    struct Name : std::false_type                                      \
    {                                                                  \
    };                                                                 \
    template <class T>                                                 \
    struct Name<T, std::void_t<decltype(expression)>> : std::true_type \
    {                                                                  \
    };

DETECT(CanSetObjectName, std::declval<T&>().SetObjectName(QString()))
DETECT(CanProcessXmlStartElement,
       std::declval<T&>().ProcessXmlStartElement(std::declval<QXmlStreamReader&>()))
DETECT(CanGetTextValue, std::declval<T&>().GetTextValue(std::declval<QXmlStreamReader&>()))
DETECT(CanTouchTypeCode, std::declval<T&>().m_typeCode)
DETECT(CanInitData, std::declval<T&>().InitData())
DETECT(CanConstNoClearReset, std::declval<T&>().ConstNoClearReset())
DETECT(CanGetObjectName, std::declval<T&>().GetObjectName())
DETECT(CanGetObjectType, std::declval<T&>().GetObjectType())
DETECT(CanTranslate, T::tr("", ""))
DETECT(CanTranslateUtf8, T::trUtf8("", ""))
DETECT(CanSetInvalidChoice, std::declval<T&>().SetInvalidChoiceFragment(T::MastershipState))
DETECT(CanListBraceInit, T{0})

static_assert(CanGetObjectName<const IMKObject>::value && CanGetObjectType<IMKObject>::value,
              "the detection finds public operations");
static_assert(!CanGetObjectType<const IMKObject>::value);
static_assert(!CanSetObjectName<IMKObject>::value);
static_assert(!CanProcessXmlStartElement<IMKObject>::value);
static_assert(!CanGetTextValue<IMKObject>::value);
static_assert(!CanTouchTypeCode<IMKObject>::value);

// --- what all records have --------------------------------------------------------------------

// Deduces the class that declares the overload of Check.
template <class Expected, class Declaring>
constexpr bool isCheckOf(void (Declaring::*)() const)
{
    return std::is_same_v<Expected, Declaring>;
}
template <class Expected, class Declaring>
constexpr bool isCheckWithFlagOf(void (Declaring::*)(bool) const)
{
    return std::is_same_v<Expected, Declaring>;
}

template <class R>
constexpr bool hasCommonInterface()
{
    // overridden
    EXPECT_OPERATION(R, HasData, bool(R::*)() const);
    EXPECT_OPERATION(R, Reset, void(R::*)());
    static_assert(isCheckOf<R>(&R::Check));
    static_assert(isCheckWithFlagOf<R>(&R::Check));
    EXPECT_OPERATION(R, GetXml, void(R::*)(QXmlStreamWriter&) const);
    EXPECT_OPERATION(R, GetBinary, bool(R::*)(QDataStream&, int, bool) const);
    EXPECT_OPERATION(R, SetBinary, void(R::*)(QDataStream&, int));
    EXPECT_OPERATION(R, ProcessXml, void(R::*)(QXmlStreamReader&));
    EXPECT_OPERATION(R, SetValidate, void(R::*)(bool) const);
    EXPECT_OPERATION(R, SetLogger, void(R::*)(std::shared_ptr<Logger>) const);
    EXPECT_OPERATION(R, SetObjectType, void(R::*)(ObjectTypes));

    // inherited, and not hidden by the record
    EXPECT_OVERLOAD(R, IsValid, bool(IMKObject::*)(float) const);
    EXPECT_OVERLOAD(R, IsValid, bool(IMKObject::*)(bool) const);
    EXPECT_OVERLOAD(R, IsValid, bool(IMKObject::*)(unsigned int) const);
    EXPECT_OVERLOAD(R, IsValid, bool(IMKObject::*)(long long) const);
    EXPECT_OVERLOAD(R, IsValid, bool(IMKObject::*)(const QDateTime&) const);
    EXPECT_OVERLOAD(R, IsValid, bool(IMKObject::*)(const QString&) const);
    EXPECT_OVERLOAD(R, IsValid, bool(IMKObject::*)(double) const);
    EXPECT_OVERLOAD(R, IsValid, bool(IMKObject::*)(int) const);
    EXPECT_OVERLOAD(R, SetInvalid, void(IMKObject::*)(float&) const);
    EXPECT_OVERLOAD(R, SetInvalid, void(IMKObject::*)(unsigned int&) const);
    EXPECT_OVERLOAD(R, SetInvalid, void(IMKObject::*)(long long&) const);
    EXPECT_OVERLOAD(R, SetInvalid, void(IMKObject::*)(QString&) const);
    EXPECT_OVERLOAD(R, SetInvalid, void(IMKObject::*)(double&) const);
    EXPECT_OVERLOAD(R, SetInvalid, void(IMKObject::*)(int&) const);
    EXPECT_OPERATION(R, SetXmlString, bool(IMKObject::*)(const QString&, bool));
    EXPECT_OVERLOAD(R, SetBinaryRepresentation, bool(IMKObject::*)(QByteArray&));
    EXPECT_OVERLOAD(R, SetBinaryRepresentation, bool(IMKObject::*)(QDataStream&));
    EXPECT_OPERATION(R, MergeMKObject, bool(IMKObject::*)(const IMKObject&));
    EXPECT_OPERATION(R, GetObjectType, ObjectTypes(IMKObject::*)());
    EXPECT_OPERATION(R, GetObjectName, const QString& (IMKObject::*)() const);
    EXPECT_OPERATION(R, GetXmlString, QString(IMKObject::*)());
    EXPECT_OPERATION(R, GetBinaryRepresentation, void(IMKObject::*)(QDataStream&) const);
    EXPECT_OPERATION(R, GetBinaryRepresentationAsQByteArray, QByteArray(IMKObject::*)());
    EXPECT_OPERATION(R, GetCompressedBinaryRepresentation, void(IMKObject::*)(QDataStream&, int) const);
    EXPECT_OPERATION(R, GetCompressedBinaryRepresentationAsQByteArray, QByteArray(IMKObject::*)(int));
    EXPECT_OVERLOAD(R, LoadXml, bool(IMKObject::*)(const QString&));
    EXPECT_OVERLOAD(R, LoadXml, bool(IMKObject::*)(QFile*));
    EXPECT_OVERLOAD(R, LoadBinary, bool(IMKObject::*)(QFile*));
    EXPECT_OPERATION(R, SaveXml, bool(IMKObject::*)(const QString&) const);
    EXPECT_OPERATION(R, GetValidate, bool(IMKObject::*)() const);
    EXPECT_OPERATION(R, ResetLogger, void(IMKObject::*)() const);
    EXPECT_OPERATION(R, GetVersion, const QString& (IMKObject::*)() const);
    EXPECT_OPERATION(R, GetLogger, std::shared_ptr<Logger>(IMKObject::*)() const);
    EXPECT_OPERATION(R, skipCurrentElement, int(IMKObject::*)(QDataStream&, int, int) const);

    // the record's own
    EXPECT_OPERATION(R, ResetToDefault, void(R::*)());
    EXPECT_OPERATION(R, AnyData, bool(R::*)() const);
    EXPECT_OPERATION(R, IsInitialized, bool(R::*)() const);
    EXPECT_OPERATION(R, operator==, bool(R::*)(const R&) const);
    EXPECT_OPERATION(R, operator!=, bool(R::*)(const R&) const);
    EXPECT_OPERATION(R, operator=, R & (R::*)(const R&));
    EXPECT_OPERATION(R, GetId, long long (*)());
    EXPECT_OPERATION(R, id, const long long*);
    static_assert(std::is_default_constructible_v<R>);
    static_assert(std::is_copy_constructible_v<R>);
    static_assert(std::is_convertible_v<const R&, R>, "the copy constructor is not explicit");

    // access
    static_assert(!CanInitData<const R>::value);
    static_assert(!CanConstNoClearReset<const R>::value);
    static_assert(!CanProcessXmlStartElement<R>::value);
    static_assert(!CanSetObjectName<R>::value);
    static_assert(!CanTouchTypeCode<R>::value);

    // layout
    static_assert(std::is_base_of_v<IMKObject, R>);
    static_assert(std::is_convertible_v<R*, IMKObject*>, "the base is public and there is only one of it");
    static_assert(sizeof(R) == sizeof(IMKObject) + sizeof(void*), "a record is its base and one pointer");
    static_assert(alignof(R) == alignof(IMKObject));
    static_assert(std::is_polymorphic_v<R>);
    static_assert(std::has_virtual_destructor_v<R>);
    static_assert(!std::is_abstract_v<R>);
    static_assert(!std::is_final_v<R>);
    return true;
}

#define HAS_COMMON_INTERFACE(Name, value, tag, id) static_assert(hasCommonInterface<Name>());
PAYLOAD_RECORDS(HAS_COMMON_INTERFACE)
static_assert(hasCommonInterface<Fragment>());
static_assert(hasCommonInterface<PelLu300RouterMessage>());
static_assert(hasCommonInterface<PelLu300RouterInterfaceXml>());

// An explicit instantiation may name private members, so it can check their types.
template <class R, void (R::*initData)() const, void (R::*constNoClearReset)() const>
struct PrivateOperations
{
};
#define HAS_PRIVATE_OPERATIONS(Name, value, tag, id) \
    template struct PrivateOperations<Name, &Name::InitData, &Name::ConstNoClearReset>;
PAYLOAD_RECORDS(HAS_PRIVATE_OPERATIONS)
template struct PrivateOperations<Fragment, &Fragment::InitData, &Fragment::ConstNoClearReset>;
template struct PrivateOperations<PelLu300RouterMessage, &PelLu300RouterMessage::InitData,
                                  &PelLu300RouterMessage::ConstNoClearReset>;
template struct PrivateOperations<PelLu300RouterInterfaceXml, &PelLu300RouterInterfaceXml::InitData,
                                  &PelLu300RouterInterfaceXml::ConstNoClearReset>;

// --- the families of accessors ----------------------------------------------------------------

// The accessors that are the same for all members except lists.
#define EXPECT_STATE_ACCESSORS(R, X, T)                          \
    EXPECT_OPERATION(R, Is##X##Set, bool (R::*)() const);        \
    EXPECT_OPERATION(R, Reset##X, void (R::*)());                \
    EXPECT_OPERATION(R, GetDefault##X, const T& (R::*)() const); \
    EXPECT_OPERATION(R, SetDefault##X, void (R::*)(const T&))

#define EXPECT_VALUE_MEMBER(R, X, T)                              \
    EXPECT_OPERATION(R, Get##X, T (R::*)() const);                \
    EXPECT_OPERATION(R, Set##X, void (R::*)(T));                  \
    EXPECT_OPERATION(R, IsValid##X, bool (R::*)(const T&) const); \
    EXPECT_STATE_ACCESSORS(R, X, T)

// The getter of a text is not const.
#define EXPECT_TEXT_MEMBER(R, X)                                        \
    EXPECT_OPERATION(R, Get##X, QString (R::*)());                      \
    EXPECT_OPERATION(R, Set##X, void (R::*)(QString));                  \
    EXPECT_OPERATION(R, IsValid##X, bool (R::*)(const QString&) const); \
    EXPECT_STATE_ACCESSORS(R, X, QString)

#define EXPECT_ENUMERATED_MEMBER(R, X)                                  \
    EXPECT_OPERATION(R, Get##X, R::X (R::*)() const);                   \
    EXPECT_OPERATION(R, Set##X, void (R::*)(const R::X&));              \
    EXPECT_OPERATION(R, IsValid##X, bool (R::*)(const R::X&) const);    \
    EXPECT_STATE_ACCESSORS(R, X, R::X);                                 \
    EXPECT_OPERATION(R, X##ToName, QString (R::*)(const R::X&) const);  \
    EXPECT_OPERATION(R, NameTo##X, R::X (R::*)(const QString&) const);  \
    EXPECT_OPERATION(R, Get##X##s, QStringList (*)());                  \
    EXPECT_OPERATION(R, GetGUI##X##s, QStringList (*)());               \
    EXPECT_OPERATION(R, GetInvalid##X, const R::X& (R::*)() const);     \
    EXPECT_OPERATION(R, SetInvalid##X, void (R::*)(const R::X&));       \
    EXPECT_OPERATION(R, Get##X##AsString, QString (R::*)() const);      \
    EXPECT_OVERLOAD(R, tr, QString (*)(const char*, const char*));      \
    EXPECT_OVERLOAD(R, tr, QString (*)(const char*, const char*, int)); \
    EXPECT_OVERLOAD(R, trUtf8, QString (*)(const char*, const char*));  \
    EXPECT_OVERLOAD(R, trUtf8, QString (*)(const char*, const char*, int))

#define EXPECT_NESTED_MEMBER(R, X, T)                             \
    EXPECT_OVERLOAD(R, Get##X, T& (R::*)());                      \
    EXPECT_OVERLOAD(R, Get##X, const T& (R::*)() const);          \
    EXPECT_OPERATION(R, Set##X, void (R::*)(const T&));           \
    EXPECT_OPERATION(R, IsValid##X, bool (R::*)(const T&) const); \
    EXPECT_STATE_ACCESSORS(R, X, T)

EXPECT_VALUE_MEMBER(OstraInterfacePort, Port, unsigned int);

EXPECT_VALUE_MEMBER(RouterVtServerPort, Port, unsigned int);

EXPECT_TEXT_MEMBER(PelVtConnectServer, Address);
EXPECT_VALUE_MEMBER(PelVtConnectServer, Port, unsigned int);

EXPECT_ENUMERATED_MEMBER(MastershipState, State);
EXPECT_TEXT_MEMBER(MastershipState, MasterClientID);

EXPECT_VALUE_MEMBER(AcquireMastership, Success, bool);

EXPECT_VALUE_MEMBER(ReleaseMastership, Success, bool);

EXPECT_VALUE_MEMBER(DF_Params, Frequency, double);
EXPECT_VALUE_MEMBER(DF_Params, DemodulationFrequency, double);
EXPECT_VALUE_MEMBER(DF_Params, Bandwidth, double);
EXPECT_VALUE_MEMBER(DF_Params, PanoramaSpan, double);

#define HAS_PAYLOAD(Name, value, tag, id) EXPECT_NESTED_MEMBER(Fragment, Name, Name);
PAYLOAD_RECORDS(HAS_PAYLOAD)
using Choice = Fragment::ChoiceFragment;
EXPECT_OPERATION(Fragment, GetChoiceFragment, const Choice& (Fragment::*)() const);
EXPECT_OPERATION(Fragment, InitChoice, void (Fragment::*)(const Choice&));
EXPECT_OPERATION(Fragment, ResetChoiceFragment, void (Fragment::*)());
EXPECT_OPERATION(Fragment, ChoiceFragmentToName, QString (Fragment::*)(const Choice&) const);
EXPECT_OPERATION(Fragment, NameToChoiceFragment, Choice (Fragment::*)(const QString&) const);
EXPECT_OPERATION(Fragment, GetChoiceFragments, QStringList (*)());
EXPECT_OPERATION(Fragment, GetGUIChoiceFragments, QStringList (*)());
EXPECT_OPERATION(Fragment, IsValidChoiceFragment, bool (Fragment::*)(const Choice&) const);
EXPECT_OPERATION(Fragment, GetInvalidChoiceFragment, const Choice& (Fragment::*)() const);

EXPECT_ENUMERATED_MEMBER(PelLu300RouterMessage, Type);
EXPECT_VALUE_MEMBER(PelLu300RouterMessage, MessageID, unsigned int);
using Message = PelLu300RouterMessage;
EXPECT_OVERLOAD(Message, GetFragment, QVector<Fragment>& (Message::*)());
EXPECT_OVERLOAD(Message, GetFragment, const QVector<Fragment>& (Message::*)() const);
EXPECT_OPERATION(Message, SetFragment, void (Message::*)(const QVector<Fragment>&));
EXPECT_OPERATION(Message, AppendFragment, void (Message::*)(const Fragment&));
EXPECT_OPERATION(Message, IsValidFragment, bool (Message::*)(const QVector<Fragment>&) const);
EXPECT_STATE_ACCESSORS(Message, Fragment, Fragment);

EXPECT_NESTED_MEMBER(PelLu300RouterInterfaceXml, PelLu300RouterMessage, PelLu300RouterMessage);

// Only the two records with enumerated members have translation helpers. The invalid value of a choice is
// fixed.
static_assert(CanTranslate<MastershipState>::value && CanTranslateUtf8<MastershipState>::value);
static_assert(CanTranslate<PelLu300RouterMessage>::value && CanTranslateUtf8<PelLu300RouterMessage>::value);
static_assert(!CanTranslate<Fragment>::value && !CanTranslateUtf8<Fragment>::value);
static_assert(!CanSetInvalidChoice<Fragment>::value);

// --- enumerations -----------------------------------------------------------------------------

// Only an enumeration with a fixed underlying type can be initialised with a number in braces and may hold
// numbers that are not enumerators.
template <class E>
constexpr bool isOpenIntEnumeration = std::is_enum_v<E>&& std::is_same_v<std::underlying_type_t<E>, int>&&
    std::is_convertible_v<E, int>&& CanListBraceInit<E>::value;

static_assert(isOpenIntEnumeration<PelLu300RouterMessage::Type>);
static_assert(isOpenIntEnumeration<MastershipState::State>);
static_assert(isOpenIntEnumeration<Fragment::ChoiceFragment>);

static_assert(PelLu300RouterMessage::Request == 0);
static_assert(PelLu300RouterMessage::Reply == 1);
static_assert(PelLu300RouterMessage::Event == 2);
static_assert(std::is_same_v<decltype(PelLu300RouterMessage::Request), PelLu300RouterMessage::Type>);

static_assert(MastershipState::NoMasterPresent == 0);
static_assert(MastershipState::MasterPresent == 1);
static_assert(MastershipState::RouterIsMaster == 2);
static_assert(std::is_same_v<decltype(MastershipState::NoMasterPresent), MastershipState::State>);

#define HAS_ENUMERATOR(Name, value, tag, id) static_assert(Fragment::Name == (value));
PAYLOAD_RECORDS(HAS_ENUMERATOR)
static_assert(std::is_same_v<decltype(Fragment::MastershipState), Fragment::ChoiceFragment>);

// --- class ids --------------------------------------------------------------------------------

constexpr bool isPattern(long long id, unsigned int pattern)
{
    return static_cast<unsigned int>(id) == pattern;
}

#define HAS_ID(Name, value, tag, pattern) \
    static_assert(isPattern(Name::id, pattern) && Name::id == static_cast<int>(pattern));
PAYLOAD_RECORDS(HAS_ID)
static_assert(Fragment::id == -767521452LL && isPattern(Fragment::id, 0xD2408D54U));
static_assert(PelLu300RouterMessage::id == -356475558LL && isPattern(PelLu300RouterMessage::id, 0xEAC09D5AU));
static_assert(PelLu300RouterInterfaceXml::id == -2058139238LL
              && isPattern(PelLu300RouterInterfaceXml::id, 0x8553499AU));

TEST(InterfaceContract, GetIdGivesTheIdOfEachClass)
{
#define GIVES_ID(Name, value, tag, pattern) EXPECT_EQ(Name::GetId(), static_cast<int>(pattern));
    PAYLOAD_RECORDS(GIVES_ID)
    EXPECT_EQ(Fragment::GetId(), -767521452LL);
    EXPECT_EQ(PelLu300RouterMessage::GetId(), -356475558LL);
    EXPECT_EQ(PelLu300RouterInterfaceXml::GetId(), -2058139238LL);
}

TEST(InterfaceContract, IdsAreThirtyTwoBitPatternsWidenedAsSignedNumbers)
{
    EXPECT_EQ(static_cast<unsigned long long>(PelLu300RouterInterfaceXml::GetId()), 0xFFFFFFFF8553499AULL);
    EXPECT_EQ(static_cast<unsigned long long>(PelLu300RouterMessage::GetId()), 0xFFFFFFFFEAC09D5AULL);
    EXPECT_EQ(static_cast<unsigned long long>(Fragment::GetId()), 0xFFFFFFFFD2408D54ULL);
    EXPECT_EQ(static_cast<unsigned long long>(MastershipState::GetId()), 0xFFFFFFFFD6FF526CULL);
    EXPECT_EQ(static_cast<unsigned long long>(AcquireMastership::GetId()), 0x1A837ACAULL);
    EXPECT_EQ(static_cast<unsigned long long>(ReleaseMastership::GetId()), 0x5F3980D4ULL);
    EXPECT_EQ(static_cast<unsigned long long>(OstraInterfacePort::GetId()), 0x7F012EB8ULL);
    EXPECT_EQ(static_cast<unsigned long long>(PelVtConnectServer::GetId()), 0x0864034CULL);
    EXPECT_EQ(static_cast<unsigned long long>(RouterVtServerPort::GetId()), 0x24C7A508ULL);
    EXPECT_EQ(static_cast<unsigned long long>(DF_Params::GetId()), 0xFFFFFFFFF1EE139CULL);
}

TEST(InterfaceContract, EnumerationsHoldNumbersThatAreNoEnumerators)
{
    PelLu300RouterMessage message;
    message.SetType(static_cast<PelLu300RouterMessage::Type>(INT_MIN));
    EXPECT_EQ(message.GetType(), INT_MIN);
    message.SetType(static_cast<PelLu300RouterMessage::Type>(INT_MAX));
    EXPECT_EQ(message.GetType(), INT_MAX);

    MastershipState state;
    state.SetState(static_cast<MastershipState::State>(-1));
    EXPECT_EQ(state.GetState(), -1);
    state.SetState(static_cast<MastershipState::State>(3));
    EXPECT_EQ(state.GetState(), 3);
}

// --- objects ----------------------------------------------------------------------------------

template <class R>
class RecordContract : public ::testing::Test
{
};
TYPED_TEST_SUITE(RecordContract, AllRecords, );

TYPED_TEST(RecordContract, TheBaseObjectIsTheBeginningOfTheRecord)
{
    TypeParam record;
    IMKObject* base = &record;
    EXPECT_EQ(static_cast<void*>(base), static_cast<void*>(&record));
    // Compiles only without a virtual base.
    EXPECT_EQ(static_cast<TypeParam*>(base), &record);
}

TYPED_TEST(RecordContract, ARecordIsDestroyedThroughItsBase)
{
    struct Witness : TypeParam
    {
        explicit Witness(bool& destroyed) : m_destroyed(destroyed) {}
        ~Witness() override { m_destroyed = true; }
        bool& m_destroyed;
    };
    bool destroyed = false;
    std::unique_ptr<IMKObject> object = std::make_unique<Witness>(destroyed);
    object.reset();
    EXPECT_TRUE(destroyed);
}

TYPED_TEST(RecordContract, AssignmentGivesTheAssignedRecord)
{
    TypeParam source;
    TypeParam target;
    EXPECT_EQ(&(target = source), &target);
}

template <class Left, class Right>
constexpr bool areStrangers =
    !std::is_base_of_v<
        Left,
        Right> && !std::is_convertible_v<const Right&, Left> && !std::is_constructible_v<Left, const Right&> && !std::is_assignable_v<Left&, const Right&> && !AreComparable<Left, Right>::value;

template <class Record, class... Records>
constexpr int countStrangers()
{
    return (0 + ... + (areStrangers<Record, Records> ? 1 : 0));
}

template <class... Records>
constexpr bool areAllStrangers(::testing::Types<Records...>)
{
    return ((countStrangers<Records, Records...>() == int(sizeof...(Records)) - 1) && ...);
}

static_assert(areAllStrangers(AllRecords()), "no record converts into, or compares with, another one");

} // namespace
