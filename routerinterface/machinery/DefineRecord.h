// SPDX-License-Identifier: MIT
// Defines a record from its member table: the data block and the bodies of the operations.
//
// A record's source names the record, the base of its data block (Block.h, OwnerBlock.h) and its members, and
// includes this file in the namespace of the record:
//
//     #define RECORD PelVtConnectServer
//     #define BLOCK machinery::Block
//             kind   type          member   field      binary tag
//     #define MEMBERS(ROW)
//         ROW(Text,  QString,      Address, m_address, 0x2AC271EC)
//         ROW(Value, unsigned int, Port,    m_port,    0x1F980517)
//     #include "routerinterface/machinery/DefineRecord.h"
//
// A choice, a record of which one member at a time is current, also names its enumeration: CHOICE. The
// enumerators are called as the members and numbered as the rows.
//
// Each row becomes the member's slot, its entry in the table for all walks, and the bodies of the accessors
// that the record's header declares. The kind is the type of the slot, which decides all rules of the member.
// The macros only forward to functions.
//
// The file is included once for each record. At the end, all macros that it makes or was given are undefined,
// so that several sources can be compiled as one.

#define ROUTERINTERFACE_TEXT(name) #name
#define ROUTERINTERFACE_NAME(name) ROUTERINTERFACE_TEXT(name)

// --- what a row becomes in the data block -----------------------------------------------------

