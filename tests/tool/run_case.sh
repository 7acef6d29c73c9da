#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs the program as a user does and compares all that comes out:
#
#     run_case.sh [--update] PROGRAM DOCUMENTS CASE...
#
# A case is a folder with
#     cmd      the commands, for bash
#     out, err what they write to standard output and standard error; a missing file stands for nothing
#     status   the exit status
# The commands run in an empty folder with $ROUTERMSG, the program, $DOCUMENTS, the example documents, and
# $CASE, the folder of the case; the last two are links, so that the paths in messages are always the same.
#
# --update keeps what comes out as what is expected. Read it before you commit it.
set -uo pipefail

update=no
if [ "$1" = --update ]; then
    update=yes
    shift
fi
program=$(realpath "$1")
documents=$(realpath "$2")
shift 2

# run FOLDER CASE: leaves out, err and status in the folder.
run() {
    mkdir "$1/work"
    ln -s "$documents" "$1/work/documents"
    ln -s "$2" "$1/work/case"
    (
        cd "$1/work" || exit
        env -u NO_COLOR -u COLUMNS LC_ALL=C TERM=xterm ROUTERMSG="$program" DOCUMENTS=documents CASE=case \
            bash case/cmd </dev/null >"$1/out" 2>"$1/err"
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

# compare FOLDER CASE
compare() {
    local name expected same=yes
    for name in out err status; do
        expected=$2/$name
        [ -e "$expected" ] || expected=/dev/null
        diff -u --label "expected $name" --label "actual $name" "$expected" "$1/$name" || same=no
    done
    [ $same = yes ] || echo "The case $(basename "$2") failed."
    [ $same = yes ]
}

failed=0
for case in "$@"; do
    case=$(realpath "$case")
    folder=$(mktemp -d)
    run "$folder" "$case"
    if [ $update = yes ]; then
        keep "$folder" "$case"
    else
        compare "$folder" "$case" || failed=1
    fi
    rm -rf "$folder"
done
exit $failed
