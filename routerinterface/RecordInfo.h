/// \file
/// A description of all records, for programs that work on any of them: viewers, converters, tests.
///
/// The description is made from the tables from which the records themselves are made.
#pragma once

#include "modelkit/IMKObject.h"
#include "routerinterface/Export.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <cstdint>
#include <memory>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {
struct Description;
} // namespace machinery

class RecordInfo;

/// Describes one member of a record class and gives access to it in any record of that class.
///
/// Every access throws `std::bad_cast` when the record is of another class, and `std::logic_error`
/// when the member is not of the kind that the operation is for.
class ROUTERINTERFACE_EXPORT MemberInfo
{
public:
    /// What a member holds, and the type of its `QVariant`.
    enum Kind : int
    {
        UnsignedInteger, ///< `unsigned int`
        Decimal,         ///< `double`; the written forms carry two decimals
        Boolean,         ///< `bool`
        Text,            ///< `QString`, which may be null
        Enumeration,     ///< `int`: the position in GetNames(), or another number for no enumerator
        Record,          ///< a nested record
        List             ///< records in order
    };

    MemberInfo(const MemberInfo&) = delete;
    MemberInfo& operator=(const MemberInfo&) = delete;
    virtual ~MemberInfo();

    /// The name of the member. In XML it is the name of the member's element, except that a nested
    /// record and an item of a list are elements with the name of their class.
    const QString& GetName() const { return m_name; }
    Kind GetKind() const { return m_kind; }
    /// The tag of the member's entry in the binary form.
    std::uint32_t GetBinaryTag() const { return m_binaryTag; }
    /// Whether a record without the member is refused by its `Check()`.
    bool IsMandatory() const { return m_isMandatory; }
    /// The names of the enumerators in value order; empty for other kinds.
    const QStringList& GetNames() const { return m_names; }
    /// The class of the nested record or of the items; null for other kinds.
    const RecordInfo* GetClass() const { return m_class; }

    /// Whether the member is set and, in a record that carries one of its members at a time, is that
    /// one. A list is also taken for set as soon as it holds an item.
    virtual bool IsSet(const MODELKIT::IMKObject& record) const = 0;

    /// \name Members that hold a value
    /// @{
    virtual QVariant GetValue(const MODELKIT::IMKObject& record) const;
    /// Does what the member's setter does. A value of another type is converted as `QVariant` does.
    /// \throws OutOfRangeException as the setter does.
    virtual void SetValue(MODELKIT::IMKObject& record, const QVariant& value) const;
    /// @}

    /// \name Nested records
    /// @{
    virtual const MODELKIT::IMKObject& GetRecord(const MODELKIT::IMKObject& record) const;
    /// Hands the nested record out for changing in place, which sets the member.
    virtual MODELKIT::IMKObject& EditRecord(MODELKIT::IMKObject& record) const;
    /// @}

    /// \name Lists
    /// @{
    virtual int CountItems(const MODELKIT::IMKObject& record) const;
    /// \param index from 0 to `CountItems() - 1`.
    virtual const MODELKIT::IMKObject& GetItem(const MODELKIT::IMKObject& record, int index) const;
    /// \throws IncompleteDefinitionException as the record's own operation does.
    virtual void AppendItem(MODELKIT::IMKObject& record, const MODELKIT::IMKObject& item) const;
    /// @}

protected:
    MemberInfo(const QString& name, Kind kind, std::uint32_t binaryTag, bool isMandatory,
               const QStringList& names, const RecordInfo* recordClass);

private:
    QString m_name;
    Kind m_kind;
    std::uint32_t m_binaryTag;
    bool m_isMandatory;
    QStringList m_names;
    const RecordInfo* m_class;
};

/// Describes one record class. There is one such object for each class; it lives as long as the library.
class ROUTERINTERFACE_EXPORT RecordInfo
{
public:
    RecordInfo(const RecordInfo&) = delete;
    RecordInfo& operator=(const RecordInfo&) = delete;
    ~RecordInfo();

    /// The class of documents.
    static const RecordInfo& Document();
    /// All classes, the document first and every class before those that it owns.
    static const QVector<const RecordInfo*>& All();
    /// The class of that name; null when there is none.
    static const RecordInfo* Find(const QString& name);
    /// The class whose whole-object binary form begins with that word; null when there is none.
    static const RecordInfo* FindByFrameId(std::uint32_t frameId);
    /// The class of a record.
    /// \throws std::bad_cast when the object is no record of this library.
    static const RecordInfo& Of(const MODELKIT::IMKObject& record);

    /// The name of the class, which is also the name of its XML element.
    const QString& GetName() const { return m_name; }
    long long GetId() const { return m_id; }
    /// The first word of the whole-object binary form: the low 32 bits of the class id.
    std::uint32_t GetFrameId() const { return static_cast<std::uint32_t>(m_id); }
    /// Whether a record of this class carries one of its members at a time.
    bool IsChoice() const { return m_isChoice; }
    /// The members in the order in which they are written.
    const QVector<const MemberInfo*>& GetMembers() const { return m_members; }
    /// The member of that name; null when there is none.
    const MemberInfo* FindMember(const QString& name) const;
    /// The member with that tag in the binary form; null when there is none.
    const MemberInfo* FindMember(std::uint32_t binaryTag) const;

    /// A new record of the class.
    std::unique_ptr<MODELKIT::IMKObject> Create() const { return m_create(); }

private:
    friend struct machinery::Description;
    RecordInfo() = default;

    QString m_name;
    long long m_id = 0;
    bool m_isChoice = false;
    QVector<const MemberInfo*> m_members;
    std::unique_ptr<MODELKIT::IMKObject> (*m_create)() = nullptr;
};

} // namespace PELLU300ROUTERINTERFACEXML
