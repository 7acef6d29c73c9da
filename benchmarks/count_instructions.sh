#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Counts the instructions per fragment of the canonical operations and compares them with the recorded numbers.
# Instructions, unlike times, do not depend on what else the machine does.
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
operations=(build xml-write xml-read document-to-string document-from-string document-to-bytes document-from-bytes
    binary-write binary-read small-binary small-form small-xml copy compare)

# instructions OPERATION FRAGMENTS
instructions() {
    valgrind --tool=callgrind --toggle-collect='*measured*' --callgrind-out-file=/dev/null \
        "$program" "$1" "$2" 2>&1 | sed -n 's/.*Collected : \([0-9]*\).*/\1/p'
}

failed=0
actual=$(mktemp)
for operation in "${operations[@]}"; do
    # The difference removes what does not depend on the number of fragments.
    few=$(instructions "$operation" 100)
    many=$(instructions "$operation" 1100)
    if [ -z "$few" ] || [ -z "$many" ] || [ "$many" -le "$few" ]; then
        echo "$operation could not be counted." >&2
        exit 2
    fi
    count=$(((many - few) / 1000))
    echo "$operation $count" >>"$actual"
    before=$(sed -n "s/^$operation //p" "$expected" 2>/dev/null || true)
    echo "$operation: $count instructions per fragment, were ${before:-unknown}"
    if [ -z "$before" ] || [ $((count * 100)) -gt $((before * (100 + tolerance))) ]; then
        failed=1
    elif [ $((count * 100)) -lt $((before * (100 - tolerance))) ]; then
        echo "  cheaper by over $tolerance %: update the figures so that the gain is kept"
    fi
done
if [ $update = yes ]; then
    cp "$actual" "$expected"
    failed=0
fi
rm -f "$actual"
[ $failed = 0 ] || echo "An operation has become dearer by over $tolerance %." >&2
exit $failed
