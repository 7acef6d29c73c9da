// SPDX-License-Identifier: MIT
/// \file
/// The tables of commands and options from which help, manual page and completions are made.
#pragma once

#include <QtCore/QPair>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

namespace routermsg {

/// An option, or an argument without a name.
struct OptionTable
{
    /// "-q" and "--quiet"; the only name of an argument is that of its value.
    QStringList names;
    /// What the value is called; empty for an option without one.
    QString value;
    /// The values there are, if they can be told.
    QStringList choices;
    QString text;
    bool isFile = false;
    bool isRepeatable = false;
    bool isRequired = false;
};

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
