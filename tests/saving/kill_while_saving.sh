#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# kill_while_saving.sh PROGRAM [ROUNDS]: runs a program that saves all the time, kills it at random moments and
# checks each time that the file is whole. Some of the moments must be in the middle of saving.
set -euo pipefail
program=$1
rounds=${2:-1000}
folder=$(mktemp -d)
saver=
trap '[ -z "$saver" ] || kill -9 $saver 2>/dev/null || true; rm -rf "$folder"' EXIT
mkdir "$folder/documents"
file=$folder/documents/document.xml
mkfifo "$folder/saved"

fail() {
    echo "$1"
    exit 1
}

# Starts the program and returns when it has saved for the first time.
start_saver() {
    "$program" "$file" >"$folder/saved" &
    saver=$!
    read -r -t 60 <"$folder/saved" || fail "The program does not save."
}

# Stops the program, so that its open files can be inspected.
stop_saver() {
    local state=
    kill -STOP $saver 2>/dev/null || fail "The program ended by itself."
    for ((wait = 0; wait < 6000; wait++)); do
        read -r _ _ state _ <"/proc/$saver/stat" || fail "The program ended by itself."
        [ "$state" != T ] || return 0
        sleep 0.01
    done
    fail "The program cannot be stopped."
}

# Whether the program has an unfinished file open. The file may have no name yet.
is_saving() { [ -n "$(find "/proc/$saver/fd" -lname "$folder/documents/*" 2>/dev/null)" ]; }

kill_saver() {
    kill -9 $saver
    wait $saver 2>/dev/null || true
    saver=
}

unfinished=0
for ((round = 1; round <= rounds; round++)); do
    start_saver
    sleep "0.0$((RANDOM % 30 + 10))"
    stop_saver
    is_saving && unfinished=$((unfinished + 1))
    kill_saver
    "$program" --check "$file" || fail "Round $round: the file is damaged."
    rm -f "$folder"/documents/document.xml.*
done
[ $unfinished -gt 0 ] || fail "The program was never killed while it saved."
echo "$rounds rounds, $unfinished of them killed in the middle of saving; the file was whole every time."
