// SPDX-License-Identifier: MIT
#include "ManualPage.h"

#include "ProgramName.h"

namespace routermsg {

namespace {

QString roff(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\e")).replace(QLatin1Char('-'), QLatin1String("\\-"));
    text.replace(QLatin1Char('\''), QLatin1String("\\(aq"));
    return text.startsWith(QLatin1Char('.')) ? QStringLiteral("\\&") + text : text;
}

QString request(const char* name, const QString& text)
{
    return QLatin1Char('.') + QLatin1String(name) + QLatin1Char(' ') + roff(text) + QLatin1Char('\n');
}

QString tagged(const Row& row)
{
    return QStringLiteral(".TP\n\\fB%1\\fR\n%2\n").arg(roff(row.first), roff(row.second));
}

QString tagged(const QVector<Row>& rows)
{
    QString text;
    for (const Row& row : rows)
        text += tagged(row);
    return text;
}

QString manualOf(const CommandTable& command)
{
    QString text = request("SS", usage(command)) + roff(command.summary) + QLatin1Char('\n');
    text += tagged(argumentRowsOf(command)) + tagged(rowsOf(command.options));
    if (!command.notes.isEmpty())
        text += QStringLiteral(".PP\n%1:\n").arg(roff(command.notesTitle)) + tagged(noteRowsOf(command));
    text += QStringLiteral(".PP\nExamples:\n");
    for (const Example& example : command.examples)
        text += QStringLiteral(".PP\n.RS\n.nf\n%1\n.fi\n.RE\n.PP\n.RS 11\n%2\n.RE\n")
                    .arg(roff(commandOf(example)), roff(example.text));
    return text;
}

} // namespace

QString manualPage(const ProgramTable& program)
{
    QString text = QStringLiteral(".TH %1 1 \"\" \"%2 %3\" \"User Commands\"\n")
                       .arg(programName().toUpper(), programName(), program.version);
    text += request("SH", QStringLiteral("NAME"));
    text += QStringLiteral("%1 \\- %2\n").arg(roff(programName()), roff(program.withoutCommand.summary));
    text += request("SH", QStringLiteral("SYNOPSIS")) + roff(usageOfProgram()) + QLatin1Char('\n');
    text += request("SH", QStringLiteral("OPTIONS")) + tagged(rowsOf(program.withoutCommand.options));
    text += request("SH", QStringLiteral("COMMANDS"));
    for (const CommandTable& command : program.commands)
        text += manualOf(command);
    for (const Section& section : program.sections) {
        text += request("SH", section.title.toUpper());
        for (const QString& paragraph : section.paragraphs)
            text += QStringLiteral(".PP\n%1\n").arg(roff(paragraph));
    }
    return text;
}

} // namespace routermsg
