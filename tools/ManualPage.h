// SPDX-License-Identifier: MIT
/// \file
/// The manual page.
#pragma once

#include "CommandTables.h"

#include <QtCore/QString>

namespace routermsg {

/// The manual page, for `man`.
QString manualPage(const ProgramTable& program);

} // namespace routermsg
