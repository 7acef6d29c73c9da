#!/usr/bin/env bash
# Builds the libraries and the example program, and shows it at work on the example documents.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

install_missing cmake g++ ninja-build qtbase5-dev
echo "Building..."
cmake -S . -B build/demo -G Ninja -DCMAKE_BUILD_TYPE=Release -DQT_MAJOR=5 -DROUTERINTERFACE_TESTS=OFF >/dev/null
cmake --build build/demo >/dev/null || cmake --build build/demo
build/demo/examples/router_messages "${@:-examples/documents}"
