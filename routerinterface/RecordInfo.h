// SPDX-License-Identifier: MIT
/// \file
/// A description of all records, for programs that work on any of them: viewers, converters, tests.
///
/// The description is made from the tables from which the records themselves are made.
#pragma once

#include "modelkit/IMKObject.h"
#include "routerinterface/Export.h"

#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <cstdint>
#include <memory>
#include <utility>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {
struct Description;
} // namespace machinery

class RecordInfo;

/// Describes one member of a record class and gives access to it in any record of that class.
///
/// Everything goes the way of the record's own accessors: a value is stored, a default takes effect and a
/// rule is applied as there.
///
/// Every access throws `std::bad_cast` when the record, or a record that is passed for it, is of another
/// class, and `std::logic_error` when the member is not of the kind that the operation is for. An operation
/// that throws has changed no value, no flag, no item and no choice.
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

    /// Not copied: it describes one member, and programs hold pointers to it.
    MemberInfo(const MemberInfo&) = delete;
    /// Not copied: it describes one member, and programs hold pointers to it.
    MemberInfo& operator=(const MemberInfo&) = delete;
    /// The library does that when it is unloaded.
    virtual ~MemberInfo();

    /// The name of the member. In XML it is the name of the member's element, but the element of a nested
    /// record or list item has the object name of that record. It is the name of the class, unless a derived
    /// class has changed it.
    const QString& GetName() const { return m_name; }
    /// What the member holds.
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
    /// Puts the member back: it is not set any more and has its default value, but a text is null and a
    /// list empty. The selection of a choice stays as it is.
    virtual void Reset(MODELKIT::IMKObject& record) const = 0;
    /// Whether a default has been given, with SetDefault(), SetDefaultRecord() or the record's own operation.
    virtual bool IsDefaultSet(const MODELKIT::IMKObject& record) const = 0;

    /// \name Members that hold a value
    ///
    /// What is taken for a value of each kind; nothing is stored as something else:
    /// - `UnsignedInteger`: numbers from 0 to 4294967295; texts that are the decimal digits of one,
    ///   without sign and white space.
    /// - `Decimal`: numbers, of integers those up to 2^53; texts that `QString::toDouble` reads, such as
    ///   "1e3", "nan" and "-inf", without white space around them.
    /// - `Boolean`: `bool`; the numbers 0 and 1; the texts "true", "false", "1" and "0".
    /// - `Text`: texts. A null one is the null string.
    /// - `Enumeration`: the exact name of an enumerator; 32-bit numbers, whether there is such an enumerator
    ///   or not.
    ///
    /// A text is a `QString`, or a `QByteArray` in UTF-8. A number is of any built-in number type but `bool`,
    /// or a C++ enumerator that is not negative; floating point numbers must be whole, except for decimals. A
    /// null `QVariant` of another type holds no value, nor does an invalid one.
    /// @{

    /// The current value, in a `QVariant` of the type that goes with the kind.
    virtual QVariant GetValue(const MODELKIT::IMKObject& record) const;
    /// Does what the member's setter does to the record. When it throws, the record is unchanged.
    /// \throws OutOfRangeException when the QVariant holds no value of the member, whether validation is on
    /// or off, and when the setter refuses the value. It carries what was passed and, for an enumeration,
    /// the closest name.
    virtual void SetValue(MODELKIT::IMKObject& record, const QVariant& value) const;
    /// Whether SetValue() takes the value while validation is on. Throws only when the member is of another
    /// kind.
    virtual bool IsValid(const QVariant& value) const;
    /// The default, whether one has been given or not.
    virtual QVariant GetDefault(const MODELKIT::IMKObject& record) const;
    /// Gives a default. The current value changes with the next reset only. As with the record's own
    /// operation no rule is applied, not even while validation is on.
    /// \throws OutOfRangeException when the QVariant holds no value of the member.
    virtual void SetDefault(MODELKIT::IMKObject& record, const QVariant& value) const;
    /// @}

    /// \name Nested records
    ///
    /// References are good until the record around is assigned, or is touched while it shares its data.
    /// @{

    /// The nested record, whether it is set or not.
    virtual const MODELKIT::IMKObject& GetRecord(const MODELKIT::IMKObject& record) const;
    /// Hands the nested record out for changing in place, which sets the member and selects it in a choice.
    virtual MODELKIT::IMKObject& EditRecord(MODELKIT::IMKObject& record) const;
    /// Does what the member's setter does to the record: takes over the content of \a value, which sets the
    /// member and selects it in a choice. Throws `std::bad_cast` for a value of another class.
    virtual void SetRecord(MODELKIT::IMKObject& record, const MODELKIT::IMKObject& value) const;
    /// Makes the member of a choice the one that is carried, and sets it, with the content that it has. The
    /// others keep theirs unseen. To begin afresh as a record's own `InitChoice` does, reset the record and
    /// pass GetDefaultRecord() to SetRecord().
    /// \throws std::logic_error when the record is no choice.
    virtual void Select(MODELKIT::IMKObject& record) const;
    /// @}

    /// \name Nested records and lists
    /// @{

    /// The default of a nested record, or the item that a list gets by the record's `ResetToDefault`.
    virtual const MODELKIT::IMKObject& GetDefaultRecord(const MODELKIT::IMKObject& record) const;
    /// Makes \a value that default of the record. The current content changes with the next reset only.
    virtual void SetDefaultRecord(MODELKIT::IMKObject& record, const MODELKIT::IMKObject& value) const;
    /// @}

    /// \name Lists
    ///
    /// A reference to an item is good until items are added, removed or moved, but no longer than one to a
    /// nested record. Every change marks the list as set; it stays set when the last item is removed. A wrong
    /// index throws `std::out_of_range`.
    /// @{

    /// The number of items.
    virtual int CountItems(const MODELKIT::IMKObject& record) const;
    /// An item of the list in the record.
    /// \param index from 0 to `CountItems() - 1`.
    virtual const MODELKIT::IMKObject& GetItem(const MODELKIT::IMKObject& record, int index) const;
    /// Hands an item out for changing in place. No rule is applied to what it then holds before the next
    /// check. The validation flag of the record reaches the item with the record's next operation.
    /// \param index from 0 to `CountItems() - 1`.
    virtual MODELKIT::IMKObject& EditItem(MODELKIT::IMKObject& record, int index) const;
    /// Appends a copy of the item, which may be one of the list's own, to the list in the record.
    /// \throws IncompleteDefinitionException when validation is on and the item lacks data.
    virtual void AppendItem(MODELKIT::IMKObject& record, const MODELKIT::IMKObject& item) const;
    /// Does the same, but puts the copy in front of the item of the record with that index.
    /// \param index from 0 to `CountItems()`, which appends.
    /// \throws IncompleteDefinitionException when validation is on and the item lacks data.
    virtual void InsertItem(MODELKIT::IMKObject& record, int index, const MODELKIT::IMKObject& item) const;
    /// Removes an item from the list in the record.
    /// \param index from 0 to `CountItems() - 1`.
    virtual void RemoveItem(MODELKIT::IMKObject& record, int index) const;
    /// Takes an item of the record out and puts it back so that its index is \a to. It keeps its validation
    /// flag and logger.
    /// \param from, to from 0 to `CountItems() - 1`.
    virtual void MoveItem(MODELKIT::IMKObject& record, int from, int to) const;
    /// @}

