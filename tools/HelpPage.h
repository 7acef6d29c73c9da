// SPDX-License-Identifier: MIT
/// \file
/// The help pages.
#pragma once

#include "CommandTables.h"

#include <QtCore/QString>

namespace routermsg {

/// The help for the program or one of its commands, wrapped.
/// \param width the number of columns; 0 for the usual 80
QString helpPage(const ProgramTable& program, int width);
QString helpPage(const CommandTable& command, int width);

} // namespace routermsg
