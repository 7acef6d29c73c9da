// SPDX-License-Identifier: MIT
#include "routerinterface/PelLu300RouterMessage.h"

#include "routerinterface/machinery/RecordDefinition.h"

namespace PELLU300ROUTERINTERFACEXML {

#define RECORD PelLu300RouterMessage
#define BLOCK machinery::Block
// clang-format off
//        kind       type            member     field        binary tag
#define MEMBERS(ROW)                                                   \
    ROW(Mandatory, Type,           Type,      m_type,      0xE1D9E008) \
    ROW(Value,     unsigned int,   MessageID, m_messageID, 0xEF193DE9) \
    ROW(List,      class Fragment, Fragment,  m_fragment,  0x61023A90)
// clang-format on
#include "routerinterface/machinery/DefineRecord.h"
ROUTERINTERFACE_DEFINE_TRANSLATION(PelLu300RouterMessage)

} // namespace PELLU300ROUTERINTERFACEXML
