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
    enum Kind
    {
        Changed, ///< a member has another value, or is set in one of the records only
        Removed, ///< an item that only the first record has
        Added    ///< an item that only the second record has
    };

    Kind kind = Changed;
    MemberPath path;
    /// What the records have there, safe to be shown: a value, "not set", or the content of a record.
    QString first;
    QString second;
    /// The same for programs; undefined where there is nothing.
    QJsonValue firstValue = QJsonValue(QJsonValue::Undefined);
    QJsonValue secondValue = QJsonValue(QJsonValue::Undefined);
};

/// The name of a kind of difference for programs: "changed", "removed", "added".
ROUTERDOCUMENTS_EXPORT QString NameOf(Difference::Kind kind);

/// An object with kind, firstPath and secondPath, first and second. Of a removed or added item there is one
/// path only; what is not set, or not there, has no value.
ROUTERDOCUMENTS_EXPORT QJsonObject DifferenceJson(const Difference& difference);

/// Calls visit() for every difference between the records, in the order of the members. Items of lists
/// are aligned: what is the same in both goes together, and between that items that carry the same member, in
/// order. Of records of different classes that is the only difference. What visit() throws passes through.
/// \throws std::bad_cast when an object is no record of the record library.
ROUTERDOCUMENTS_EXPORT void CompareRecords(const MODELKIT::IMKObject& first,
                                           const MODELKIT::IMKObject& second, const IgnoredMembers& ignored,
                                           const std::function<void(const Difference&)>& visit);

} // namespace ROUTERDOCUMENTS
