#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds and runs the tests: scripts/test.sh [PRESET...], by default gcc-qt5.
# `cmake --list-presets` lists the presets.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

# The shells, groff, git, jq and vim are for what routermsg writes for them; locales has what locales are made from.
install_missing cmake fish g++ gdb git groff-base jq libedit-dev libgtest-dev libxml2-utils locales ninja-build pkgconf \
    python3 vim zsh
for preset in "${@:-gcc-qt5}"; do
    case $preset in
        *qt6) install_missing qt6-base-dev qt6-l10n-tools ;;
        *) install_missing qtbase5-dev ;;
    esac
    case $preset in
        clang* | threads | sanitize*) install_missing clang libclang-rt-dev lld ;;
    esac
    cmake --preset "$preset"
    cmake --build --preset "$preset"
    # One more than there are processors, because some tests mostly wait.
    ctest --preset "$preset" -j $(($(nproc) + 1))
done
