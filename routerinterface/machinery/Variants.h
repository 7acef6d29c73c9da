// SPDX-License-Identifier: MIT
// Which QVariants are accepted as values of each kind of member. None is accepted that would be stored as
// something else.
#pragma once

#include "routerinterface/RecordInfo.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVariant>

#include <optional>

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// MemberInfo::SetValue documents what each of them accepts. They return none for everything else.
std::optional<unsigned int> unsignedIn(const QVariant& variant);
std::optional<double> decimalIn(const QVariant& variant);
std::optional<bool> booleanIn(const QVariant& variant);
std::optional<QString> textIn(const QVariant& variant);
// The number of an enumerator given by name, or any other number.
std::optional<int> enumeratorIn(const QVariant& variant, const QStringList& names);

// Throws for a QVariant that holds no value of the member, in a record of that name.
[[noreturn]] void refuseVariant(const QString& recordName, const MemberInfo& member, const QVariant& variant);

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
