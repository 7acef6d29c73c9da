# SPDX-License-Identifier: MIT
"""The messages of a router in both forms, made from docs/link.md, docs/binary-form.md and docs/xml-form.md."""
import struct
import xml.etree.ElementTree as ElementTree

ROOT, MESSAGE = "PelLu300RouterInterfaceXml", "PelLu300RouterMessage"
ROOT_ID, MESSAGE_TAG = 0x8553499A, 0x9B1A7AD8
TYPE_TAG, ID_TAG, FRAGMENT_TAG = 0xE1D9E008, 0xEF193DE9, 0x61023A90
LARGEST = 1 << 24  # bytes of a message

# For each payload its tag and its members, and for each of these its tag and type.
PAYLOADS = {
    "MastershipState": (0x111939B4, {"State": (0x4264F498, str), "MasterClientID": (0x0BCD2CF7, str)}),
    "AcquireMastership": (0x21BDA6E2, {"Success": (0xBF8A59C6, bool)}),
    "ReleaseMastership": (0xFC38AB7C, {"Success": (0xBF8A59C6, bool)}),
    "OstraInterfacePort": (0xF9E464D0, {"Port": (0x1F980517, int)}),
    "PelVtConnectServer": (0x0BBAB464, {"Address": (0x2AC271EC, str), "Port": (0x1F980517, int)}),
    "RouterVtServerPort": (0x5D020EA0, {"Port": (0x1F980517, int)}),
    "DF_Params": (0xBE2DFF74, {"Frequency": (0xA97DB5BE, float), "DemodulationFrequency": (0x5255927F, float),
                               "Bandwidth": (0x104A95AB, float), "PanoramaSpan": (0x7029D96C, float)}),
}
NAMES = {tag: name for name, (tag, _) in PAYLOADS.items()}


class ProtocolError(Exception):
    """What has arrived is no message, or one that cannot be read."""


class Message:
    """Fragments are pairs: the name of the payload, and a dictionary of its members that are set."""

    def __init__(self, kind, number=None, fragments=()):
        self.kind, self.number, self.fragments = kind, number, list(fragments)

    def __str__(self):
        words = [self.kind]
        for name, members in self.fragments:
            words += [name] + [f"{member}={as_text(value)}" for member, value in members.items()]
        return " ".join(words)


def as_text(value):
    if isinstance(value, bool):
        return "true" if value else "false"
    return f"{value:.2f}" if isinstance(value, float) else str(value)


def from_text(text, kind):
    """Text of an XML element as a value. What is no number is 0."""
    if kind is bool:
        return text.lower() not in ("false", "0", "")
    try:
        return kind(text)
    except ValueError:
        return kind(0)


# --- the binary form --------------------------------------------------------------------------

def entry(tag, payload):
    return struct.pack(">II", tag, len(payload)) + payload


def text_payload(text):
    utf8 = text.encode()
    return struct.pack(">I", len(utf8)) + utf8


def value_payload(value, kind):
    if kind is bool:
        return b"\1" if value else b"\0"
    if kind is int:
        return struct.pack(">q", value)
    return text_payload(as_text(kind(value)))


def to_binary(message):
    content = entry(TYPE_TAG, text_payload(message.kind))
    if message.number is not None:
        content += entry(ID_TAG, struct.pack(">q", message.number))
    items = b""
    for name, members in message.fragments:
        tag, known = PAYLOADS[name]
        item = entry(tag, b"".join(entry(known[member][0], value_payload(value, known[member][1]))
                                   for member, value in members.items()))
        items += struct.pack(">I", len(item)) + item
    if items:
        content += entry(FRAGMENT_TAG, struct.pack(">I", len(message.fragments)) + items)
    return entry(ROOT_ID, entry(MESSAGE_TAG, content))


def words(data, layout):
    """Numbers at the beginning of the data, and the rest."""
    size = struct.calcsize(layout)
    if len(data) < size:
        raise ProtocolError("a binary form ends too early")
    return (*struct.unpack(layout, data[:size]), data[size:])


def part(data, size):
    if size > len(data):
        raise ProtocolError("a length in a binary form is wrong")
    return data[:size], data[size:]


def entries(data):
    while data:
        tag, length, data = words(data, ">II")
        payload, data = part(data, length)
        yield tag, payload


def payload_text(payload):
    length, rest = words(payload, ">I")
    return None if length == 0xFFFFFFFF else part(rest, length)[0].decode(errors="replace")


