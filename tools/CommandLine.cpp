// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include "HelpPage.h"
#include "Suggestions.h"
#include "UsageError.h"
#include "documents/Sentences.h"
#include "documents/Text.h"

namespace routermsg {

using namespace ROUTERDOCUMENTS;

namespace {

[[noreturn]] void refuse(const QString& text)
{
    throw UsageError(text + QStringLiteral(" Try: routermsg --help"));
}

// For a line that does not begin with a command, and a word in it that is not an option of the program.
[[noreturn]] void refuse(const QString& word, const ProgramTable& program)
{
    const QStringList commands = namesOf(program.commands);
    if (!word.startsWith(QLatin1Char('-')))
        refuse(QStringLiteral("There is no command %1.%2%3")
                   .arg(Quoted(word), DidYouMean(word, commands), possible(commands)));
    const QString name = optionName(word);
    for (const CommandTable& command : program.commands)
        if (namesOf(command.options).contains(name))
            refuse(QStringLiteral("The option %1 must follow the command.").arg(name));
    refuse(QStringLiteral("There is no option %1.%2").arg(name, DidYouMean(name, namesOf(program.options))));
}

Status runWithoutCommand(const QStringList& words, Session& session)
{
    const ProgramTable program = programTable();
    const QStringList names = namesOf(program.options);
    CommandTable table;
    table.options = program.options;
    const Arguments arguments(table, words);
    if (arguments.isGiven("--help")) {
        session.out().write(helpPage(program, session.out().width()));
        return Fine;
    }
    for (const QString& word : words)
        if (!names.contains(optionName(word)))
            refuse(word, program);
    if (!arguments.isGiven("--version"))
        refuse(QStringLiteral("A command is missing.") + possible(namesOf(program.commands)));
    session.out().writeLine(program.name + QLatin1Char(' ') + program.version);
    return Fine;
}

} // namespace

CommandLine::CommandLine(const QStringList& words) : m_words(words)
{
    for (const Command& command : commands()) {
        if (command.table.name != words.value(0))
            continue;
        m_command = command;
        m_arguments.emplace(command.table, words.mid(1));
    }
}

CommonOptions CommandLine::commonOptions() const
{
    return m_command && m_command->table.hasCommonOptions ? commonOptionsOf(*m_arguments) : CommonOptions();
}

Status CommandLine::run(Session& session) const
{
    if (!m_command)
        return runWithoutCommand(m_words, session);
    if (m_arguments->isGiven("--help")) {
        session.out().write(helpPage(programTable(), m_command->table, session.out().width()));
        return Fine;
    }
    m_arguments->requireSense();
    return m_command->run(*m_arguments, session);
}

} // namespace routermsg
