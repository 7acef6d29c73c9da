# SPDX-License-Identifier: MIT
"""Shows records, their enumerations, MODELKIT::Failure and MODELKIT::Place in gdb.

The printers call no function of the program, so they work with core files, too. They need no debug information of the
libraries: each record class has a table in the library that says where its members are (DebuggerLayout.h). Without that
information a program's own may not even describe the record classes: compilers expect it in the library.
"""
import re
import struct

import gdb
import gdb.printing

NAMESPACE = "PELLU300ROUTERINTERFACEXML"
# All other record classes are below this one.
ROOT = "PelLu300RouterInterfaceXml"
ENUMERATIONS = ("PelLu300RouterMessage::Type", "MastershipState::State", "Fragment::ChoiceFragment")
LAYOUT_VERSION = 1
# In place of an offset that a record does not have.
NONE = 0xFFFFFFFF


def at(address, type_or_name):
    kind = gdb.lookup_type(type_or_name) if isinstance(type_or_name, str) else type_or_name
    return gdb.Value(address).cast(kind.pointer()).dereference()


def number(address, type_name):
    return int(at(address, type_name))


def pointer(address):
    return int(at(address, gdb.lookup_type("void").pointer()))


def read_bytes(address, size):
    return bytes(gdb.selected_inferior().read_memory(address, size))


def is_little_endian():
    return "little" in gdb.execute("show endian", to_string=True)


def symbol_address(name):
    """The address of a variable, for which no debug information is needed, or None."""
    try:
        return int(gdb.parse_and_eval("&'%s'" % name))
    except gdb.error:
        return None


# --- Qt's texts and containers -------------------------------------------------------------------


def array_at(address, string_size):
    """Where the elements of the QString or QVector at the address begin, and how many there are. 0 stands for null."""
    pointer_size = gdb.lookup_type("void").pointer().sizeof
    if string_size > pointer_size:
        # Qt 6: a pointer to a header, one to the elements, and their number.
        first = pointer(address + pointer_size)
        count = pointer(address + 2 * pointer_size)
    else:
        # Qt 5: a pointer to a header, which holds the number of the elements and their distance.
        header = pointer(address)
        count = number(header + 4, "int")
        is_null = header == symbol_address("QArrayData::shared_null")
        first = 0 if is_null else header + pointer(header + (16 if pointer_size == 8 else 12))
    if not 0 <= count <= 1 << 30:
        raise gdb.MemoryError("no text or list at 0x%x" % address)
    return first, count


def text_at(address, string_size):
    """The QString at the address: a text for gdb, or the word null without quotation marks."""
    first, length = array_at(address, string_size)
    if first == 0:
        return "null"
    if length:
        read_bytes(first, 2 * length)
    encoding = "UTF-16LE" if is_little_endian() else "UTF-16BE"
    # As unsigned short the text is displayed without a prefix.
    return gdb.Value(first).cast(gdb.lookup_type("unsigned short").pointer()).lazy_string(encoding, length)


def text_of(value):
    return text_at(int(value.address), value.type.sizeof)


def items_at(address, string_size, item_size):
    """The addresses of the items of the QVector at the address."""
    first, count = array_at(address, string_size)
    return range(first, first + count * item_size, item_size)


# --- the tables in the library -------------------------------------------------------------------


class Member:
    def __init__(self, index, name, kind, type_name, offset):
        self.index = index
        self.name = name
        self.kind = kind
        # Types are written as in the source: "class Fragment".
        self.type_name = type_name.split()[-1] if type_name.startswith("class ") else type_name
        self.offset = offset


class Layout:
    """The table of a record class; see DebuggerLayout.h, which has its format."""

    HEADER = "IIq12I"
    ROW = "28s28s28sI"

    def __init__(self, name, address):
        order = "<" if is_little_endian() else ">"
        size = struct.calcsize(order + self.HEADER)
        (version, count, self.id, self.record_size, self.string_size, self.type_code, self.data, self.set_flags,
         self.choice, self.first, self.first_key, self.others, self.other_key, self.other_record, self.other_next,
         ) = struct.unpack(order + self.HEADER, read_bytes(address, size))
        if version != LAYOUT_VERSION:
            raise gdb.GdbError("The library has layout tables of version %d; these printers read version %d."
                               % (version, LAYOUT_VERSION))
        self.name = name
        self.members = []
        row_size = struct.calcsize(order + self.ROW)
        rows = read_bytes(address + size, count * row_size)
        for index, (member, kind, type_name, offset) in enumerate(struct.iter_unpack(order + self.ROW, rows)):
            texts = (text.split(b"\0")[0].decode("ascii") for text in (member, kind, type_name))
            self.members.append(Member(index, *texts, offset))


layouts = {}


