// SPDX-License-Identifier: MIT
#include "CommandTables.h"

#include "ProgramName.h"

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

// --- rows

QString fileValue() { return QStringLiteral("FILE"); }

bool OptionTable::takesFile() const { return value.split(QLatin1Char('|')).contains(fileValue()); }

OptionTable flag(const QStringList& names, const QString& text) { return {names, QString(), text}; }

OptionTable option(const QStringList& names, const QString& value, const QString& text)
{
    return {names, value, text};
}

OptionTable choice(const QStringList& names, const QString& value, const QStringList& choices,
                   const QString& text)
{
    return {names, value, text, choices};
}

OptionTable argument(const QString& name, const QString& value, const QString& text)
{
    return {{name}, value, text};
}

OptionTable required(OptionTable row)
{
    row.isRequired = true;
    return row;
}

OptionTable repeatable(OptionTable row)
{
    row.isRepeatable = true;
    return row;
}

OptionTable suggesting(const QStringList& values, OptionTable row)
{
    row.suggestions = values;
    return row;
}

OptionTable suggestingParts(const QStringList& parts, const QString& separators, OptionTable row)
{
    row.separators = separators;
    return suggesting(parts, std::move(row));
}

// --- names

QStringList namesOf(const QVector<OptionTable>& options)
{
    QStringList names;
    for (const OptionTable& option : options)
        names += option.names;
    return names;
}

QStringList namesOf(const QVector<CommandTable>& commands)
{
    QStringList names;
    for (const CommandTable& command : commands)
        names += command.name;
    return names;
}

QString optionName(const QString& word) { return word.section(QLatin1Char('='), 0, 0); }

// --- texts about them

QString lineBegin(const CommandTable& command)
{
    return command.name.isEmpty() ? programName() : programName() + QLatin1Char(' ') + command.name;
}

QString usage(const CommandTable& command)
{
    QString line = lineBegin(command);
    if (!command.options.isEmpty())
        line += QStringLiteral(" [OPTION]...");
    for (const OptionTable& option : command.options)
        if (option.isRequired)
            line += QLatin1Char(' ') + option.names.constFirst() + QLatin1Char(' ') + option.value;
    for (const OptionTable& argument : command.arguments)
        line += QLatin1Char(' ') + argumentLabel(argument);
    return line;
}

QString usageOfProgram() { return programName() + QStringLiteral(" COMMAND [ARGUMENT]..."); }

QString commandOf(const Example& example) { return example.command.arg(programName()); }

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
