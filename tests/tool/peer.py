#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A server for cases, which behaves as its argument says:

    peer.py BEHAVIOUR PORT_FILE

It listens on a free port of this machine, writes the port to the file, serves one client and ends.

    answer    sends every message back as the reply to it; messages are XML in one line
    silent    takes everything and says nothing until the client ends the connection
    hang-up   ends the connection when the first bytes have come
    reset     lets the system end the connection with an error when the first bytes have come
    half      answers with the first half of a message and ends the connection
    garbage   answers with bytes that are no message, and takes everything until the client ends the connection
    wrong     answers with a message that is no router message, and then as answer
    stranger  answers with a reply that nobody waits for, and then as answer
    late      reads until the client ends its side, and then answers everything
    chatty    says something before each time it reads a little, and at the end how many lines have come
    once      answers the first of two requests and ends the connection
    said      says what its standard input says when the first bytes have come, and takes everything
    open      reads until the client ends its side, and ends when its standard input does
    regret    reads until the client ends its side, and lets the system end the connection with an error
    greedy    never reads; ends when its standard input does
"""
import os
import socket
import struct
import sys

HALF = b"<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>Rep"
DOCUMENT = (b"<PelLu300RouterInterfaceXml><PelLu300RouterMessage><Type>%s</Type><MessageID>%d</MessageID>"
            b"</PelLu300RouterMessage></PelLu300RouterInterfaceXml>")


def reply_to(line):
    return line.replace(b"<Type>Request</Type>", b"<Type>Reply</Type>")


def answer(connection, pending=b""):
    while True:
        *lines, pending = pending.split(b"\n")
        for line in lines:
            if b"<Type>Request</Type>" in line:
                connection.sendall(reply_to(line) + b"\n")
        data = connection.recv(65536)
        if not data:
            return
        pending += data


def take_all(connection):
    received = b""
    while True:
        data = connection.recv(65536)
        if not data:
            return received
        received += data


def chat(connection):
    count = 0
    data = b"-"
    while data:
        connection.sendall(DOCUMENT % (b"Event", 1))
        data = connection.recv(16384)
        count += data.count(b"\n")
    print(count, "lines have come")


def reset_at_end(connection):
    connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))


def serve(behaviour, connection):
    if behaviour == "answer":
        return answer(connection)
    if behaviour == "silent":
        return take_all(connection)
    if behaviour == "late":
        received = take_all(connection)
        for line in received.split(b"\n"):
            connection.sendall(reply_to(line) + b"\n")
        return None
    if behaviour == "greedy":
        return sys.stdin.read()
    if behaviour == "chatty":
        return chat(connection)
    if behaviour == "open":
        take_all(connection)
        return sys.stdin.read()
    if behaviour == "regret":
        take_all(connection)
        return reset_at_end(connection)
    first = connection.recv(65536)
    if behaviour == "reset":
        reset_at_end(connection)
    elif behaviour == "once":
        while first.count(b"\n") < 2:
            first += connection.recv(65536)
        connection.sendall(reply_to(first.split(b"\n")[0]) + b"\n")
    elif behaviour == "said":
        connection.sendall(sys.stdin.buffer.read())
        take_all(connection)
    elif behaviour == "half":
        connection.sendall(HALF)
    elif behaviour == "garbage":
        connection.sendall(b"hello")
        take_all(connection)
    elif behaviour == "wrong":
        connection.sendall(b"<DF_Params></DF_Params>")
        answer(connection, first)
    elif behaviour == "stranger":
        connection.sendall(DOCUMENT % (b"Reply", 4711))
        answer(connection, first)
    elif behaviour != "hang-up":
        sys.exit("There is no behaviour " + behaviour)
    return None


def main():
    behaviour, port_file = sys.argv[1:]
    with socket.create_server(("127.0.0.1", 0)) as server:
        # A reader never sees half a number.
        with open(port_file + ".new", "w", encoding="ascii") as file:
            file.write(str(server.getsockname()[1]))
        os.rename(port_file + ".new", port_file)
        # A case that fails must end.
        server.settimeout(60)
        connection, _ = server.accept()
    connection.settimeout(60)
    with connection:
        serve(behaviour, connection)


main()
