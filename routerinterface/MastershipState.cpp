// SPDX-License-Identifier: MIT
#include "routerinterface/MastershipState.h"

#include "routerinterface/machinery/RecordDefinition.h"

namespace PELLU300ROUTERINTERFACEXML {

#define RECORD MastershipState
#define BLOCK machinery::Block
// clang-format off
//        kind        type     member          field             binary tag
#define MEMBERS(ROW)                                                       \
    ROW(Enumerated, State,   State,          m_state,          0x4264F498) \
    ROW(Text,       QString, MasterClientID, m_masterClientID, 0x0BCD2CF7)
// clang-format on
#include "routerinterface/machinery/DefineRecord.h"
ROUTERINTERFACE_DEFINE_TRANSLATION(MastershipState)

} // namespace PELLU300ROUTERINTERFACEXML
