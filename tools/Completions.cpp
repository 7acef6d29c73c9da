// SPDX-License-Identifier: MIT
#include "Completions.h"

#include "ProgramName.h"

#include <algorithm>
#include <iterator>
#include <utility>

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

// The options whose values consist of several words. Each has a shell function that offers them, because it
// is an option of many commands and has many words.
QVector<OptionTable> optionsWithParts(const ProgramTable& program)
{
    QVector<OptionTable> options;
    for (const CommandTable& command : program.commands)
        for (const OptionTable& option : command.options)
            if (!option.separators.isEmpty() && !namesOf(options).contains(option.lastName()))
                options += option;
    return options;
}

QString partsFunction(const OptionTable& option)
{
    return QStringLiteral("_%1_%2").arg(programName(), option.lastName().mid(2));
}

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
    const QString action = !option.separators.isEmpty()      ? partsFunction(option)
                           : !option.knownValues().isEmpty() ? bashWords(option.knownValues())
                           : option.takesFile()              ? QStringLiteral("compopt -o default")
                                                             : QStringLiteral(":");
    return QStringLiteral("    %1) %2; return ;;\n").arg(patterns.join(QStringLiteral(" | ")), action);
}

QString bashParts(const OptionTable& option)
{
    return QStringLiteral("%1() { _%2_parts %3 %4; }\n")
        .arg(partsFunction(option), programName(), inQuotes(option.separators),
             inQuotes(option.knownValues().join(' ')));
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

# Offers words for the part of a value behind the last of the characters $1. No blank comes behind it, and no quote:
# the value can go on.
_%1_parts()
{
    local whole=$current part before i
    part=${whole##*[$1]}
    before=${whole%"$part"}
    current=$part
    _%1_words "$2"
    current=$whole
    compopt -o nospace
    for i in "${!COMPREPLY[@]}"; do
        COMPREPLY[i]=$before${COMPREPLY[i]}
    done
    # bash ends the quotes behind a single word.
    if [[ $quote && ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} != "$whole" ]]; then
        COMPREPLY+=("${COMPREPLY[0]} ")
    fi
}

%5
_%1()
{
    local -a words
    _%1_join_words
    local word=${words[-1]} command=${words[1]} previous=${words[-2]} option= split= quote=
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
    if [[ $current == [\'\"]* ]]; then
        quote=${current:0:1}
        current=${current:1}
    fi
    _%1_values
    # In quotes bash replaces all that is in them, otherwise only what follows the last character that splits words.
    if [[ $quote ]]; then
        return
    fi
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
             values, each(program.commands, bashCommand), each(optionsWithParts(program), bashParts));
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
    const QString value = zshText(option.value);
    if (!option.separators.isEmpty())
        return QStringLiteral(":%1:%2").arg(value, partsFunction(option));
    if (!option.knownValues().isEmpty())
        return QStringLiteral(":%1:{%2 %3%4}")
            .arg(value, wordsFunction(), option.knownValues().join(' '),
                 option.takesFile() ? QStringLiteral("; _files") : QString());
    return option.takesFile() ? QStringLiteral(":%1:_files").arg(value) : QStringLiteral(":%1: ").arg(value);
}

QString zshParts(const OptionTable& option)
{
    return QStringLiteral("%1() { _%2_parts %3 %4; }\n")
        .arg(partsFunction(option), programName(), inQuotes(option.separators),
             option.knownValues().join(' '));
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
    (( $+ending )) || local -a ending=()
    local -a values
    if [[ $PREFIX == *=* ]]; then
        values=(${(M)@:#${PREFIX%%=*}=?*})
        compset -P '*='
        compadd "${ending[@]}" -- ${values#*=}
        return
    fi
    compadd "${ending[@]}" -- ${@:#*=*}
    compadd -S '' -- ${(M)@:#*=}
}

# Offers words for the part of a value behind the last of the characters $1. Nothing comes behind it: the value can
# go on.
_%1_parts()
{
    local -a ending=(-S '')
    compset -P "*[$1]"
    shift
    _%1_words "$@"
}

%5

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
             each(program.commands, zshCommand), each(optionsWithParts(program), zshParts));
}

// --- fish

QString fishQuotes(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\")).replace(QLatin1Char('\''), QLatin1String("\\'"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

QString fishParts(const OptionTable& option)
{
    return QStringLiteral("function %1\n    _%2_parts %3 %4\nend\n\n")
        .arg(partsFunction(option), programName(), fishQuotes(option.separators),
             option.knownValues().join(' '));
}

QString fishOption(const QString& beginning, const OptionTable& option)
{
    QString line = beginning;
    for (const QString& name : option.names)
        line += name.startsWith(QLatin1String("--")) ? QStringLiteral(" -l ") + name.mid(2)
                                                     : QStringLiteral(" -s ") + name.mid(1);
    if (!option.separators.isEmpty())
        line += QStringLiteral(" -x -a '(%1)'").arg(partsFunction(option));
    else if (!option.knownValues().isEmpty())
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
    return QStringLiteral(R"(# fish completion for %1

# Offers words for the part of a value behind the last of the characters $argv[1].
function _%1_parts
    set -l value (commandline -ct | string replace -r '^--[a-z-]+=' '' | string replace -r '^[\'"]' '')
    set -l before (string match -r "^.*[$argv[1]]" -- $value)
    printf '%s\n' "$before"$argv[2..-1]
end

)")
               .arg(programName())
           + each(optionsWithParts(program), fishParts)
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
