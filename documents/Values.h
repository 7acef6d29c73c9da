// SPDX-License-Identifier: MIT
/// \file
/// How members and their values are shown.
#pragma once

#include "documents/Export.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace ROUTERDOCUMENTS {

/// What the member holds, in words: "unsigned integer", "text", "record".
ROUTERDOCUMENTS_EXPORT QString TypeName(const PELLU300ROUTERINTERFACEXML::MemberInfo& member);

/// A value of the member in one line that is safe to be shown: texts in quotes, a null text as null,
/// enumerators with name and number, decimals exactly.
ROUTERDOCUMENTS_EXPORT QString ValueText(const PELLU300ROUTERINTERFACEXML::MemberInfo& member,
                                         const QVariant& value);

/// A value of the member for programs: texts as strings, or null; enumerators by name, or null for none;
/// numbers as such, but as text where JSON has no number for them.
ROUTERDOCUMENTS_EXPORT QJsonValue ValueJson(const PELLU300ROUTERINTERFACEXML::MemberInfo& member,
                                            const QVariant& value);

/// Whether two values of the member are the same, exactly.
ROUTERDOCUMENTS_EXPORT bool IsSameValue(const PELLU300ROUTERINTERFACEXML::MemberInfo& member,
                                        const QVariant& a, const QVariant& b);

/// The member's value, "not set", or for a nested record or a list what SummaryText() tells.
ROUTERDOCUMENTS_EXPORT QString MemberText(const MODELKIT::IMKObject& record,
                                          const PELLU300ROUTERINTERFACEXML::MemberInfo& member);

/// As MemberText(), for programs; undefined for what is not set.
ROUTERDOCUMENTS_EXPORT QJsonValue MemberJson(const MODELKIT::IMKObject& record,
                                             const PELLU300ROUTERINTERFACEXML::MemberInfo& member);

/// What is set in the record, in one line: "{DF_Params: {Frequency: 98500000}}". Of a list only the
/// number of its items is told.
ROUTERDOCUMENTS_EXPORT QString SummaryText(const MODELKIT::IMKObject& record);

/// As SummaryText(), for programs.
ROUTERDOCUMENTS_EXPORT QJsonValue SummaryJson(const MODELKIT::IMKObject& record);

} // namespace ROUTERDOCUMENTS
