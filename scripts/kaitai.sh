#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Compares the description of the binary forms for Kaitai Struct, which is written by hand, with what routermsg shows:
#
#     scripts/kaitai.sh [BUILD]
#
# BUILD is the build folder with routermsg and write_messages, by default that of scripts/test.sh.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

build=$(realpath "${1:-build/gcc-qt5}")

command -v node >/dev/null || install_missing nodejs
command -v npm >/dev/null || install_missing npm
folder=build/kaitai
mkdir -p $folder
if [ ! -d $folder/node_modules/js-yaml ]; then
    npm install --prefix $folder --no-save --no-audit --no-fund --loglevel=error \
        kaitai-struct@0.11.0 kaitai-struct-compiler@0.11.0 js-yaml@4.1.0
fi

rm -rf $folder/messages
mkdir $folder/messages
"$build/tests/write_messages" $folder/messages
cp tests/wire/compare_kaitai.mjs $folder/
node $folder/compare_kaitai.mjs "$build/tools/routermsg" . $folder/messages

# The sample on the page, for the same recording as there.
cat examples/documents/*.xml >$folder/week.rec
"$build/tools/routermsg" convert -q --accept-loss $folder/week.rec $folder/week.bin 2>$folder/lost.txt
mv $folder/messages/Router.js $folder/
sed -n '/^```js$/,/^```$/p' docs/other-tools.md | sed '/^```/d' >$folder/sample.js
(cd $folder && node sample.js >payloads.txt)
diff <(sed 's/_//g' $folder/payloads.txt) <("$build/tools/routermsg" convert -q $folder/week.bin --to jsonl - |
    node -e '
        for (const line of require("fs").readFileSync(0, "utf8").trim().split("\n")) {
            const message = Object.values(JSON.parse(line))[0].PelLu300RouterMessage ?? {};
            console.log((message.Fragment ?? []).map(each => Object.keys(each)[0]).join(" ").toUpperCase().replace(/_/g, ""));
        }') || { echo "The sample for Kaitai Struct on docs/other-tools.md lists other payloads." >&2; exit 1; }
