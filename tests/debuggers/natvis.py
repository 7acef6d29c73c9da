# SPDX-License-Identifier: MIT
"""Runs in gdb: shows variables as the file for Visual Studio says, and reports every expression in it that is wrong.

The expressions of such a file are C++. gdb evaluates them after two changes: members get their object in front, and the
pointer in a std::unique_ptr, which only the compiler's own library calls _Mypair._Myval2, is read from its memory.
"""
import os
import re
import runpy
import xml.etree.ElementTree

import gdb

NATVIS = os.environ["NATVIS"]
SPACE = "{http://schemas.microsoft.com/vstudio/debugger/natvis/2010}"
printers = runpy.run_path(os.path.join(os.path.dirname(NATVIS), "routerinterface_gdb.py"))
types = {element.get("Name"): element for element in xml.etree.ElementTree.parse(NATVIS).getroot()}


def field_names(kind):
    for field in kind.fields():
        yield field.name
        if field.is_base_class:
            yield from field_names(field.type)


class Object:
    """A value, the element that describes its type, and the variables of a loop."""

    def __init__(self, value, element):
        self.value = value
        self.element = element
        self.names = set(field_names(value.type))
        self.variables = {}

    def evaluate(self, expression):
        gdb.set_convenience_variable("self", self.value.address)
        for name, value in self.variables.items():
            gdb.set_convenience_variable(name, value)

        def with_object(match):
            name = match.group()
            if name in self.variables:
                return "$" + name
            return "$self->" + name if name in self.names else name

        def from_memory(match):
            pointee = gdb.parse_and_eval(match.group(1)).type.template_argument(0).name
            # The library of the base class of records may have no debug information.
            known = "void" if pointee == "MODELKIT::IMKObject" else pointee
            return "(*(%s**)&%s)" % (known, match.group(1))

        expression = re.sub(r"(?<![\w:.>$])[A-Za-z_]\w*(?!\w|::)", with_object, expression.strip())
        expression = re.sub(r"([\w$>.-]+)\._Mypair\._Myval2", from_memory, expression)
        return gdb.parse_and_eval(expression)

    def is_so(self, element):
        condition = element.get("Condition")
        return condition is None or bool(self.evaluate(condition))

    def text(self, pattern):
        return re.sub(r"\{([^{}]*?)(,en)?\}", lambda match: in_line(self.evaluate(match.group(1))), pattern)

    def display(self):
        return next(self.text(part.text) for part in self.element.iter(SPACE + "DisplayString") if self.is_so(part))

    def items(self, element):
        """Names and values of an element's items, as the debugger finds them."""
        for part in element:
            if part.tag is xml.etree.ElementTree.Comment:
                continue
            tag = part.tag[len(SPACE):]
            if tag == "Variable":
                self.variables[part.get("Name")] = self.evaluate(part.get("InitialValue"))
            elif tag == "Exec":
                name, expression = part.text.split(" = ")
                self.variables[name] = self.evaluate(expression)
            elif tag == "Loop":
                while self.is_so(part):
                    yield from self.items(part)
            elif tag in ("CustomListItems", "If"):
                if self.is_so(part):
                    yield from self.items(part)
            elif tag == "Item":
                if self.is_so(part):
                    yield part.get("Name"), self.evaluate(part.text)
            else:
                raise ValueError("the test does not know <%s>" % tag)

    def check_everything(self):
        """Evaluates what no condition asks for as well. Unlike a wrong name, a null pointer is no mistake there."""
        for part in self.element.iter():
            tag = str(part.tag)[len(SPACE):]
            expressions = [part.get("Condition"), part.get("InitialValue")]
            if tag == "Item":
                expressions.append(part.text)
            elif tag == "Exec":
                expressions.append(part.text.split(" = ")[1])
            elif tag == "DisplayString":
                expressions += re.findall(r"\{([^{}]*?)(?:,en)?\}", part.text)
            for expression in filter(None, expressions):
                try:
                    value = self.evaluate(expression)
                except gdb.MemoryError:
                    continue
                if tag == "Variable":
                    self.variables[part.get("Name")] = value

    def check_members(self, class_name):
        """Each member of a record has an item."""
        members = {member.name for member in printers["layout_of"](class_name).members}
        items = {part.get("Name") for part in self.element.iter(SPACE + "Item")}
        if members != items:
            raise ValueError("%s has the members %s, but the items %s" % (class_name, members, items))


def type_name(value):
    return value.type.strip_typedefs().unqualified().name or ""


def in_line(value):
    name = type_name(value)
    if name == "QString":
        text = printers["text_of"](value)
        if text == "null":
            return text
        encoding = "utf-16-le" if printers["is_little_endian"]() else "utf-16-be"
        return '"%s"' % printers["read_bytes"](text.address, 2 * text.length).decode(encoding)
    if value.type.strip_typedefs().code == gdb.TYPE_CODE_ENUM:
        return printers["EnumerationPrinter"](value).to_string()
    return Object(value, types[name]).display() if name in types else value.format_string()


def show(name, value, indent=""):
    kind = type_name(value)
    if re.match("Q(Vector|List)<", kind):
        listed = printers["list_printer"](value)
        print("%s%s: %s" % (indent, name, listed.to_string()))
        for item_name, item in listed.children():
            show(item_name, item, indent + "  ")
        return
    print("%s%s: %s" % (indent, name, in_line(value)))
    if kind in types:
        shown = Object(value, types[kind])
        for item_name, item in shown.items(types[kind].find(SPACE + "Expand")):
            show(item_name, item, indent + "  ")


frame = gdb.selected_frame()
variables = ("document untouched withoutValues strange several notSet shared failure none place").split()
for variable in variables:
    show(variable, frame.read_var(variable))

# A record of each class, all of which have data.
found = {}


def collect(value):
    kind = type_name(value)
    if re.match("Q(Vector|List)<", kind):
        for _, item in printers["list_printer"](value).children():
            collect(item)
    elif kind in types:
        shown = Object(value, types[kind])
        children = list(shown.items(types[kind].find(SPACE + "Expand")))
        if children:
            found.setdefault(kind, shown)
        for _, item in children:
            collect(item)


for variable in variables:
    collect(frame.read_var(variable))
for kind in types:
    found[kind].check_everything()
    if kind.startswith(printers["NAMESPACE"]):
        found[kind].check_members(kind.split("::")[-1])
print("All expressions for %d types are right." % len(types))
