# SPDX-License-Identifier: MIT
"""compare_wireshark.py ROUTERMSG PROJECT FOLDER [SEED]: lets tshark with schema/router.lua dissect captures of messages,
and compares what it shows with the JSON of routermsg. FOLDER has what write_messages writes. The names and types of
members are not listed here: they are those of the JSON. With another SEED, messages are cut and damaged elsewhere."""
import functools
import itertools
import json
import math
import pathlib
import random
import subprocess
import sys

from capture import Capture, Connection

ROUTERMSG, PROJECT, FOLDER = sys.argv[1], pathlib.Path(sys.argv[2]), pathlib.Path(sys.argv[3])
RANDOM = random.Random(int(sys.argv[4]) if len(sys.argv) > 4 else 4711)
PORT, OTHER_PORT = 4711, 50001  # the port of the preference, and one that the dissector does not know

failures = []


def fail(text):
    failures.append(text)
    if len(failures) <= 5:
        print(text[:3000], file=sys.stderr)


def tshark(capture, *options):
    command = ["tshark", "-X", f"lua_script:{PROJECT}/schema/router.lua", "-r", capture, *options]
    ended = subprocess.run(command, capture_output=True, text=True, encoding="utf-8", check=True)
    complaints = [line for line in ended.stderr.splitlines() if "could be dangerous" not in line]
    if complaints:
        fail(f"tshark complains about {capture}: {complaints}")
    return ended.stdout


def routermsg(*words):
    return subprocess.run([ROUTERMSG, *words], stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True).stdout


def convert(path, form):
    return routermsg("convert", "-q", "--invalid", "--accept-loss", "--to", form, path, "-")


# --- what tshark shows ------------------------------------------------------------------------

def plain(name):
    """A name of JSON, or the last word of a filter, so that they can be compared."""
    name = name.rsplit(".", 1)[-1].replace("_", "").lower()
    return {"pellu300routerinterfacexml": "document", "pellu300routermessage": "message"}.get(name, name)


def class_names(value):
    """The names of all records in JSON."""
    for name, member in value.items() if isinstance(value, dict) else ():
        if isinstance(member, (dict, list)):
            yield plain(name)
            for item in member if isinstance(member, list) else [member]:
                yield from class_names(item)


def record_of(pairs, classes, owner, known):
    """The members of a record, which entries add up to, from a dissection as pairs of names and values."""
    for at, (key, value) in enumerate(pairs):
        name = plain(key)
        if key == "router.list":
            record_of(value, classes, owner, known)
        elif name == "fragment" and owner == "message":
            known.setdefault(name, []).append(record_of(value or [], classes, name, {}))
        elif name in classes and key.count(".") == 1:
            # Payloads that are not selected are kept: one of them may be selected again.
            others = known.pop("", {}) if owner == "fragment" else known
            others[name] = record_of(value or [], classes, name, others.get(name, {}))
            if owner == "fragment":
                known = {"": others, name: others[name]}
        elif key.startswith("router.") and not key.endswith("_tree") and key not in NO_MEMBERS:
            details = pairs[at + 1][1] if pairs[at + 1:] and pairs[at + 1][0] == key + "_tree" else []
            is_null = any(key == "router.null" or key == "_ws.expert" and "router.unknown_name" in dict(value)
                          for key, value in details)
            known[name] = None if is_null else value
    return known


NO_MEMBERS = {"router." + name for name in ("form", "id", "tag", "length", "count", "null", "piece", "unknown",
                                            "unknown_element", "no_message", "reply_in", "request_in", "reply_time")}


