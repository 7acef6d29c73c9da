# SPDX-License-Identifier: MIT
"""error_texts.py PROJECT: docs/errors.md has every text that the libraries can give, and no other.

A text is every string literal in the libraries with a space in it. On the page "…" stands for what differs. What is no
text of an error must be in NO_ERRORS.
"""

import pathlib
import re
import sys

LIBRARIES = ("modelkit", "routerinterface", "routerinterface/machinery", "documents", "link")
STRING = r'"(?:[^"\\\n]|\\.)*"'
# Comments and characters are passed over, so that quotes in them mean nothing. Adjacent strings are one.
TOKEN = re.compile(rf"//[^\n]*|/\*.*?\*/|'(?:[^'\\\n]|\\.)+'|(?P<text>{STRING}(?:\s*{STRING})*)", re.DOTALL)
# What the compiler says, and lines of the preprocessor.
NOT_SAID = re.compile(r"static_assert\((?:[^;\"]|" + STRING + r")*\);|^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", re.MULTILINE)
DIFFERS = "…"

# What is shown of documents that are right, names of types, and words that are put into other texts.
NO_ERRORS = {
    "Unknown error",  # Qt's text for no reason
    "version=\"1.0\" encoding=\"UTF-8\"", "(<?xml version=",
    "binary form", "nested record or list", "member of a choice",
    "byte is", "bytes are", "1 byte is …", "… bytes are …", "1 byte ", "… bytes ", "is missing", "are missing",
    "its length is missing", "passed over", "the end", "an array", "an object",
    "a string", "a truth value", "read from", "write to", "unknown exception", "the bytes …", "The entry", "The text",
    "The item", "its entry", "its list", "one of ", "… …", "…: …", "… (number …)", "; ….",
    # records that are printed
    "unknown place", "no failure", "... (… characters)", " (… is selected, but not set)", " (nothing is set)",
    ": no items", "... (… items)", "… (no enumerator)",
    # dissections
    "length …", "…, not decoded", "… behind the form", " (… characters)", "compressed form", "[…] piece, length …",
    "inflated size …", "…, compressed", "unknown class", "… (…)", "unknown tag", "text of …", "[…] …, length …",
    # values and statistics
    "unsigned integer", "no enumerator", "not set", "form (bytes)", "…/… (items)", "…/… (texts)", "1 other text",
    "… other texts", "texts that are not told apart", " (not a number)",
}


def unescape(literal):
    inside = "".join(re.findall(r'"((?:[^"\\\n]|\\.)*)"', literal))
    return re.sub(r"\\(.)", lambda match: {"n": "\n", "t": "\t"}.get(match[1], match[1]), inside)


def texts_of_sources(project):
    """Each text with the first file that has it."""
    texts = {}
    for folder in LIBRARIES:
        for path in sorted((project / folder).glob("*.h")) + sorted((project / folder).glob("*.cpp")):
            source = NOT_SAID.sub("", path.read_text(encoding="utf-8"))
            for match in TOKEN.finditer(source):
                if match["text"]:
                    text = re.sub(r"%\d", DIFFERS, unescape(match["text"]))
                    if " " in text.strip():
                        texts.setdefault(text, path.relative_to(project))
    return texts


def core(text):
    """Without what may stand behind a text: a full stop, a suggestion."""
    return text.strip().rstrip(f".{DIFFERS}")


def main():
    project = pathlib.Path(sys.argv[1])
    page = (project / "docs/errors.md").read_text(encoding="utf-8")
    page = re.sub(r"^```.*?^```$", "", page, flags=re.MULTILINE | re.DOTALL)
    told = set(re.findall(r"`([^`]+)`", page))
    sources = texts_of_sources(project)
    wrong = []
    for text, path in sources.items():
        if text not in NO_ERRORS and not any(core(text) in one for one in told):
            wrong.append(f"docs/errors.md lacks a text of {path}: {text}")
    for text in sorted(NO_ERRORS - sources.keys()):
        wrong.append(f"error_texts.py: no library has the text {text!r} of NO_ERRORS")
    said = "\n".join(sources)
    for text in told:
        if " " not in text or re.fullmatch(r"[\w:&\[\]()., ]+\)|routermsg .*|[A-Z]\w+(`, `\w+)*", text):
            continue
        for part in text.split(DIFFERS):
            if len(part.strip()) > 3 and part.strip() not in said:
                wrong.append(f"docs/errors.md: no library says {part.strip()!r} (in {text!r})")
    if len(sources) < 100 or len(told) < 100:
        wrong.append("error_texts.py finds hardly any texts; its patterns no longer fit the sources.")
    print("\n".join(wrong) or f"All {len(sources)} texts are on the page.")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
