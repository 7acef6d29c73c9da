// SPDX-License-Identifier: MIT
#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include "routerinterface/machinery/RecordDefinition.h"

namespace PELLU300ROUTERINTERFACEXML {

#define RECORD PelLu300RouterInterfaceXml
#define BLOCK machinery::OwnerBlock
// clang-format off
//        kind    type                         member                 field                    binary tag
#define MEMBERS(ROW)                                                                                     \
    ROW(Nested, class PelLu300RouterMessage, PelLu300RouterMessage, m_pelLu300RouterMessage, 0x9B1A7AD8)
// clang-format on
#include "routerinterface/machinery/DefineRecord.h"

} // namespace PELLU300ROUTERINTERFACEXML
