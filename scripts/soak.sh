#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Passes many messages over channels, and compares the memory at the tenth part and at the end:
#
#     scripts/soak.sh [MESSAGES]           by default a million
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

install_missing cmake g++ libgtest-dev ninja-build qtbase5-dev
folder=build/soak
mkdir -p $folder
cmake -S . -B $folder -G Ninja -DCMAKE_BUILD_TYPE=Release -DQT_MAJOR=5 -DROUTERINTERFACE_EXAMPLES=OFF \
    -DROUTERINTERFACE_TOOLS=OFF -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 >$folder/configure.log
build() { cmake --build $folder --target soak_test; }
build >$folder/build.log || build
SOAK_MESSAGES=${1:-1000000} $folder/tests/soak_test
