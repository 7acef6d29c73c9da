#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# scripts/compare_abi.sh finds what programs depend on, and nothing else.
set -euo pipefail
cd "$(dirname "$0")"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/include"
cp Shape.h "$folder/include"

library() { g++ -g -O0 -fPIC -shared "$@" Shape.cpp -o "$folder/libshape.so"; }
compare() { bash ../../scripts/compare_abi.sh "$@" "$folder/libshape.so" "$folder/shape.abi.xz" "$folder/include"; }

library
compare 2>"$folder/output" && { echo "A library without a baseline is accepted." >&2; exit 1; }
compare --update

# expect STATUS MACRO
expect() {
    local status=0
    library "-D$2"
    compare >"$folder/output" 2>&1 || status=$?
    if [ $status -ne "$1" ]; then
        echo "With $2 the status is $status instead of $1:" >&2
        cat "$folder/output" >&2
        exit 1
    fi
}
expect 0 NOTHING_ELSE
expect 0 MORE_HIDDEN_MEMBERS
expect 1 MORE_FUNCTIONS
expect 2 MORE_VIRTUAL
expect 2 WITHOUT_FUNCTION
expect 2 OTHER_PARAMETER
expect 2 OTHER_SIZE
expect 2 MORE_MEMBERS
