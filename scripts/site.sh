#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Makes the documentation as a site: all pages and the reference of the public headers. It works from disk; open
# build/site/index.html. Then it checks the site: every public name is documented, every link leads somewhere, and the
# search answers the questions of docs/index.md.
#
#     scripts/site.sh
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/packages.sh

install_missing cmake cmark-gfm doxygen g++ nodejs python3 qtbase5-dev

site=build/site
rm -rf $site
mkdir -p $site

# CMake knows the public headers.
cmake -S . -B build/headers -DQT_MAJOR=5 -DROUTERINTERFACE_TESTS=OFF -DROUTERINTERFACE_EXAMPLES=OFF \
    -DROUTERINTERFACE_TOOLS=OFF -DROUTERINTERFACE_SIMULATOR=OFF >build/headers.log || { cat build/headers.log; exit 1; }
failed=0
doxygen build/headers/Doxyfile || failed=1
python3 -B docs/site/make_site.py . $site $site/reference.tag

python3 -B tests/documentation/undocumented.py $site/xml || failed=1
python3 -B tests/documentation/check_links.py $site || failed=1
node tests/documentation/ask_questions.mjs $site docs/index.md || failed=1
rm -r $site/xml $site/reference.tag
exit $failed
