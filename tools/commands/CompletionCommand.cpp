// SPDX-License-Identifier: MIT
// The command `completion`: the completion script for a shell.

#include "Commands.h"
#include "Completions.h"
#include "Program.h"

namespace routermsg {

namespace {

Status writeCompletion(const Arguments& arguments, Session& session)
{
    session.out().write(completion(programTable(), arguments.text("SHELL")));
    return Fine;
}

} // namespace

Command completionCommand()
{
    OptionTable shell = required(argument("SHELL", "SHELL", "The shell: bash, zsh or fish."));
    shell.choices = shells();

    CommandTable table;
    table.name = "completion";
    table.summary = "Write the completion script for a shell.";
    table.arguments = {shell};
    table.examples = {{"source <(%1 completion bash)", "Load it into the running bash."}};
    table.hasCommonOptions = false;
    return {table, writeCompletion};
}

} // namespace routermsg
