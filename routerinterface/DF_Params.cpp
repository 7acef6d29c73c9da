// SPDX-License-Identifier: MIT
#include "routerinterface/DF_Params.h"

#include "routerinterface/machinery/RecordDefinition.h"

namespace PELLU300ROUTERINTERFACEXML {

#define RECORD DF_Params
#define BLOCK machinery::Block
// clang-format off
//        kind   type    member                 field                    binary tag
#define MEMBERS(ROW)                                                               \
    ROW(Value, double, Frequency,             m_frequency,             0xA97DB5BE) \
    ROW(Value, double, DemodulationFrequency, m_demodulationFrequency, 0x5255927F) \
    ROW(Value, double, Bandwidth,             m_bandwidth,             0x104A95AB) \
    ROW(Value, double, PanoramaSpan,          m_panoramaSpan,          0x7029D96C)
// clang-format on
#include "routerinterface/machinery/DefineRecord.h"

} // namespace PELLU300ROUTERINTERFACEXML
