// SPDX-License-Identifier: MIT
/// \file
/// Records as keys of `QHash` and in `QSet`: `qHash` for each record. Records that are equal have the same
/// hash.
#pragma once

#include "routerinterface/RecordInfo.h"
#include "routerinterface/RecordList.h"

namespace PELLU300ROUTERINTERFACEXML {

/// \cond
// No template: Qt 5 has one for all types, with which another would be ambiguous.
#define ROUTERINTERFACE_HASH(Name)                                                         \
    inline RecordInfo::HashValue qHash(const Name& record, RecordInfo::HashValue seed = 0) \
    {                                                                                      \
        return RecordInfo::Of(record).Hash(record, seed);                                  \
    }
ROUTERINTERFACE_FOR_EACH_RECORD(ROUTERINTERFACE_HASH)
#undef ROUTERINTERFACE_HASH
/// \endcond

} // namespace PELLU300ROUTERINTERFACEXML
