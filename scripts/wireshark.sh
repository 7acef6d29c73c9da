#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Compares the dissector for Wireshark, which is written by hand, with what routermsg shows. The captures are made here, so
# that it needs no rights:
#
#     scripts/wireshark.sh [BUILD]
#
# BUILD is the build folder with routermsg and write_messages, by default that of scripts/test.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

build=$(realpath "${1:-build/gcc-qt5}")

command -v python3 >/dev/null || install_missing python3
command -v tshark >/dev/null || install_missing tshark

folder=build/wireshark
rm -rf $folder
mkdir -p $folder/home
"$build/tests/write_messages" $folder
# Settings and plugins of the user must not count.
HOME=$(realpath $folder/home) XDG_CONFIG_HOME='' LC_ALL=C.UTF-8 \
    python3 -B tests/wire/compare_wireshark.py "$build/tools/routermsg" . $folder

# The commands on the page, with the dissector where the page says to install it. tshark warns root of itself.
mkdir $folder/bin
cat >$folder/bin/tshark <<EOF
#!/bin/sh
$(command -v tshark) "\$@" 2>&1 | grep -v 'This could be dangerous'
EOF
chmod +x $folder/bin/tshark
{
    echo '```console'
    echo "\$ mkdir -p ~/.local/lib/wireshark/plugins && cp $PWD/schema/router*.lua ~/.local/lib/wireshark/plugins/"
    echo '```'
    sed -n '/^## Wireshark$/,/^## /p' docs/other-tools.md | sed 's/^```shell$/```console/'
} >$folder/wireshark.md
PATH=$(realpath $folder/bin):$PATH UPDATE_COMMAND="edit the section Wireshark of docs/other-tools.md" \
    bash tests/tool/play_page.sh "$build/tools/routermsg" examples/documents $folder/wireshark.md
