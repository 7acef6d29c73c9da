// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include "HelpPage.h"
#include "InputOptions.h"
#include "Suggestions.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

bool isCommand(const Command& command) { return !command.table.name.isEmpty(); }

Command commandOf(const QString& word)
{
    for (const Command& command : commands())
        if (command.table.name == word)
            return command;
    return withoutCommand();
}

// For a line that does not begin with a command, and its first word that is no option of the program.
[[noreturn]] void refuse(const QString& word, const Arguments& arguments, const ProgramTable& program)
{
    const QStringList commands = namesOf(program.commands);
    if (commands.contains(word))
        arguments.refuse(QStringLiteral("The command %1 must be the first word.").arg(word));
    if (!word.startsWith(QLatin1Char('-')))
        arguments.refuse(QStringLiteral("There is no command %1.%2%3")
                             .arg(Quoted(word), DidYouMean(word, commands), possible(commands)));
    const QString name = optionName(word);
    for (const CommandTable& command : program.commands)
        if (namesOf(command.options).contains(name))
            arguments.refuse(QStringLiteral("The option %1 must follow the command.").arg(name));
    arguments.refuse(QStringLiteral("There is no option %1.%2")
                         .arg(name, DidYouMean(name, namesOf(program.withoutCommand.options))));
}

} // namespace

CommandLine::CommandLine(const QStringList& words)
    : m_command(commandOf(words.value(0))),
      m_arguments(m_command.table, words.mid(isCommand(m_command) ? 1 : 0))
{}

CommonOptions CommandLine::commonOptions() const
{
    return m_command.table.hasCommonOptions ? commonOptionsOf(m_arguments) : CommonOptions();
}

Status CommandLine::run(Session& session) const
{
    if (m_arguments.isGiven("--help")) {
        const int width = session.out().width();
        session.out().write(isCommand(m_command) ? helpPage(m_command.table, width)
                                                 : helpPage(programTable(), width));
        return Fine;
    }
    if (!isCommand(m_command) && !m_arguments.extras().isEmpty())
        refuse(m_arguments.extras().constFirst(), m_arguments, programTable());
    m_arguments.requireSense();
    if (m_command.table.readsMessages)
        setLimits(m_arguments);
    return m_command.run(m_arguments, session);
}

} // namespace routermsg
