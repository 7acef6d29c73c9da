#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Compares the exported symbols and the binary interface of each library with the baselines in abi/, for Qt 5:
#
#     scripts/abi.sh [--update] [BUILD]
#
# BUILD is a finished build of shared libraries with debug information; without it there is one in build/abi. --update
# writes the baselines anew.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

install_missing abigail-tools cmake g++ make ninja-build qtbase5-dev xz-utils
bash tests/abi/compare_abi_test.sh
update=()
if [ "${1:-}" = --update ]; then
    update=(--update)
    shift
fi
build=${1:-build/abi}
if [ $# -eq 0 ]; then
    cmake -S . -B "$build" -G Ninja -DCMAKE_CXX_COMPILER=g++ -DCMAKE_BUILD_TYPE=RelWithDebInfo \
        -DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-g -DQT_MAJOR=5 -DBUILD_SHARED_LIBS=ON -DCMAKE_UNITY_BUILD=ON \
        -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 -DROUTERINTERFACE_TESTS=OFF -DROUTERINTERFACE_EXAMPLES=OFF \
        -DROUTERINTERFACE_TOOLS=OFF -DROUTERINTERFACE_SIMULATOR=OFF >/dev/null
    cmake --build "$build" -j "$(nproc)"
fi

failed=0
baselines=()
while read -r library; do
    baseline=abi/$(basename "$library" .so).abi.xz
    baselines+=("$baseline")
    bash scripts/compare_abi.sh "${update[@]}" "$library" "$baseline" "$build/include" || failed=1
done < <(find "$build" -maxdepth 2 -name 'lib*.so' | sort)
if [ ${#baselines[@]} -eq 0 ]; then
    echo "There are no shared libraries in $build." >&2
    exit 1
fi
for baseline in abi/*.abi.xz; do
    if [[ " ${baselines[*]} " != *" $baseline "* ]]; then
        echo "$baseline is the baseline of a library that $build does not have." >&2
        failed=1
    fi
done
[ $failed -ne 0 ] || echo "${#baselines[@]} libraries fit their baselines."
exit $failed
