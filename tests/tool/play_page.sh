#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Plays the commands of a page as its reader would, and compares what they print with the page:
#
#     play_page.sh [--update] PROGRAM DOCUMENTS PAGE
#
# The commands are the lines that begin with "$ " in blocks marked as console; the lines up to the next command are what
# it prints. "$ cat NAME" shows a file that exists; where it does not, what follows becomes the file. All commands run
# one after the other in a folder that contains examples/documents.
#
# --update rewrites what the commands print. Read it before you commit it.
set -uo pipefail

update=no
if [ "$1" = --update ]; then
    update=yes
    shift
fi
program=$(realpath "$1")
documents=$(realpath "$2")
page=$(realpath "$3")

# play: copies the page from standard input, with what the commands print now.
play() {
    local line is_console=no status=0 file=
    while IFS= read -r line; do
        case $is_console:$line in
            no:'```console') is_console=yes ;;
            yes:'```') is_console=no file= ;;
            yes:'$ '*)
                file=
                printf '%s\n' "$line"
                if [[ $line =~ ^'$ cat '([^ *]+)$ && ! -e ${BASH_REMATCH[1]} ]]; then
                    file=${BASH_REMATCH[1]}
                    : >"$file"
                    continue
                fi
                bash -c "(exit $status); ${line#'$ '}" 2>&1 </dev/null
                status=$?
                continue
                ;;
            yes:*)
                [ "$file" ] || continue
                printf '%s\n' "$line" >>"$file"
                ;;
        esac
        printf '%s\n' "$line"
    done
}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir -p "$folder/bin" "$folder/work/examples"
ln -s "$program" "$folder/bin/routermsg"
ln -s "$documents" "$folder/work/examples/documents"
(
    export LC_ALL=C PATH="$folder/bin:$PATH" HOME=$folder
    unset NO_COLOR
    cd "$folder/work" && play <"$page"
) >"$folder/page.md"

if [ $update = yes ]; then
    cp "$folder/page.md" "$page"
else
    diff -u --label "$(basename "$page")" --label "what happens now" "$page" "$folder/page.md" && exit
    echo "If what happens now is right: ${UPDATE_COMMAND:-$0 --update $program $documents $page}"
    exit 1
fi
