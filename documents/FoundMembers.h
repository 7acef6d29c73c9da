// SPDX-License-Identifier: MIT
/// \file
/// Finding members of a record by their paths.
#pragma once

#include "documents/Export.h"
#include "documents/MemberPath.h"
#include "documents/PathPattern.h"

#include "modelkit/IMKObject.h"
#include "routerinterface/RecordInfo.h"

#include <QtCore/QJsonValue>
#include <QtCore/QString>

#include <functional>

namespace ROUTERDOCUMENTS {

/// What a path leads to in a record: a member that is set, one item of a list, or the record itself.
struct ROUTERDOCUMENTS_EXPORT FoundMember
{
    /// The record that has the member; the root for the root itself.
    const MODELKIT::IMKObject& record;
    /// The member; null for the root itself.
    const PELLU300ROUTERINTERFACEXML::MemberInfo* member;
    /// The position of the item in the list, from 0; otherwise -1.
    int item;
    /// The path from the root.
    const MemberPath& path;

    /// Whether it is a value, not a record.
    bool IsValue() const { return member && !member->GetClass(); }
    /// The value as PlainText(), or the content of the record as SummaryText().
    QString ToText() const;
    /// The value as ValueJson(), or the content of the record as SummaryJson().
    QJsonValue ToJson() const;

private:
    const MODELKIT::IMKObject& found() const;
};

/// Calls visit() for everything that is set in the record and to which the path \a pattern leads, in the
/// order of the members, until it returns false. References are valid during the call only. Exceptions of
/// visit() are passed on.
/// \throws std::bad_cast when the object is no record of the record library.
ROUTERDOCUMENTS_EXPORT void FindMembers(const MODELKIT::IMKObject& record, const PathPattern& pattern,
                                        const std::function<bool(const FoundMember&)>& visit);

} // namespace ROUTERDOCUMENTS