protected:
    /// For the descriptions, which the library makes: what the functions GetName(), GetKind(),
    /// GetBinaryTag(), IsMandatory(), GetNames() and GetClass() give.
    /// \param name, kind, binaryTag, isMandatory, names, recordClass in this order
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
    /// Not copied: it describes one class, and programs hold pointers to it.
    RecordInfo(const RecordInfo&) = delete;
    /// Not copied: it describes one class, and programs hold pointers to it.
    RecordInfo& operator=(const RecordInfo&) = delete;
    /// The library does that when it is unloaded.
    ~RecordInfo();

    /// The class of documents.
    static const RecordInfo& Document();
    /// All classes, the document first and every class before those that it owns.
    static const QVector<const RecordInfo*>& All();
    /// The class of that name; null when there is none.
    static const RecordInfo* Find(const QString& name);
    /// The class whose whole-object binary form begins with that word; null when there is none.
    static const RecordInfo* FindByFrameId(std::uint32_t frameId);
    /// The class of a record, whatever its name; for a derived class that of the record.
    /// \throws std::bad_cast when the object is no record of this library.
    static const RecordInfo& Of(const MODELKIT::IMKObject& record);

    /// The name of the class, which is also the name of its XML element.
    const QString& GetName() const { return m_name; }
    /// The id of the class, as its `GetId()`.
    long long GetId() const { return m_id; }
    /// The first word of the whole-object binary form: the low 32 bits of the class id.
    std::uint32_t GetFrameId() const { return static_cast<std::uint32_t>(m_id); }
    /// Whether a record of this class carries one of its members at a time.
    bool IsChoice() const { return m_selected != nullptr; }
    /// \name Choices
    /// MemberInfo::Select() selects a member. All throw `std::logic_error` when this class is no choice, and
    /// `std::bad_cast` when the record is of another class.
    /// @{

    /// The member that the record carries; null when it carries none.
    const MemberInfo* GetSelected(const MODELKIT::IMKObject& record) const;
    /// Lets the record carry none of its members. They keep their content and their flags unseen.
    void ClearSelection(MODELKIT::IMKObject& record) const;
    /// @}

    /// The members in the order in which they are written.
    const QVector<const MemberInfo*>& GetMembers() const { return m_members; }
    /// The member of that name; null when there is none.
    const MemberInfo* FindMember(const QString& name) const;
    /// The member with that tag in the binary form; null when there is none.
    const MemberInfo* FindMember(std::uint32_t binaryTag) const;

    /// The type of Qt's hash values: `uint` up to Qt 5, `size_t` from Qt 6.
    using HashValue = decltype(qHash(std::declval<QString>()));
    /// A hash of the content of \a record, which depends on \a seed. Records that are equal have the same.
    /// \throws std::bad_cast when the record is of another class.
    HashValue Hash(const MODELKIT::IMKObject& record, HashValue seed = 0) const
    {
        return m_hash(record, seed);
    }

    /// A new record of the class.
    std::unique_ptr<MODELKIT::IMKObject> Create() const { return m_create(); }
    /// Does what the assignment of the class does: \a target shares the data of \a source until either record
    /// is next touched, and keeps its validation flag and logger.
    /// \throws std::bad_cast when one of them is of another class.
    void Assign(MODELKIT::IMKObject& target, const MODELKIT::IMKObject& source) const;

private:
    friend struct machinery::Description;
    RecordInfo() = default;

    QString m_name;
    long long m_id = 0;
    // Both are null unless it is a choice. The first gives an index into the members, or -1.
    int (*m_selected)(const MODELKIT::IMKObject&) = nullptr;
    void (*m_clearSelection)(MODELKIT::IMKObject&) = nullptr;
    QVector<const MemberInfo*> m_members;
    HashValue (*m_hash)(const MODELKIT::IMKObject&, HashValue) = nullptr;
    std::unique_ptr<MODELKIT::IMKObject> (*m_create)() = nullptr;
    void (*m_assign)(MODELKIT::IMKObject&, const MODELKIT::IMKObject&) = nullptr;
    bool (*m_describes)(const MODELKIT::IMKObject& object) = nullptr;
};

} // namespace PELLU300ROUTERINTERFACEXML
