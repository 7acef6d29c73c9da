#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the Debian packages of both Qt versions, in build/debian, and has lintian check them:
#
#     scripts/debian.sh                          builds them with the presets debian-qt5 and debian-qt6
#     scripts/debian.sh --of FOLDER BUILD...     makes them of finished builds, in FOLDER
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

install_missing cmake dpkg-dev g++ libedit-dev lintian ninja-build pkgconf qtbase5-dev qt6-base-dev
packages=build/debian
if [ "${1:-}" = --of ]; then
    packages=$2
    shift 2
else
    for version in 5 6; do
        cmake --preset debian-qt$version
        cmake --build build/debian-qt$version
    done
    set -- build/debian-qt5 build/debian-qt6
fi

rm -rf "$packages"
mkdir -p "$packages"
for build in "$@"; do
    # The packages that do not depend on the version of Qt come from the build for Qt 5.
    only=()
    if grep -q '^QT_MAJOR:STRING=6' "$build/CMakeCache.txt"; then
        libraries=$(sed -n 's/^set(CPACK_COMPONENTS_ALL "\(.*\)")$/\1/p' "$build/CPackConfig.cmake" | tr ';' '\n' |
            grep -vxE 'Headers|Tools|Translations|Documentation' | paste -sd ';')
        only=(-D "CPACK_COMPONENTS_ALL=$libraries")
    fi
    cpack --config "$build/CPackConfig.cmake" -B "$packages" "${only[@]}" >"$packages/cpack.log" 2>&1 ||
        { cat "$packages/cpack.log" >&2; exit 1; }
done
rm -rf "$packages/_CPack_Packages" "$packages/cpack.log"

# These packages are not uploaded to Debian, so there is no request to package them that they could close.
root=()
[ "$(id -u)" -ne 0 ] || root=(--allow-root)
lintian "${root[@]}" --fail-on error,warning --suppress-tags initial-upload-closes-no-bugs "$packages"/*.deb
ls "$packages"
