# SPDX-License-Identifier: MIT
"""Writes captures of TCP connections that nobody has had, in the format of pcap, without any rights or tools."""
import struct

CLIENT, SERVER = "10.0.0.1", "10.0.0.2"


class Capture:
    """Packets in the order in which they were added, a millisecond apart."""

    def __init__(self):
        self.packets = []

    def add(self, packet):
        self.packets.append(packet)

    def save(self, path):
        with open(path, "wb") as file:
            # Raw IP packets.
            file.write(struct.pack("<IHHiIII", 0xA1B2C3D4, 2, 4, 0, 0, 262144, 101))
            for number, packet in enumerate(self.packets):
                seconds, milliseconds = divmod(number, 1000)
                file.write(struct.pack("<IIII", 1700000000 + seconds, milliseconds * 1000, len(packet), len(packet)))
                file.write(packet)


class Connection:
    """A connection from a client's port to a server's, whose beginning is captured."""

    FIN, SYN, PUSH, ACK = 1, 2, 8, 16

    def __init__(self, capture, client_port, server_port):
        self.capture = capture
        self.ports = {True: (client_port, server_port), False: (server_port, client_port)}
        self.sent = {True: 1000, False: 5000}
        self._segment(True, b"", self.SYN)
        self._segment(False, b"", self.SYN | self.ACK)
        self._segment(True, b"", self.ACK)

    def _segment(self, from_client, payload, flags):
        tcp = struct.pack(">HHIIBBHHH", *self.ports[from_client], self.sent[from_client], self.sent[not from_client],
                          5 << 4, flags, 65535, 0, 0) + payload
        addresses = (CLIENT, SERVER) if from_client else (SERVER, CLIENT)
        ip = struct.pack(">BBHHHBBH", 0x45, 0, 20 + len(tcp), 0, 0x4000, 64, 6, 0)
        self.capture.add(ip + b"".join(bytes(map(int, each.split("."))) for each in addresses) + tcp)
        self.sent[from_client] += len(payload) + (1 if flags & (self.SYN | self.FIN) else 0)

    def send(self, payload, from_client=True):
        self._segment(from_client, payload, self.PUSH | self.ACK)

    def send_in_pieces(self, payload, sizes, from_client=True):
        """Each segment has the next of the sizes."""
        at = 0
        while at < len(payload):
            size = next(sizes)
            self.send(payload[at:at + size], from_client)
            at += size

    def close(self):
        self._segment(True, b"", self.FIN | self.ACK)
        self._segment(False, b"", self.FIN | self.ACK)
        self._segment(True, b"", self.ACK)
