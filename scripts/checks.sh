#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# The checks that run no code of ours: licence lines, that no include goes up a floor, the format, clang-tidy over the
# libraries and the program, the documentation (scripts/site.sh), and that every source compiles alone (scripts/test.sh
# compiles the sources of a library together, which hides that a source lacks an include).
#
#     scripts/checks.sh
#     scripts/checks.sh --add-licences     adds the licence line to those files that lack it
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

# files NAME...: the files of the project with these names.
files() {
    local name names=()
    for name in "$@"; do
        names+=(-o -name "$name")
    done
    find . \( -path './build*' -o -path ./.git \) -prune -o -type f \( "${names[@]:1}" \) -print | sort
}

licence='SPDX-License-Identifier: MIT'

# check_licence COMMENT FILE ADD: the licence must be the first line, or the second one after that with the
# interpreter. ADD is "add" to insert it, or empty.
check_licence() {
    local comment=$1 file=$2 add=$3 line=1
    [ "$(head -c 2 "$file")" != '#!' ] || line=2
    [ "$(sed -n ${line}p "$file")" != "$comment $licence" ] || return 0
    if [ "$add" ]; then
        sed -i "${line}i $comment $licence" "$file"
    else
        echo "$file: line $line must be \"$comment $licence\"; scripts/checks.sh --add-licences adds it." >&2
        return 1
    fi
}

check_licences() {
    local file failed=0
    while read -r file; do
        check_licence // "$file" "$1" || failed=1
    done < <(files '*.h' '*.cpp')
    while read -r file; do
        check_licence '#' "$file" "$1" || failed=1
    done < <(files '*.sh' '*.cmake' '*.cmake.in' CMakeLists.txt && echo .ci/run)
    return $failed
}

if [ "${1:-}" = --add-licences ]; then
    check_licences add
    exit
fi

install_missing clang clang-format clang-tidy cmake cmark-gfm doxygen g++ jq libedit-dev ninja-build nodejs pkgconf \
    python3 qtbase5-dev
mkdir -p build

echo "Licence lines"
check_licences ''

echo "Floors"
bash scripts/floors.sh

echo "Format"
files '*.h' '*.cpp' | xargs clang-format --dry-run --Werror

# configure FOLDER COMPILER [OPTION]...: configures the libraries and the program, and makes the sources that moc makes.
configure() {
    cmake -S . -B "build/$1" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DQT_MAJOR=5 -DCMAKE_CXX_COMPILER="$2" \
        -DROUTERINTERFACE_WERROR=ON -DROUTERINTERFACE_TESTS=OFF -DROUTERINTERFACE_EXAMPLES=OFF \
        -DCMAKE_EXPORT_COMPILE_COMMANDS=ON "${@:3}" >"build/$1.log" &&
        cmake --build "build/$1" --target RouterLink_autogen RouterModels_autogen RouterEditors_autogen \
            >>"build/$1.log" || { cat "build/$1.log"; return 1; }
}

compile_alone() {
    local folder
    folder=$(jq -r '.[0].directory' build/alone/compile_commands.json)
    jq -r '.[].command + " -fsyntax-only"' build/alone/compile_commands.json |
        (cd "$folder" && xargs -d '\n' -n 1 -P "$(nproc)" bash -c 'eval "$0"')
}

# Several sources are compiled as one, which takes a fifth of the time. The static analyzer looks into included sources
# only if the name of the file that includes them says so. It looks at a quarter of the paths that it would follow by
# default, which takes half of the time.
analyzer=(-Xclang -analyzer-config -Xclang max-nodes=60000)
tidy() {
    local file
    configure tidy clang++ -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=20 || return
    find build/tidy -name 'unity_*_cxx.cxx' | while read -r file; do
        cp "$file" "${file/unity_/UnifiedSource}" || return
    done
    sed -i 's/unity_\([0-9]*_cxx\.cxx"\)/UnifiedSource\1/' build/tidy/compile_commands.json
    run-clang-tidy -quiet "${analyzer[@]/#/-extra-arg=}" -j "$(nproc)" -p build/tidy >build/tidy.log 2>&1 ||
        { grep -vE '^clang-tidy|^[0-9]+ warnings' build/tidy.log; return 1; }
}

configure alone g++
echo "Documentation, clang-tidy"
bash scripts/site.sh &
documenting=$!
failed=0
tidy || failed=1
wait $documenting || failed=1
echo "Every source alone"
compile_alone || failed=1
exit $failed
