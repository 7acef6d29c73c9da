// SPDX-License-Identifier: MIT
/// \file
/// What every record's header needs: the base object, the data block's pointer and the macros of
/// this library.
#pragma once

#include "modelkit/IMKObject.h"
#include "modelkit/SharedBlock.h"
#include "routerinterface/Export.h"

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QTypeInfo>
#include <QtCore/QVector>

/// The records of the router interface.
namespace PELLU300ROUTERINTERFACEXML {
namespace machinery {
struct Access;
} // namespace machinery
} // namespace PELLU300ROUTERINTERFACEXML
