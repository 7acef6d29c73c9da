/// \file
/// The help, the manual page and the completions for shells, all made from the same tables.
#pragma once

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

/// The help for the program or one of its commands, made to fit.
/// \param width the number of columns; 0 for the usual 80
QString helpPage(const ProgramTable& program, int width);
QString helpPage(const ProgramTable& program, const CommandTable& command, int width);

/// The manual page, for `man`.
QString manualPage(const ProgramTable& program);

/// The shells for which there are completions.
QStringList shells();

/// The completion for a shell.
QString completion(const ProgramTable& program, const QString& shell);

} // namespace routermsg