def payload_value(payload, kind):
    if kind is bool:
        return words(payload, ">B")[0] != 0
    if kind is int:
        return words(payload, ">q")[0] & 0xFFFFFFFF
    text = payload_text(payload)
    return text if kind is str else from_text(text or "", kind)


def from_binary(data):
    message = Message(None)
    for tag, content in entries(part(data[8:], words(data, ">II")[1])[0]):
        for inner, payload in entries(content) if tag == MESSAGE_TAG else ():
            if inner == TYPE_TAG:
                message.kind = payload_text(payload)
            elif inner == ID_TAG:
                message.number = payload_value(payload, int)
            elif inner == FRAGMENT_TAG:
                count, rest = words(payload, ">I")
                for _ in range(count):
                    size, rest = words(rest, ">I")
                    item, rest = part(rest, size)
                    message.fragments += fragments_of(item)
    return message


def fragments_of(item):
    for tag, content in entries(item):
        if tag in NAMES:
            by_tag = {known: (member, kind) for member, (known, kind) in PAYLOADS[NAMES[tag]][1].items()}
            yield NAMES[tag], {by_tag[inner][0]: payload_value(payload, by_tag[inner][1])
                               for inner, payload in entries(content) if inner in by_tag}


# --- the XML form -----------------------------------------------------------------------------

def to_xml(message):
    root = ElementTree.Element(ROOT)
    element = ElementTree.SubElement(root, MESSAGE)
    ElementTree.SubElement(element, "Type").text = message.kind
    if message.number is not None:
        ElementTree.SubElement(element, "MessageID").text = str(message.number)
    for name, members in message.fragments:
        payload = ElementTree.SubElement(ElementTree.SubElement(element, "Fragment"), name)
        for member, value in members.items():
            ElementTree.SubElement(payload, member).text = as_text(PAYLOADS[name][1][member][1](value))
    return ElementTree.tostring(root) + b"\n"


def from_xml(root):
    message = Message(None)
    for element in root.iterfind(f"{MESSAGE}/*"):
        if element.tag == "Type":
            message.kind = element.text
        elif element.tag == "MessageID":
            message.number = from_text(element.text or "", int) & 0xFFFFFFFF
        for payload in element if element.tag == "Fragment" else ():
            if payload.tag in PAYLOADS:
                known = PAYLOADS[payload.tag][1]
                message.fragments.append((payload.tag, {member.tag: from_text(member.text or "", known[member.tag][1])
                                                        for member in payload if member.tag in known}))
    return message


# --- the bytes of a connection ----------------------------------------------------------------

class MessageReader:
    """Takes bytes in any pieces and gives the messages that are whole."""

    def __init__(self):
        self._bytes = b""
        self._parser, self._depth, self._size = None, 0, 0

    def add(self, data):
        self._bytes += data

    def next(self):
        """The next message; None when more bytes are needed."""
        if self._parser is None:
            self._bytes = self._bytes.lstrip(b" \t\r\n\0")
            if not self._bytes.startswith(b"<"):
                return self._next_binary()
            self._parser = ElementTree.XMLPullParser(("start", "end"))
            self._depth = self._size = 0
        return self._next_xml()

    def is_between(self):
        return self._parser is None and not self._bytes.strip(b" \t\r\n\0")

    def _next_binary(self):
        begin = struct.pack(">I", ROOT_ID)
        if not self._bytes.startswith(begin[:len(self._bytes)]):
            raise ProtocolError(f"no message begins with {self._bytes[:8]!r}")
        if len(self._bytes) < 8:
            return None
        size = 8 + words(self._bytes, ">II")[1]
        if size > LARGEST:
            raise ProtocolError(f"a message has {size} bytes")
        if len(self._bytes) < size:
            return None
        whole, self._bytes = part(self._bytes, size)
        return from_binary(whole)

    def _next_xml(self):
        # The document ends with the ">" of the root's end tag, and the parser must not see what follows.
        while b">" in self._bytes:
            piece, _, self._bytes = self._bytes.partition(b">")
            self._size += len(piece) + 1
            try:
                self._parser.feed(piece + b">")
                for event, element in self._parser.read_events():
                    self._depth += 1 if event == "start" else -1
                    if self._depth == 0:
                        self._parser = None
                        return from_xml(element)
            except ElementTree.ParseError as error:
                raise ProtocolError(f"the XML is not well-formed: {error}") from error
        if self._size + len(self._bytes) > LARGEST:
            raise ProtocolError("a message is too large")
        return None
