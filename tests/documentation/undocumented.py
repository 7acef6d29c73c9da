# SPDX-License-Identifier: MIT
"""undocumented.py XML: everything in the public headers is documented, by Doxygen's XML.

Doxygen itself says nothing about enumerators, copies that are deleted, and destructors. An operation that overrides
another one has the documentation of that one. Operations of a class that others derive from are public, too, if they are
protected. Each parameter is explained or named, unless the operation has only one or is an operator.
"""

import pathlib
import re
import sys
import xml.etree.ElementTree


def text_of(node):
    parts = [node.find("briefdescription"), node.find("detaileddescription"), node.find("inbodydescription")]
    return " ".join("".join(part.itertext()) for part in parts if part is not None).strip()


def overrides(member):
    # Doxygen does not know what destructors override, and knows no operation of Qt.
    return member.find("reimplements") is not None or "override" in (member.findtext("argsstring") or "")


def parameters_unknown_to(text, member):
    if (member.findtext("name") or "").startswith("operator"):
        return []
    names = [parameter.findtext("declname") for parameter in member.findall("param")]
    names = [name for name in names if name]
    return [name for name in names if len(names) > 1 and not re.search(rf"\b{name}\b", text)]


def undocumented(folder):
    for path in sorted(pathlib.Path(folder).glob("*.xml")):
        for compound in xml.etree.ElementTree.parse(path).getroot().findall("compounddef"):
            kind = compound.get("kind")
            if kind in ("dir", "page", "index") or compound.get("prot") == "private":
                continue
            name = compound.findtext("compoundname")
            if kind != "file" and name not in ("std", "PELLU300ROUTERINTERFACEXML::machinery") and not text_of(compound):
                yield f"{kind} {name}"
            # A file shows the members of its namespaces and classes again.
            for member in compound.iter("memberdef"):
                if member.get("prot") == "private" or member.get("kind") == "friend":
                    continue
                whole = (member.findtext("qualifiedname") or member.findtext("name")) + \
                    (member.findtext("argsstring") or "")
                if overrides(member):
                    continue
                if not text_of(member):
                    yield f"{member.get('kind')} {whole}"
                else:
                    for parameter in parameters_unknown_to(text_of(member), member):
                        yield f"parameter {parameter} of {whole}"
                for value in member.findall("enumvalue"):
                    if not text_of(value):
                        yield f"enumerator {whole}::{value.findtext('name')}"


def main():
    found = sorted(set(undocumented(sys.argv[1])))
    if not list(pathlib.Path(sys.argv[1]).glob("class*.xml")):
        found.append(f"{sys.argv[1]} has no classes")
    for item in found:
        print(f"Not documented: {item}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
