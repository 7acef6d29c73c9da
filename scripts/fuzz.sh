#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Gives a target of fuzz/ inputs that a fuzzer makes, with the address and undefined-behaviour sanitizers:
#
#     scripts/fuzz.sh TARGET MINUTES       for example: scripts/fuzz.sh message_reader 10
#     scripts/fuzz.sh --minimise TARGET    replaces what fuzzers found in the committed corpus by the smallest inputs
#                                          that reach most
#
# Inputs that the fuzzer keeps are in build/fuzz/inputs/TARGET; it begins with them and the committed corpus. An input that
# fails is written to build/fuzz/failures/TARGET.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

minimises=no
if [ "${1:-}" = --minimise ]; then
    minimises=yes
    shift
fi
target=${1:-}
minutes=${2:-}
if [ ! -f "fuzz/$target.cpp" ] || [ ! -d "fuzz/corpus/$target" ] || { [ $minimises = no ] && [ -z "$minutes" ]; }; then
    sed -n '3,10s/^# \?//p' "$0" >&2
    exit 2
fi

install_missing clang cmake libclang-rt-dev libgtest-dev lld ninja-build qtbase5-dev
folder=build/fuzz
inputs=$folder/inputs/$target
failures=$folder/failures/$target
mkdir -p "$inputs" "$failures"
cmake -S . -B $folder -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQT_MAJOR=5 -DCMAKE_CXX_COMPILER=clang++ \
    -DCMAKE_CXX_FLAGS="-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all" \
    -DCMAKE_CXX_FLAGS_DEBUG="-O1 -g1 -fno-omit-frame-pointer" -DCMAKE_EXE_LINKER_FLAGS=-fuse-ld=lld \
    -DCMAKE_SHARED_LINKER_FLAGS=-fuse-ld=lld -DROUTERINTERFACE_FUZZERS=ON -DROUTERINTERFACE_TESTS=OFF \
    -DROUTERINTERFACE_EXAMPLES=OFF -DROUTERINTERFACE_TOOLS=OFF -DROUTERINTERFACE_SIMULATOR=OFF >$folder/configure.log
build() { cmake --build $folder --target "fuzz_$target" fuzz_dictionary; }
build >$folder/build.log || build
$folder/fuzz/fuzz_dictionary >$folder/dictionary

program=$folder/fuzz/fuzz_$target
if [ $minimises = yes ]; then
    rm -rf "$folder/minimised"
    mkdir "$folder/minimised"
    "$program" -set_cover_merge=1 -max_len=1000 "$folder/minimised" "fuzz/corpus/$target" "$inputs"
    # Those that a fuzzer has named. Inputs with other names were written by hand.
    find "fuzz/corpus/$target" -type f -regextype egrep -regex '.*/[0-9a-f]{40}' -delete
    largest=60000
    total=0
    while read -r size file; do
        total=$((total + size))
        [ $total -le $largest ] || break
        cp "$file" "fuzz/corpus/$target"
    done < <(find "$folder/minimised" -type f -printf '%s %p\n' | sort -n)
    exit
fi
# One message of a few KB at most is kept, so no single allocation is large.
nice -n 19 "$program" -max_total_time=$((minutes * 60)) -max_len=4000 -timeout=10 -rss_limit_mb=1000 -malloc_limit_mb=20 \
    -dict=$folder/dictionary -print_final_stats=1 -artifact_prefix="$failures/" "$inputs" "fuzz/corpus/$target"
