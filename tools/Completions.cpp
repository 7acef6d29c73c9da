// SPDX-License-Identifier: MIT
#include "Completions.h"

#include "ProgramName.h"

#include <algorithm>
#include <iterator>

namespace routermsg {

namespace {

bool takesFiles(const CommandTable& command)
{
    return std::any_of(command.arguments.begin(), command.arguments.end(),
                       [](const OptionTable& argument) { return argument.takesFile(); });
}

QStringList knownArguments(const CommandTable& command)
{
    QStringList values;
    for (const OptionTable& argument : command.arguments)
        values += argument.knownValues();
    return values;
}

QString inQuotes(QString text)
{
    return QLatin1Char('\'') + text.replace(QLatin1Char('\''), QLatin1String("'\\''")) + QLatin1Char('\'');
}

// make(part) of all parts, one after the other.
template <class Parts, class Make>
QString each(const Parts& parts, const Make& make)
{
    QString text;
    for (const auto& part : parts)
        text += make(part);
    return text;
}

// The shell function that offers words.
QString wordsFunction() { return QStringLiteral("_%1_words").arg(programName()); }

// --- bash

QString bashWords(const QStringList& words)
{
    return wordsFunction() + QLatin1Char(' ') + inQuotes(words.join(' '));
}

QString bashValues(const CommandTable& command, const OptionTable& option)
{
    if (option.value.isEmpty())
        return QString();
    QStringList patterns;
    for (const QString& name : option.names)
        patterns += command.name + QLatin1Char(':') + name;
    const QString action = option.knownValues().isEmpty() ? QStringLiteral("compopt -o default")
                                                          : bashWords(option.knownValues());
    return QStringLiteral("    %1) %2; return ;;\n").arg(patterns.join(QStringLiteral(" | ")), action);
}

QString bashCommand(const CommandTable& command)
{
    QString otherwise;
    if (!knownArguments(command).isEmpty())
        otherwise += QLatin1Char(' ') + bashWords(knownArguments(command)) + QLatin1Char(';');
    if (takesFiles(command))
        otherwise += QStringLiteral(" compopt -o default;");
    return QStringLiteral("    %1:-*) %2 ;;\n    %1:*)%3 ;;\n")
        .arg(command.name, bashWords(namesOf(command.options)), otherwise);
}

QString bash(const ProgramTable& program)
{
    const QString values = each(program.commands, [](const CommandTable& command) {
        return each(command.options, [&](const OptionTable& option) { return bashValues(command, option); });
    });
    return QStringLiteral(R"(# bash completion for %1

# bash splits words also at "=" and ":". This puts the words up to the current one together as the program gets
# them, in the array words.
_%1_join_words()
{
    local rest=$COMP_LINE part i
    words=()
    for ((i = 0; i <= COMP_CWORD; ++i)); do
        part=${COMP_WORDS[i]}
        if [[ $i -eq 0 || $rest == [[:space:]]* ]]; then
            words+=('')
            rest=${rest#"${rest%%[![:space:]]*}"}
        fi
        words[-1]+=$part
        rest=${rest#"$part"}
    done
}

# Offers the words that begin like the current one. Values such as "Type=Reply" come after "Type=".
_%1_words()
{
    local word
    for word in $1; do
        if [[ $word == "$current"* && ( ( $current == *=* && $word == *=?* ) || ( $current != *=* && $word != *=?* ) ) ]]; then
            COMPREPLY+=("$word")
        fi
    done
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]]; then
        compopt -o nospace
    fi
}

_%1()
{
    local -a words
    _%1_join_words
    local word=${words[-1]} command=${words[1]} previous=${words[-2]} option= split=
    local current=$word breaks=${COMP_WORDBREAKS//[^=:]/}
    COMPREPLY=()
    if [[ ${#words[@]} -eq 2 ]]; then
        %2
        return
    fi
    if [[ $word == --*=* ]]; then
        previous=${word%%=*}
        option=$previous=
        current=${word#*=}
    fi
    _%1_values
    # bash replaces only what follows the last character that splits words.
    if [[ $breaks && $word == *[$breaks]* ]]; then
        split=${word%"${word##*[$breaks]}"}
    fi
    COMPREPLY=("${COMPREPLY[@]/#/$option}")
    COMPREPLY=("${COMPREPLY[@]#"$split"}")
}

_%1_values()
{
    case $command:$previous in
%3    esac
    case $command:$current in
%4    esac
}

complete -F _%1 %1
)")
        .arg(programName(), bashWords(namesOf(program.commands) + namesOf(program.withoutCommand.options)),
             values, each(program.commands, bashCommand));
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
    if (!option.knownValues().isEmpty())
        return QStringLiteral(":%1:{%2 %3}")
            .arg(option.value, wordsFunction(), option.knownValues().join(' '));
    return option.takesFile() ? QStringLiteral(":%1:_files").arg(option.value)
                              : QStringLiteral(":%1: ").arg(option.value);
}

QString zshLine(const QString& argument)
{
    return QStringLiteral(" \\\n            %1").arg(inQuotes(argument));
}

QString zshOption(const OptionTable& option)
{
    return each(option.names, [&](const QString& name) {
        const bool isLong = name.startsWith(QLatin1String("--"));
        return zshLine((option.isRepeatable ? QStringLiteral("*") : QString()) + name
                       + QLatin1String(option.takesValue() && isLong ? "=[" : "[") + zshText(option.text)
                       + QLatin1Char(']') + (option.value.isEmpty() ? QString() : zshValue(option)));
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

# Offers words. Values such as "Type=Reply" come after "Type=".
_%1_words()
{
    local -a values
    if [[ $PREFIX == *=* ]]; then
        values=(${(M)@:#${PREFIX%%=*}=?*})
        compset -P '*='
        compadd -- ${values#*=}
        return
    fi
    compadd -- ${@:#*=*}
    compadd -S '' -- ${(M)@:#*=}
}

_%1()
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

if [[ $funcstack[1] == _%1 ]]; then
    _%1 "$@"
else
    compdef _%1 %1
fi
)")
        .arg(programName(), commands, each(program.withoutCommand.options, zshOption),
             each(program.commands, zshCommand));
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
    if (!option.knownValues().isEmpty())
        line += QStringLiteral(" -x -a ") + fishQuotes(option.knownValues().join(' '));
    else if (!option.value.isEmpty())
        line += option.takesFile() ? QStringLiteral(" -r -F") : QStringLiteral(" -x");
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
    if (!knownArguments(command).isEmpty())
        text += inCommand + QStringLiteral(" -a ") + fishQuotes(knownArguments(command).join(' '))
                + QLatin1Char('\n');
    return text
           + each(command.options, [&](const OptionTable& option) { return fishOption(inCommand, option); });
}

QString fish(const ProgramTable& program)
{
    const QString beginning = QStringLiteral("complete -c ") + programName();
    return QStringLiteral("# fish completion for %1\n\n").arg(programName())
           + each(program.withoutCommand.options,
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
