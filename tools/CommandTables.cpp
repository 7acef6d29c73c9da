#include "CommandTables.h"

#include <QtCore/QPair>

#include <algorithm>

namespace routermsg {

// --- what all have in common ----------------------------------------------------------------

namespace {

using Row = QPair<QString, QString>;

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

} // namespace

// --- help -----------------------------------------------------------------------------------

namespace {

/// Lays text out in columns.
class Page
{
public:
    explicit Page(int width) : m_width(width > 0 ? width : usualWidth) {}

    void addTitle(const QString& title)
    {
        if (!m_text.isEmpty())
            m_text += QLatin1Char('\n');
        m_text += title + QStringLiteral(":\n");
    }

    void addParagraph(const QString& text, int indent = 0)
    {
        for (const QString& line : wrapped(text, m_width - indent))
            m_text += QString(indent, QLatin1Char(' ')) + line + QLatin1Char('\n');
    }

    void addLine(const QString& line) { m_text += line + QLatin1Char('\n'); }

    // The texts stand in a column of their own when that leaves room for them.
    void addTable(const QString& title, const QVector<Row>& rows)
    {
        if (rows.isEmpty())
            return;
        addTitle(title);
        const int column = textColumn(rows);
        for (const Row& row : rows) {
            const QString name = QStringLiteral("  ") + row.first;
            QStringList lines = wrapped(row.second, m_width - column);
            if (name.size() + 2 <= column)
                addLine(name.leftJustified(column) + (lines.isEmpty() ? QString() : lines.takeFirst()));
            else
                addLine(name);
            for (const QString& line : qAsConst(lines))
                addLine(QString(column, QLatin1Char(' ')) + line);
        }
    }

    const QString& text() const { return m_text; }

private:
    static constexpr int usualWidth = 80;
    static constexpr int widestName = 30;
    static constexpr int leastText = 30;

    int textColumn(const QVector<Row>& rows) const
    {
        int widest = 0;
        for (const Row& row : rows)
            widest = std::max(widest, static_cast<int>(row.first.size()));
        const int column = 4 + std::min(widest, widestName);
        return m_width - column < leastText ? 8 : column;
    }

    static QStringList wrapped(const QString& text, int width)
    {
        QStringList lines;
        for (const QString& word : text.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            if (lines.isEmpty() || lines.last().size() + 1 + word.size() > width)
                lines += word;
            else
                lines.last() += QLatin1Char(' ') + word;
        }
        return lines;
    }

    const int m_width;
    QString m_text;
};

} // namespace

QString helpPage(const ProgramTable& program, int width)
{
    Page page(width);
    page.addParagraph(program.summary);
    page.addTitle(QStringLiteral("Usage"));
    page.addLine(QStringLiteral("  ") + usage(program));
    QVector<Row> commands;
    for (const CommandTable& command : program.commands)
        commands += {command.name, command.summary};
    page.addTable(QStringLiteral("Commands"), commands);
    page.addTable(QStringLiteral("Options"), rowsOf(program.options));
    for (const Section& section : program.sections) {
        page.addTitle(section.title);
        for (const QString& paragraph : section.paragraphs)
            page.addParagraph(paragraph, 2);
    }
    page.addLine(QString());
    page.addParagraph(
        QStringLiteral("%1 COMMAND --help tells more about a command, with examples.").arg(program.name));
    return page.text();
}

QString helpPage(const ProgramTable& program, const CommandTable& command, int width)
{
    Page page(width);
    page.addParagraph(command.summary);
    page.addTitle(QStringLiteral("Usage"));
    page.addLine(QStringLiteral("  ") + usage(program, command));
    page.addTable(QStringLiteral("Arguments"), argumentRowsOf(command));
    page.addTable(QStringLiteral("Options"), rowsOf(command.options));
    page.addTable(command.notesTitle, noteRowsOf(command));
    page.addTitle(QStringLiteral("Examples"));
    for (const Example& example : command.examples) {
        page.addLine(QStringLiteral("  ") + example.command);
        page.addParagraph(example.text, 6);
    }
    return page.text();
}

// --- manual page ----------------------------------------------------------------------------

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

QString manualOf(const ProgramTable& program, const CommandTable& command)
{
    QString text = request("SS", usage(program, command)) + roff(command.summary) + QLatin1Char('\n');
    text += tagged(argumentRowsOf(command)) + tagged(rowsOf(command.options));
    if (!command.notes.isEmpty())
        text += QStringLiteral(".PP\n%1:\n").arg(roff(command.notesTitle)) + tagged(noteRowsOf(command));
    text += QStringLiteral(".PP\nExamples:\n");
    for (const Example& example : command.examples)
        text += QStringLiteral(".PP\n.RS\n.nf\n%1\n.fi\n.RE\n.PP\n.RS 11\n%2\n.RE\n")
                    .arg(roff(example.command), roff(example.text));
    return text;
}

} // namespace