def same(shown, expected):
    if isinstance(expected, dict):
        if not isinstance(shown, dict):
            return False
        members = {plain(name): value for name, value in expected.items()}
        return set(shown) - {""} == set(members) and all(same(shown[name], members[name]) for name in members)
    if isinstance(expected, list):
        return isinstance(shown, list) and len(shown) == len(expected) and all(map(same, shown, expected))
    if expected is None or shown is None or isinstance(shown, (dict, list)):
        return shown is expected
    if isinstance(expected, bool):
        return shown == str(int(expected))
    if expected in ("NaN", "Infinity", "-Infinity"):
        return shown.lower().lstrip("-") == "nan" if expected == "NaN" else float(shown) == float(expected)
    if isinstance(expected, float) or isinstance(expected, int) and not shown.isdigit():
        return float(shown) == expected and math.copysign(1, float(shown)) == math.copysign(1, expected)
    return shown == str(expected)


def messages_in(capture, classes):
    """The form of each message in a capture, and its root."""
    packets = json.loads(tshark(capture, "-T", "json", "-J", "router"), object_pairs_hook=list)
    for packet in packets:
        layers = dict(dict(packet)["_source"])["layers"]
        for key, value in layers:
            if key == "router":
                yield dict(value).get("router.form"), record_of(value, classes, "", {})


def compare(title, capture, expected):
    """Returns how many messages there were, and their forms."""
    classes = {name for value in expected for name in class_names(value)}
    shown = list(messages_in(capture, classes))
    if len(shown) != len(expected):
        fail(f"{title}: tshark shows {len(shown)} messages, routermsg {len(expected)}.")
    for number, ((form, message), value) in enumerate(zip(shown, expected), 1):
        if not same(message, value):
            fail(f"{title}, message {number} ({form}): tshark shows\n  {message}\nand routermsg\n  {value}")
    return len(shown), {form for form, _ in shown}


# --- captures ---------------------------------------------------------------------------------

def sizes():
    """Sizes of segments: some hold many messages, some messages take many. The first one shows what follows."""
    yield 100
    while True:
        yield RANDOM.choice((1, 3, 40, 200, 1000, 1400))


@functools.lru_cache
def json_of(path):
    return [json.loads(line) for line in convert(path, "jsonl").decode().splitlines()]


def captured(name, payload, port):
    capture = Capture()
    connection = Connection(capture, 40000, port)
    connection.send_in_pieces(payload, sizes())
    connection.close()
    path = FOLDER / (name + ".pcap")
    capture.save(path)
    return path


def compare_binary_forms():
    """Recordings as files, and on connections with and without a known port."""
    count = 0
    for name in ("usual.rec", "unusual.rec"):
        data = (FOLDER / name).read_bytes()
        captures = [captured(f"{name}-{port}", data, port) for port in (PORT, OTHER_PORT)]
        for capture in [FOLDER / name] + captures:
            count += compare(str(capture), capture, json_of(FOLDER / name))[0]
    return count


def in_other_encodings(xml):
    """The same document, as others may send it."""
    text = xml.decode().partition("?>")[2].strip()
    yield text.encode("utf-8-sig")
    for encoding in ("utf-16", "utf-32"):
        yield ("\ufeff" + text).encode(encoding + "-be")
        yield ("\ufeff" + text).encode(encoding + "-le")
        yield text.encode(encoding + "-be")
        yield text.encode(encoding + "-le")
    yield b"<?xml version='1.0' encoding='ISO-8859-1'?>" + text.encode("latin-1", "xmlcharrefreplace")


