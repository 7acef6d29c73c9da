// SPDX-License-Identifier: MIT
/// \file
/// Changes of members, given by their paths.
#pragma once

#include "documents/Export.h"
#include "documents/PathPattern.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <exception>

namespace ROUTERDOCUMENTS {

/// Changes of members that can be made to any record, one after the other.
///
/// A change is made wherever the path leads: "DF_Params/Frequency" to all DF_Params that the record has.
/// Records on the way that are not set are made when nothing else could be meant. A payload is only made in a
/// fragment that carries none and that the path names by number, as the last or as a new one; it never
/// replaces another payload.
class ROUTERDOCUMENTS_EXPORT RecordEdits
{
public:
    /// Adds a change: "PATH=VALUE" sets a member, "PATH" sets a record without changing its content. The path
    /// is one of PathPattern::ForEditing: "Fragment[+]/DF_Params/Frequency=98.5e6" appends a fragment.
    /// \throws InvalidMemberPath for a wrong path, InvalidEdit for a wrong value.
    void Set(const QString& change);
    /// Adds a change that makes members unset, empties lists and removes items.
    /// \throws InvalidMemberPath for a wrong path, InvalidEdit for the path of a whole document or a new
    /// item.
    void Unset(const QString& path);

    /// Whether there is no change.
    bool IsEmpty() const { return m_edits.isEmpty(); }

    /// Makes all changes in order. The record's validation applies.
    /// \return whether the record had a place for any of them.
    /// \throws MKException what the record's setters throw. The record has then been changed in part.
    /// \throws std::bad_cast when the object is no record of the record library.
    bool Apply(MODELKIT::IMKObject& record);

    /// The changes for which no record so far had a place, as they were given.
    QStringList GetUnused() const;

private:
    using MemberInfo = PELLU300ROUTERINTERFACEXML::MemberInfo;
    using RecordInfo = PELLU300ROUTERINTERFACEXML::RecordInfo;

    struct Edit
    {
        QString text;
        PathPattern pattern;
        bool isUnset = false;
        // For members that hold a value.
        QHash<const MemberInfo*, QVariant> values;
        bool isUsed = false;
    };
    class Application;

    QVector<Edit> m_edits;
};

/// A change is not possible, whatever the record.
class ROUTERDOCUMENTS_EXPORT InvalidEdit : public std::exception
{
public:
    /// Takes the text unchanged.
    explicit InvalidEdit(const QString& text);
    /// Copies the error.
    InvalidEdit(const InvalidEdit& other) noexcept;
    /// Copies the error.
    InvalidEdit& operator=(const InvalidEdit& other) noexcept;
    /// Releases the text.
    ~InvalidEdit() override;

    /// What is wrong and what may have been meant, safe to display.
    const QString& GetText() const noexcept { return m_text; }
    /// The text in UTF-8.
    const char* what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_text;
    QByteArray m_utf8;
};

} // namespace ROUTERDOCUMENTS
