// SPDX-License-Identifier: MIT
#include "CommandTables.h"

namespace routermsg {

namespace {

QString label(const OptionTable& option)
{
    const QString value = option.value.isEmpty() ? QString() : QLatin1Char(' ') + option.value;
    return option.names.join(QStringLiteral(", ")) + value;
}

QString argumentLabel(const OptionTable& argument)
{
    QString text = argument.names.constFirst();
    if (argument.isRepeatable)
        text += QStringLiteral("...");
    return argument.isRequired ? text : QLatin1Char('[') + text + QLatin1Char(']');
}

} // namespace

QString usage(const ProgramTable& program, const CommandTable& command)
{
    QString line = program.name + QLatin1Char(' ') + command.name;
    if (!command.options.isEmpty())
        line += QStringLiteral(" [OPTION]...");
    for (const OptionTable& argument : command.arguments)
        line += QLatin1Char(' ') + argumentLabel(argument);
    return line;
}

QString usage(const ProgramTable& program) { return program.name + QStringLiteral(" COMMAND [ARGUMENT]..."); }

QVector<Row> rowsOf(const QVector<OptionTable>& options)
{
    QVector<Row> rows;
    for (const OptionTable& option : options)
        rows += {label(option), option.text};
    return rows;
}

QVector<Row> argumentRowsOf(const CommandTable& command)
{
    QVector<Row> rows;
    for (const OptionTable& argument : command.arguments)
        rows += {argument.names.constFirst(), argument.text};
    return rows;
}

QVector<Row> noteRowsOf(const CommandTable& command)
{
    QVector<Row> rows;
    for (const Note& note : command.notes)
        rows += {note.name, note.text};
    return rows;
}

} // namespace routermsg