def layout_of(class_name):
    """The layout of a record class; None if the library lacks its table."""
    key = (gdb.current_progspace().filename, class_name)
    if key not in layouts:
        address = symbol_address("%s::%s::Data::layout" % (NAMESPACE, class_name))
        if address is None:
            return None
        layouts[key] = Layout(class_name, address)
    return layouts[key]


def layout_with_id(class_id, class_name=ROOT):
    """The layout of the class with that id, which is that class or one of those that its records own."""
    layout = layout_of(class_name)
    if layout is None or layout.id == class_id:
        return layout
    for member in layout.members:
        if member.kind in ("Nested", "List"):
            found = layout_with_id(class_id, member.type_name)
            if found is not None:
                return found
    return None


def enumerator_names(enumeration):
    """The names of an enumeration such as "MastershipState::State", in the order of their values."""
    address = symbol_address("%s::NamesOf%s" % (NAMESPACE, enumeration.replace("::", "")))
    if address is None:
        return []
    names = []
    # Null bytes end the names, and another one ends the list.
    while True:
        name = at(address, "char").address.string("ascii")
        if not name:
            return names
        names.append(name)
        address += len(name) + 1


# --- records -------------------------------------------------------------------------------------


class Record:
    """A record in memory, which knows its class."""

    def __init__(self, address):
        root = layout_of(ROOT)
        self.layout = root and layout_with_id(number(address + root.type_code, "long long"))
        # A record that nobody has touched has no block.
        self.block = pointer(address + self.layout.data) if self.layout else 0
        self.flags = number(self.block + self.layout.set_flags, "unsigned char") if self.block else 0

    def set_members(self):
        return [member for member in self.layout.members if self.flags >> member.index & 1]

    def chosen(self):
        """The selected member of a choice, or None."""
        choice = number(self.block + self.layout.choice, "int") if self.block else -1
        return self.layout.members[choice] if 0 <= choice < len(self.layout.members) else None

    def nested(self, member):
        """The address of a nested record, or None while nobody has touched it."""
        layout = self.layout
        # Beside each current record there may be a default.
        key = 2 * member.index
        if number(self.block + layout.first_key, "signed char") == key:
            return self.block + layout.first
        other = pointer(self.block + layout.others)
        # There are at most two records for each member. Damaged memory may have a ring.
        for _ in range(2 * len(layout.members)):
            if other == 0:
                break
            if number(other + layout.other_key, "int") == key:
                return pointer(other + layout.other_record)
            other = pointer(other + layout.other_next)
        return None

    def children(self):
        """Names and values of the members that are set; those of a list are its items."""
        for member in self.set_members():
            address = self.block + member.offset
            if member.kind == "Nested":
                nested = self.nested(member)
                if nested is not None:
                    yield member.name, record_value(member.type_name, nested)
            elif member.kind == "List":
                size = layout_of(member.type_name).record_size
                for index, item in enumerate(items_at(address, self.layout.string_size, size)):
                    yield "%s[%d]" % (member.name, index), record_value(member.type_name, item)
            elif member.kind == "Text":
                yield member.name, text_at(address, self.layout.string_size)
            elif member.kind != "Value":
                names = enumerator_names(self.layout.name + "::" + member.type_name)
                yield member.name, enumerator_text(names, number(address, "int"))
            elif member.type_name == "bool":
                yield member.name, number(address, "unsigned char") != 0
            else:
                yield member.name, at(address, member.type_name)


# No program has such a type: sizes of vectors are powers of two.
def record_marker():
    return gdb.lookup_type("signed char").vector(2)


def record_value(class_name, address):
    """The record as a value. Where the debug information lacks its class, the marker takes the place of the type."""
    try:
        record_type = gdb.lookup_type("%s::%s" % (NAMESPACE, class_name))
        return at(address, record_type if record_type.fields() else record_marker())
    except gdb.error:
        return at(address, record_marker())


class RecordPrinter:
    """The class of a record, and its members that are set."""

    def __init__(self, value):
        self.address = int(value.address)
        type_name = value.type.strip_typedefs().name or "Record"
        self.name = type_name.split("::")[-1]

    def to_string(self):
        name = self.name
        try:
            record = Record(self.address)
            if record.layout is None:
                return name + ", not constructed"
            name = record.layout.name
            if record.layout.choice != NONE:
                chosen = record.chosen()
                name += " with " + chosen.name if chosen else " without a payload"
                if chosen and chosen not in record.set_members():
                    name += ", which is not set"
            elif not record.set_members():
                name += ", nothing set"
        except gdb.MemoryError:
            name += ", damaged"
        return name

    def children(self):
        try:
            record = Record(self.address)
            if record.layout is not None:
                yield from record.children()
        except gdb.MemoryError as error:
            yield "damaged", str(error)


