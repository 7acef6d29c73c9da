// SPDX-License-Identifier: MIT
// The command `man`: the manual page.

#include "Commands.h"
#include "ManualPage.h"
#include "Program.h"

namespace routermsg {

namespace {

Status man(const Arguments&, Session& session)
{
    session.out().write(manualPage(programTable()));
    return Fine;
}

} // namespace

Command manCommand()
{
    CommandTable table;
    table.name = "man";
    table.summary = "Write the manual page.";
    table.examples = {{"%1 man | man -l -", "Read it."}};
    table.hasCommonOptions = false;
    return {table, man};
}

} // namespace routermsg
