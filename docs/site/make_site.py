# SPDX-License-Identifier: MIT
"""Makes a static site of the Markdown pages. It works from disk; nothing is loaded from elsewhere.

    make_site.py PROJECT SITE [TAGFILE]

The order of the pages is that of the links in docs/index.md. Pages keep their places: docs/records.md becomes
SITE/docs/records.html. The C++ reference, if there is one, is in SITE/reference, and TAGFILE is its list of names.
"""

import html
import json
import os
import pathlib
import re
import shutil
import subprocess
import sys
import xml.etree.ElementTree

INDEX = "docs/index.md"
# What stands beside docs/ and is no chapter. The index links to these pages, too.
FOLDERS = ("", "docs", "examples", "examples/scenarios")
LINK = re.compile(r'(<(?:a href|img src)=")([^"]*)(")')
HEADING = re.compile(r"<h([1-6])>(.*?)</h\1>", re.DOTALL)
TAG = re.compile(r"<[^>]*>")


def text_of(markup):
    return html.unescape(TAG.sub("", markup))


def anchor_of(heading):
    """The anchor that GitHub gives a heading."""
    kept = re.sub(r"[^\w\- ]", "", text_of(heading).strip().lower())
    return kept.replace(" ", "-")


class Page:
    def __init__(self, path, markup):
        self.path = path
        self.sections = []  # (level, anchor, heading, markup of the text below it)
        taken = {}
        parts = HEADING.split(markup)
        if parts[0].strip():
            raise SystemExit(f"{path}: a page begins with its heading")
        for level, heading, body in zip(parts[1::3], parts[2::3], parts[3::3]):
            anchor = anchor_of(heading)
            taken[anchor] = taken.get(anchor, -1) + 1
            if taken[anchor]:
                anchor += f"-{taken[anchor]}"
            self.sections.append((int(level), anchor, heading, body))

    @property
    def title(self):
        return text_of(self.sections[0][2])

    def markup(self):
        return "".join(
            f'<h{level} id="{anchor}">{heading} <a class="anchor" href="#{anchor}" '
            f'aria-label="Link to this section">#</a></h{level}>{body}'
            for level, anchor, heading, body in self.sections)


def read_page(project, path):
    made = subprocess.run(["cmark-gfm", "--unsafe", "-e", "table", "-e", "autolink", project / path],
                          check=True, capture_output=True, text=True, encoding="utf-8")
    return Page(path, made.stdout)


def place_in_site(path):
    return path[:-3] + ".html" if path.endswith(".md") else path


def split_target(page, target):
    """The file in the project to which a link leads, and its anchor; no file for a link out of the project."""
    if re.match(r"[a-z]+:", target):
        return None, target
    path, _, anchor = target.partition("#")
    path = os.path.normpath(os.path.join(os.path.dirname(page), html.unescape(path))) if path else page
    return path, anchor


