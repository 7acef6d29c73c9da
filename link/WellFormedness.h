// SPDX-License-Identifier: MIT
// Whether an XML document is well-formed, whatever its elements. Not installed.
#pragma once

#include "modelkit/Failure.h"

#include <QtCore/QByteArray>

namespace ROUTERLINK {

// Of kind Failure::None when the document is well-formed and within the limits in force.
MODELKIT::Failure whyNotWellFormed(const QByteArray& xml);

} // namespace ROUTERLINK
