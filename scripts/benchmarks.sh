#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the benchmarks for speed and prints the tables of docs/performance.md:
#
#     scripts/benchmarks.sh [--runs=NUMBER] [OPTION OF GOOGLE BENCHMARK]...
#     scripts/benchmarks.sh --update [OPTION OF GOOGLE BENCHMARK]...
#                          writes three runs into docs/performance.md: the first table, and all measurements at the end
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
    -DROUTERINTERFACE_TOOLS=OFF -DROUTERINTERFACE_SIMULATOR=OFF >$folder/configure.log
grep "Benchmarks without" $folder/configure.log >&2 || true
build() { cmake --build $folder --target benchmarks; }
build >$folder/build.log || build

run() { $folder/benchmarks/benchmarks "$@" --benchmark_enable_random_interleaving=true --benchmark_min_time=0.01; }

if [ "${1:-}" != --update ]; then
    run "$@"
    exit
fi
page=docs/performance.md
measured='<!-- measured -->'
trap 'rm -f "$page.new"' EXIT
shift
run --runs=3 "$@" 2>$folder/run.log >$folder/tables.md || { cat $folder/run.log >&2; exit 1; }
{
    sed '/<!-- messages -->/,$d' $page
    sed -n '/<!-- messages -->/,/<!-- end of messages -->/p' $folder/tables.md
    sed "1,/<!-- end of messages -->/d; /$measured/,\$d" $page
    echo "$measured"
    echo
    echo "On $(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -1), $(nproc) cores;" \
        "$(. /etc/os-release && echo "$PRETTY_NAME"); $(g++ --version | head -1), -O3;" \
        "Qt $(dpkg-query -W -f '${Version}' qtbase5-dev | sed 's/+.*//')."
    sed '1,/<!-- end of messages -->/d' $folder/tables.md
} >$page.new
mv $page.new $page
