// SPDX-License-Identifier: MIT
/// \file
/// Values of members as people write them.
#pragma once

#include "documents/Export.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

namespace ROUTERDOCUMENTS {

/// The value of the member that the text stands for, as MemberInfo::SetValue() takes it; invalid if it stands
/// for none. Numbers are finite, truth values are "true" and "false", enumerators have their exact names.
ROUTERDOCUMENTS_EXPORT QVariant ValueFromText(const PELLU300ROUTERINTERFACEXML::MemberInfo& member,
                                              const QString& text);

/// What such a text is like: "a whole number from 0 to 4294967295", "true or false". Empty for records and
/// lists.
ROUTERDOCUMENTS_EXPORT QString PossibleValues(const PELLU300ROUTERINTERFACEXML::MemberInfo& member);

/// All such texts, if they can be listed: enumerators, "true" and "false".
ROUTERDOCUMENTS_EXPORT QStringList ListedValues(const PELLU300ROUTERINTERFACEXML::MemberInfo& member);

/// A sentence about a text that stands for no value of the member, with the enumerator that may have been
/// meant.
ROUTERDOCUMENTS_EXPORT QString WrongValue(const PELLU300ROUTERINTERFACEXML::MemberInfo& member,
                                          const QString& text);

/// Whether a `double` keeps all digits of the number: the closest one, written with as many digits, is the
/// number again. The number may have white space around it, a sign, zeros in front and an exponent.
ROUTERDOCUMENTS_EXPORT bool IsKeptExactly(const QString& number);

} // namespace ROUTERDOCUMENTS
