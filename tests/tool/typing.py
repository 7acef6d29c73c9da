#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Types into routermsg connect as a person at a terminal does:

    typing.py PROGRAM yes|no [TEST]

The second argument says whether the program can edit lines; the last one names the only test to run. The test is the server itself. It never pauses: it waits for
what appears on the terminal and for what arrives.
"""
import fcntl
import os
import pty
import select
import signal
import socket
import struct
import subprocess
import sys
import tempfile
import termios
import time

SKIPPED = 77
PATIENCE = 60
EVENT = (b"<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Event</Type>"
         b"</PelLu300RouterMessage></PelLu300RouterInterfaceXml>\n")
# What the program writes when it takes the line away, in a line that is not wrapped.
WIPED = b"\r\x1b[J"
# The prompt is there and the line is empty.
READY = b"> "


def start_in_terminal():
    os.setsid()
    fcntl.ioctl(0, termios.TIOCSCTTY, 0)


def read_until(descriptor, what, seen, expected):
    """Reads more into seen until it has the expected bytes, and cuts off all up to their end."""
    deadline = time.monotonic() + PATIENCE
    while expected not in seen:
        ready, _, _ = select.select([descriptor], [], [], max(0, deadline - time.monotonic()))
        assert ready, f"{what}: {expected!r} did not come, only {bytes(seen)!r}"
        try:
            data = os.read(descriptor, 65536)
        except OSError:
            data = b""
        assert data, f"{what}: the end came instead of {expected!r}, behind {bytes(seen)!r}"
        seen += data
    end = seen.index(expected) + len(expected)
    passed = bytes(seen[:end])
    del seen[:end]
    return passed


class Dialogue:
    """The program on a terminal, connected to this test."""

    def __init__(self, columns=200, options=("--brief",), environment=(), prompt=READY,
                 has_signals=True):
        self.terminal, self.inner = pty.openpty()
        self.shown = bytearray()
        self.arrived = bytearray()
        self.resize(columns)
        # Unlike what libedit takes for usual.
        settings = termios.tcgetattr(self.inner)
        settings[0] |= termios.INLCR
        termios.tcsetattr(self.inner, termios.TCSANOW, settings)
        self.before = termios.tcgetattr(self.inner)
        with socket.create_server(("127.0.0.1", 0)) as server:
            server.settimeout(PATIENCE)
            address = f"127.0.0.1:{server.getsockname()[1]}"
            home = dict(os.environ, TERM="xterm", NO_COLOR="1", HOME=FOLDER, LC_ALL="C.UTF-8")
            home.update(environment)
            self.process = subprocess.Popen(
                [PROGRAM, "connect", "--as", "xml", "--wait", "60s", *options, address], stdin=self.inner,
                stdout=self.inner, stderr=self.inner, env=home, preexec_fn=start_in_terminal,
                restore_signals=has_signals)
            self.connection, _ = server.accept()
        self.wait_for(b"connected")
        self.prompt = prompt
        self.wait_for(prompt)

    def resize(self, columns):
        fcntl.ioctl(self.inner, termios.TIOCSWINSZ, struct.pack("HHHH", 24, columns, 0, 0))

    def type(self, text):
        pending = text.encode()
        while pending:
            # Both directions have little room.
            readable, writable, _ = select.select([self.terminal], [self.terminal], [], PATIENCE)
            assert readable or writable, f"The terminal takes nothing more; {len(pending)} bytes are left."
            if readable:
                self.shown += os.read(self.terminal, 65536)
            if writable:
                pending = pending[os.write(self.terminal, pending[:100]):]

    def wait_for(self, expected):
        return read_until(self.terminal, "terminal", self.shown, expected)

    def receive(self, expected):
        return read_until(self.connection.fileno(), "server", self.arrived, expected)

    def type_request(self, text, expected):
        """Types a line; what the server gets must have the expected XML between two elements."""
        self.type(text)
        line = self.receive(b"</PelLu300RouterInterfaceXml>")
        assert expected in line, f"{text!r} sent {line!r}"
        self.connection.sendall(line.replace(b"<Type>Request<", b"<Type>Reply<") + b"\n")
        if b"<Type>Request<" in line:
            self.wait_for(b"received Reply")
        else:
            self.wait_for(b"sent ")
        self.wait_for(self.prompt)

    def tell_event(self):
        self.connection.sendall(EVENT)
        return self.wait_for(b"received Event (xml)")

    def end(self, status):
        """Waits for the end, and checks the exit status and the settings of the terminal."""
        rest = b""
        deadline = time.monotonic() + PATIENCE
        while True:
            has_ended = self.process.poll() is not None
            ready, _, _ = select.select([self.terminal], [], [], 0 if has_ended else 0.1)
            if ready:
                rest += os.read(self.terminal, 65536)
            elif has_ended:
                break
            assert time.monotonic() < deadline, f"The program does not end: {rest!r}"
        assert self.process.returncode == status, f"status {self.process.returncode}, {rest!r}"
        after = termios.tcgetattr(self.inner)
        assert after == self.before, f"{after} instead of {self.before}"
        self.connection.close()
        os.close(self.inner)
        os.close(self.terminal)
        return bytes(self.shown) + rest


def test_names_are_completed():
    dialogue = Dialogue()
    dialogue.type_request("Acq\t\r", b"<AcquireMastership/>")
    dialogue.type_request("acq\t\r", b"<AcquireMastership/>")
    dialogue.type_request("Rel\t\r", b"<ReleaseMastership/>")
    # Members, behind a dot and behind a blank.
    dialogue.type_request("DF\t.Fr\t98.5e6\r", b"<DF_Params><Frequency>98500000.00</Frequency></DF_Params>")
    dialogue.type_request("DF\tBa\t15000\r", b"<DF_Params><Bandwidth>15000.00</Bandwidth></DF_Params>")
    # Enumerators, alone and as values; types.
    dialogue.type_request("Ev\tMastershipS\t.State=N\t\r", b"<State>NoMasterPresent</State>")
    dialogue.type_request("Ev\tMastershipS\tRouterI\t\r", b"<State>RouterIsMaster</State>")
    dialogue.type_request("Ev\tAcq\t.Success=f\t\r", b"<Success>false</Success>")
    # In the middle of a line: the cursor goes back over the last word.
    dialogue.type_request("MessageID=7 Acq DF_Params" + "\x1b[D" * 10 + "\t\r",
                          b"<AcquireMastership/>")
    dialogue.type("\x04")
    dialogue.end(0)


def test_values_are_left_alone():
    dialogue = Dialogue()
    # Neither behind a dot in a value nor in quotes does a name begin.
    dialogue.type_request("PelVtConnectServer.Address=a.Acq\t\r", b"<Address>a.Acq</Address>")
    dialogue.type_request('PelVtConnectServer Address="a Acq\t"\r', b"<Address>a Acq</Address>")
    dialogue.type_request("PelVtConnectServer Address=\u00fc\u20ac\r", "<Address>\u00fc\u20ac</Address>".encode())
    dialogue.type("\x04")
    dialogue.end(0)


def test_candidates_are_listed():
    dialogue = Dialogue()
    dialogue.type("Mas\t\t")
    listed = dialogue.wait_for(b"MastershipState")
    listed += dialogue.wait_for(b"> Master")
    for word in (b"MasterPresent", b"MasterClientID="):
        assert word in listed, listed
    # Only what the record has.
    dialogue.type("\x15DF_Params.\t\t")
    listed = dialogue.wait_for(b"PanoramaSpan=")
    listed += dialogue.wait_for(b"> DF_Params.")
    assert b"DemodulationFrequency=" in listed and b"MessageID" not in listed, listed
    dialogue.type_request("\x15? \x15? acq\tx\x7f\x15Acq\t\r", b"<AcquireMastership/>")
    dialogue.type("\x04")
    dialogue.end(0)


def test_output_leaves_the_line_whole():
    dialogue = Dialogue()
    dialogue.type("DF_Params.Freq")
    dialogue.wait_for(b"Freq")
    for _ in range(3):
        shown = dialogue.tell_event()
        assert WIPED in shown, shown
        assert b"> DF_Params.Freq" in dialogue.wait_for(b"Freq")
    dialogue.type_request("\t1e6\r", b"<Frequency>1000000.00</Frequency>")
    dialogue.type("\x04")
    dialogue.end(0)


def test_wrapped_lines_are_wiped():
    dialogue = Dialogue(columns=40)
    address = "b" * 100 + "Z"
    # With the prompt, the text reaches into its fourth row.
    dialogue.type("PelVtConnectServer.Address=" + address)
    dialogue.wait_for(b"Z")
    shown = dialogue.tell_event()
    assert b"\r\x1b[3A\x1b[J" in shown, shown
    dialogue.wait_for(b"> PelVt")
    dialogue.wait_for(b"Z")
    # Another width: the terminal has moved what stands there.
    dialogue.resize(70)
    dialogue.type_request("c\r", f"<Address>{address}c</Address>".encode())
    address = "d" * 400
    dialogue.type_request(f"PelVtConnectServer.Address={address}\r", f"<Address>{address}</Address>".encode())
    dialogue.type("\x04")
    dialogue.end(0)


def test_lines_that_are_too_long():
    dialogue = Dialogue()
    dialogue.type("d" * 501)
    shown = dialogue.end(2)
    assert b"error: A line is longer than 500 bytes." in shown, shown[-1000:]


def test_history():
    dialogue = Dialogue()
    dialogue.type_request("AcquireMastership\r", b"<AcquireMastership/>")
    dialogue.type_request("ReleaseMastership\r", b"<ReleaseMastership/>")
    dialogue.type_request("ReleaseMastership\r", b"<ReleaseMastership/>")
    dialogue.type_request("\x1b[A\x1b[A\r", b"<AcquireMastership/>")
    dialogue.type("\x04")
    dialogue.end(0)


def test_mistakes_do_not_end_it():
    dialogue = Dialogue()
    dialogue.type("Aquire\r")
    dialogue.wait_for(b"<stdin>:1: error: ")
    dialogue.wait_for(READY)
    dialogue.type("\r? acq\r")
    dialogue.wait_for(b"routermsg: AcquireMastership")
    dialogue.wait_for(READY)
    # Ctrl-D ends only an empty line.
    dialogue.type_request("Acq\t\x04\r", b"<AcquireMastership/>")
    dialogue.type("\x04")
    dialogue.end(2)


def test_utf8_without_a_locale():
    dialogue = Dialogue(environment={"LC_ALL": "C"})
    dialogue.type_request("PelVtConnectServer Address=\u00fc\u20ac\r", "<Address>\u00fc\u20ac</Address>".encode())
    dialogue.type("\x04")
    dialogue.end(0)


def test_signals():
    for key, number in (("\x03", signal.SIGINT), ("\x1c", signal.SIGQUIT), (None, signal.SIGTERM)):
        dialogue = Dialogue()
        dialogue.type("Acq\t")
        dialogue.wait_for(b"uireMastership ")
        if key:
            dialogue.type(key)
        else:
            dialogue.process.send_signal(number)
        dialogue.end(-number if number == signal.SIGQUIT else STATUS_OF_INTERRUPTION)


def test_end_of_the_connection():
    dialogue = Dialogue()
    dialogue.type("Acq\t")
    dialogue.wait_for(b"uireMastership ")
    dialogue.connection.close()
    shown = dialogue.end(1)
    assert b"> AcquireMastership" in shown, shown


def test_failures():
    # Nobody takes what is recorded any more. Either a signal says so or an error, which becomes an exception.
    pipe = os.path.join(FOLDER, "pipe")
    os.mkfifo(pipe)
    for has_signals, status in ((True, -signal.SIGPIPE), (False, 2)):
        reader = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
        dialogue = Dialogue(options=("--brief", "--record", pipe), has_signals=has_signals)
        os.close(reader)
        dialogue.type("Acq\t\r")
        shown = dialogue.end(status)
        assert has_signals or b"error: The exchange cannot be written" in shown, shown


def test_end_of_the_terminal():
    dialogue = Dialogue()
    os.close(dialogue.inner)
    os.close(dialogue.terminal)
    assert dialogue.process.wait(PATIENCE) >= 0, dialogue.process.returncode
    dialogue.connection.close()


def test_terminals_without_a_cursor():
    dialogue = Dialogue(environment={"TERM": "dumb"}, prompt=b"")
    dialogue.type_request("AcquireMastership\r", b"<AcquireMastership/>")
    dialogue.type("\x04")
    shown = dialogue.end(0)
    assert b"\x1b" not in shown and READY not in shown, shown


def main():
    if sys.argv[2] != "yes":
        print("The program was built without libedit.")
        sys.exit(SKIPPED)
    for name, test in list(globals().items()):
        if name.startswith("test_") and (len(sys.argv) < 4 or name == sys.argv[3]):
            print(name, flush=True)
            test()


PROGRAM = os.path.realpath(sys.argv[1])
STATUS_OF_INTERRUPTION = 0
with tempfile.TemporaryDirectory() as FOLDER:
    # Settings of whoever runs the test have no effect.
    main()
