#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the benchmarks for speed and prints the table of docs/performance.md:
#
#     scripts/benchmarks.sh [OPTION OF GOOGLE BENCHMARK]...
#     scripts/benchmarks.sh --update     writes three runs into docs/performance.md; the text above them stays
#
# Contenders whose Debian packages are missing are left out; the script names them.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

install_missing cmake g++ libbenchmark-dev ninja-build qtbase5-dev
folder=build/benchmarks
mkdir -p $folder
cmake -S . -B $folder -G Ninja -DCMAKE_BUILD_TYPE=Release -DQT_MAJOR=5 -DCMAKE_CXX_COMPILER=g++ \
    -DROUTERINTERFACE_BENCHMARKS=ON -DROUTERINTERFACE_TESTS=OFF -DROUTERINTERFACE_EXAMPLES=OFF \
    -DROUTERINTERFACE_TOOLS=OFF >$folder/configure.log
grep "Benchmarks without" $folder/configure.log >&2 || true
cmake --build $folder >/dev/null || cmake --build $folder

run() { $folder/benchmarks/benchmarks --benchmark_enable_random_interleaving=true --benchmark_min_time=0.05 "$@"; }

if [ "${1:-}" != --update ]; then
    run "$@"
    exit
fi
page=docs/performance.md
measured='<!-- measured -->'
trap 'rm -f "$page.new"' EXIT
{
    sed "/$measured/,\$d" $page
    echo "$measured"
    echo
    echo "On $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -1), $(nproc) cores;" \
        "$(. /etc/os-release && echo "$PRETTY_NAME"); $(g++ --version | head -1), -O3;" \
        "Qt $(dpkg-query -W -f '${Version}' qtbase5-dev | sed 's/+.*//')."
    echo
    for number in 1 2 3; do
        echo "### Run $number"
        echo
        run 2>/dev/null
        echo
    done
} >$page.new
mv $page.new $page
