// Turns the member table of a record into its data block and the bodies of its operations.
//
// A record's source lists its members and then defines the record:
//
//         kind   type          member   field      binary tag
//     ROW(Text,  QString,      Address, m_address, 0x2AC271EC)
//     ROW(Value, unsigned int, Port,    m_port,    0x1F980517)
//
// A row makes the member's slot, its entry in the table that all walks go over, and the bodies of the
// accessors that the record's header declares. The kind names the slot type (Slots.h) and with it all
// rules of the member. The macros only forward; what happens is told in the functions they call.
#pragma once

#include "modelkit/ClassNames.h"
#include "routerinterface/machinery/Binary.h"
#include "routerinterface/machinery/Checking.h"
#include "routerinterface/machinery/Description.h"
#include "routerinterface/machinery/Diagnostics.h"
#include "routerinterface/machinery/Lifecycle.h"
#include "routerinterface/machinery/Walks.h"
#include "routerinterface/machinery/Xml.h"

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

template <class R>
QLatin1String Walks<R>::className()
{
    return DataOf<R>::name();
}

template <class R>
const RecordInfo& Walks<R>::info()
{
    return Description::of<R>();
}

template <class R>
void Walks<R>::setValidate(const R& record, bool validate)
{
    machinery::setValidate(record, validate);
}

template <class R>
void Walks<R>::setLogger(const R& record, const std::shared_ptr<MODELKIT::Logger>& logger)
{
    machinery::setLogger(record, logger);
}

template <class R>
void Walks<R>::applySettings(const R& record, bool validate, const std::shared_ptr<MODELKIT::Logger>& logger)
{
    machinery::applySettings(record, validate, logger);
}

template <class R>
void Walks<R>::settleCopy(const R& record, bool validate)
{
    machinery::settleCopy(record, validate);
}

template <class R>
QtVersion::Size Walks<R>::numberOfItems(const R& record)
{
    return machinery::numberOfItems(record);
}

template <class R>
void Walks<R>::handDownToNewItems(const R& record, Reading& reading)
{
    machinery::handDownToNewItems(record, reading);
}

template <class R>
void Walks<R>::applyRules(const R& record, bool flag)
{
    machinery::applyRules(record, flag);
}

template <class R>
void Walks<R>::writeOwned(const R& record, QXmlStreamWriter& writer, bool validate, bool applied)
{
    machinery::writeOwned(record, writer, validate, applied);
}

template <class R>
void Walks<R>::readOwned(R& record, QXmlStreamReader& reader, Reading& reading)
{
    machinery::readElement(record, reader, reading, record.GetObjectName());
}

template <class R>
void Walks<R>::writeOwned(const R& record, BinarySink& sink, int id, bool writeId, bool validate,
                          bool applied)
{
    machinery::writeOwned(record, sink, id, writeId, validate, applied);
}

template <class R>
void Walks<R>::readEntries(R& record, BinarySource& source, qint64 length, Reading& reading)
{
    machinery::readEntries(record, source, length, reading);
}

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML

// --- what a row becomes in the data block -----------------------------------------------------

#define ROUTERINTERFACE_SLOT(Kind, Type, Name, field, tag) ROUTERINTERFACE_SLOT_##Kind(Type, field)
#define ROUTERINTERFACE_SLOT_Value(Type, field) machinery::Value<Type> field;
#define ROUTERINTERFACE_SLOT_Text(Type, field) machinery::Text<Type> field;
#define ROUTERINTERFACE_SLOT_Enumerated(Type, field) machinery::Enumerated<Type> field;
#define ROUTERINTERFACE_SLOT_Mandatory(Type, field) machinery::Mandatory<Type> field;
#define ROUTERINTERFACE_SLOT_List(Type, field) machinery::List<Type> field;
// The block keeps nested records by their index.
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

// --- what a row becomes among the accessors ---------------------------------------------------

#define ROUTERINTERFACE_ACCESSORS(Kind, Type, Name, field, tag) ROUTERINTERFACE_ACCESSORS_##Kind(Type, Name)

#define ROUTERINTERFACE_MEMBER(Name) DefinedRecord::Data::Name##Member

#define ROUTERINTERFACE_ACCESSORS_COMMON(Type, DefaultType, Name)                                      \
    bool DefinedRecord::Is##Name##Set() const                                                          \
    {                                                                                                  \
        return machinery::isSet<ROUTERINTERFACE_MEMBER(Name)>(*this);                                  \
    }                                                                                                  \
    void DefinedRecord::Reset##Name() { machinery::resetMember<ROUTERINTERFACE_MEMBER(Name)>(*this); } \
    const DefaultType& DefinedRecord::GetDefault##Name() const                                         \
    {                                                                                                  \
        return machinery::defaultOf<ROUTERINTERFACE_MEMBER(Name)>(*this);                              \
    }                                                                                                  \
    void DefinedRecord::SetDefault##Name(const DefaultType& value)                                     \
    {                                                                                                  \
        machinery::setDefault<ROUTERINTERFACE_MEMBER(Name)>(*this, value);                             \
    }

