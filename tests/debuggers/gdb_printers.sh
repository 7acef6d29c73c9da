#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# What gdb shows of records: gdb_printers.sh BUILD LIBRARY_FOLDER PROGRAM FOLDER
#
# The libraries are installed into FOLDER and stripped, and gdb finds the printers there by itself. It shows the same for
# the running program and for a core file, and in any locale.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=$1 library_folder=$2 program=$3 folder=$4

. "$here/needs_gdb.sh"

rm -rf "$folder"
mkdir -p "$folder"
cmake --install "$build" --prefix "$folder/installed" --strip >"$folder/install.log"
libraries=$folder/installed/$library_folder
cd "$folder"

# inspect LOCALE OUTPUT GDB_ARGUMENT...: the values that gdb prints, without the lines of gdb itself.
inspect() {
    local locale=$1 output=$2
    shift 2
    LC_ALL=$locale gdb -nx -batch -iex "add-auto-load-safe-path $libraries" -iex 'set debuginfod enabled off' \
        -ex "set environment LD_LIBRARY_PATH $libraries" -ex 'set disable-randomization off' "$@" >"$output.all" 2>&1 || {
        cat "$output.all"
        return 1
    }
    sed -n '/^\$1 = /,$p' "$output.all" >"$output"
}

# compare WHAT: the output of that name must be the expected one.
compare() {
    diff -u "$here/show_records.expected" "$folder/$1" && return
    sed '/^\$1 = /,$d' "$folder/$1.all"
    echo "gdb shows something else $2."
    return 1
}

failed=0
inspect C.UTF-8 running -ex 'break lookHere' -ex run -ex "source $here/show_records.gdb" -ex "generate-core-file core" \
    "$program"
# What gdb says of the core file, of which the kernel does not give it every page.
sed -i -e '/^Saved corefile/d' -e '/^warning: Memory read failed for corefile/d' running
compare running "in the running program" || failed=1

inspect C.UTF-8 from_core -ex "set solib-search-path $libraries" -ex "core-file core" -ex "source $here/show_records.gdb" \
    "$program"
compare from_core "for a core file" || failed=1

# Texts with characters that a locale lacks are shown nevertheless.
inspect C in_locale_c -ex 'break lookHere' -ex run -ex 'up 1' -ex 'print *named' "$program"
if ! grep -qF 'MasterClientID = "M\374nchen \"1\"' in_locale_c; then
    cat in_locale_c.all
    failed=1
fi
exit $failed
