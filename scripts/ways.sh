#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Builds the program of tests/consumer in every way in which programs can get the libraries, for both Qt versions, with
# shared and static libraries: FetchContent and add_subdirectory, find_package, pkg-config, qmake, and installed Debian
# packages. Everything is built from the source archive. Then it tries what must fail with a clear message.
#
#     scripts/ways.sh
#
# Everything is in build/ways. The libraries are not optimised: this is about finding them.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

install_missing ccache cmake dpkg-dev g++ libedit-dev lintian make pkgconf qmake6 qt5-qmake qtbase5-dev qt6-base-dev
folder=$PWD/build/ways
source=$folder/source
builds=$folder/builds
consumer=$PWD/tests/consumer
system_libraries=lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)
rm -rf "$folder/log" "$builds"
mkdir -p "$folder/log" "$builds"

# Nothing from outside decides where libraries are found.
unset LD_LIBRARY_PATH PKG_CONFIG_PATH CMAKE_PREFIX_PATH QMAKEPATH QMAKEFEATURES DESTDIR
# The same library is compiled once, wherever its build folder is. This needs make: it compiles in the folder of each
# library.
export CMAKE_GENERATOR="Unix Makefiles" CMAKE_BUILD_TYPE=RelWithDebInfo CMAKE_CXX_COMPILER_LAUNCHER=ccache CXX=g++
export CCACHE_DIR=$folder/ccache CCACHE_BASEDIR=$builds CCACHE_NOHASHDIR=1 CCACHE_COMPILERCHECK=content
unset CCACHE_DISABLE
options=(-DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO= -DCMAKE_CXX_FLAGS_DEBUG=-g
    -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0)
# scripts/abi.sh reads what debug information says about these libraries.
with_information() { [ "$1-$2" != 5-shared ] || echo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-g; }

shared_is() { [ "$1" = shared ] && echo ON || echo OFF; }
suffix() { [ "$1" = 5 ] || echo -qt6; }

# step NAME COMMAND...: what it writes is shown only if it fails.
step() {
    local name=$1 begin=$SECONDS
    shift
    # In the background, because a failing command would not end it in a condition.
    "$@" >"$folder/log/$name" 2>&1 </dev/null &
    if ! wait $!; then
        echo "$name failed:" >&2
        tail -n 60 "$folder/log/$name" >&2
        return 1
    fi
    printf '%4d s  %s\n' $((SECONDS - begin)) "$name"
}

# refused NAME TEXT COMMAND...: the command must fail and say TEXT. Line breaks do not count.
refused() {
    local name=$1 text=$2
    shift 2
    "$@" >"$folder/log/$name" 2>&1 </dev/null &
    if wait $!; then
        echo "$name did not fail." >&2
        return 1
    fi
    if ! tr -s ' \n' ' ' <"$folder/log/$name" | grep -qF -e "$text"; then
        echo "$name did not say \"$text\":" >&2
        tail -n 60 "$folder/log/$name" >&2
        return 1
    fi
    printf '        %s\n' "$name"
}

# for_both COMMAND A B: runs the command with A and with B at the same time.
for_both() {
    local first second
    "$1" "$2" &
    first=$!
    "$1" "$3" &
    second=$!
    wait $first || { wait $second; return 1; }
    wait $second
}

