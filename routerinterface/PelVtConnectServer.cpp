#include "routerinterface/PelVtConnectServer.h"

#include "routerinterface/machinery/RecordDefinition.h"

namespace PELLU300ROUTERINTERFACEXML {

// clang-format off
//        kind   type          member   field      binary tag
#define MEMBERS(ROW)                                         \
    ROW(Text,  QString,      Address, m_address, 0x2AC271EC) \
    ROW(Value, unsigned int, Port,    m_port,    0x1F980517)
// clang-format on

ROUTERINTERFACE_DEFINE_RECORD(PelVtConnectServer, machinery::Block, MEMBERS)

} // namespace PELLU300ROUTERINTERFACEXML
