#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# No include goes up a floor:
#
#     scripts/floors.sh [TREE]              checks all includes of a tree, by default this one
#     scripts/floors.sh --draw [TREE]       shows which folder includes which, and how often
set -euo pipefail

# Each floor, the uppermost first, and what its files may include besides the files of the same floor. A folder
# stands for all files in it, also deeper ones, that are no floor of their own.
floors='
simulator                     models link documents routerinterface routerinterface/RecordInfo.h modelkit
tools                         models link documents routerinterface routerinterface/RecordInfo.h modelkit
editors                       models documents routerinterface routerinterface/RecordInfo.h modelkit
models                        documents routerinterface routerinterface/RecordInfo.h modelkit
link                          documents routerinterface routerinterface/RecordInfo.h modelkit
documents                     routerinterface/RecordInfo.h modelkit
routerinterface               routerinterface/RecordInfo.h routerinterface/Export.h modelkit
routerinterface/machinery     modelkit
routerinterface/RecordInfo.h  routerinterface/Export.h modelkit
routerinterface/Export.h
modelkit
'
# What single files may include besides: a pattern of files, and what.
besides='
routerinterface/*.cpp                    routerinterface/machinery
routerinterface/machinery/Description.h  routerinterface/RecordInfo.h
routerinterface/machinery/Variants.h     routerinterface/RecordInfo.h
'

draw=no
if [ "${1:-}" = --draw ]; then
    draw=yes
    shift
fi
cd "${1:-$(dirname "$0")/..}"

# Lines FILE:LINE:#include "WHAT", of all floors that there are.
includes() {
    local folders=() folder
    for folder in $(awk '$1 !~ /\// { print $1 }' <<<"$floors"); do
        [ ! -d "$folder" ] || folders+=("$folder")
    done
    grep -rnE --include='*.h' --include='*.cpp' '^[[:space:]]*#[[:space:]]*include[[:space:]]*["<]' "${folders[@]}"
}

includes | awk -v floors="$floors" -v besides="$besides" -v draw=$draw '
    # The floor of a file: itself, or the longest one whose folder it is in.
    function floor_of(file,   folder) {
        folder = file
        do
            if (folder in allowed)
                return folder
        while (sub(/\/[^\/]*$/, "", folder))
        return ""
    }
    function covers(names, file,   list, count, i) {
        count = split(names, list, " ")
        for (i = 1; i <= count; ++i)
            if (list[i] == file || list[i] == floor_of(file))
                return 1
        return 0
    }
    function fits(file, pattern) {
        gsub(/\./, "\\.", pattern)
        gsub(/\*/, "[^/]*", pattern)
        return file ~ "^" pattern "$"
    }
    BEGIN {
        count = split(floors, lines, "\n")
        for (i = 1; i <= count; ++i)
            if (match(lines[i], /^[^ ]+/)) {
                name = substr(lines[i], 1, RLENGTH)
                allowed[name] = substr(lines[i], RLENGTH + 1)
                order[++number] = name
            }
        exceptions = split(besides, exception, "\n")
    }
    {
        split($0, part, ":")
        file = part[1]
        if (!match($0, /["<][^">]*[">]/))
            next
        what = substr($0, RSTART + 1, RLENGTH - 2)
        from = floor_of(file)
        to = floor_of(what)
        if (what ~ /(^|\/)\.\.\//) {
            printf "%s:%s: %s: no include goes through \"..\".\n", file, part[2], what
            failed = 1
        }
        # What no folder of the tree holds, or the floor itself.
        if (to == "" || to == from)
            next
        ++uses[from, to]
        may = allowed[from]
        for (i = 1; i <= exceptions; ++i) {
            split(exception[i], words, " ")
            if (words[1] != "" && fits(file, words[1]))
                may = may " " words[2]
        }
        if (!covers(may, what)) {
            gsub(/^ +/, "", may)
            gsub(/ +/, ", ", may)
            printf "%s:%s: %s: the floor %s may not see %s%s.\n", file, part[2], what, from, to, \
                may == "" ? "" : ", only " may
            failed = 1
        }
    }
    END {
        for (i = 1; draw == "yes" && i <= number; ++i) {
            line = ""
            for (j = 1; j <= number; ++j)
                if ((order[i], order[j]) in uses)
                    line = line (line == "" ? "" : ", ") order[j] " " uses[order[i], order[j]]
            if (line != "")
                printf "%-29s includes %s\n", order[i], line
        }
        exit failed
    }'
