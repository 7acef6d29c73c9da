// SPDX-License-Identifier: MIT
/// \file
/// The names of all enumerators and of the log levels. `NamesOf()` of an enumeration is declared beside it.
///
/// The tables are built when the library is loaded, before any record exists, and never change. The names are
/// also the texts in the written forms. The value of an enumerator is the position of its name.
#pragma once

#include "routerinterface/Export.h"
#include "routerinterface/Fragment.h"
#include "routerinterface/MastershipState.h"
#include "routerinterface/PelLu300RouterMessage.h"

#include <QtCore/QStringList>

namespace PELLU300ROUTERINTERFACEXML {

/// The names of the log levels: "INFO", "WARNING", "ERROR".
ROUTERINTERFACE_EXPORT const QStringList& LevelNames();

} // namespace PELLU300ROUTERINTERFACEXML
