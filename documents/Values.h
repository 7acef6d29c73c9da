// SPDX-License-Identifier: MIT
/// \file
/// How members and their values are displayed.
#pragma once

#include "documents/Export.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace ROUTERDOCUMENTS {

/// The type of the member in words: "unsigned integer", "text", "record".
ROUTERDOCUMENTS_EXPORT QString TypeName(const PELLU300ROUTERINTERFACEXML::MemberInfo& member);

/// A value of the member on one line, safe to display: texts in quotes, a null text as null, enumerators with
/// name and number, decimals with all digits.
ROUTERDOCUMENTS_EXPORT QString ValueText(const PELLU300ROUTERINTERFACEXML::MemberInfo& member,
                                         const QVariant& value);

/// A value of the member on one line, safe to display, without quotes and numbers of enumerators: a null text
/// is empty, and a value without enumerator is its number.
ROUTERDOCUMENTS_EXPORT QString PlainText(const PELLU300ROUTERINTERFACEXML::MemberInfo& member,
                                         const QVariant& value);

/// A value of the member for programs: a text as a string, or null; an enumerator as its name, or null when
/// the value is invalid; a number as a number, or as a text when JSON has no such number.
ROUTERDOCUMENTS_EXPORT QJsonValue ValueJson(const PELLU300ROUTERINTERFACEXML::MemberInfo& member,
                                            const QVariant& value);

/// A decimal for programs: a number, or the string that stands for it in JsonForm.h.
ROUTERDOCUMENTS_EXPORT QJsonValue DecimalJson(double value);

/// Whether the values \a a and \a b of the member, as MemberInfo::GetValue() gives them, are exactly equal.
ROUTERDOCUMENTS_EXPORT bool IsSameValue(const PELLU300ROUTERINTERFACEXML::MemberInfo& member,
                                        const QVariant& a, const QVariant& b);

/// The member's value or "not set"; for a nested record or a list as in SummaryText().
ROUTERDOCUMENTS_EXPORT QString MemberText(const MODELKIT::IMKObject& record,
                                          const PELLU300ROUTERINTERFACEXML::MemberInfo& member);

/// Like MemberText() of the same record, for programs; undefined when the member is not set.
ROUTERDOCUMENTS_EXPORT QJsonValue MemberJson(const MODELKIT::IMKObject& record,
                                             const PELLU300ROUTERINTERFACEXML::MemberInfo& member);

/// What is set in the record, on one line: "{DF_Params: {Frequency: 98500000}}". A list is given as the
/// number of its items only.
ROUTERDOCUMENTS_EXPORT QString SummaryText(const MODELKIT::IMKObject& record);

/// Like SummaryText(), for programs.
ROUTERDOCUMENTS_EXPORT QJsonValue SummaryJson(const MODELKIT::IMKObject& record);

} // namespace ROUTERDOCUMENTS
