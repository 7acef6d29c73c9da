#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# kill_while_saving.sh PROGRAM [ROUNDS]: kills a program that saves all the time at random moments, and
# checks after each time that the file is whole.
set -euo pipefail
program=$1
rounds=${2:-1000}
folder=$(mktemp -d)
saver=
trap '[ -z "$saver" ] || kill -9 $saver 2>/dev/null || true; rm -rf "$folder"' EXIT
file=$folder/document.xml

# Killing it fails when it has ended by itself, as it does when it cannot save.
kill_saver() {
    if ! kill -9 $saver 2>/dev/null; then
        echo "The program ended by itself."
        exit 1
    fi
    wait $saver 2>/dev/null || true
    saver=
}

"$program" "$file" &
saver=$!
until [ -s "$file" ] || ! kill -0 $saver 2>/dev/null; do sleep 0.01; done
kill_saver

unfinished=0
for ((round = 1; round <= rounds; round++)); do
    "$program" "$file" &
    saver=$!
    sleep "0.0$((RANDOM % 30 + 10))"
    kill_saver
    if ! "$program" --check "$file"; then
        echo "Round $round: the file is damaged."
        exit 1
    fi
    # What the killed program had not finished lies beside the file.
    left=("$folder"/document.xml.*)
    if [ -e "${left[0]}" ]; then
        unfinished=$((unfinished + 1))
        rm -f "${left[@]}"
    fi
done
echo "$rounds rounds, $unfinished killed with an unfinished file beside it; the file was whole every time."