# runs PROGRAM QT KIND [POSTFIX]: it works, and it uses the right libraries.
runs() {
    local program=$1 needed library
    library=libRouterLink$(suffix "$2")${4:-}.so
    "$program"
    needed=$(readelf -d "$program" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
    grep -q "^libQt$2Core\.so" <<<"$needed"
    if [ "$3" = shared ]; then
        grep -q "^$library\." <<<"$needed"
    else
        ! grep -q "^libRouterLink" <<<"$needed"
    fi
}

# What belongs to the ways: archive, source, builds that are installed.

source_archive() {
    cmake -S . -B "$folder/archive" -DROUTERINTERFACE_TESTS=OFF -DROUTERINTERFACE_EXAMPLES=OFF \
        -DROUTERINTERFACE_TOOLS=OFF -DROUTERINTERFACE_SIMULATOR=OFF
    rm -f "$folder"/archive/*.tar.gz
    cpack --config "$folder/archive/CPackSourceConfig.cmake" -B "$folder/archive"
    mv "$folder"/archive/*.tar.gz "$folder/source.tar.gz"
    rm -rf "$folder/archive"
}

# build QT KIND CONFIGURATION
build() {
    local name=qt$1-$2-$3 programs=OFF
    [ "$name" != qt5-shared-RelWithDebInfo ] || programs=ON
    # shellcheck disable=SC2046
    cmake -S "$source" -B "$builds/$name" "${options[@]}" $(with_information "$1" "$2") -DCMAKE_BUILD_TYPE="$3" -DQT_MAJOR="$1" \
        -DBUILD_SHARED_LIBS="$(shared_is "$2")" -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_SKIP_INSTALL_RPATH=OFF \
        -DCMAKE_INSTALL_DOCDIR=share/doc/routerinterface-doc -DROUTERINTERFACE_TESTS=OFF \
        -DROUTERINTERFACE_EXAMPLES=OFF -DROUTERINTERFACE_TOOLS=$programs -DROUTERINTERFACE_SIMULATOR=$programs
    cmake --build "$builds/$name" -j "$(nproc)"
    cmake --install "$builds/$name" --prefix "$folder/installed/$2"
}

# The ways. Each gets the Qt version and the kind of the libraries.

in_parent() {
    local way=$1 qt=$2 kind=$3 build=$builds/$1-qt$2-$3
    shift 3
    # The libraries are built in the folder that FetchContent takes.
    rm -rf "$build"
    # shellcheck disable=SC2046
    cmake -S "$consumer/parent" -B "$build" "${options[@]}" $(with_information "$qt" "$kind") -DQT="$qt" \
        -DBUILD_SHARED_LIBS="$(shared_is "$kind")" "$@"
    cmake --build "$build" -j "$(nproc)"
    runs "$build/consumer" "$qt" "$kind"
    cmake --install "$build" --prefix "$build/installed"
    [ "$(cd "$build/installed" && find . -type f)" = ./bin/consumer ]
}

fetch_content() {
    if [ -d "$source" ]; then
        in_parent fetch "$1" "$2" -DARCHIVE="$folder/source.tar.gz" -DFETCHCONTENT_SOURCE_DIR_ROUTERINTERFACE="$source"
    else
        # The first time it really fetches and unpacks the archive, and the other builds use what it has unpacked.
        in_parent fetch "$1" "$2" -DARCHIVE="$folder/source.tar.gz"
        mv "$builds/fetch-qt$1-$2/_deps/routerinterface-src" "$source"
    fi
}

add_subdirectory() { in_parent subdirectory "$1" "$2" -DFOLDER="$source"; }

# configure_package NAME KIND OPTION...
configure_package() {
    local name=$1 kind=$2
    shift 2
    rm -rf "${builds:?}/$name"
    cmake -S "$consumer/package" -B "$builds/$name" "${options[@]}" \
        -DCMAKE_PREFIX_PATH="$folder/installed/$kind" "$@"
}

find_package() {
    local name=package-qt$1-$2
    configure_package "$name" "$2" -DQT="$1" -DPACKAGES="RouterInterface$(suffix "$1")" -DCOMPONENTS=Link \
        -DNAMESPACE="RouterInterface$(suffix "$1")"
    cmake --build "$builds/$name"
    runs "$builds/$name/consumer" "$1" "$2"
}

with_pkg_config() {
    local name=RouterLink$(suffix "$1") program=$builds/pkg-config-qt$1-$2 static=()
    [ "$2" = shared ] || static=(--static)
    export PKG_CONFIG_PATH=$folder/installed/$2/$system_libraries/pkgconfig
    read -ra flags <<<"$(pkg-config "${static[@]}" --cflags --libs "$name")"
    ccache g++ -Wall -Werror "$consumer/main.cpp" "$consumer/only_public_headers.cpp" -o "$program" "${flags[@]}" \
        -Wl,-rpath,"$(pkg-config --variable=libdir "$name")"
    runs "$program" "$1" "$2"
}

with_qmake() {
    local build=$builds/qmake-qt$1-$2
    mkdir -p "$build"
    cd "$build"
    QMAKEPATH=$folder/installed/$2/$system_libraries/qt$1 "$(qmake_of "$1")" "$consumer/consumer.pro"
    make
    runs "$build/consumer" "$1" "$2"
}
qmake_of() { [ "$1" = 6 ] && echo qmake6 || echo /usr/lib/qt5/bin/qmake; }

echo "The source archive, and the libraries built from it"
step source_archive source_archive
rm -rf "$source" "$folder/installed"
step fetch_content-qt5-shared fetch_content 5 shared
builds_of() {
    local kind
    for kind in shared static; do
        [ "$1-$kind" = 5-shared ] || step "fetch_content-qt$1-$kind" fetch_content "$1" $kind
        step "build-qt$1-$kind" build "$1" $kind RelWithDebInfo
    done
    [ "$1" = 6 ] || step build-debug build 5 shared Debug
}
for_both builds_of 5 6

echo "The ways to use them"
ways_of() {
    local way kind
    for way in add_subdirectory find_package with_pkg_config with_qmake; do
        for kind in shared static; do
            step "$way-qt$1-$kind" $way "$1" $kind
        done
    done
}
for_both ways_of 5 6

# Debug, optimised and Qt 6 share a prefix.
installed_side_by_side() {
    local prefix=$folder/installed/shared
    "$prefix/bin/routermsg" --version
    "$prefix/bin/routersim" --version
    configure_package debug shared -DCMAKE_BUILD_TYPE=Debug -DQT=5 -DPACKAGES=RouterInterface -DNAMESPACE=RouterInterface
    cmake --build "$builds/debug"
    runs "$builds/debug/consumer" 5 shared d
    # One that is not installed takes the optimised one.
    configure_package release shared -DCMAKE_BUILD_TYPE=Release -DQT=5 -DPACKAGES=RouterInterface \
        -DNAMESPACE=RouterInterface
    cmake --build "$builds/release"
    runs "$builds/release/consumer" 5 shared
    # Both are found in one project, and each program gets its own.
    for qt in 5 6; do
        configure_package both-qt$qt shared -DQT=$qt "-DPACKAGES=RouterInterface;RouterInterface-qt6" \
            -DNAMESPACE="RouterInterface$(suffix $qt)"
        cmake --build "$builds/both-qt$qt"
        runs "$builds/both-qt$qt/consumer" $qt shared
    done
    # Alone, the package for Qt 6 can be used by the short name.
    configure_package short-name shared -DQT=6 -DPACKAGES=RouterInterface-qt6 -DNAMESPACE=RouterInterface
    cmake --build "$builds/short-name"
    runs "$builds/short-name/consumer" 6 shared
}
step installed_side_by_side installed_side_by_side

# With the static library, too, a program knows the names of classes that it does not use.
other_class() {
    configure_package other-class static -DQT=5 -DPACKAGES=RouterInterface -DCOMPONENTS=Records \
        -DNAMESPACE=RouterInterface -DLIBRARY=RouterInterface -DSOURCE=other_class.cpp
    cmake --build "$builds/other-class"
    "$builds/other-class/consumer"
}
step other_class-static other_class

echo "Debian packages"
# debian_packages QT5_BUILD QT6_BUILD FOLDER: of what is built already, but without run paths.
debian_packages() {
    local build
    for build in "$1" "$2"; do
        cmake -DCMAKE_SKIP_INSTALL_RPATH=ON "$build"
        cmake --build "$build" -j "$(nproc)"
    done
    bash scripts/debian.sh --of "$3" "$1" "$2"
}
debian_packages_of() {
    step "debian_packages-$1" debian_packages "$builds/qt5-$1-RelWithDebInfo" "$builds/qt6-$1-RelWithDebInfo" \
        "$folder/given/$1"
}
for_both debian_packages_of shared static
rm -rf "$folder/given/consumer"
cp -r "$consumer" "$folder/given/consumer"
step installed_debian_packages bash "$consumer/in_own_root.sh" "$folder/given" bash /given/consumer/debian_packages.sh \
    /given/shared /given/static /given/consumer

echo "What must be refused"
version=$(sed -n 's/^#define MODELKIT_VERSION "\(.*\)"/\1/p' modelkit/Version.h)
refused the_other_order "To use both, find RouterInterface first" configure_package refused shared -DQT=5 \
    "-DPACKAGES=RouterInterface-qt6;RouterInterface" -DNAMESPACE=RouterInterface
refused wrong_qt "INTERFACE_QT_MAJOR_VERSION" configure_package refused shared -DQT=6 -DPACKAGES=RouterInterface \
    -DNAMESPACE=RouterInterface
refused unknown_component "There is no component Lnik. The components are: Base, Records, Documents, Link" \
    configure_package refused shared -DQT=5 -DPACKAGES=RouterInterface -DCOMPONENTS=Lnik -DNAMESPACE=RouterInterface
refused another_major_version "compatible with requested version" configure_package refused shared -DQT=5 \
    -DPACKAGES=RouterInterface -DVERSION=$((${version%%.*} + 1)).0 -DNAMESPACE=RouterInterface
step this_version configure_package accepted shared -DQT=5 -DPACKAGES=RouterInterface -DVERSION="${version%.*}" \
    -DNAMESPACE=RouterInterface
# One component is missing in this copy: it cannot be asked for, and the others can be used.
cp -al "$folder/installed/shared" "$folder/installed/incomplete"
rm "$folder/installed/incomplete/$system_libraries"/cmake/RouterInterface/RouterInterfaceLinkTargets.cmake
refused missing_component "Link lacks the file" configure_package refused incomplete -DQT=5 \
    -DPACKAGES=RouterInterface -DCOMPONENTS=Link -DNAMESPACE=RouterInterface
rest_of_the_components() {
    configure_package rest incomplete -DQT=5 -DPACKAGES=RouterInterface -DNAMESPACE=RouterInterface \
        -DLIBRARY=RouterInterface -DSOURCE=one_record.cpp "$@"
    cmake --build "$builds/rest"
    "$builds/rest/consumer"
}
step rest_of_the_components rest_of_the_components
step rest_by_name rest_of_the_components -DCOMPONENTS=Documents
pkg_config_with_the_wrong_qt() {
    export PKG_CONFIG_PATH=$folder/installed/shared/$system_libraries/pkgconfig
    # shellcheck disable=SC2046
    g++ -fsyntax-only $(pkg-config --cflags Qt6Core RouterLink | sed 's, *-I[^ ]*qt5[^ ]*,,g') "$consumer/main.cpp"
}
refused pkg_config_with_the_wrong_qt "built for another major version of Qt" pkg_config_with_the_wrong_qt
qmake_with_the_wrong_qt() {
    QMAKEPATH=$folder/installed/shared/$system_libraries/qt5 qmake6 -o "$builds/refused.mk" "$consumer/consumer.pro"
}
refused qmake_with_the_wrong_qt "is for Qt 5, but this is the qmake of Qt 6" qmake_with_the_wrong_qt
refused two_versions_of_qt "Set QT_MAJOR to 5 or 6" cmake -S "$consumer/parent" -B "$builds/refused-part" "-DQT=5;6" \
    -DQT_NO_CREATE_VERSIONLESS_TARGETS=ON -DFOLDER="$source"
refused unknown_qt "QT_MAJOR is \"7\"" cmake -S "$consumer/parent" -B "$builds/refused-part" -DQT=5 \
    -DFOLDER="$source" -DQT_MAJOR=7
