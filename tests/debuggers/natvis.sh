#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# What the file for Visual Studio shows of records, as far as gdb can tell: natvis.sh PROGRAM NATVIS. The program needs the
# debug information of the records.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
. "$here/needs_gdb.sh"

shown=$(mktemp)
trap 'rm -f "$shown"' EXIT
LC_ALL=C.UTF-8 NATVIS=$2 gdb -nx -batch -iex 'set auto-load off' -iex 'set debuginfod enabled off' -ex 'break lookHere' \
    -ex run -ex 'up 1' -ex "source $here/natvis.py" "$1" >"$shown" 2>&1 || { cat "$shown"; exit 1; }
sed '1,/lookHere();$/d' "$shown" | diff -u "$here/natvis.expected" - || { cat "$shown"; exit 1; }
