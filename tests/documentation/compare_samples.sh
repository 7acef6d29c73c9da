#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# compare_samples.sh [--update]: the code on the pages must be code that is compiled and run.
#
# The C++ blocks of docs/NAME.md are, in order, the regions of NAME_page_test.cpp (with _ for -) in this folder. The
# programs in README.md are examples/first_message.cpp and first_client.cpp, whose output is compared by other tests. A
# region is between two lines "//! [what it shows]" and has the same indentation. --update writes the regions into the pages, which
# must have as many blocks.
set -euo pipefail
cd "$(dirname "$0")/../.."

# code_of PAGE: the blocks of the page, each after a line ----.
code_of() {
    awk '/^```cpp$/ { inside = 1; print "----"; next } /^```/ { inside = 0 } inside' "$1"
}

# regions_of SOURCE...: the regions of the sources, each after a line ----.
regions_of() {
    awk '/^ *\/\/! \[.*\]$/ { inside = !inside; match($0, /^ */); indent = RLENGTH; if (inside) print "----"; next }
         inside { print substr($0, indent + 1) }' "$@"
}

# sources_of PAGE: the sources with its regions.
sources_of() {
    local name
    name=$(basename "$1" .md)
    case $name in
    README) echo examples/first_message.cpp examples/first_client.cpp ;;
    *) echo "tests/documentation/${name//-/_}_page_test.cpp" ;;
    esac
}

# with_regions PAGE SOURCE...: the page with its blocks replaced by the regions.
with_regions() {
    awk 'FNR == NR { if ($0 == "----") ++regions; else code[regions] = code[regions] $0 "\n"; next }
         /^```cpp$/ { inside = 1; print; printf "%s", code[++blocks]; next }
         /^```/ { inside = 0 }
         !inside' <(regions_of "${@:2}") "$1"
}

failed=0
for page in README.md docs/*.md; do
    read -ra sources < <(sources_of "$page")
    [ -e "${sources[0]}" ] || sources=(/dev/null)
    if [ "${1:-}" = --update ] && [ "${sources[0]}" != /dev/null ]; then
        with_regions "$page" "${sources[@]}" >"$page.new"
        mv "$page.new" "$page"
    fi
    diff -u --label "$page" --label "${sources[*]}" <(code_of "$page") <(regions_of "${sources[@]}") || failed=1
done
exit $failed