class Site:
    def __init__(self, project, folder):
        self.project = project
        self.folder = folder
        self.copied = set()
        paths = sorted(str(path.relative_to(project))
                       for folder in FOLDERS for path in (project / folder).glob("*.md"))
        self.pages = {path: read_page(project, path) for path in paths}
        self.chapters = self.read_order()

    def read_order(self):
        """The chapters of the index: (heading, [path of a page, ...])."""
        chapters = []
        for level, _, heading, body in self.pages[INDEX].sections:
            targets = [split_target(INDEX, target)[0] for target in re.findall(r'<a href="([^"]*)"', body)]
            before = {path for _, listed in chapters for path in listed}
            listed = [target for target in dict.fromkeys(targets) if target in self.pages and target not in before]
            if level > 1 and listed:
                chapters.append((text_of(heading), listed))
        known = {path for _, listed in chapters for path in listed}
        for path in self.pages:
            if path != INDEX and path not in known:
                raise SystemExit(f"{path} has no place in {INDEX}.")
        return chapters

    def link(self, page, match):
        path, anchor = split_target(page, match.group(2))
        if path is None:
            return match.group(0)
        target = place_in_site(path)
        if path not in self.pages and (self.project / path).is_file():
            target = self.copy(path)
        elif (self.project / path).is_dir():
            readme = os.path.join(path, "README.md")
            target = place_in_site(readme) if readme in self.pages else path
        relative = os.path.relpath(target, os.path.dirname(page) or ".")
        return match.group(1) + html.escape(relative) + ("#" + anchor if anchor else "") + match.group(3)

    def copy(self, path):
        """Takes over a file to which a page links: pictures as they are, sources as a page to read."""
        is_picture = path.endswith((".svg", ".png"))
        target = path if is_picture else path + ".html"
        if target not in self.copied:
            self.copied.add(target)
            (self.folder / target).parent.mkdir(parents=True, exist_ok=True)
            if is_picture:
                shutil.copy(self.project / path, self.folder / target)
            else:
                source = html.escape((self.project / path).read_text(encoding="utf-8"))
                self.write(target, path, f"<h1>{html.escape(path)}</h1><pre><code>{source}</code></pre>", path)
        return target

    def navigation(self, page):
        base = os.path.dirname(page) or "."
        parts = [f'<a href="{os.path.relpath(place_in_site(INDEX), base)}">Overview</a>']
        for heading, listed in self.chapters:
            parts.append(f"<h2>{html.escape(heading)}</h2><ul>")
            for path in listed:
                here = ' aria-current="page"' if path == page else ""
                parts.append(f'<li><a href="{os.path.relpath(place_in_site(path), base)}"{here}>'
                             f"{html.escape(self.pages[path].title)}</a></li>")
            parts.append("</ul>")
        if (self.folder / "reference/index.html").exists():
            parts.append(f'<h2>Reference</h2><ul><li><a href="{os.path.relpath("reference/annotated.html", base)}">'
                         "Classes</a></li></ul>")
        return "".join(parts)

    def neighbours(self, page):
        order = [INDEX] + [path for _, listed in self.chapters for path in listed]
        if page not in order:
            return ""
        base = os.path.dirname(page) or "."
        at = order.index(page)
        parts = []
        for name, position in (("Before", at - 1), ("Next", at + 1)):
            if 0 <= position < len(order):
                parts.append(f'<a href="{os.path.relpath(place_in_site(order[position]), base)}">{name}: '
                             f"{html.escape(self.pages[order[position]].title)}</a>")
        return '<p class="neighbours">' + "".join(parts) + "</p>"

    def write(self, target, title, markup, page):
        base = os.path.relpath(".", os.path.dirname(target) or ".")
        target = self.folder / target
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(
            '<!DOCTYPE html>\n<html lang="en"><head><meta charset="utf-8">'
            '<meta name="viewport" content="width=device-width, initial-scale=1">'
            f"<title>{html.escape(title)}</title>"
            f'<link rel="stylesheet" href="{base}/style.css"></head><body>'
            f'<header><label>Search <input id="search" type="search" data-base="{base}"></label>'
            f'<ol id="found"></ol></header><nav>{self.navigation(page)}</nav><main>{markup}'
            f"{self.neighbours(page)}</main>"
            f'<script src="{base}/search-index.js"></script><script src="{base}/search.js"></script>'
            "</body></html>\n", encoding="utf-8")

    def make(self, names):
        for path, page in self.pages.items():
            markup = LINK.sub(lambda match, path=path: self.link(path, match), page.markup())
            self.write(place_in_site(path), page.title, markup, path)
        index = [{"page": place_in_site(path), "anchor": anchor, "title": page.title, "heading": text_of(heading),
                  "text": " ".join(text_of(body).split())}
                 for path, page in self.pages.items() if path != INDEX
                 for _, anchor, heading, body in page.sections]
        (self.folder / "search-index.js").write_text(
            "var searchIndex = " + json.dumps(index + names, ensure_ascii=False, indent=0) + ";\n",
            encoding="utf-8")
        for name in ("style.css", "search.js"):
            shutil.copy(self.project / "docs/site" / name, self.folder / name)
        (self.folder / "index.html").write_text(
            '<!DOCTYPE html>\n<html lang="en"><head><meta charset="utf-8"><title>Overview</title>'
            '<meta http-equiv="refresh" content="0; url=docs/index.html"></head>'
            '<body><a href="docs/index.html">Overview</a></body></html>\n', encoding="utf-8")


def names_in(tagfile):
    """Entries of the search for all classes, functions and types of the reference; overloads have one."""
    names = {}

    def add(heading, page, anchor):
        names.setdefault(heading, {"page": "reference/" + page, "anchor": anchor, "title": "Reference",
                                   "heading": heading, "text": ""})

    for compound in xml.etree.ElementTree.parse(tagfile).getroot():
        if compound.get("kind") not in ("class", "struct", "namespace"):
            continue
        owner = compound.findtext("name").split("::")[-1]
        if compound.get("kind") != "namespace":
            add(owner, compound.findtext("filename"), "")
        for member in compound.findall("member"):
            name = member.findtext("name")
            if member.get("kind") in ("function", "enumeration") and not name.startswith(("~", "operator")):
                add(f"{owner}::{name}", member.findtext("anchorfile"), member.findtext("anchor"))
    return list(names.values())


def main():
    project, folder = pathlib.Path(sys.argv[1]), pathlib.Path(sys.argv[2])
    folder.mkdir(parents=True, exist_ok=True)
    site = Site(project, folder)
    site.make(names_in(sys.argv[3]) if len(sys.argv) > 3 else [])
    print(f"{len(site.pages)} pages in {folder}")


if __name__ == "__main__":
    main()
