#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Counts the instructions per fragment of the canonical operations, or per message of the small ones, and compares
# them with the recorded numbers. Instructions, unlike times, do not depend on what else the machine does.
#
#     count_instructions.sh PROGRAM EXPECTED            fails when one has grown by over 5 %
#     count_instructions.sh --update PROGRAM EXPECTED   rewrites the numbers
#
# PROGRAM is canonical_operations of a Release build. The numbers are valid for one version of the compiler,
# of Qt and of the C library; update them for a new one.
set -euo pipefail

update=no
if [ "$1" = --update ]; then
    update=yes
    shift
fi
program=$1
expected=$2
tolerance=5
operations=(build build-of-copies xml-write xml-read document-to-string document-from-string document-to-bytes document-from-bytes
    binary-write binary-read small-binary small-form small-xml copy compare)
few=100
many=1100

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
arguments=()
for operation in "${operations[@]}"; do
    arguments+=("$operation" $few "$operation" $many)
done
if ! valgrind --tool=callgrind --toggle-collect='*measured*' --callgrind-out-file="$folder/counts.%p" \
    "$program" "${arguments[@]}" >"$folder/processes" 2>"$folder/log"; then
    cat "$folder/log" >&2
    exit 2
fi

# instructions OPERATION FRAGMENTS
instructions() {
    local process
    process=$(sed -n "s/^$1 $2 //p" "$folder/processes")
    sed -n 's/^totals: //p' "$folder/counts.$process"
}

failed=0
for operation in "${operations[@]}"; do
    # The difference removes what does not depend on the number of fragments.
    ofFew=$(instructions "$operation" $few)
    ofMany=$(instructions "$operation" $many)
    if [ -z "$ofFew" ] || [ -z "$ofMany" ] || [ "$ofMany" -le "$ofFew" ]; then
        echo "$operation could not be counted." >&2
        exit 2
    fi
    count=$(((ofMany - ofFew) / (many - few)))
    echo "$operation $count" >>"$folder/actual"
    before=$(sed -n "s/^$operation //p" "$expected" 2>/dev/null || true)
    echo "$operation: $count instructions, were ${before:-unknown}"
    if [ -z "$before" ] || [ $((count * 100)) -gt $((before * (100 + tolerance))) ]; then
        failed=1
    elif [ $((count * 100)) -lt $((before * (100 - tolerance))) ]; then
        echo "  cheaper by over $tolerance %: update the figures so that the gain is kept"
    fi
done
if [ $update = yes ]; then
    cp "$folder/actual" "$expected"
    failed=0
fi
[ $failed = 0 ] || echo "An operation has become dearer by over $tolerance %." >&2
exit $failed
