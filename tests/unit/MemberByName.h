// SPDX-License-Identifier: MIT
// Descriptions of members by their names.
#pragma once

#include "routerinterface/RecordInfo.h"

namespace testing_support {

inline const PELLU300ROUTERINTERFACEXML::MemberInfo& member(const char* className, const char* name)
{
    using PELLU300ROUTERINTERFACEXML::RecordInfo;
    return *RecordInfo::Find(QLatin1String(className))->FindMember(QString::fromLatin1(name));
}

} // namespace testing_support
