// SPDX-License-Identifier: MIT
// The values of members as parts of a binary form. Not installed.
#pragma once

#include "documents/Dissection.h"

#include "routerinterface/RecordInfo.h"

#include <QtCore/QByteArray>

namespace ROUTERDOCUMENTS {

// The cutter adds the place and the bytes.
Part unsignedPart(qint64 number);
Part booleanPart(char byte);
// A text, a decimal or an enumerator.
Part textualPart(const PELLU300ROUTERINTERFACEXML::MemberInfo& member, const QByteArray& bytes);

} // namespace ROUTERDOCUMENTS
