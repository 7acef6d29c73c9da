#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# run_case_test.sh SCRIPT: checks that run_case.sh notices every difference, and what it says about cases that cannot
# be run.
set -euo pipefail
script=$(realpath "$1")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
unset UPDATE_COMMAND
mkdir cases documents

# make_case NAME COMMANDS [OUTPUT]: makes a case, which is expected to write the output and to succeed.
make_case() {
    mkdir "cases/$1"
    printf '%s\n' "$2" >"cases/$1/cmd"
    echo 0 >"cases/$1/status"
    [ $# -lt 3 ] || printf '%s\n' "$3" >"cases/$1/out"
}

# expect STATUS TEXT ARGUMENT...: runs the script. The text must be among what it says; '' stands for nothing at all.
expect() {
    local status=0 said
    said=$(bash "$script" "${@:3}" 2>&1) || status=$?
    if [ "$status" != "$1" ] || [[ "$said" != *"$2"* ]] || [ -z "$2" -a -n "$said" ]; then
        printf '%s: expected status %s: %s\nactual status %s: %s\n' "${*:3}" "$1" "$2" "$status" "$said" >&2
        exit 1
    fi
}

make_case good '$ROUTERMSG hello' hello
make_case other_output '$ROUTERMSG bye' hello
make_case other_error '$ROUTERMSG hello; echo oops >&2' hello
make_case other_status '$ROUTERMSG hello; exit 3' hello
make_case no_zsh 'echo "There is no zsh." >&2; exit 77'
make_case no_reason 'exit 77'
make_case slow $'# slow\n$ROUTERMSG bye' hello

run=(/bin/echo documents)
expect 0 '' "${run[@]}" cases/good
expect 1 'The case other_output failed.' "${run[@]}" cases/other_output
expect 1 '+oops' "${run[@]}" cases/other_error
expect 1 'actual status' "${run[@]}" cases/other_status
expect 1 'The case other_output failed.' "${run[@]}" cases/other_output cases/good
expect 77 $'1 of 1 cases cannot be run here:\n    no_zsh: There is no zsh.' "${run[@]}" cases/no_zsh
expect 0 $'1 of 2 cases cannot be run here:\n    no_zsh: There is no zsh.' "${run[@]}" cases/no_zsh cases/good
expect 1 'The case other_output failed.' "${run[@]}" cases/no_zsh cases/other_output
expect 1 'The case no_reason does not say why it cannot be run here.' "${run[@]}" cases/no_reason cases/good
expect 1 'The case slow failed.' "${run[@]}" cases/slow
expect 0 '' --quick "${run[@]}" cases/slow cases/good
expect 1 'There is no case to run.' --quick "${run[@]}" cases/slow
expect 0 '' --update "${run[@]}" cases/other_output
expect 0 '' "${run[@]}" cases/other_output
expect 1 'The case other_error failed.' "${run[@]}" cases