#define ROUTERINTERFACE_SETTER(Parameter, Name)                           \
    void DefinedRecord::Set##Name(Parameter value)                        \
    {                                                                     \
        machinery::setMember<ROUTERINTERFACE_MEMBER(Name)>(*this, value); \
    }

#define ROUTERINTERFACE_VALIDITY(Type, Name)                       \
    bool DefinedRecord::IsValid##Name(const Type& value) const     \
    {                                                              \
        return ROUTERINTERFACE_MEMBER(Name)::Slot::isValid(value); \
    }

#define ROUTERINTERFACE_ACCESSORS_Value(Type, Name)                        \
    Type DefinedRecord::Get##Name() const                                  \
    {                                                                      \
        return machinery::viewMember<ROUTERINTERFACE_MEMBER(Name)>(*this); \
    }                                                                      \
    ROUTERINTERFACE_SETTER(Type, Name)                                     \
    ROUTERINTERFACE_VALIDITY(Type, Name)                                   \
    ROUTERINTERFACE_ACCESSORS_COMMON(Type, Type, Name)

#define ROUTERINTERFACE_ACCESSORS_Text(Type, Name)                                                         \
    Type DefinedRecord::Get##Name() { return machinery::viewMember<ROUTERINTERFACE_MEMBER(Name)>(*this); } \
    ROUTERINTERFACE_SETTER(Type, Name)                                                                     \
    ROUTERINTERFACE_VALIDITY(Type, Name)                                                                   \
    ROUTERINTERFACE_ACCESSORS_COMMON(Type, Type, Name)