def record_printer(value):
    # Without the tables only gdb itself can show the record.
    return RecordPrinter(value) if layout_of(ROOT) else None


class ListPrinter:
    """A QVector, in Qt 6 a QList, of records."""

    def __init__(self, value, layout):
        self.layout = layout
        self.items = items_at(int(value.address), layout.string_size, layout.record_size)

    def to_string(self):
        return "%d %s" % (len(self.items), "item" if len(self.items) == 1 else "items")

    def children(self):
        for index, address in enumerate(self.items):
            yield "[%d]" % index, record_value(self.layout.name, address)


def list_printer(value):
    class_name = value.type.strip_typedefs().template_argument(0).name.split("::")[-1]
    layout = layout_of(class_name)
    try:
        return ListPrinter(value, layout) if layout else None
    except gdb.MemoryError:
        return None


# --- enumerations, failures and places -----------------------------------------------------------


def enumerator_text(names, value):
    """The name of an enumerator; a description of any other number."""
    if 0 <= value < len(names):
        return names[value]
    return "none (-1)" if value == -1 else "no enumerator (%d)" % value


class EnumerationPrinter:
    """The enumerators of all our enumerations are numbered from 0."""

    def __init__(self, value):
        fields = value.type.strip_typedefs().fields()
        self.names = [field.name.split("::")[-1] for field in fields]
        # If no enumerator is negative, gdb takes all numbers as unsigned.
        self.value = int(value.cast(gdb.lookup_type("int")))

    def to_string(self):
        return enumerator_text(self.names, self.value)


class PlacePrinter:
    """What is known of a place."""

    def __init__(self, value):
        self.value = value

    def known(self):
        for name in ("file", "line", "column", "offset", "path"):
            field = self.value[name]
            if name in ("file", "path"):
                text = text_of(field)
                if text == "null" or text.length == 0:
                    continue
                yield name, text
            elif int(field) != (-1 if name == "offset" else 0):
                yield name, field

    def to_string(self):
        try:
            return "Place" if any(True for _ in self.known()) else "Place, nothing known"
        except gdb.MemoryError:
            return "Place, damaged"

    def children(self):
        try:
            yield from self.known()
        except gdb.MemoryError as error:
            yield "damaged", str(error)


class FailurePrinter:
    """The kind of a failure, its text and its place."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return "Failure " + EnumerationPrinter(self.value["kind"]).to_string()

    def children(self):
        if int(self.value["kind"]) == 0:
            return
        try:
            yield "text", text_of(self.value["text"])
        except gdb.MemoryError as error:
            yield "text", str(error)
        yield "place", self.value["place"]


def in_memory(printer):
    """The printer for values that have an address. The results of functions may have none."""
    return lambda value: printer(value) if value.address is not None else None


# --- which printer is for which type -------------------------------------------------------------


class Printers(gdb.printing.PrettyPrinter):
    def __init__(self):
        super().__init__("RouterInterface", [])
        records = r"%s::\w+" % NAMESPACE
        self.rules = []
        self.add("records", "^(%s|MODELKIT::IMKObject)$" % records, in_memory(record_printer))
        self.add("lists of records", r"^Q(Vector|List)<%s>$" % records, in_memory(list_printer))
        self.add("enumerations", r"^%s::(%s)$" % (NAMESPACE, "|".join(ENUMERATIONS)), EnumerationPrinter)
        self.add("kinds of failures", "^MODELKIT::Failure::Kind$", EnumerationPrinter)
        self.add("failures", "^MODELKIT::Failure$", in_memory(FailurePrinter))
        self.add("places", "^MODELKIT::Place$", in_memory(PlacePrinter))

    def add(self, name, pattern, printer):
        subprinter = gdb.printing.SubPrettyPrinter(name)
        self.subprinters.append(subprinter)
        self.rules.append((subprinter, re.compile(pattern), printer))

    def __call__(self, value):
        try:
            if value.type.code in (gdb.TYPE_CODE_REF, gdb.TYPE_CODE_RVALUE_REF):
                value = value.referenced_value()
            name = value.type.strip_typedefs().unqualified().name
        except gdb.error:
            return None
        if value.type.code == gdb.TYPE_CODE_ARRAY and value.type == record_marker():
            return record_printer(value)
        for rule, pattern, printer in self.rules:
            if name and rule.enabled and pattern.match(name):
                return printer(value)
        return None


def register(objfile):
    """Registers the printers, for a library or, with None, for everything."""
    gdb.printing.register_pretty_printer(objfile, Printers(), replace=True)
    # The program may be built anew and loaded again.
    gdb.events.new_objfile.connect(lambda event: layouts.clear())


if __name__ == "__main__":
    register(gdb.current_objfile())
