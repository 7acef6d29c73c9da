// SPDX-License-Identifier: MIT
/// \file
/// The program as a whole: its commands and what else there is to be told of it.
#pragma once

#include "CommandTables.h"
#include "commands/Commands.h"

namespace routermsg {

/// All commands, with all their options, in the order in which they are told.
QVector<Command> commands();

/// All tables.
ProgramTable programTable();

} // namespace routermsg
