#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Compares the binary interface of a shared library, which was compiled with -g, with its baseline:
#
#     scripts/compare_abi.sh [--update] LIBRARY BASELINE HEADERS
#
# BASELINE is a compressed file of libabigail, HEADERS the folder of the public headers. The status is 0 if nothing differs,
# 1 if programs that use the library only lack something new, and 2 if programs must be compiled anew. --update writes the
# baseline.
set -euo pipefail
update=no
if [ "$1" = --update ]; then
    update=yes
    shift
fi
library=$1
baseline=$2
headers=$3
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

# Of templates and inline functions of the standard library and Qt, each compiler leaves others in a library.
foreign='^_Z(T[VIST]|Z)?N?K?(S[tsab]|[0-9]+(Q|__gnu_cxx))'
printf '[%s]\nsymbol_name_regexp = %s\ndrop = yes\n\n' suppress_function "$foreign" suppress_variable "$foreign" \
    >"$folder/foreign"
if [ $update = yes ]; then
    abidw --suppressions "$folder/foreign" --exported-interfaces-only --short-locs --no-parameter-names \
        --no-comp-dir-path --no-corpus-path --out-file "$folder/new" "$library"
    xz -9e "$folder/new"
    mv "$folder/new.xz" "$baseline"
    exit
fi
if [ ! -f "$baseline" ]; then
    echo "There is no baseline $baseline. scripts/abi.sh --update writes it." >&2
    exit 1
fi

# Programs do not see the other types.
{
    echo "[suppress_type]"
    echo "source_location_not_in = $(find "$headers" -name '*.h' -printf '%f\n' | sort | paste -sd ,)"
    echo
    cat "$folder/foreign"
} >"$folder/unseen"
xz -dc "$baseline" >"$folder/old"
# compare [OPTION]...: the status of abidiff has bit 0 if it has failed.
compare() {
    local status=0
    abidiff --suppressions "$folder/unseen" "$@" "$folder/old" "$library" >"$folder/report" 2>&1 || status=$?
    if [ $((status & 3)) -ne 0 ]; then
        cat "$folder/report" >&2
        exit 3
    fi
    return $status
}
name=$(basename "$baseline" .abi.xz)
if compare; then
    exit 0
fi
cp "$folder/report" "$folder/whole"
if compare --no-added-syms; then
    echo "$name has more than its baseline. A minor version may add this. Then run scripts/abi.sh --update." >&2
    status=1
else
    echo "$name does not fit programs that were compiled before. Only a new major version may do this, which" \
        "changes the SONAME. Then run scripts/abi.sh --update." >&2
    status=2
fi
cat "$folder/whole" >&2
exit $status