#define ROUTERINTERFACE_ACCESSORS_Enumerated(Type, Name)                                                  \
    DefinedRecord::Type DefinedRecord::Get##Name() const                                                  \
    {                                                                                                     \
        return machinery::viewMember<ROUTERINTERFACE_MEMBER(Name)>(*this);                                \
    }                                                                                                     \
    ROUTERINTERFACE_SETTER(const Type&, Name)                                                             \
    bool DefinedRecord::IsValid##Name(const Type& value) const { return machinery::isEnumerator(value); } \
    ROUTERINTERFACE_ACCESSORS_COMMON(Type, DefinedRecord::Type, Name)                                     \
    const DefinedRecord::Type& DefinedRecord::GetInvalid##Name() const                                    \
    {                                                                                                     \
        return machinery::slotOf<ROUTERINTERFACE_MEMBER(Name)>(*this).invalid;                            \
    }                                                                                                     \
    void DefinedRecord::SetInvalid##Name(const Type& value)                                               \
    {                                                                                                     \
        machinery::slotOf<ROUTERINTERFACE_MEMBER(Name)>(*this).invalid = value;                           \
    }                                                                                                     \
    QString DefinedRecord::Name##ToName(const Type& value) const { return machinery::nameOf(value); }     \
    DefinedRecord::Type DefinedRecord::NameTo##Name(const QString& name) const                            \
    {                                                                                                     \
        return machinery::enumeratorOf(name, GetInvalid##Name());                                         \
    }                                                                                                     \
    QString DefinedRecord::Get##Name##AsString() const { return machinery::nameOf(Get##Name()); }         \
    QStringList DefinedRecord::Get##Name##s() { return NamesOf(DefinedRecord::Type()); }                  \
    QStringList DefinedRecord::GetGUI##Name##s() { return machinery::displayNames<DefinedRecord::Type>(); }

#define ROUTERINTERFACE_ACCESSORS_Mandatory(Type, Name) ROUTERINTERFACE_ACCESSORS_Enumerated(Type, Name)

#define ROUTERINTERFACE_VIEWS(Type, Name)                                                                   \
    Type& DefinedRecord::Get##Name() { return machinery::editMember<ROUTERINTERFACE_MEMBER(Name)>(*this); } \
    const Type& DefinedRecord::Get##Name() const                                                            \
    {                                                                                                       \
        return machinery::viewMember<ROUTERINTERFACE_MEMBER(Name)>(*this);                                  \
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
    void DefinedRecord::Append##Name(const Type& item)                \
    {                                                                 \
        machinery::append<ROUTERINTERFACE_MEMBER(Name)>(*this, item); \
    }

// --- the walks of the records that a record owns ----------------------------------------------

#define ROUTERINTERFACE_OWNS(Kind, Type, Name, field, tag) ROUTERINTERFACE_OWNS_##Kind(Type)
#define ROUTERINTERFACE_OWNS_Value(Type)
#define ROUTERINTERFACE_OWNS_Text(Type)
#define ROUTERINTERFACE_OWNS_Enumerated(Type)
#define ROUTERINTERFACE_OWNS_Mandatory(Type)
#define ROUTERINTERFACE_OWNS_Nested(Type) extern template struct machinery::Walks<Type>;
#define ROUTERINTERFACE_OWNS_List(Type) extern template struct machinery::Walks<Type>;

// --- the record -------------------------------------------------------------------------------

/// Defines Record from its table; BlockType is the base of its data block (Slots.h). Used once in a
/// source, in the namespace of the record.
#define ROUTERINTERFACE_DEFINE_RECORD(Record, BlockType, MEMBERS)                                            \
    using DefinedRecord = Record;                                                                            \
    struct Record::Data : BlockType                                                                          \
    {                                                                                                        \
        MEMBERS(ROUTERINTERFACE_SLOT)                                                                        \
        enum Index : int                                                                                     \
        {                                                                                                    \
            MEMBERS(ROUTERINTERFACE_INDEX)                                                                   \
        };                                                                                                   \
        MEMBERS(ROUTERINTERFACE_DESCRIPTION)                                                                 \
        using Members = machinery::MemberList<machinery::ListHead MEMBERS(ROUTERINTERFACE_LISTED)>;          \
        static_assert(Members::count <= machinery::Flags::capacity, "a record has more members than flags"); \
        static QLatin1String name() { return QLatin1String(#Record); }                                       \
        static QString className() { return QStringLiteral(#Record); }                                       \
    };                                                                                                       \
    MEMBERS(ROUTERINTERFACE_OWNS)                                                                            \
    template struct machinery::Walks<Record>;                                                                \
    namespace {                                                                                              \
    [[maybe_unused]] const bool registered = MODELKIT::registerClass(Record::id, QStringLiteral(#Record));   \
    }                                                                                                        \
                                                                                                             \
    Record::Record() { machinery::Access::identify(*this, Data::className()); }                              \
    Record::Record(const Record& source) : MODELKIT::IMKObject(const_cast<Record&>(source).GetObjectType())  \
    {                                                                                                        \
        machinery::copyConstruct(*this, source);                                                             \
    }                                                                                                        \
    Record& Record::operator=(const Record& source)                                                          \
    {                                                                                                        \
        m_data = source.m_data;                                                                              \
        return *this;                                                                                        \
    }                                                                                                        \
    Record::~Record() = default;                                                                             \
                                                                                                             \
    bool Record::HasData() const { return machinery::hasData(*this); }                                       \
    void Record::Reset() { machinery::reset(*this); }                                                        \
    void Record::Check(bool flag) const { machinery::check(*this, flag); }                                   \
    void Record::Check() const { Check(false); }                                                             \
    void Record::GetXml(QXmlStreamWriter& writer) const { machinery::getXml(*this, writer); }                \
    bool Record::GetBinary(QDataStream& stream, int frameId, bool writeId) const                             \
    {                                                                                                        \
        return machinery::getBinary(*this, stream, frameId, writeId);                                        \
    }                                                                                                        \
    void Record::SetBinary(QDataStream& stream, int length) { machinery::setBinary(*this, stream, length); } \
    void Record::ProcessXml(QXmlStreamReader& reader) { machinery::processXml(*this, reader); }              \
    void Record::SetValidate(bool validate) const { machinery::setValidate(*this, validate); }               \
    void Record::SetLogger(std::shared_ptr<MODELKIT::Logger> logger) const                                   \
    {                                                                                                        \
        machinery::setLogger(*this, logger);                                                                 \
    }                                                                                                        \
    void Record::SetObjectType(MODELKIT::ObjectTypes) {}                                                     \
    void Record::ProcessXmlStartElement(QXmlStreamReader& reader)                                            \
    {                                                                                                        \
        machinery::processXmlStartElement(*this, reader);                                                    \
    }                                                                                                        \
    void Record::ResetToDefault() { machinery::resetToDefault(*this); }                                      \
    bool Record::AnyData() const { return machinery::anyData(*this); }                                       \
    bool Record::IsInitialized() const { return machinery::existingData(*this) != nullptr; }                 \
    bool Record::operator==(const Record& other) const { return machinery::equal(*this, other); }            \
    bool Record::operator!=(const Record& other) const { return !(*this == other); }                         \
    long long Record::GetId() { return id; }                                                                 \
    void Record::InitData() const { machinery::initData(*this); }                                            \
    void Record::ConstNoClearReset() const { machinery::resetValues(*this); }                                \
                                                                                                             \
    MEMBERS(ROUTERINTERFACE_ACCESSORS)

/// Defines the translation helpers of a record with enumerated members.
#define ROUTERINTERFACE_DEFINE_TRANSLATION(Record)                                                           \
    QString Record::tr(const char* text, const char* disambiguation)                                         \
    {                                                                                                        \
        return MODELKIT::QtVersion::translate("PELLU300ROUTERINTERFACEXML::" #Record, text, disambiguation); \
    }                                                                                                        \
    QString Record::tr(const char* text, const char* disambiguation, int n)                                  \
    {                                                                                                        \
        return MODELKIT::QtVersion::translate("PELLU300ROUTERINTERFACEXML::" #Record, text, disambiguation,  \
                                              n);                                                            \
    }                                                                                                        \
    QString Record::trUtf8(const char* text, const char* disambiguation)                                     \
    {                                                                                                        \
        return tr(text, disambiguation);                                                                     \
    }                                                                                                        \
    QString Record::trUtf8(const char* text, const char* disambiguation, int n)                              \
    {                                                                                                        \
        return tr(text, disambiguation, n);                                                                  \
    }