def compare_all_forms():
    """All forms mixed on one connection, with what may stand between messages. Recordings may hold less of that."""
    def beside_json(name, messages):
        path = FOLDER / name
        path.write_bytes(b"".join(messages))
        expected = json_of(path)
        if len(expected) != len(messages):
            fail(f"{name}: routermsg reads {len(expected)} of {len(messages)} messages.")
        return list(zip(messages, expected))

    xml = [b"<?xml" + each for each in convert(FOLDER / "usual.rec", "xml").split(b"<?xml")[1:]]
    documents = [path.read_bytes() for path in sorted((PROJECT / "examples/documents").glob("*.xml"))]
    messages = beside_json("usual-xml.rec", xml) + beside_json("documents.rec", documents)
    for form in ("binary", "compressed"):
        examples = FOLDER / form
        routermsg("convert", "-q", "--invalid", "--accept-loss", "--to", form, PROJECT / "examples/documents", examples)
        messages += beside_json(form + ".rec", [path.read_bytes() for path in sorted(examples.iterdir())])
    coded = [each for document in RANDOM.sample(xml[:100], 5) for each in in_other_encodings(document)]
    messages += beside_json("coded.rec", coded)
    RANDOM.shuffle(messages)
    wide = set(coded)
    between = (b"", b"\n", b" \r\n\t", b"\0\0\0\0", b"<!-- > -->", b"<?later a?>\n")
    behind_wide = (b"", b"\0\0\0\0")
    stream = b"".join(each + RANDOM.choice(behind_wide if each in wide else between) for each, _ in messages)
    expected = [value for _, value in messages]
    count, forms = compare("all forms", captured("mixed", stream, PORT), expected)
    if forms != {"binary", "compressed", "xml"}:
        fail(f"Only the forms {forms} were seen.")
    return count


def check_broken_frames():
    """Every wrong length is marked as one. Messages that never end are not dissected, because more could follow."""
    capture, endless, count = Capture(), set(), 0
    for count, path in enumerate(sorted((FOLDER / "broken").iterdir()), 1):
        data = path.read_bytes()
        connection = Connection(capture, 10000 + count, PORT)
        connection.send(data)
        connection.close()
        if len(data) < 8 + int.from_bytes(data[4:8], "big") <= 256 << 20:
            endless.add(str(count - 1))
    path = FOLDER / "broken.pcap"
    capture.save(path)
    marked = tshark(path, "-Y", "router.wrong_length || router.not_a_message", "-T", "fields", "-e", "tcp.stream")
    complete = set(marked.split())
    expected = {str(number) for number in range(count)} - endless
    if complete != expected:
        fail(f"Not marked: {sorted(expected - complete)}; marked, but not complete: {sorted(complete - expected)}")
    if len(endless) < 3:
        fail(f"Only {len(endless)} of the frames end early.")
    shown = tshark(path, "-Y", "router", "-T", "fields", "-e", "tcp.stream").split()
    if endless & set(shown):
        fail(f"Messages are shown that are not complete: {sorted(endless & set(shown))}")
    return count


def check_marks():
    """What is wrong or unknown is marked, and what is good is not."""
    def frame(hexadecimal):
        content = bytes.fromhex(hexadecimal)
        return bytes.fromhex("F1EE139C") + len(content).to_bytes(4, "big") + content

    cases = [("", frame("A97DB5BE 00000008 00000004 312E3530"), "1.5"),
             ("", b"<DF_Params><Frequency>1.5</Frequency></DF_Params>", "1.5"),
             ("", b'<?xml version="1.0"?><DF_Params/>', ""),
             ("", frame(""), ""),
             ("router.unknown_tag", frame("00C0FFEE 00000001 00"), ""),
             ("router.wrong_length", frame("A97DB5BE 00000009 00000004 312E3530 00"), "1.5"),
             ("router.wrong_length", frame("A97DB5BE 00000008 00000005 312E3530"), ""),
             ("router.wrong_length", frame("A97DB5BE 00000001 00"), ""),
             ("router.wrong_length", frame("00"), ""),
             ("router.not_inflated", bytes.fromhex("4D4B5A31 00000009 00000005 00000001 00"), ""),
             ("router.unknown_name", b"<MastershipState><State>Master</State></MastershipState>", ""),
             ("router.unknown_element.note", b"<DF_Params><Level>1</Level></DF_Params>", ""),
             ("router.not_a_message", b"<Frequency>1.5</Frequency>", ""),
             ("router.not_a_message", b"<!DOCTYPE DF_Params><DF_Params/>", ""),
             ("router.not_a_message", b"<DF_Params><Frequency></DF_Params>", ""),
             ("router.not_a_message", b"hello", ""),
             ("router.not_a_message", bytes.fromhex("F1EE139C FFFFFFFF 00000000"), "")]
    marks = sorted({mark for mark, _, _ in cases if mark})
    capture = Capture()
    for number, (_, data, _) in enumerate(cases):
        Connection(capture, 10000 + number, PORT).send(data)
    path = FOLDER / "marks.pcap"
    capture.save(path)
    fields = [word for each in ["tcp.stream", "router.df_params.frequency"] + marks for word in ("-e", each)]
    shown = tshark(path, "-Y", "router", "-T", "fields", *fields).splitlines()
    for number, ((mark, data, frequency), line) in enumerate(zip(cases, shown)):
        stream, value, *values = line.split("\t")
        found = [each for each, value in zip(marks, values) if value]
        if stream != str(number) or value != frequency or found != [mark] * bool(mark):
            fail(f"{data}: expected {mark!r} and {frequency!r}, tshark shows {found} and {value!r}")
    if len(shown) != len(cases):
        fail(f"Of {len(cases)} messages {len(shown)} are shown.")
    return len(cases)


