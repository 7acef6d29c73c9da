// SPDX-License-Identifier: MIT
/// \file
/// Where two records differ.
#pragma once

#include "documents/Export.h"
#include "documents/IgnoredMembers.h"
#include "documents/MemberPath.h"

#include "modelkit/IMKObject.h"

#include <QtCore/QJsonObject>
#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <functional>

namespace ROUTERDOCUMENTS {

/// One difference.
struct Difference
{
    /// The kinds of differences.
    enum Kind
    {
        Changed, ///< a member has another value, or is set in only one of the records
        Removed, ///< an item is only in the first record
        Added,   ///< an item is only in the second record
        Moved    ///< an item is in both records, but its order among the others has changed
    };

    /// What differs.
    Kind kind = Changed;
    /// Where it differs.
    MemberPath path;
    /// What the records hold there, safe to display: a value, "not set", or the content of a record. Long
    /// texts are shortened to what differs.
    QString first;
    QString second; ///< see first
    /// The same for programs; undefined where there is nothing.
    QJsonValue firstValue = QJsonValue(QJsonValue::Undefined);
    QJsonValue secondValue = QJsonValue(QJsonValue::Undefined); ///< see firstValue
};

/// The name of a kind of difference for programs: "changed", "removed", "added", "moved".
ROUTERDOCUMENTS_EXPORT QString NameOf(Difference::Kind kind);

/// An object with kind, firstPath and secondPath, first and second. A removed or added item has only one of
/// the paths. The value is left out where something is not set or does not exist.
ROUTERDOCUMENTS_EXPORT QJsonObject DifferenceJson(const Difference& difference);

/// The difference that there is a whole record in only one of two places.
/// \param kind Removed or Added
/// \throws std::bad_cast when the object is no record of the record library.
ROUTERDOCUMENTS_EXPORT Difference MissingRecord(const MODELKIT::IMKObject& record, Difference::Kind kind);

/// Calls visit() for every difference between the \a first and the \a second record, in the order of the
/// members. Members that are \a ignored are not compared. List items are aligned: equal items in the same
/// order are paired first, then equal ones that have moved, and of the rest, between those that did not move,
/// the items that carry the same member, in order. When the records are of different classes, that is the
/// only difference. Exceptions of visit() are passed on.
/// \throws std::bad_cast when an object is no record of the record library.
ROUTERDOCUMENTS_EXPORT void CompareRecords(const MODELKIT::IMKObject& first,
                                           const MODELKIT::IMKObject& second, const IgnoredMembers& ignored,
                                           const std::function<void(const Difference&)>& visit);

} // namespace ROUTERDOCUMENTS
