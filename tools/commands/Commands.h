// SPDX-License-Identifier: MIT
/// \file
/// The commands.
#pragma once

#include "Arguments.h"
#include "CommandTables.h"
#include "Session.h"

namespace routermsg {

struct Command
{
    CommandTable table;
    /// Does its work.
    /// \throws UsageError when the arguments make no sense together
    /// \throws Refusal when something is wrong with a document
    Status (*run)(const Arguments& arguments, Session& session);
};

// All commands, in the order in which they are told. A file of its own, such as ConvertCommand.cpp, defines
// each function.
#define COMMANDS(ROW) \
    ROW(convert)      \
    ROW(check)        \
    ROW(show)         \
    ROW(diff)         \
    ROW(new)          \
    ROW(stats)        \
    ROW(man)          \
    ROW(completion)

#define COMMAND(name) Command name##Command();
COMMANDS(COMMAND)
#undef COMMAND

} // namespace routermsg
