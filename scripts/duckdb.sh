#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Runs the queries on docs/other-tools.md with DuckDB and compares their results with the page:
#
#     scripts/duckdb.sh [--update] [ROUTERMSG]
#
# ROUTERMSG is the program, by default that of scripts/test.sh. --update rewrites the results on the page.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

update=()
if [ "${1:-}" = --update ]; then
    update=(--update)
    shift
fi
routermsg=$(realpath "${1:-build/gcc-qt5/tools/routermsg}")

command -v node >/dev/null || install_missing nodejs
command -v npm >/dev/null || install_missing npm
folder=build/duckdb
mkdir -p $folder
if [ ! -d $folder/node_modules/@duckdb/node-api ]; then
    npm install --prefix $folder --no-save --no-audit --no-fund --loglevel=error @duckdb/node-api@1.5.6-r.1
fi

# The same recording as on the page, whose documents hold more than the records do.
cat examples/documents/*.xml >$folder/week.rec
"$routermsg" convert -q --accept-loss $folder/week.rec $folder/week.jsonl 2>$folder/lost.txt
cp tests/tool/query.mjs $folder/
node $folder/query.mjs "${update[@]}" docs/other-tools.md $folder
