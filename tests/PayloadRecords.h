// SPDX-License-Identifier: MIT
// The payload records as the dialect has them, in the order of their values. What a test asserts of each of
// them, or counts, follows from these rows.
#pragma once

#include "routerinterface/Fragment.h"

#include <QtCore/QStringList>

#include <array>

// clang-format off
//      record              value  tag in a fragment  class id
#define PAYLOAD_RECORDS(ROW)                                       \
    ROW(MastershipState,    0,     0x111939B4U,       0xD6FF526CU) \
    ROW(AcquireMastership,  1,     0x21BDA6E2U,       0x1A837ACAU) \
    ROW(ReleaseMastership,  2,     0xFC38AB7CU,       0x5F3980D4U) \
    ROW(OstraInterfacePort, 3,     0xF9E464D0U,       0x7F012EB8U) \
    ROW(PelVtConnectServer, 4,     0x0BBAB464U,       0x0864034CU) \
    ROW(RouterVtServerPort, 5,     0x5D020EA0U,       0x24C7A508U) \
    ROW(DF_Params,          6,     0xBE2DFF74U,       0xF1EE139CU)
// clang-format on

namespace testing_support {

#define COUNT_ROW(Name, value, tag, id) +1
constexpr int payloadCount = PAYLOAD_RECORDS(COUNT_ROW);
#undef COUNT_ROW

inline QStringList payloadNames()
{
#define APPEND_NAME(Name, value, tag, id) names.append(QStringLiteral(#Name));
    QStringList names;
    PAYLOAD_RECORDS(APPEND_NAME)
    return names;
#undef APPEND_NAME
}

// The payloads of a fragment, set or not.
inline std::array<const MODELKIT::IMKObject*, payloadCount>
payloadsOf(const PELLU300ROUTERINTERFACEXML::Fragment& fragment)
{
#define ADDRESS(Name, value, tag, id) &fragment.Get##Name(),
    return {PAYLOAD_RECORDS(ADDRESS)};
#undef ADDRESS
}

// Calls visit(record) for the payloads of a fragment.
template <class Visit>
void forEachPayload(const PELLU300ROUTERINTERFACEXML::Fragment& fragment, Visit&& visit)
{
#define VISIT(Name, value, tag, id) visit(fragment.Get##Name());
    PAYLOAD_RECORDS(VISIT)
#undef VISIT
}

} // namespace testing_support
