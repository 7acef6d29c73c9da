#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# other_languages.sh ROUTERMSG PROJECT: runs the program on docs/other-languages.md as the page does, compares what it
# prints with the page, and gives it bytes that are cut off.
set -euo pipefail
PATH=$(dirname "$(realpath "$1")"):$PATH
page=$2/docs/other-languages.md

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"
ln -s "$2/examples" examples

# The blocks of the page, one of each kind.
for kind in python sh text; do
    awk -v kind="$kind" '/^```/ { inside = $0 == "```" kind; next } inside' "$page" >$kind
    [ -s $kind ] || { echo "$page has no block of the kind $kind." >&2; exit 1; }
done
mv python show.py
diff -u --label "$page" --label 'the program' text <(bash -o pipefail sh)

whole=$(routermsg convert --to binary examples/documents/request-tuning-frequency-only.xml - | base64 -w 0)
size=$(base64 -d <<<"$whole" | wc -c)
for bytes in 2 6 30 $((size / 2)) $((size - 1)); do
    if base64 -d <<<"$whole" | head -c "$bytes" | python3 -B show.py >printed 2>error; then
        echo "The program takes the first $bytes of $size bytes for a message." >&2
        exit 1
    fi
    grep -q '^This is no message: ' error || { cat error >&2; exit 1; }
done
