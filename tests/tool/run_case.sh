#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs the program as a user does and compares all its output with the expected one:
#
#     run_case.sh [--update] [--quick] [--locale LOCALE FOLDER] PROGRAM DOCUMENTS CASE...
#
# A case is a folder with the files below; a folder with cases stands for all of them.
#     cmd      the commands, for bash
#     out, err what they write to standard output and standard error; a missing file stands for nothing
#     status   the exit status
# The commands run in an empty folder with $ROUTERMSG, the program, $DOCUMENTS, the example documents,
# $CASE, the folder of the case, and $SUPPORT, this folder; the last three are links, so that the paths in messages
# are always the same. Commands that cannot run on this machine exit with status 77 and say why on standard error.
# The exit status of this script is 77 if that is so for all cases; if it is so for some, it lists them.
#
# --update makes the output the expected one. Read it before you commit it.
#
# --quick leaves out the cases that begin with the line "# slow": they take seconds.
#
# --locale runs the program, but not the commands around it, under a locale, which is made in the folder. The
# expected output is the same.
#
# A case that fails prints the command that updates it. For quick cases that is $UPDATE_COMMAND if it is set.
set -uo pipefail

support=$(dirname "$(realpath "$0")")
skipped=77
update=no
quick=no
locale=
while true; do
    case $1 in
        --update) update=yes ;;
        --quick) quick=yes ;;
        --locale)
            locale=$2
            locales=$3
            shift 2
            ;;
        *) break ;;
    esac
    shift
done
program=$(realpath "$1")
documents=$(realpath "$2")
shift 2

# make_locale: compiles the locale. Its decimal comma shows that it works.
make_locale() {
    local language=${locale%%.*} encoding=${locale#*.}
    mkdir -p "$locales" && locales=$(realpath "$locales")
    [ -d "$locales/$locale" ] || localedef --no-archive -i "$language" -f "$encoding" "$locales/$locale" || return
    [ "$(LOCPATH=$locales LC_ALL=$locale locale decimal_point)" = , ]
}

# in_locale FOLDER: makes a script routermsg in the folder that runs the program under the locale.
in_locale() {
    cat >"$1/routermsg" <<END
#!/bin/sh
LOCPATH='$locales' LC_ALL=$locale LANGUAGE=${locale%%_*} exec '$program' "\$@"
END
    chmod +x "$1/routermsg"
}

# run FOLDER CASE: runs the commands. The files out, err and status are in the folder afterwards.
run() {
    local routermsg=$program
    mkdir "$1/work"
    ln -s "$documents" "$1/work/documents"
    ln -s "$2" "$1/work/case"
    ln -s "$support" "$1/support"
    if [ "$locale" ]; then
        in_locale "$1"
        routermsg=$1/routermsg
    fi
    (
        cd "$1/work" || exit
        env -u NO_COLOR -u COLUMNS LC_ALL=C TERM=xterm ROUTERMSG="$routermsg" DOCUMENTS=documents CASE=case \
            SUPPORT=../support bash case/cmd </dev/null >"$1/out" 2>"$1/err"
        echo $? >"$1/status"
    )
}

# keep FOLDER CASE
keep() {
    local name
    for name in out err status; do
        rm -f "$2/$name"
        [ ! -s "$1/$name" ] || cp "$1/$name" "$2/$name"
    done
}

is_slow() { [ "$(head -n 1 "$1/cmd")" = '# slow' ]; }

# update_command CASE
update_command() {
    if [ "${UPDATE_COMMAND:-}" ] && ! is_slow "$1"; then
        echo "$UPDATE_COMMAND"
    else
        echo "bash$(printf ' %q' "$support/run_case.sh" --update "$program" "$documents" "$1")"
    fi
}

# compare FOLDER CASE
compare() {
    local name expected same=yes
    for name in out err status; do
        expected=$2/$name
        [ -e "$expected" ] || expected=/dev/null
        diff -u --label "expected $name" --label "actual $name" "$expected" "$1/$name" || same=no
    done
    [ $same = yes ] && return
    echo "The case $(basename "$2") failed${locale:+ under $locale}. If what it does now is right:"
    echo "    $(update_command "$2")"
    return 1
}

if [ "$locale" ] && ! make_locale; then
    echo "There is no locale $locale; its sources are in the Debian package locales." >&2
    exit $skipped
fi
cases=()
for case in "$@"; do
    case=$(realpath "$case")
    if [ -e "$case/cmd" ]; then
        cases+=("$case")
    else
        for command in "$case"/*/cmd; do
            cases+=("$(dirname "$command")")
        done
    fi
done
tried=0
failed=0
left_out=()
for case in "${cases[@]}"; do
    if [ $quick = yes ] && is_slow "$case"; then
        continue
    fi
    ((++tried))
    folder=$(mktemp -d)
    run "$folder" "$case"
    if [ "$(cat "$folder/status")" != $skipped ]; then
        if [ $update = yes ]; then
            keep "$folder" "$case"
        else
            compare "$folder" "$case" || failed=1
        fi
    elif [ -s "$folder/err" ]; then
        left_out+=("$(basename "$case"): $(cat "$folder/err")")
    else
        echo "The case $(basename "$case") does not say why it cannot be run here."
        failed=1
    fi
    rm -rf "$folder"
done
if [ $tried = 0 ]; then
    echo "There is no case to run."
    exit 1
fi
if [ ${#left_out[@]} -gt 0 ]; then
    echo "${#left_out[@]} of $tried cases cannot be run here:"
    printf '    %s\n' "${left_out[@]}"
fi
[ $failed = 0 ] || exit 1
[ ${#left_out[@]} -lt $tried ] || exit $skipped
