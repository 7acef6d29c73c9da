// SPDX-License-Identifier: MIT
/// \file
/// The program as a whole: its commands, its options and the texts about it.
#pragma once

#include "CommandTables.h"
#include "commands/Commands.h"

namespace routermsg {

/// All commands with all their options, in the order in which the help lists them.
QVector<Command> commands();

/// What the program does without a command.
Command withoutCommand();

/// All tables.
ProgramTable programTable();

} // namespace routermsg