def check_requests_and_replies():
    """Replies that come in another order, and an event between them."""
    def new(kind, number, form):
        return routermsg("new", "-q", kind, f"MessageID={number}", "AcquireMastership", "--to", form, "-o", "-")

    capture = Capture()
    connection = Connection(capture, 40000, PORT)
    connection.send(new("Request", 7, "binary"))                                                         # packet 4
    connection.send(new("Request", 8, "xml"))                                                            # packet 5
    connection.send(new("Event", 7, "binary") + new("Reply", 8, "xml"), from_client=False)               # packet 6
    connection.send(new("Reply", 7, "compressed"), from_client=False)                                    # packet 7
    connection.send(new("Reply", 9, "binary"), from_client=False)                                        # packet 8
    connection.send(new("Request", 7, "binary"))                                                         # packet 9
    connection.send(new("Reply", 7, "binary"), from_client=False)                                        # packet 10
    path = FOLDER / "requests.pcap"
    capture.save(path)
    # Matching needs the first of two passes for requests, since replies come later.
    shown = tshark(path, "-2", "-Y", "router", "-T", "fields", "-e", "frame.number", "-e", "router.reply_in",
                   "-e", "router.request_in", "-e", "router.reply_time")
    expected = ["4\t7\t\t", "5\t6\t\t", "6\t\t5\t0.001000000", "7\t\t4\t0.003000000", "8\t\t\t", "9\t10\t\t",
                "10\t\t9\t0.001000000"]
    if shown.splitlines() != expected:
        fail(f"Requests and replies are matched otherwise:\n{shown}")


def check_beginning_inside_of_a_message():
    """A capture that begins inside of a message is read from the next message that begins a segment."""
    message = routermsg("new", "-q", "Event", "MessageID=5", "-o", "-")
    capture = Capture()
    connection = Connection(capture, 40000, PORT)
    connection.send(message[10:])
    connection.send(message)
    path = FOLDER / "inside.pcap"
    capture.save(path)
    shown = tshark(path, "-Y", "router", "-T", "fields", "-e", "router.message_id", "-e", "_ws.expert.message")
    if shown.splitlines() != ["\tThese bytes begin no message.", "5\t"]:
        fail(f"A capture that begins inside of a message is shown as:\n{shown}")


def check_port():
    """The port can be changed. On such a port even a first segment is dissected that tells nothing."""
    message = routermsg("new", "-q", "Event", "MessageID=5", "-o", "-")
    capture = Capture()
    for number, port in enumerate((PORT, 5555)):
        connection = Connection(capture, 40000 + number, port)
        connection.send(message[:3])
        connection.send(message[3:])
    path = FOLDER / "ports.pcap"
    capture.save(path)
    for preference, stream in (("4711", ["0"]), ("5000-6000", ["1"]), ("4711,5555", ["0", "1"])):
        shown = tshark(path, "-o", f"router.ports:{preference}", "-Y", "router.message_id == 5", "-T", "fields",
                       "-e", "tcp.stream")
        if shown.split() != stream:
            fail(f"With the ports {preference} tshark shows the streams {shown.split()}.")


