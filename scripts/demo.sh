#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the programs routermsg and routersim, and runs routermsg with the given arguments in the current folder. Without
# arguments it shows what routermsg does with the example documents.
set -euo pipefail
folder=$PWD
cd "$(dirname "$0")/.."
. scripts/packages.sh

install_missing cmake g++ libedit-dev ninja-build pkgconf qtbase5-dev
echo "Building..." >&2
cmake -S . -B build/demo -G Ninja -DCMAKE_BUILD_TYPE=Release -DQT_MAJOR=5 -DCMAKE_CXX_COMPILER=g++ \
    -DROUTERINTERFACE_TESTS=OFF -DROUTERINTERFACE_EXAMPLES=OFF -DCMAKE_UNITY_BUILD=ON >/dev/null
cmake --build build/demo >/dev/null || cmake --build build/demo >&2
routermsg=build/demo/tools/routermsg

if [ $# -gt 0 ]; then
    routermsg=$PWD/$routermsg
    cd "$folder"
    exec "$routermsg" "$@"
fi
show() {
    echo
    echo "\$ $routermsg $*"
    "$routermsg" "$@" || true
}
show check examples/documents
show stats examples/documents
show show examples/documents/request-tuning.xml
show convert examples/documents/request-tuning.xml - --to json
show diff examples/documents/request-tuning.xml examples/documents/request-tuning-frequency-only.xml
show new Request MessageID=7 AcquireMastership DF_Params Frequency=98.5e6 Bandwidth=15000