QString manualPage(const ProgramTable& program)
{
    QString text = QStringLiteral(".TH %1 1 \"\" \"%2 %3\" \"User Commands\"\n")
                       .arg(program.name.toUpper(), program.name, program.version);
    text += request("SH", QStringLiteral("NAME"));
    text += QStringLiteral("%1 \\- %2\n").arg(roff(program.name), roff(program.summary));
    text += request("SH", QStringLiteral("SYNOPSIS")) + roff(usage(program)) + QLatin1Char('\n');
    text += request("SH", QStringLiteral("OPTIONS")) + tagged(rowsOf(program.options));
    text += request("SH", QStringLiteral("COMMANDS"));
    for (const CommandTable& command : program.commands)
        text += manualOf(program, command);
    for (const Section& section : program.sections) {
        text += request("SH", section.title.toUpper());
        for (const QString& paragraph : section.paragraphs)
            text += QStringLiteral(".PP\n%1\n").arg(roff(paragraph));
    }
    return text;
}

// --- completions ----------------------------------------------------------------------------

namespace {

QStringList allNames(const QVector<OptionTable>& options)
{
    QStringList names;
    for (const OptionTable& option : options)
        names += option.names;
    return names;
}

QStringList commandNames(const ProgramTable& program)
{
    QStringList names;
    for (const CommandTable& command : program.commands)
        names += command.name;
    return names;
}

bool takesFiles(const CommandTable& command)
{
    return std::any_of(command.arguments.begin(), command.arguments.end(),
                       [](const OptionTable& argument) { return argument.isFile; });
}

QStringList argumentChoices(const CommandTable& command)
{
    QStringList choices;
    for (const OptionTable& argument : command.arguments)
        choices += argument.choices;
    return choices;
}

QString inQuotes(QString text)
{
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
}

// What the parts become, one after the other.
template <class Parts, class Make>
QString each(const Parts& parts, const Make& make)
{
    QString text;
    for (const auto& part : parts)
        text += make(part);
    return text;
}

// --- bash

QString bashValues(const CommandTable& command, const OptionTable& option)
{
    if (option.value.isEmpty())
        return QString();
    QStringList patterns;
    for (const QString& name : option.names)
        patterns += command.name + QLatin1Char(':') + name;
    const QString action =
        option.choices.isEmpty()
            ? QStringLiteral("compopt -o default")
            : QStringLiteral("_routermsg_words %1").arg(inQuotes(option.choices.join(' ')));
    return QStringLiteral("    %1) %2; return ;;\n").arg(patterns.join(QStringLiteral(" | ")), action);
}

QString bashCommand(const CommandTable& command)
{
    QString otherwise;
    if (!argumentChoices(command).isEmpty())
        otherwise +=
            QStringLiteral(" _routermsg_words %1;").arg(inQuotes(argumentChoices(command).join(' ')));
    if (takesFiles(command))
        otherwise += QStringLiteral(" compopt -o default;");
    return QStringLiteral("    %1:-*) _routermsg_words %2 ;;\n    %1:*)%3 ;;\n")
        .arg(command.name, inQuotes(allNames(command.options).join(' ')), otherwise);
}

QString bash(const ProgramTable& program)
{
    const QString values = each(program.commands, [](const CommandTable& command) {
        return each(command.options, [&](const OptionTable& option) { return bashValues(command, option); });
    });
    return QStringLiteral(R"(# bash completion for %1

_routermsg_words()
{
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "${COMP_WORDS[COMP_CWORD]}")
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]]; then
        compopt -o nospace
    fi
}

_routermsg()
{
    local command=${COMP_WORDS[1]} previous=${COMP_WORDS[COMP_CWORD-1]} current=${COMP_WORDS[COMP_CWORD]}
    COMPREPLY=()
    if [[ $COMP_CWORD -eq 1 ]]; then
        _routermsg_words %2
        return
    fi
    case $command:$previous in
%3    esac
    case $command:$current in
%4    esac
}

complete -F _routermsg %1
)")
        .arg(program.name, inQuotes((commandNames(program) + allNames(program.options)).join(' ')), values,
             each(program.commands, bashCommand));
}

// --- zsh

QString zshText(QString text)
{
    for (const char* special : {"\\", "[", "]", ":"})
        text.replace(QLatin1String(special), QLatin1Char('\\') + QLatin1String(special));
    return text;
}

