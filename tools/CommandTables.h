// SPDX-License-Identifier: MIT
/// \file
/// The tables of commands and options. They determine how a command line is read; help, manual page and
/// completions are made from them.
#pragma once

#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace routermsg {

/// An option, or an argument, which is recognised by its position only.
struct OptionTable
{
    /// "-q" and "--quiet"; an argument has one name without dashes.
    QStringList names;
    /// The name of the value; empty for an option that takes none.
    QString value;
    QString text;
    /// All values that are allowed; empty if they cannot be listed.
    QStringList choices = {};
    /// Values to suggest; others are allowed too.
    QStringList suggestions = {};
    /// When a value may consist of several suggestions: the characters that stand between them.
    QString separators = {};
    bool isRepeatable = false;
    bool isRequired = false;

    bool takesValue() const { return !value.isEmpty(); }
    bool takesFile() const;
    /// The values that a completion can offer.
    QStringList knownValues() const { return choices + suggestions; }
    /// The long name of an option that has several.
    QString lastName() const { return names.constLast(); }
};

/// \name Rows of tables
/// @{
OptionTable flag(const QStringList& names, const QString& text);
/// \param value the name of the value; "FILE" for a file
OptionTable option(const QStringList& names, const QString& value, const QString& text);
/// An option that takes certain values only.
OptionTable choice(const QStringList& names, const QString& value, const QStringList& choices,
                   const QString& text);
OptionTable argument(const QString& name, const QString& value, const QString& text);
/// The same row, but it must be given, can be given several times, suggests values, or suggests the parts of
/// a value.
/// @{
OptionTable required(OptionTable row);
OptionTable repeatable(OptionTable row);
OptionTable suggesting(const QStringList& values, OptionTable row);
OptionTable suggestingParts(const QStringList& parts, const QString& separators, OptionTable row);
/// @}
/// The value of rows that take a file.
QString fileValue();
/// @}

struct Note
{
    QString name;
    QString text;
};

struct Example
{
    /// %1 stands for the name of the program.
    QString command;
    QString text;
};

struct CommandTable
{
    /// Empty for what the program does without a command.
    QString name;
    /// One sentence.
    QString summary;
    QVector<OptionTable> arguments;
    QVector<OptionTable> options;
    /// Further notes, under their own title.
    QString notesTitle;
    QVector<Note> notes;
    QVector<Example> examples;
    /// Whether the command reads messages and therefore has the options about inputs.
    bool readsMessages = false;
    /// Whether the command writes results and therefore has the options about results.
    bool hasCommonOptions = true;
    /// The formats of its results besides text and json.
    QStringList furtherFormats;
};

struct Section
{
    QString title;
    QStringList paragraphs;
};

struct ProgramTable
{
    QString version;
    /// Its summary is that of the program.
    CommandTable withoutCommand;
    QVector<CommandTable> commands;
    QVector<Section> sections;
};

/// All names.
/// @{
QStringList namesOf(const QVector<OptionTable>& options);
QStringList namesOf(const QVector<CommandTable>& commands);
/// @}
/// The option's name in a word such as "--format=json".
QString optionName(const QString& word);

/// A name and its explanation.
using Row = QPair<QString, QString>;

/// \name Texts that several pages share
/// @{
/// How a line with the command begins.
QString lineBegin(const CommandTable& command);
QString usage(const CommandTable& command);
QString usageOfProgram();
QString commandOf(const Example& example);
QVector<Row> rowsOf(const QVector<OptionTable>& options);
QVector<Row> argumentRowsOf(const CommandTable& command);
QVector<Row> noteRowsOf(const CommandTable& command);
/// @}

} // namespace routermsg
