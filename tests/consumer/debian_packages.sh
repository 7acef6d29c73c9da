#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Installs, uses and removes the Debian packages. in_own_root.sh runs this where that harms nobody:
#
#     debian_packages.sh SHARED STATIC CONSUMER
#
# SHARED and STATIC are folders with the packages of shared and static libraries, CONSUMER is the folder of the program.
set -euo pipefail
shared=$1
static=$2
consumer=$3
cd /tmp

installed() { dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null | sed -n 's/^installed //p'; }
apt() { apt-get -y -qq --no-install-recommends -o Dpkg::Use-Pty=0 "$@" >apt.log 2>&1 || { cat apt.log >&2; return 1; }; }
files() { dpkg-query -L "$@" | sort -u | while read -r file; do [ -d "$file" ] || echo "$file"; done; }

# Qt comes back only because the packages say that they need it.
mapfile -t qt < <(installed 'libqt5*' 'libqt6*' 'qtbase5*' 'qt6-base*' 'qt5-*' 'qt6-*' 'qmake6*' 'libedit*')
apt purge "${qt[@]}"
apt update
if [ -n "$(installed 'libqt5core5a' 'libqt6core6')" ]; then
    echo "Qt is still there." >&2
    exit 1
fi

echo "Programs"
apt install "$shared"/routerinterface-tools_*.deb "$shared"/librouter{interface,documents,link}[0-9]*.deb \
    "$shared"/libmodelkitbase[0-9]*.deb
routermsg --version
routersim --version
routermsg new Request AcquireMastership | routermsg convert - - --to json
gzip -t /usr/share/man/man1/routermsg.1.gz /usr/share/man/man1/routersim.1.gz

# use QT KIND: builds the program from what is installed, without a word about where that is.
use() {
    local suffix='' folder=use-$1-$2 program needed
    [ "$1" = 5 ] || suffix=-qt6
    mkdir -p "$folder/qmake"
    {
        cmake -S "$consumer/package" -B "$folder/cmake" -DQT="$1" -DPACKAGES="RouterInterface$suffix" -DCOMPONENTS=Link \
            -DNAMESPACE="RouterInterface$suffix"
        cmake --build "$folder/cmake"
        read -ra flags <<<"$(pkg-config --cflags --libs "RouterLink$suffix")"
        g++ "$consumer/main.cpp" -o "$folder/by-pkg-config" "${flags[@]}"
        (cd "$folder/qmake" && "/usr/lib/qt$1/bin/qmake" "$consumer/consumer.pro" && make)
    } >"$folder/log" 2>&1
    for program in "$folder/cmake/consumer" "$folder/by-pkg-config" "$folder/qmake/consumer"; do
        "./$program"
        needed=$(readelf -d "$program" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
        case $2 in
            shared) grep -q "^libRouterLink$suffix\.so" <<<"$needed" ;;
            static) [[ $needed != *RouterLink* ]] ;;
        esac
    done
}

# use_both KIND: with both versions of Qt, at the same time.
use_both() {
    local first second
    use 5 "$1" &
    first=$!
    use 6 "$1" &
    second=$!
    wait $first || { cat "use-5-$1/log"; return 1; }
    wait $second || { cat "use-6-$1/log"; return 1; }
}

echo "Shared libraries"
apt install "$shared"/*.deb
use_both shared
[ -f /usr/share/doc/routerinterface-doc/README.md ]
# shellcheck disable=SC2046
owned=$(files $(installed 'librouter*' 'libmodelkitbase*' 'routerinterface-*'))

echo "Static libraries"
apt install "$static"/*-static-dev_*.deb
use_both static

echo "Removed"
# shellcheck disable=SC2046
owned+=$'\n'$(files $(installed 'librouter*' 'libmodelkitbase*' 'routerinterface-*'))
# shellcheck disable=SC2046
apt purge $(installed 'librouter*' 'libmodelkitbase*' 'routerinterface-*')
left=$(while read -r file; do [ ! -e "$file" ] || echo "$file"; done <<<"$owned")
if [ -n "$left" ] || [ -n "$(dpkg --audit)" ]; then
    echo "Removing the packages left $left" >&2
    dpkg --audit >&2
    exit 1
fi
[ "$(wc -l <<<"$owned")" -gt 100 ]
