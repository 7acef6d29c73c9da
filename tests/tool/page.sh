#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Compares the page about the program with the help of the program:
#
#     page.sh [--update] PROGRAM PAGE
#
# The table of commands must be that of the program. Each command needs a section with its usage, which must have all
# arguments and all options, except those in the sections "Options of all commands" and "Options of commands that
# read".
#
# --update writes the table, and says what else is missing.
set -euo pipefail

update=no
if [ "$1" = --update ]; then
    update=yes
    shift
fi
program=$(realpath "$1")
page=$2
failed=0

complain() {
    echo "$page: $1"
    failed=1
}

# help_of COMMAND TITLE: the lines of that part of the help, without the indentation, and unwrapped.
help_of() {
    "$program" ${1:+"$1"} --help | awk -v title="$2:" '
        $0 == title { inside = 1; next }
        /^$/ { inside = 0 }
        inside && /^   / { sub(/^ +/, " "); line = line $0; next }
        inside { if (line) print line; line = $0 }
        END { if (line) print line }' |
        sed 's/^  //'
}

commands() { help_of '' Commands | sed 's/ .*//'; }

# The arguments in the usage.
arguments_of() { help_of "$1" Usage | sed "s/^routermsg $1//; s/^ \[OPTION\]\.\.\.//; s/^ //"; }

# Lines "-o --output FILE".
options_of() { help_of "$1" Options | sed -n '/^-/ { s/  .*//; s/,//g; p }'; }

section() { awk -v title="## $1" '/^## / { inside = $0 == title; next } inside' "$page"; }

table() {
    echo '| Command | What it does |'
    echo '|---|---|'
    local command summary arguments
    while read -r command summary; do
        arguments=$(arguments_of "$command")
        echo "| [\`$command${arguments:+ $arguments}\`](#$command) | $summary |"
    done < <(help_of '' Commands)
}

# check_option COMMAND USAGE NAME... [VALUE]: complains unless the option is in the usage, in brackets unless it is
# required, or one of many commands.
check_option() {
    local command=$1 usage=$2 name value=
    shift 2
    [[ ${*: -1} = -* ]] || value=" ${*: -1}"
    for name in "$@"; do
        case $(section 'Options of all commands')$(section 'Options of commands that read')$usage in
            *"\`$name"* | *"[$name$value]"* | *"] $name$value "*) return ;;
        esac
    done
    complain "The usage of $command lacks the option $*."
}

check_section() {
    local command=$1 usage option
    if [ -z "$(section "$command")" ]; then
        complain "There is no section \"## $command\"."
        return
    fi
    usage=$(section "$command" | grep -m 1 "^    routermsg $command\b" || true)
    case $usage in
        *" $(arguments_of "$command")" | "    routermsg $command") ;;
        *) complain "The usage of $command does not end with its arguments, $(arguments_of "$command")." ;;
    esac
    while read -ra option; do
        check_option "$command" "$usage" "${option[@]}"
    done < <(options_of "$command")
}

begin='<!-- commands -->'
end='<!-- end of commands -->'
if [ $update = yes ]; then
    new=$(mktemp)
    { sed "/^$begin\$/q" "$page" && table && sed -n "/^$end\$/,\$p" "$page"; } >"$new"
    cp "$new" "$page"
    rm "$new"
fi
diff -u --label "$page" --label 'the commands of the program' \
    <(sed -n "/^$begin\$/,/^$end\$/p" "$page") <(echo "$begin" && table && echo "$end") || failed=1
for command in $(commands); do
    check_section "$command"
done
[ $update = yes ] || exit $failed
