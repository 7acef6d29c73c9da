// SPDX-License-Identifier: MIT
/// \file
/// The tables of commands and options, by which the words of a command line are read, and from which help,
/// manual page and completions are made.
#pragma once

#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace routermsg {

/// An option, or an argument, which has its place only.
struct OptionTable
{
    /// "-q" and "--quiet"; an argument has one name without dashes.
    QStringList names;
    /// What the value is called; empty for an option without one.
    QString value;
    QString text;
    /// All values there are, if there are no others.
    QStringList choices = {};
    /// Values that can be told beforehand, among others.
    QStringList suggestions = {};
    bool isRepeatable = false;
    bool isRequired = false;

    bool takesValue() const { return !value.isEmpty(); }
    bool takesFile() const;
    /// The values that can be told.
    QStringList knownValues() const { return choices + suggestions; }
    /// The long name of an option that has several.
    QString lastName() const { return names.constLast(); }
};

/// \name Rows of tables
/// @{
OptionTable flag(const QStringList& names, const QString& text);
/// \param value what the value is called; "FILE" for a file
OptionTable option(const QStringList& names, const QString& value, const QString& text);
/// An option that takes certain values only.
OptionTable choice(const QStringList& names, const QString& value, const QStringList& choices,
                   const QString& text);
OptionTable argument(const QString& name, const QString& value, const QString& text);
/// The row, but it must be given, can be given several times, or has some values that can be told.
/// @{
OptionTable required(OptionTable row);
OptionTable repeatable(OptionTable row);
OptionTable suggesting(const QStringList& values, OptionTable row);
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
    QString command;
    QString text;
};

struct CommandTable
{
    QString name;
    /// One sentence.
    QString summary;
    QVector<OptionTable> arguments;
    QVector<OptionTable> options;
    /// What else is to be known, under a title of its own.
    QString notesTitle;
    QVector<Note> notes;
    QVector<Example> examples;
    /// Whether it writes results, and so has the options about them.
    bool hasCommonOptions = true;
};

struct Section
{
    QString title;
    QStringList paragraphs;
};

struct ProgramTable
{
    QString name;
    QString version;
    QString summary;
    QVector<CommandTable> commands;
    QVector<OptionTable> options;
    QVector<Section> sections;
};

/// All names.
/// @{
QStringList namesOf(const QVector<OptionTable>& options);
QStringList namesOf(const QVector<CommandTable>& commands);
/// @}
/// The option's name in a word such as "--format=json".
QString optionName(const QString& word);

/// A name and what it stands for.
using Row = QPair<QString, QString>;

/// \name What help, manual page and completions say alike
/// @{
QString usage(const ProgramTable& program);
QString usage(const ProgramTable& program, const CommandTable& command);
QVector<Row> rowsOf(const QVector<OptionTable>& options);
QVector<Row> argumentRowsOf(const CommandTable& command);
QVector<Row> noteRowsOf(const CommandTable& command);
/// @}

} // namespace routermsg
