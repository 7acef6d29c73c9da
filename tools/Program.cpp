// SPDX-License-Identifier: MIT
#include "Program.h"

#include "CommonOptions.h"
#include "InputOptions.h"
#include "ProgramName.h"
#include "Suggestions.h"
#include "documents/Forms.h"
#include "documents/Sentences.h"

#include "modelkit/Version.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

OptionTable helpOption() { return flag({"-h", "--help"}, "Show this help."); }

Command completed(Command command)
{
    CommandTable& table = command.table;
    table.options.prepend(helpOption());
    if (table.readsMessages)
        table.options += inputOptionRows();
    if (table.hasCommonOptions)
        table.options += commonOptionRows(table.furtherFormats);
    return command;
}

QVector<Section> sections()
{
    return {{QStringLiteral("Forms"),
             {QStringLiteral(
                  "A document has one of the forms %1. When a file is read, its content tells the form; when "
                  "it is written, the ending of its name does: %2.")
                  .arg(Listed(FormNames()), KnownEndings()),
              QStringLiteral("JSON loses nothing; the other forms keep two decimals of a number.")}},
            {QStringLiteral("Paths of members"),
             {QStringLiteral(
                 "A path is names separated by slashes. It may begin at any record, as in MessageID or "
                 "DF_Params/Frequency; with a slash in front it begins at the root. Fragment[2] is the "
                 "second fragment; Fragment and Fragment[*] are all.")}},
            {QStringLiteral("Conditions"),
             {QStringLiteral(
                 "A path alone asks whether the member is set. The operators = != < <= > >= compare it "
                 "with a value, and ~ asks whether a text contains another. If a path leads to several "
                 "values, any of them may fit. Conditions are joined by and, or, not and parentheses. "
                 "Values with blanks, operators or parentheses stand in quotes; null is the null "
                 "text.")}},
            {QStringLiteral("Exit status"),
             {QStringLiteral(
                 "0 when all is well; 1 when a document is not valid, documents differ, "
                 "something was lost, or what is looked for does not exist; 2 when the command "
                 "line is wrong, a file cannot be read or written, or documents cannot be compared.")}},
            {QStringLiteral("Environment"),
             {QStringLiteral("NO_COLOR: if it is set and not empty, --color auto means never.")}}};
}

Status runWithoutCommand(const Arguments& arguments, Session& session)
{
    const ProgramTable program = programTable();
    if (!arguments.isGiven("--version"))
        arguments.refuse(QStringLiteral("A command is missing.") + possible(namesOf(program.commands)));
    session.out().writeLine(programName() + QLatin1Char(' ') + program.version);
    return Fine;
}

} // namespace

Command withoutCommand()
{
    CommandTable table;
    table.summary =
        QStringLiteral("Look at messages of the router interface, make, convert, check and compare them.");
    table.options = {flag({"--version"}, "Show the version.")};
    table.hasCommonOptions = false;
    return completed({table, runWithoutCommand});
}

QVector<Command> commands()
{
#define COMMAND(name) completed(name##Command()),
    return {COMMANDS(COMMAND)};
#undef COMMAND
}

ProgramTable programTable()
{
    ProgramTable program;
    program.version = QStringLiteral(MODELKIT_VERSION);
    program.withoutCommand = withoutCommand().table;
    for (const Command& command : commands())
        program.commands += command.table;
    program.sections = sections();
    return program;
}

} // namespace routermsg
