# SPDX-License-Identifier: MIT
"""check_links.py SITE: every link of the site, and everything that its search can find, leads to a file in it, and to a
place that this file has.

Links to other hosts are not followed. Pages of the C++ reference are targets, but their own links are not checked.
"""

import json
import os
import pathlib
import sys
from html.parser import HTMLParser
from urllib.parse import unquote


class Links(HTMLParser):
    def __init__(self, path):
        super().__init__()
        self.targets = []
        self.anchors = set()
        self.feed(path.read_text(encoding="utf-8"))

    def handle_starttag(self, tag, attributes):
        for name, value in attributes:
            if name in ("href", "src"):
                self.targets.append(value or "")
            elif name == "id" or (tag == "a" and name == "name"):
                self.anchors.add(value)


def wrong_links(site):
    pages = {}

    def page(path):
        if path not in pages:
            pages[path] = Links(path)
        return pages[path]

    def wrong(path, target):
        name, _, anchor = unquote(target).partition("#")
        to = pathlib.Path(os.path.normpath(path.parent / name)) if name else path
        if not to.is_file():
            yield f"{path.relative_to(site)}: {target} leads to no file"
        elif anchor and anchor not in page(to).anchors:
            yield f"{path.relative_to(site)}: {to.name} has no place {anchor}"

    checked = 0
    reference = site / "reference"
    for path in sorted(site.rglob("*.html")):
        if reference in path.parents:
            continue
        for target in page(path).targets:
            if target.startswith(("http://", "https://", "mailto:")):
                continue
            checked += 1
            yield from wrong(path, target)
    index = site / "search-index.js"
    for entry in json.loads(index.read_text(encoding="utf-8").partition("=")[2].rstrip(";\n")):
        yield from wrong(index, f"{entry['page']}#{entry['anchor']}")
    if checked == 0:
        yield f"{site} has no links at all"


def main():
    wrong = list(wrong_links(pathlib.Path(sys.argv[1])))
    print("\n".join(wrong) or "All links lead somewhere.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