#define ROUTERINTERFACE_KIND(Kind, Type, Name, field, tag) \
    static_assert(machinery::isKind(#Kind),                \
                  #Name " must be of the kind Value, Text, Enumerated, Mandatory, Nested or List");

#define ROUTERINTERFACE_SLOT(Kind, Type, Name, field, tag) ROUTERINTERFACE_SLOT_##Kind(Type, field)
#define ROUTERINTERFACE_SLOT_Value(Type, field) machinery::Value<Type> field;
#define ROUTERINTERFACE_SLOT_Text(Type, field) machinery::Text<Type> field;
#define ROUTERINTERFACE_SLOT_Enumerated(Type, field) machinery::Enumerated<Type> field;
#define ROUTERINTERFACE_SLOT_Mandatory(Type, field) machinery::Mandatory<Type> field;
#define ROUTERINTERFACE_SLOT_List(Type, field) machinery::List<Type> field;
// Nested records are kept by their index in the OwnerBlock.
#define ROUTERINTERFACE_SLOT_Nested(Type, field)

#define ROUTERINTERFACE_INDEX(Kind, Type, Name, field, tag) index##Name,

#define ROUTERINTERFACE_DESCRIPTION(Kind, Type, Name, field, tag)     \
    struct Name##Member                                               \
    {                                                                 \
        using Slot = machinery::Kind<Type>;                           \
        static constexpr int index = index##Name;                     \
        static constexpr std::uint32_t binaryTag = tag;               \
        template <class AnyData>                                      \
        static decltype(auto) slot(AnyData& data)                     \
        {                                                             \
            if constexpr (machinery::IsNested<Slot>::value)           \
                return Slot(data, index);                             \
            else                                                      \
                return (data.field);                                  \
        }                                                             \
        static QLatin1String name() { return QLatin1String(#Name); }  \
        static QString nameText() { return QStringLiteral(#Name); }   \
        static QString fieldName() { return QStringLiteral(#field); } \
    };

#define ROUTERINTERFACE_LISTED(Kind, Type, Name, field, tag) , Name##Member

// --- what a row becomes for debuggers ---------------------------------------------------------

#define ROUTERINTERFACE_LAYOUT(Kind, Type, Name, field, tag) \
    {#Name, #Kind, #Type, ROUTERINTERFACE_OFFSET_##Kind(field)},
#define ROUTERINTERFACE_OFFSET_Value(field) offsetof(Data, field.value)
#define ROUTERINTERFACE_OFFSET_Text(field) offsetof(Data, field.value)
#define ROUTERINTERFACE_OFFSET_Enumerated(field) offsetof(Data, field.value)
#define ROUTERINTERFACE_OFFSET_Mandatory(field) offsetof(Data, field.value)
#define ROUTERINTERFACE_OFFSET_List(field) offsetof(Data, field.value)
#define ROUTERINTERFACE_OFFSET_Nested(field) 0

// --- what a row becomes among the accessors ---------------------------------------------------

#define ROUTERINTERFACE_ACCESSORS(Kind, Type, Name, field, tag) ROUTERINTERFACE_ACCESSORS_##Kind(Type, Name)

#define ROUTERINTERFACE_MEMBER(Name) RECORD::Data::Name##Member

#define ROUTERINTERFACE_ACCESSORS_COMMON(Type, DefaultType, Name)                                        \
    bool RECORD::Is##Name##Set() const { return machinery::isSet<ROUTERINTERFACE_MEMBER(Name)>(*this); } \
    void RECORD::Reset##Name() { machinery::resetMember<ROUTERINTERFACE_MEMBER(Name)>(*this); }          \
    const DefaultType& RECORD::GetDefault##Name() const                                                  \
    {                                                                                                    \
        return machinery::defaultOf<ROUTERINTERFACE_MEMBER(Name)>(*this);                                \
    }                                                                                                    \
    void RECORD::SetDefault##Name(const DefaultType& value)                                              \
    {                                                                                                    \
        machinery::setDefault<ROUTERINTERFACE_MEMBER(Name)>(*this, value);                               \
    }

#define ROUTERINTERFACE_SETTER(Parameter, Name)                           \
    void RECORD::Set##Name(Parameter value)                               \
    {                                                                     \
        machinery::setMember<ROUTERINTERFACE_MEMBER(Name)>(*this, value); \
    }

#define ROUTERINTERFACE_VALIDITY(Type, Name)                       \
    bool RECORD::IsValid##Name(const Type& value) const            \
    {                                                              \
        return ROUTERINTERFACE_MEMBER(Name)::Slot::isValid(value); \
    }

#define ROUTERINTERFACE_ACCESSORS_Value(Type, Name)                                                       \
    Type RECORD::Get##Name() const { return machinery::viewMember<ROUTERINTERFACE_MEMBER(Name)>(*this); } \
    ROUTERINTERFACE_SETTER(Type, Name)                                                                    \
    ROUTERINTERFACE_VALIDITY(Type, Name)                                                                  \
    ROUTERINTERFACE_ACCESSORS_COMMON(Type, Type, Name)

#define ROUTERINTERFACE_ACCESSORS_Text(Type, Name)                                                  \
    Type RECORD::Get##Name() { return machinery::viewMember<ROUTERINTERFACE_MEMBER(Name)>(*this); } \
    ROUTERINTERFACE_SETTER(Type, Name)                                                              \
    ROUTERINTERFACE_VALIDITY(Type, Name)                                                            \
    ROUTERINTERFACE_ACCESSORS_COMMON(Type, Type, Name)

#define ROUTERINTERFACE_ACCESSORS_Enumerated(Type, Name)                                           \
    RECORD::Type RECORD::Get##Name() const                                                         \
    {                                                                                              \
        return machinery::viewMember<ROUTERINTERFACE_MEMBER(Name)>(*this);                         \
    }                                                                                              \
    ROUTERINTERFACE_SETTER(const Type&, Name)                                                      \
    bool RECORD::IsValid##Name(const Type& value) const { return machinery::isEnumerator(value); } \
    ROUTERINTERFACE_ACCESSORS_COMMON(Type, RECORD::Type, Name)                                     \
    const RECORD::Type& RECORD::GetInvalid##Name() const                                           \
    {                                                                                              \
        return machinery::slotOf<ROUTERINTERFACE_MEMBER(Name)>(*this).invalid;                     \
    }                                                                                              \
    void RECORD::SetInvalid##Name(const Type& value)                                               \
    {                                                                                              \
        machinery::slotOf<ROUTERINTERFACE_MEMBER(Name)>(*this).invalid = value;                    \
    }                                                                                              \
    QString RECORD::Name##ToName(const Type& value) const { return machinery::nameOf(value); }     \
    RECORD::Type RECORD::NameTo##Name(const QString& name) const                                   \
    {                                                                                              \
        return machinery::enumeratorOf(name, GetInvalid##Name());                                  \
    }                                                                                              \
    QString RECORD::Get##Name##AsString() const { return machinery::nameOf(Get##Name()); }         \
    QStringList RECORD::Get##Name##s() { return NamesOf(RECORD::Type()); }                         \
    QStringList RECORD::GetGUI##Name##s() { return machinery::displayNames<RECORD::Type>(); }

#define ROUTERINTERFACE_ACCESSORS_Mandatory(Type, Name) ROUTERINTERFACE_ACCESSORS_Enumerated(Type, Name)

#define ROUTERINTERFACE_VIEWS(Type, Name)                                                            \
    Type& RECORD::Get##Name() { return machinery::editMember<ROUTERINTERFACE_MEMBER(Name)>(*this); } \
    const Type& RECORD::Get##Name() const                                                            \
    {                                                                                                \
        return machinery::viewMember<ROUTERINTERFACE_MEMBER(Name)>(*this);                           \
    }

#define ROUTERINTERFACE_ACCESSORS_Nested(Type, Name) \
    ROUTERINTERFACE_VIEWS(Type, Name)                \
    ROUTERINTERFACE_SETTER(const Type&, Name)        \
    ROUTERINTERFACE_VALIDITY(Type, Name)             \
    ROUTERINTERFACE_ACCESSORS_COMMON(Type, Type, Name)

#define ROUTERINTERFACE_ACCESSORS_List(Type, Name)                    \
    ROUTERINTERFACE_VIEWS(QVector<Type>, Name)                        \
    ROUTERINTERFACE_SETTER(const QVector<Type>&, Name)                \
    ROUTERINTERFACE_VALIDITY(QVector<Type>, Name)                     \
    ROUTERINTERFACE_ACCESSORS_COMMON(Type, Type, Name)                \
    void RECORD::Append##Name(const Type& item)                       \
    {                                                                 \
        machinery::append<ROUTERINTERFACE_MEMBER(Name)>(*this, item); \
    }                                                                 \
    Type& RECORD::Add##Name() { return machinery::add<ROUTERINTERFACE_MEMBER(Name)>(*this); }

// --- the walks of the records that a record owns ----------------------------------------------

#define ROUTERINTERFACE_OWNS(Kind, Type, Name, field, tag) ROUTERINTERFACE_OWNS_##Kind(Type)
#define ROUTERINTERFACE_OWNS_Value(Type)
#define ROUTERINTERFACE_OWNS_Text(Type)
#define ROUTERINTERFACE_OWNS_Enumerated(Type)
#define ROUTERINTERFACE_OWNS_Mandatory(Type)
#define ROUTERINTERFACE_OWNS_Nested(Type) extern template struct machinery::Walks<Type>;
#define ROUTERINTERFACE_OWNS_List(Type) extern template struct machinery::Walks<Type>;

// --- the record -------------------------------------------------------------------------------

MEMBERS(ROUTERINTERFACE_KIND)

struct RECORD::Data : BLOCK
{
    MEMBERS(ROUTERINTERFACE_SLOT)
    enum Index : int
    {
        MEMBERS(ROUTERINTERFACE_INDEX)
    };
    MEMBERS(ROUTERINTERFACE_DESCRIPTION)
    using Members = machinery::MemberList<machinery::ListHead MEMBERS(ROUTERINTERFACE_LISTED)>;
    static_assert(Members::count <= machinery::Flags::capacity,
                  "the record has more members than Flags (machinery/Block.h) has bits");
    static_assert(Members::tagsDiffer(), "two members of a record have the same binary tag");
    static_assert(!Members::has<machinery::IsNested> || std::is_base_of_v<machinery::OwnerBlock, BLOCK>,
                  "the block of a record with a member of the kind Nested is an OwnerBlock or a ChoiceBlock");
    static_assert(!machinery::isChoice<BLOCK> || Members::hasOnly<machinery::IsNested>,
                  "all members of a choice are of the kind Nested");
    static QLatin1String name() { return QLatin1String(ROUTERINTERFACE_NAME(RECORD)); }
    static QString nameText() { return QStringLiteral(ROUTERINTERFACE_NAME(RECORD)); }
    static const bool registered;
    // Exported: debuggers find it by its name, even in a library without debug information.
    static ROUTERINTERFACE_EXPORT const machinery::RecordLayout<Members::count> layout;
};
ROUTERINTERFACE_OFFSETS_BEGIN
const machinery::RecordLayout<RECORD::Data::Members::count> RECORD::Data::layout =
    machinery::layoutOf<RECORD, Members::count>({MEMBERS(ROUTERINTERFACE_LAYOUT)});
ROUTERINTERFACE_OFFSETS_END
MEMBERS(ROUTERINTERFACE_OWNS)
template struct machinery::Walks<RECORD>;
const bool RECORD::Data::registered =
    MODELKIT::registerClass(RECORD::id, Data::nameText()) && machinery::registerPlainXml<RECORD>();

RECORD::RECORD() { machinery::Access::identify(*this, Data::nameText()); }
RECORD::RECORD(const RECORD& source) : MODELKIT::IMKObject(const_cast<RECORD&>(source).GetObjectType())
{
    machinery::copyConstruct(*this, source);
}
RECORD& RECORD::operator=(const RECORD& source)
{
    m_data = source.m_data;
    return *this;
}
RECORD::RECORD(RECORD&& source) noexcept : MODELKIT::IMKObject(source.MODELKIT::IMKObject::GetObjectType())
{
    machinery::moveConstruct(*this, source);
}
RECORD::~RECORD() = default;
void RECORD::swap(RECORD& other) noexcept { m_data.swap(other.m_data); }

bool RECORD::HasData() const { return machinery::hasData(*this); }
void RECORD::Reset() { machinery::reset(*this); }
void RECORD::Check(bool) const { machinery::check(*this); }
void RECORD::Check() const { Check(false); }
void RECORD::GetXml(QXmlStreamWriter& writer) const { machinery::getXml(*this, writer); }
bool RECORD::GetBinary(QDataStream& stream, int frameId, bool writeId) const
{
    return machinery::getBinary(*this, stream, writeId ? std::optional<int>(frameId) : std::nullopt);
}
void RECORD::SetBinary(QDataStream& stream, int length) { machinery::setBinary(*this, stream, length); }
void RECORD::ProcessXml(QXmlStreamReader& reader) { machinery::processXml(*this, reader); }
void RECORD::SetValidate(bool validate) const { machinery::Walks<RECORD>::setValidate(*this, validate); }
void RECORD::SetLogger(std::shared_ptr<MODELKIT::Logger> logger) const
{
    machinery::setLogger(*this, std::move(logger));
}
void RECORD::SetObjectType(MODELKIT::ObjectTypes) {}
void RECORD::ProcessXmlStartElement(QXmlStreamReader& reader)
{
    machinery::processXmlStartElement(*this, reader);
}
void RECORD::ResetToDefault() { machinery::resetToDefault(*this); }
bool RECORD::AnyData() const { return machinery::anyData(*this); }
bool RECORD::IsInitialized() const { return machinery::existingData(*this) != nullptr; }
bool RECORD::operator==(const RECORD& other) const { return machinery::equal(*this, other); }
bool RECORD::operator!=(const RECORD& other) const { return !(*this == other); }
long long RECORD::GetId() { return id; }
void RECORD::InitData() const { machinery::initData(*this); }
void RECORD::ConstNoClearReset() const { machinery::resetValues(*this); }

MEMBERS(ROUTERINTERFACE_ACCESSORS)

#ifdef CHOICE
    #define SCOPE RECORD
    #define ENUMERATION CHOICE
    #define ENUMERATORS MEMBERS
    #include "routerinterface/machinery/DefineNames.h"
#endif

#undef ROUTERINTERFACE_TEXT
#undef ROUTERINTERFACE_NAME
#undef ROUTERINTERFACE_KIND
#undef ROUTERINTERFACE_SLOT
#undef ROUTERINTERFACE_SLOT_Value
#undef ROUTERINTERFACE_SLOT_Text
#undef ROUTERINTERFACE_SLOT_Enumerated
#undef ROUTERINTERFACE_SLOT_Mandatory
#undef ROUTERINTERFACE_SLOT_List
#undef ROUTERINTERFACE_SLOT_Nested
#undef ROUTERINTERFACE_INDEX
#undef ROUTERINTERFACE_DESCRIPTION
#undef ROUTERINTERFACE_LISTED
#undef ROUTERINTERFACE_LAYOUT
#undef ROUTERINTERFACE_OFFSET_Value
#undef ROUTERINTERFACE_OFFSET_Text
#undef ROUTERINTERFACE_OFFSET_Enumerated
#undef ROUTERINTERFACE_OFFSET_Mandatory
#undef ROUTERINTERFACE_OFFSET_List
#undef ROUTERINTERFACE_OFFSET_Nested
#undef ROUTERINTERFACE_ACCESSORS
#undef ROUTERINTERFACE_MEMBER
#undef ROUTERINTERFACE_ACCESSORS_COMMON
#undef ROUTERINTERFACE_SETTER
#undef ROUTERINTERFACE_VALIDITY
#undef ROUTERINTERFACE_ACCESSORS_Value
#undef ROUTERINTERFACE_ACCESSORS_Text
#undef ROUTERINTERFACE_ACCESSORS_Enumerated
#undef ROUTERINTERFACE_ACCESSORS_Mandatory
#undef ROUTERINTERFACE_VIEWS
#undef ROUTERINTERFACE_ACCESSORS_Nested
#undef ROUTERINTERFACE_ACCESSORS_List
#undef ROUTERINTERFACE_OWNS
#undef ROUTERINTERFACE_OWNS_Value
#undef ROUTERINTERFACE_OWNS_Text
#undef ROUTERINTERFACE_OWNS_Enumerated
#undef ROUTERINTERFACE_OWNS_Mandatory
#undef ROUTERINTERFACE_OWNS_Nested
#undef ROUTERINTERFACE_OWNS_List
#undef RECORD
#undef BLOCK
#undef CHOICE
#undef MEMBERS
