#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Compares the numbers of instructions of the canonical operations with benchmarks/instructions.txt;
# --update writes the file anew.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

install_missing cmake g++ ninja-build qtbase5-dev valgrind
folder=build/instructions
cmake -S . -B $folder -G Ninja -DCMAKE_BUILD_TYPE=Release -DQT_MAJOR=5 -DCMAKE_CXX_COMPILER=g++ \
    -DROUTERINTERFACE_BENCHMARKS=ON -DROUTERINTERFACE_TESTS=OFF -DROUTERINTERFACE_EXAMPLES=OFF \
    -DROUTERINTERFACE_TOOLS=OFF -DROUTERINTERFACE_SIMULATOR=OFF
cmake --build $folder --target canonical_operations
bash benchmarks/count_instructions.sh "$@" $folder/benchmarks/canonical_operations benchmarks/instructions.txt
