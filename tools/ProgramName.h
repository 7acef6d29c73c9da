// SPDX-License-Identifier: MIT
/// \file
/// The name of the program.
#pragma once

#include <QtCore/QString>

namespace routermsg {

inline QString programName() { return QStringLiteral("routermsg"); }

} // namespace routermsg
