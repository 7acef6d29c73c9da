// SPDX-License-Identifier: MIT
/// \file
/// The names of all enumerators and of the log levels.
///
/// The tables are built when the library is loaded, before any record exists, and never change. The
/// names are also the texts of the written forms; a value is the position of its name.
#pragma once

#include "routerinterface/Fragment.h"
#include "routerinterface/MastershipState.h"
#include "routerinterface/PelLu300RouterMessage.h"

#include <QtCore/QStringList>

namespace PELLU300ROUTERINTERFACEXML {

/// The names of the enumerators of the argument's type, in value order.
ROUTERINTERFACE_EXPORT const QStringList& NamesOf(PelLu300RouterMessage::Type);
/// \copydoc NamesOf(PelLu300RouterMessage::Type)
ROUTERINTERFACE_EXPORT const QStringList& NamesOf(MastershipState::State);
/// \copydoc NamesOf(PelLu300RouterMessage::Type)
ROUTERINTERFACE_EXPORT const QStringList& NamesOf(Fragment::ChoiceFragment);

/// The names of the log levels: "INFO", "WARNING", "ERROR".
ROUTERINTERFACE_EXPORT const QStringList& LevelNames();

} // namespace PELLU300ROUTERINTERFACEXML
