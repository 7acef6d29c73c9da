#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# floors_test.sh SCRIPT: checks that scripts/floors.sh finds every kind of include that goes up a floor, and no other.
set -euo pipefail
script=$(realpath "$1")
tree=$(mktemp -d)
trap 'rm -rf "$tree"' EXIT
cd "$tree"
mkdir -p modelkit routerinterface/machinery documents link tools/commands

# include FILE WHAT: makes a file with one include, in a tree that is otherwise correct.
include() { printf '#pragma once\n#include %s\n' "$2" >"$1"; }

# expect STATUS TEXT
expect() {
    local status=0 text
    text=$(bash "$script" "$tree") || status=$?
    if [ "$status" != "$1" ] || [ "$text" != "$2" ]; then
        printf 'expected %s: %s\nactual   %s: %s\n' "$1" "$2" "$status" "$text" >&2
        exit 1
    fi
}

include tools/commands/List.cpp '"documents/Tree.h"'
include tools/List.h '"commands/Words.h"'
include documents/Tree.h '"routerinterface/RecordInfo.h"'
include documents/Tree.cpp '"documents/Tree.h"'
include link/Reader.h '"documents/Tree.h"'
include link/Reader.cpp '"routerinterface/Fragment.h"'
include routerinterface/Fragment.cpp '"routerinterface/machinery/Xml.h"'
include routerinterface/machinery/Description.h '"routerinterface/RecordInfo.h"'
include routerinterface/machinery/Xml.h '<QtCore/QString>'
include modelkit/Object.h '"modelkit/Limits.h"'
expect 0 ''

# refuse FILE WHAT TEXT
refuse() {
    include "$1" "$2"
    expect 1 "$1:2: $3"
    rm "$1"
}
refuse modelkit/Up.h '"routerinterface/Record.h"' \
    'routerinterface/Record.h: the floor modelkit may not see routerinterface.'
refuse modelkit/Up.cpp '<documents/Tree.h>' 'documents/Tree.h: the floor modelkit may not see documents.'
refuse routerinterface/Up.h '"routerinterface/machinery/Xml.h"' \
    'routerinterface/machinery/Xml.h: the floor routerinterface may not see routerinterface/machinery, only routerinterface/RecordInfo.h, routerinterface/Export.h, modelkit.'
refuse routerinterface/machinery/Up.h '"routerinterface/Fragment.h"' \
    'routerinterface/Fragment.h: the floor routerinterface/machinery may not see routerinterface, only modelkit.'
refuse documents/Up.h '"routerinterface/Fragment.h"' \
    'routerinterface/Fragment.h: the floor documents may not see routerinterface, only routerinterface/RecordInfo.h, modelkit.'
refuse documents/Up.cpp '"link/Reader.h"' \
    'link/Reader.h: the floor documents may not see link, only routerinterface/RecordInfo.h, modelkit.'
refuse documents/Up.cpp '"tools/List.h"' \
    'tools/List.h: the floor documents may not see tools, only routerinterface/RecordInfo.h, modelkit.'
refuse documents/Up.cpp '"../tools/List.h"' '../tools/List.h: no include goes through "..".'