QString zshValue(const OptionTable& option)
{
    if (!option.choices.isEmpty())
        return QStringLiteral(":%1:(%2)").arg(option.value, option.choices.join(' '));
    return option.isFile ? QStringLiteral(":%1:_files").arg(option.value)
                         : QStringLiteral(":%1: ").arg(option.value);
}

QString zshLine(const QString& argument)
{
    return QStringLiteral(" \\\n            %1").arg(inQuotes(argument));
}

QString zshOption(const OptionTable& option)
{
    return each(option.names, [&](const QString& name) {
        return zshLine((option.isRepeatable ? QStringLiteral("*") : QString()) + name + QLatin1Char('[')
                       + zshText(option.text) + QLatin1Char(']')
                       + (option.value.isEmpty() ? QString() : zshValue(option)));
    });
}

QString zshArgument(const OptionTable& argument)
{
    return zshLine((argument.isRepeatable ? QStringLiteral("*") : QString()) + zshValue(argument));
}

QString zshCommand(const CommandTable& command)
{
    return QStringLiteral("    %1)\n        _arguments%2%3\n        ;;\n")
        .arg(command.name, each(command.options, zshOption), each(command.arguments, zshArgument));
}

QString zsh(const ProgramTable& program)
{
    const QString commands = each(program.commands, [](const CommandTable& command) {
        return zshLine(command.name + QLatin1Char(':') + zshText(command.summary));
    });
    return QStringLiteral(R"(#compdef %1

_routermsg()
{
    local -a commands
    commands=(%2
    )
    if (( CURRENT == 2 )); then
        _describe command commands
        _arguments%3
        return
    fi
    local command=$words[2]
    shift words
    (( CURRENT-- ))
    case $command in
%4    esac
}

if [[ $funcstack[1] == _routermsg ]]; then
    _routermsg "$@"
else
    compdef _routermsg %1
fi
)")
        .arg(program.name, commands, each(program.options, zshOption), each(program.commands, zshCommand));
}

// --- fish

QString fishQuotes(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('\''), QLatin1String("\\'"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

QString fishOption(const QString& beginning, const OptionTable& option)
{
    QString line = beginning;
    for (const QString& name : option.names)
        line += name.startsWith(QLatin1String("--")) ? QStringLiteral(" -l ") + name.mid(2)
                                                     : QStringLiteral(" -s ") + name.mid(1);
    if (!option.choices.isEmpty())
        line += QStringLiteral(" -x -a ") + fishQuotes(option.choices.join(' '));
    else if (!option.value.isEmpty())
        line += option.isFile ? QStringLiteral(" -r -F") : QStringLiteral(" -x");
    return line + QStringLiteral(" -d ") + fishQuotes(option.text) + QLatin1Char('\n');
}

QString fishCommand(const QString& beginning, const CommandTable& command)
{
    const QString inCommand =
        beginning + QStringLiteral(" -n '__fish_seen_subcommand_from %1'").arg(command.name);
    QString text = QStringLiteral("%1 -n __fish_use_subcommand -f -a %2 -d %3\n")
                       .arg(beginning, command.name, fishQuotes(command.summary));
    if (!takesFiles(command))
        text += inCommand + QStringLiteral(" -f\n");
    if (!argumentChoices(command).isEmpty())
        text += inCommand + QStringLiteral(" -a ") + fishQuotes(argumentChoices(command).join(' '))
                + QLatin1Char('\n');
    return text
           + each(command.options, [&](const OptionTable& option) { return fishOption(inCommand, option); });
}

QString fish(const ProgramTable& program)
{
    const QString beginning = QStringLiteral("complete -c ") + program.name;
    return QStringLiteral("# fish completion for %1\n\n").arg(program.name)
           + each(program.options,
                  [&](const OptionTable& option) {
                      return fishOption(beginning + QStringLiteral(" -n __fish_use_subcommand"), option);
                  })
           + each(program.commands,
                  [&](const CommandTable& command) { return fishCommand(beginning, command); });
}

struct Shell
{
    const char* name;
    QString (*make)(const ProgramTable&);
};

constexpr Shell allShells[] = {{"bash", bash}, {"zsh", zsh}, {"fish", fish}};

} // namespace

QStringList shells()
{
    QStringList names;
    for (const Shell& shell : allShells)
        names += QLatin1String(shell.name);
    return names;
}

QString completion(const ProgramTable& program, const QString& shell)
{
    const auto found = std::find_if(std::begin(allShells), std::end(allShells),
                                    [&](const Shell& one) { return shell == QLatin1String(one.name); });
    return found == std::end(allShells) ? QString() : found->make(program);
}

} // namespace routermsg
