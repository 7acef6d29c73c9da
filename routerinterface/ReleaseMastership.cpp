// SPDX-License-Identifier: MIT
#include "routerinterface/ReleaseMastership.h"

#include "routerinterface/machinery/RecordDefinition.h"

namespace PELLU300ROUTERINTERFACEXML {

#define RECORD ReleaseMastership
#define BLOCK machinery::Block
// clang-format off
//        kind   type  member   field      binary tag
#define MEMBERS(ROW)                                 \
    ROW(Value, bool, Success, m_success, 0xBF8A59C6)
// clang-format on
#include "routerinterface/machinery/DefineRecord.h"

} // namespace PELLU300ROUTERINTERFACEXML
