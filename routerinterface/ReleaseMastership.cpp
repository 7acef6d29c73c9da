#include "routerinterface/ReleaseMastership.h"

#include "routerinterface/machinery/RecordDefinition.h"

namespace PELLU300ROUTERINTERFACEXML {

// clang-format off
//        kind   type  member   field      binary tag
#define MEMBERS(ROW)                                 \
    ROW(Value, bool, Success, m_success, 0xBF8A59C6)
// clang-format on

ROUTERINTERFACE_DEFINE_RECORD(ReleaseMastership, machinery::Block, MEMBERS)

} // namespace PELLU300ROUTERINTERFACEXML