def check_damage():
    """Whatever arrives, the dissector itself does not fail."""
    xml = [b"<?xml" + each for each in convert(FOLDER / "usual.rec", "xml").split(b"<?xml")[1:]]
    binary = [path.read_bytes() for name in ("binary", "compressed") for path in sorted((FOLDER / name).iterdir())]
    capture = Capture()
    for number in range(1500):
        data = bytearray(RANDOM.choice(RANDOM.choice((xml, binary))))
        for _ in range(RANDOM.randrange(1, 5)):
            data[RANDOM.randrange(len(data))] = RANDOM.choice((0, 1, 60, 62, 38, 255, RANDOM.randrange(256)))
        if RANDOM.random() < 0.2:
            del data[RANDOM.randrange(len(data)):]
        connection = Connection(capture, 10000 + number, PORT)
        connection.send_in_pieces(bytes(data), itertools.repeat(1400))
        connection.close()
    path = FOLDER / "damage.pcap"
    capture.save(path)
    shown = tshark(path, "-Y", "router || _ws.lua.error", "-T", "fields", "-e", "tcp.stream", "-e", "_ws.lua.error",
                   "-e", "_ws.expert.message")
    failed = [line for line in shown.splitlines() if "Lua Error" in line]
    if failed:
        fail(f"The dissector fails {len(failed)} times, first: {failed[0]}")
    if len(shown.splitlines()) < 800:
        fail(f"Of the damaged messages only {len(shown.splitlines())} are shown.")


def check_recognition():
    """On other ports a first segment with a message in any form is recognised."""
    xml = convert(PROJECT / "examples/documents/request-tuning.xml", "xml")
    forms = [xml, b"\n<!-- first -->" + xml, convert(PROJECT / "examples/documents/request-tuning.xml", "binary"),
             convert(PROJECT / "examples/documents/request-tuning.xml", "compressed"), *in_other_encodings(xml)]
    capture = Capture()
    for number, data in enumerate(forms):
        Connection(capture, 10000 + number, OTHER_PORT).send(data)
    path = FOLDER / "recognition.pcap"
    capture.save(path)
    shown = tshark(path, "-Y", "router.df_params.frequency == 121500000", "-T", "fields", "-e", "tcp.stream").split()
    if shown != [str(number) for number in range(len(forms))]:
        fail(f"Of {len(forms)} first segments only these are recognised: {shown}")


def check_other_protocols():
    """The dissector leaves other connections alone."""
    capture = Capture()
    for number, data in enumerate((b"GET / HTTP/1.1\r\n\r\n", b"<html><body></body></html>", b" \n", b"<", bytes(100),
                                   b"<?xml version='1.0'?><other/>", b"\x85\x53\x49\x9a\xff\xff\xff\xff")):
        Connection(capture, 10000 + number, OTHER_PORT).send(data)
    path = FOLDER / "other.pcap"
    capture.save(path)
    shown = tshark(path, "-Y", "router")
    if shown:
        fail(f"The dissector takes other connections for its own:\n{shown}")


if __name__ == "__main__":
    compared = compare_binary_forms() + compare_all_forms()
    marked = check_broken_frames() + check_marks()
    check_requests_and_replies()
    check_beginning_inside_of_a_message()
    check_port()
    check_recognition()
    check_other_protocols()
    check_damage()
    if compared < 1500 or marked < 150:
        fail(f"Only {compared} good messages and {marked} marks were there to compare.")
    if failures:
        sys.exit(f"{len(failures)} differences. If routermsg is right, edit schema/router.lua.")
    print(f"schema/router.lua: {compared} messages are as routermsg shows them, and {marked} other ones are marked.")
