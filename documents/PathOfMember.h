// SPDX-License-Identifier: MIT
// The member or record at a path such as "/PelLu300RouterMessage/Fragment[2]/MastershipState/State". Not
// installed.
#pragma once

#include "routerinterface/RecordInfo.h"

#include <QtCore/QString>

namespace ROUTERDOCUMENTS {

struct PathOfMember
{
    explicit PathOfMember(const QString& path);

    // The record at the path, or the one whose member is there; null for unknown names.
    const PELLU300ROUTERINTERFACEXML::RecordInfo* record = nullptr;
    // The value at the path; null for a record.
    const PELLU300ROUTERINTERFACEXML::MemberInfo* member = nullptr;
    // The record around the one at the path; null for the root and when a member is at the path.
    const PELLU300ROUTERINTERFACEXML::RecordInfo* owner = nullptr;
};

} // namespace ROUTERDOCUMENTS
