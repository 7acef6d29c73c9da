/// \file
/// How members and their values are shown.
#pragma once

#include "routerinterface/RecordInfo.h"

#include <QtCore/QJsonValue>
#include <QtCore/QString>
#include <QtCore/QVariant>

namespace routermsg {

/// What the member holds, in words: "unsigned integer", "text", "record".
QString typeName(const PELLU300ROUTERINTERFACEXML::MemberInfo& member);

/// A value of the member in one line that is safe to be shown: texts in quotes, a null text as null,
/// enumerators with name and number, decimals exactly.
QString valueText(const PELLU300ROUTERINTERFACEXML::MemberInfo& member, const QVariant& value);

/// A value of the member for programs: texts as strings, or null; enumerators by name, or null for none;
/// numbers as such, but as text where JSON has no number for them.
QJsonValue valueJson(const PELLU300ROUTERINTERFACEXML::MemberInfo& member, const QVariant& value);

/// Whether two values of the member are the same, exactly.
bool isSameValue(const PELLU300ROUTERINTERFACEXML::MemberInfo& member, const QVariant& a, const QVariant& b);

/// The member's value, "not set", or for a nested record or a list what summaryText() tells.
QString memberText(const MODELKIT::IMKObject& record, const PELLU300ROUTERINTERFACEXML::MemberInfo& member);

/// As memberText(), for programs; undefined for what is not set.
QJsonValue memberJson(const MODELKIT::IMKObject& record,
                      const PELLU300ROUTERINTERFACEXML::MemberInfo& member);

/// What is set in the record, in one line: "{DF_Params: {Frequency: 98500000}}". Of a list only the
/// number of its items is told.
QString summaryText(const MODELKIT::IMKObject& record);

/// As summaryText(), for programs.
QJsonValue summaryJson(const MODELKIT::IMKObject& record);

} // namespace routermsg
