#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Plays the session of a new user and compares it with the page that shows it:
#
#     session.sh [--update] PROGRAM DOCUMENTS PAGE
#
# --update rewrites the page. Read it before you commit it.
set -uo pipefail

update=no
if [ "$1" = --update ]; then
    update=yes
    shift
fi
program=$(realpath "$1")
documents=$(realpath "$2")
page=$3

# Lines of text.
say() { printf '\n%s\n' "$@"; }

# run COMMAND: shows the command and its output.
run() {
    local status
    printf '\n```console\n$ %s\n' "$1"
    bash -c "$1" 2>&1 </dev/null
    status=$?
    [ $status -eq 0 ] || printf '$ echo $?\n%d\n' $status
    printf '```\n'
}

session() {
    cat <<'END'
# A first session with routermsg

The commands below were typed one after the other, in a folder that contains `examples/documents`.
[routermsg.md](routermsg.md) describes all commands and options.
END
    say 'What is in a document?'
    run 'routermsg show examples/documents/request-tuning.xml'
    say 'Is it valid? Are all documents valid?'
    run 'routermsg check examples/documents/request-tuning.xml'
    run 'routermsg check --quiet examples/documents && echo "nothing to complain about"'
    say 'Some things are accepted silently although they are not quite right. `--strict` shows them:'
    run 'routermsg check --strict examples/documents/event-three-decimals.xml'
    say 'When something is wrong, the message begins with the place, as in compilers; editors can jump there.'
    run 'sed s/Request/Demand/ examples/documents/request-tuning.xml > demand.xml'
    run 'routermsg check demand.xml'
    say 'Routers also use a binary form. The ending of the file name selects it, or the option `--to`.'
    run 'routermsg convert examples/documents/request-acquire-mastership.xml request.bin'
    say 'What do the bytes mean?'
    run 'routermsg show --hex request.bin'
    say 'JSON is good for scripts and loses nothing. `-` is standard output.'
    run 'routermsg convert request.bin - --to json'
    say 'A document can be made from words, without an editor:'
    run 'routermsg new Request MessageID=2 AcquireMastership DF_Params Frequency=98.5e6 Bandwidth=15000'
    say 'Mistakes in words, options and commands are explained.'
    run 'routermsg new Request MessageID=2 AquireMastership'
    run 'routermsg new Request Port=5000'
    say 'Write it to a file; the ending selects the form again.'
    run 'routermsg new Request MessageID=2 AcquireMastership -o second.bin'
    say 'Where do two documents differ? Their forms do not matter.'
    run 'routermsg diff examples/documents/request-acquire-mastership.xml second.bin'
    run 'routermsg diff examples/documents/request-acquire-mastership.xml second.bin --ignore MessageID'
    say 'What is in a whole folder of recorded documents?'
    run 'routermsg stats examples/documents'
    say 'Every command explains itself:'
    run 'routermsg diff --help'
}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$folder/bin" "$folder/work/examples"
ln -s "$program" "$folder/bin/routermsg"
ln -s "$documents" "$folder/work/examples/documents"
(
    export LC_ALL=C PATH="$folder/bin:$PATH"
    unset NO_COLOR
    cd "$folder/work" && session
) >"$folder/session.md"

if [ $update = yes ]; then
    cp "$folder/session.md" "$page"
else
    diff -u --label "$(basename "$page")" --label "what happens now" "$page" "$folder/session.md" && exit
    echo "If what happens now is right: ${UPDATE_COMMAND:-$0 --update $program $documents $page}"
    exit 1
fi
