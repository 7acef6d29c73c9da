// SPDX-License-Identifier: MIT
#include "routerinterface/OstraInterfacePort.h"

#include "routerinterface/machinery/RecordDefinition.h"

namespace PELLU300ROUTERINTERFACEXML {

#define RECORD OstraInterfacePort
#define BLOCK machinery::Block
// clang-format off
//        kind   type          member field   binary tag
#define MEMBERS(ROW)                                   \
    ROW(Value, unsigned int, Port, m_port, 0x1F980517)
// clang-format on
#include "routerinterface/machinery/DefineRecord.h"

} // namespace PELLU300ROUTERINTERFACEXML
