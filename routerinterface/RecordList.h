// SPDX-License-Identifier: MIT
/// \file
/// The list of all records, for code that exists for each of them.
#pragma once

// With all records below it.
#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <type_traits>

/// \cond
// CMake reads the list, too. Owners come before the records that they own: where sources are compiled as one,
// a template must be announced before it is instantiated.
#define ROUTERINTERFACE_FOR_EACH_RECORD(DO) \
    DO(PelLu300RouterInterfaceXml)          \
    DO(PelLu300RouterMessage)               \
    DO(Fragment)                            \
    DO(AcquireMastership)                   \
    DO(DF_Params)                           \
    DO(MastershipState)                     \
    DO(OstraInterfacePort)                  \
    DO(PelVtConnectServer)                  \
    DO(ReleaseMastership)                   \
    DO(RouterVtServerPort)

namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {

// Whether T is a record or derived from one.
#define ROUTERINTERFACE_OR_BASE(Name) , std::is_base_of<Name, T>
template <class T>
constexpr bool isRecord =
    std::disjunction_v<std::false_type ROUTERINTERFACE_FOR_EACH_RECORD(ROUTERINTERFACE_OR_BASE)>;
#undef ROUTERINTERFACE_OR_BASE

} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
/// \endcond
