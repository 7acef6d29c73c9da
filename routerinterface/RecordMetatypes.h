// SPDX-License-Identifier: MIT
/// \file
/// Makes all records types of Qt's meta-object system, so that they can be held by `QVariant` and be
/// parameters of queued signals. Such a signal carries a copy with a data block of its own, which the
/// receiving thread may use freely.
#pragma once

// With all records below it.
#include "routerinterface/PelLu300RouterInterfaceXml.h"

#include <QtCore/QMetaType>

/// \cond
// All records; CMake reads the list, too. Owners come before the records that they own: where sources are
// compiled as one, a template must be announced before it is instantiated.
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

#define ROUTERINTERFACE_DECLARE(Name) Q_DECLARE_METATYPE(PELLU300ROUTERINTERFACEXML::Name)
ROUTERINTERFACE_FOR_EACH_RECORD(ROUTERINTERFACE_DECLARE)
#undef ROUTERINTERFACE_DECLARE
/// \endcond

namespace PELLU300ROUTERINTERFACEXML {

/// Registers the records by their names, such as "PELLU300ROUTERINTERFACEXML::Fragment". Queued connections
/// that name their signals as texts need that. It can be called again and from any thread.
inline void RegisterRecordMetatypes()
{
/// \cond
#define ROUTERINTERFACE_REGISTER(Name) qRegisterMetaType<Name>("PELLU300ROUTERINTERFACEXML::" #Name);
    ROUTERINTERFACE_FOR_EACH_RECORD(ROUTERINTERFACE_REGISTER)
#undef ROUTERINTERFACE_REGISTER
    /// \endcond
}

} // namespace PELLU300ROUTERINTERFACEXML

#undef ROUTERINTERFACE_FOR_EACH_RECORD
