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
    /// Runs the command.
    /// \throws UsageError when the arguments do not fit together
    /// \throws Refusal when something is wrong with a document
    Status (*run)(const Arguments& arguments, Session& session);
};

// All commands, in the order in which the help lists them. Each function is defined in its own file, such as
// ConvertCommand.cpp.
#define COMMANDS(ROW) \
    ROW(convert)      \
    ROW(check)        \
    ROW(show)         \
    ROW(list)         \
    ROW(get)          \
    ROW(diff)         \
    ROW(new)          \
    ROW(set)          \
    ROW(split)        \
    ROW(join)         \
    ROW(stats)        \
    ROW(send)         \
    ROW(listen)       \
    ROW(connect)      \
    ROW(relay)        \
    ROW(record)       \
    ROW(replay)       \
    ROW(man)          \
    ROW(completion)

#define COMMAND(name) Command name##Command();
COMMANDS(COMMAND)
#undef COMMAND

} // namespace routermsg
