// SPDX-License-Identifier: MIT
/// \file
/// Makes all records, `MODELKIT::Place` and `MODELKIT::Failure` types of Qt's meta-object system, so that
/// they can be held by `QVariant` and be parameters of queued signals. Such a signal carries a copy of a
/// record with a data block of its own, which the receiving thread may use freely.
#pragma once

#include "modelkit/Failure.h"
#include "modelkit/Place.h"
#include "routerinterface/RecordList.h"

#include <QtCore/QMetaType>

/// \cond
#define ROUTERINTERFACE_DECLARE(Name) Q_DECLARE_METATYPE(PELLU300ROUTERINTERFACEXML::Name)
ROUTERINTERFACE_FOR_EACH_RECORD(ROUTERINTERFACE_DECLARE)
#undef ROUTERINTERFACE_DECLARE
Q_DECLARE_METATYPE(MODELKIT::Place)
Q_DECLARE_METATYPE(MODELKIT::Failure)
/// \endcond

namespace PELLU300ROUTERINTERFACEXML {

/// Registers the types by their names, such as "PELLU300ROUTERINTERFACEXML::Fragment" and
/// "MODELKIT::Failure". Queued connections that name their signals as texts need that. It can be called again
/// and from any thread.
inline void RegisterRecordMetatypes()
{
/// \cond
#define ROUTERINTERFACE_REGISTER(Name) qRegisterMetaType<Name>("PELLU300ROUTERINTERFACEXML::" #Name);
    ROUTERINTERFACE_FOR_EACH_RECORD(ROUTERINTERFACE_REGISTER)
#undef ROUTERINTERFACE_REGISTER
    /// \endcond
    qRegisterMetaType<MODELKIT::Place>("MODELKIT::Place");
    qRegisterMetaType<MODELKIT::Failure>("MODELKIT::Failure");
}

} // namespace PELLU300ROUTERINTERFACEXML
