#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# site_test.sh PROJECT: makes the site of all pages, without the reference, and checks its links. Then it breaks links to
# see that this is noticed.
set -euo pipefail
command -v cmark-gfm >/dev/null || { echo "Skipped: there is no cmark-gfm."; exit 77; }

site=$(mktemp -d)
trap 'rm -rf "$site"' EXIT
python3 -B "$1/docs/site/make_site.py" "$1" "$site"
check() { python3 -B "$1/tests/documentation/check_links.py" "$site"; }
check "$1"

# must_notice SUBSTITUTION WHAT: a page that sed has changed has a wrong link.
must_notice() {
    cp "$site/docs/threads.html" "$site/before"
    sed -i "$1" "$site/docs/threads.html"
    ! cmp -s "$site/before" "$site/docs/threads.html" || { echo "Nothing was broken: $1" >&2; exit 1; }
    if check "$3" >"$site/said"; then
        echo "Nobody has noticed $2." >&2
        exit 1
    fi
    grep -q "$2" "$site/said"
    mv "$site/before" "$site/docs/threads.html"
}
must_notice 's/href="copies.html#references"/href="copies.html#nowhere"/' 'has no place nowhere' "$1"
must_notice 's/href="copies.html#references"/href="nothing.html"/' 'nothing.html leads to no file' "$1"
