#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Measures routermsg and comparable programs on recordings of many small messages, and prints the table of
# docs/performance.md:
#
#     benchmarks/recordings.sh [DIGITS]     with 10^DIGITS messages, at least 10^4; without it one million
#     benchmarks/recordings.sh --update [DIGITS]     also writes the table into docs/performance.md
#
# Times are those of the processor, so that other work on the machine disturbs them little.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

page=
if [ "${1:-}" = --update ]; then
    page=docs/performance.md
    shift
fi
digits=${1:-6}

install_missing cmake g++ jq libxml2-utils ninja-build protobuf-compiler qtbase5-dev time
folder=build/recordings
mkdir -p $folder
cmake -S . -B $folder -G Ninja -DCMAKE_BUILD_TYPE=Release -DQT_MAJOR=5 -DROUTERINTERFACE_TESTS=OFF \
    -DROUTERINTERFACE_EXAMPLES=OFF >$folder/configure.log
cmake --build $folder --target routermsg >$folder/build.log
routermsg=$PWD/$folder/tools/routermsg

data=$(mktemp -d)
trap 'rm -rf "$data"' EXIT
cd "$data"

# Repeats a file 10^digits times.
repeat() {
    local round
    cp "$1" one
    for ((round = 0; round < digits; ++round)); do
        cat one one one one one one one one one one >ten
        mv ten one
    done
    mv one "$2"
}

$routermsg new -q -o message.bin Event MessageID=4711 AcquireMastership Success=true
$routermsg convert -q message.bin message.xml
$routermsg convert -q message.bin message.jsonl
sed 1d message.xml >element.xml
# The same message as field 1 of a protobuf message: 1 "Event", 2: 4711, 3 { 2 { 1: 1 } }.
printf '\n\020\n\005Event\020\347\044\032\004\022\002\010\001' >message.pb
repeat message.bin all.bin
repeat message.xml all.xml
repeat message.jsonl all.jsonl
repeat element.xml elements.xml
repeat message.pb all.pb
{ echo '<recording>' && cat elements.xml && echo '</recording>'; } >wrapped.xml
rm elements.xml

# The least time of three runs in seconds and the largest memory in KiB, into the file "times".
# measure FORM NAME COMMAND...
measure() {
    local form=$1 name=$2 run
    shift 2
    for run in 1 2 3; do
        /usr/bin/time -a -o runs -f '%U %S %M' -- "$@" >/dev/null
    done
    awk -v OFS='\t' -v form="$form" -v name="$name" \
        'NR == 1 || $1 + $2 < least { least = $1 + $2 } $3 > most { most = $3 } END { print form, name, least, most }' \
        runs >>times
    rm runs
}

for form in bin xml jsonl; do
    measure $form '`routermsg stats`' $routermsg stats all.$form
    measure $form '`routermsg check -q`' $routermsg check -q all.$form
    measure $form '`routermsg convert`, to jsonl' $routermsg convert -q all.$form - --to jsonl
done
measure bin '`protoc --decode_raw`, another form' sh -c 'protoc --decode_raw <all.pb'
measure xml '`xmllint --noout --stream`, one document' xmllint --noout --stream wrapped.xml
measure jsonl '`jq -c .`' jq -c . all.jsonl
measure jsonl '`jq length`' jq length all.jsonl

{
    echo "| Input | Program | Time | Peak memory in MiB |"
    echo "|---|---|---|---|"
    for form in bin xml jsonl; do
        awk -F '\t' -v form=$form \
            '$1 == form { if (!base) base = $3; printf "| %s | %s | %.2f | %.0f |\n", $1, $2, $3 / base, $4 / 1024 }' times
    done
} | tee table
cd - >/dev/null
[ -n "$page" ] || exit 0
sed -i -e '/<!-- recordings -->/,/<!-- end of recordings -->/{/<!-- recordings -->/!{/<!-- end of recordings -->/!d}}' \
    -e "/<!-- recordings -->/r $data/table" "$page"
