#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A client of a router in plain Python.

    router_client.py [OPTION]... HOST PORT COMMAND...

The commands are carried out one after another on one connection: state, acquire, release, ports, tuning,
tune HZ (the frequency), watch (shows events until the connection ends). Programs use RouterClient:

    with RouterClient("127.0.0.1", 4710) as client:
        reply = client.request(("AcquireMastership", {}))
        print(reply.fragments)       # [("AcquireMastership", {"Success": True})]
"""
import argparse
import socket
import sys
import time
from collections import deque

from router_forms import Message, MessageReader, ProtocolError, to_binary, to_xml


class RouterClient:
    """A connection. All that waits raises TimeoutError, or ConnectionError when the router ends it."""

    def __init__(self, host, port, xml=False, timeout=5.0):
        self._encode = to_xml if xml else to_binary
        self._timeout, self._last_number = timeout, 0
        self._reader, self._events = MessageReader(), deque()
        self._socket = socket.create_connection((host, port), timeout)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._socket.close()

    def request(self, *fragments):
        """The reply. Events that come meanwhile are kept for next_event()."""
        self._last_number += 1
        self._socket.settimeout(self._timeout)
        self._socket.sendall(self._encode(Message("Request", self._last_number, fragments)))
        deadline = time.monotonic() + self._timeout
        while True:
            message = self._receive(deadline)
            if message.kind == "Reply" and message.number == self._last_number:
                return message
            if message.kind == "Event":
                self._events.append(message)

    def next_event(self, timeout=None):
        """The next event; without a time-out this waits for ever."""
        deadline = None if timeout is None else time.monotonic() + timeout
        while not self._events:
            message = self._receive(deadline)
            if message.kind == "Event":
                self._events.append(message)
        return self._events.popleft()

    def _receive(self, deadline):
        while True:
            message = self._reader.next()
            if message:
                return message
            left = None if deadline is None else deadline - time.monotonic()
            if left is not None and left <= 0:
                raise TimeoutError("the router has not answered in time")
            self._socket.settimeout(left)
            try:
                data = self._socket.recv(65536)
            except socket.timeout:
                continue
            if not data:
                place = "between messages" if self._reader.is_between() else "inside a message"
                raise ConnectionError(f"the router has ended the connection {place}")
            self._reader.add(data)


# --- the command line -------------------------------------------------------------------------

REQUESTS = {
    "state": ["MastershipState"], "acquire": ["AcquireMastership"], "release": ["ReleaseMastership"],
    "ports": ["OstraInterfacePort", "RouterVtServerPort", "PelVtConnectServer"], "tuning": ["DF_Params"],
}


def run(client, commands, most_events):
    """False when the router has refused something."""
    is_good = True
    commands = deque(commands)
    while commands:
        command = commands.popleft()
        if command == "watch":
            shown = 0
            while most_events is None or shown < most_events:
                print(client.next_event(), flush=True)
                shown += 1
            continue
        fragments = [(name, {}) for name in REQUESTS.get(command, [])]
        if command == "tune":
            fragments = [("DF_Params", {"Frequency": float(commands.popleft())})]
        reply = client.request(*fragments)
        print(reply, flush=True)
        is_good = is_good and all(members.get("Success", True) for _, members in reply.fragments)
    return is_good


def check(parser, commands):
    rest = deque(commands)
    while rest:
        command = rest.popleft()
        if command not in (*REQUESTS, "tune", "watch"):
            parser.error(f"there is no command {command!r}")
        if command == "tune":
            try:
                float(rest.popleft())
            except (IndexError, ValueError):
                parser.error("tune needs a number")


def main():
    parser = argparse.ArgumentParser(description="A client of a router.")
    parser.add_argument("host")
    parser.add_argument("port", type=int)
    parser.add_argument("command", nargs="+", help=f"{', '.join(REQUESTS)}, tune HZ, watch")
    parser.add_argument("--xml", action="store_true", help="write XML instead of the binary form")
    parser.add_argument("--timeout", type=float, default=5.0, help="how long a reply may take, in seconds (5)")
    parser.add_argument("--events", type=int, help="how many events watch shows")
    arguments = parser.parse_args()
    check(parser, arguments.command)
    if not arguments.timeout > 0:
        parser.error("the time-out must be greater than 0")
    try:
        with RouterClient(arguments.host, arguments.port, arguments.xml, arguments.timeout) as client:
            return 0 if run(client, arguments.command, arguments.events) else 1
    except (OSError, ProtocolError) as error:
        print(f"router_client.py: {error}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        return 0


if __name__ == "__main__":
    sys.exit(main())
