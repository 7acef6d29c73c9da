#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Checks that the compiler refuses mistakes in the tables of the records, and in programs that visit payloads:
#
#     must_not_compile.sh FOLDER COMPILER [OPTION]...
#
# FOLDER has the sources of this project. Each mistake is made in a copy of a record's source, or of a header of
# the machinery. The copy must not compile, and the given text must be among the messages.
set -euo pipefail
folder=$1
shift
copies=$(mktemp -d)
trap 'rm -rf "$copies"' EXIT
failures=0

compile() { LC_ALL=C timeout 120 "$@" -std=c++17 -Wall -fsyntax-only -I "$copies" -I "$folder" >"$copies/messages" 2>&1; }

fail() {
    echo "$1"
    head -20 "$copies/messages"
    failures=$((failures + 1))
}

# refuse TEXT FILE SED-SCRIPT RECORD
refuse() {
    local text=$1 file=$2 script=$3 record=$4
    rm -rf "$copies/routerinterface"
    mkdir -p "$copies/routerinterface"
    sed -E "$script" "$folder/$file" >"$copies/$file"
    [ -e "$copies/routerinterface/$record.cpp" ] ||
        cp "$folder/routerinterface/$record.cpp" "$copies/routerinterface/"
    : >"$copies/messages"
    if cmp -s "$folder/$file" "$copies/$file"; then
        fail "The mistake is not made any more: $script in $file. Mend it in $0."
    elif compile "${compiler[@]}" "$copies/routerinterface/$record.cpp"; then
        fail "This compiles: $script in $file"
    elif ! grep -qF "$text" "$copies/messages"; then
        fail "The compiler does not say \"$text\" after $script in $file, but:"
    else
        echo "ok: $text"
    fi
}

# refuse_visit TEXT FUNCTIONS: a program that passes these to Visit().
refuse_visit() {
    local text=$1 functions=$2
    printf '%s\n' '#include "routerinterface/Payloads.h"' 'using namespace PELLU300ROUTERINTERFACEXML;' \
        "void visit(Fragment& fragment) { Visit(fragment, $functions); }" >"$copies/visit.cpp"
    if compile "${compiler[@]}" "$copies/visit.cpp"; then
        fail "This compiles: Visit(fragment, $functions)"
    elif [ -z "$text" ] || ! grep -qF "$text" "$copies/messages"; then
        fail "The compiler does not say \"$text\" of Visit(fragment, $functions), but:"
    else
        echo "ok: $text"
    fi
}

compiler=("$@")

# With wrong options nothing would compile anyway, so try a correct source first.
if ! compile "${compiler[@]}" "$folder/routerinterface/Fragment.cpp"; then
    fail "Fragment.cpp does not compile as it stands:"
    exit 1
fi

fragment=routerinterface/Fragment.cpp
message=routerinterface/PelLu300RouterMessage.cpp

refuse "the enumerator MastershipState must be the number of its row" $fragment \
    '/class MastershipState,/{h;d};/class AcquireMastership,/G' Fragment
compiler+=(-Werror)
refuse "'ReleaseMastership' not handled in switch" $fragment '/class ReleaseMastership,/d' Fragment
refuse "'Unknown' not handled in switch" routerinterface/Fragment.h \
    's/(MastershipState = 0,)/Unknown = 1000, \1/' Fragment
compiler=("$@")
refuse "two members of a record have the same binary tag" $fragment 's/0xBE2DFF74/0x111939B4/' Fragment
refuse "all members of a choice are of the kind Nested" $fragment \
    's/ROW\(Nested, (class DF_Params)/ROW(List, \1/' Fragment
refuse "MessageID must be of the kind Value, Text, Enumerated, Mandatory, Nested or List" $message \
    's/ROW\(Value, /ROW(Number, /' PelLu300RouterMessage
refuse "a member of the kind Value is an unsigned int, a double or a bool" $message \
    's/unsigned int, /QString,/' PelLu300RouterMessage
refuse "a member of the kind Text is a QString" $message 's/ROW\(Value, /ROW(Text, /' PelLu300RouterMessage
refuse "a member of the kind Enumerated or Mandatory is an enumeration" $message \
    's/ROW\(Mandatory, Type, /ROW(Mandatory, int, /' PelLu300RouterMessage
refuse "a member of the kind List holds records" $message 's/class Fragment,/QString,/' PelLu300RouterMessage
refuse "a member of the kind Nested is a record" routerinterface/PelLu300RouterInterfaceXml.cpp \
    's/class PelLu300RouterMessage,/QString,/' PelLu300RouterInterfaceXml
refuse "the block of a record with a member of the kind Nested is an OwnerBlock or a ChoiceBlock" \
    routerinterface/PelLu300RouterInterfaceXml.cpp 's/machinery::OwnerBlock/machinery::Block/' PelLu300RouterInterfaceXml

refuse_visit "a function for DF_Params is missing" '[](NoPayload) {}, [](const AcquireMastership&) {}'
refuse_visit "a function for NoPayload is missing" '[](const MODELKIT::IMKObject&) {}'
refuse_visit "a function for DF_Params is missing" \
    '[](NoPayload) {}, [](DF_Params&) {}, [](const AcquireMastership&) {}'
refuse_visit "the function for DF_Params must return the same type as that for NoPayload" \
    '[](const auto&) { return 1; }, [](const DF_Params&) { return 1.0; }'

[ $failures -eq 0 ]
