# SPDX-License-Identifier: MIT
"""python_client.py ROUTERSIM FOLDER: the client in that folder, which was made from the pages alone, against routersim."""
import json
import os
import re
import subprocess
import sys
import tempfile
import unittest

PROGRAM, FOLDER = sys.argv[1:3]
sys.path.insert(0, FOLDER)
from router_client import RouterClient  # noqa: E402
from router_forms import Message, MessageReader, ProtocolError, to_binary, to_xml  # noqa: E402

FORMS = {"binary": to_binary, "xml": to_xml}
PATIENCE = 60
ACQUIRE, RELEASE, STATE = (name + end for name, end in (("Acquire", "Mastership"), ("Release", "Mastership"),
                                                        ("Mastership", "State")))


class Simulator:
    def __init__(self, **scenario):
        self._file = tempfile.NamedTemporaryFile("w", suffix=".json")
        json.dump(scenario, self._file)
        self._file.flush()
        self._process = subprocess.Popen([PROGRAM, "--scenario", self._file.name, "--seed", "1"],
                                         stdout=subprocess.PIPE, text=True)
        self.port = int(re.search(r":(\d+),", self._process.stdout.readline())[1])

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._process.terminate()
        self._process.stdout.close()
        status = self._process.wait(PATIENCE)
        self._file.close()
        assert status == 0, status

    def client(self, form="binary", timeout=PATIENCE):
        return RouterClient("127.0.0.1", self.port, form == "xml", timeout)

    def command(self, *words):
        return subprocess.run([sys.executable, "-B", os.path.join(FOLDER, "router_client.py"), *words[:-1],
                               "127.0.0.1", str(self.port), *words[-1].split()],
                              capture_output=True, text=True, timeout=PATIENCE)


class Forms(unittest.TestCase):
    message = Message("Event", 7, [(STATE, {"State": "MasterPresent", "MasterClientID": "Müller <&> 東京"}),
                                   ("PelVtConnectServer", {"Address": "", "Port": 4711}),
                                   (ACQUIRE, {"Success": False}), ("DF_Params", {"Frequency": -2.5}), (RELEASE, {})])

    def test_messages_that_arrive_in_pieces(self):
        stream = b"".join(encode(self.message) for encode in FORMS.values() for _ in range(2)) + b"\n\0 "
        for size in (1, 2, 3, 7, 100, len(stream)):
            reader, messages = MessageReader(), []
            for begin in range(0, len(stream), size):
                reader.add(stream[begin:begin + size])
                while message := reader.next():
                    messages.append(message)
            self.assertEqual(len(messages), 4)
            self.assertTrue(reader.is_between())
            for message in messages:
                self.assertEqual((message.kind, message.number), ("Event", 7))
                self.assertEqual(message.fragments, self.message.fragments)

    def test_what_is_no_message(self):
        binary = to_binary(self.message)
        for wrong in (b"hello", b"\x85\x53\x49\x9b", b"\x85\x53\x49\x9a\xff\xff\xff\xff", b"<a><b></a>",
                      binary[:15] + b"\xff" + binary[16:]):
            reader = MessageReader()
            reader.add(wrong)
            self.assertRaises(ProtocolError, reader.next)


class Client(unittest.TestCase):
    def each_form(self, action, **scenario):
        for form in FORMS:
            with self.subTest(form), Simulator(**scenario) as simulator:
                action(simulator, form)

    def test_mastership(self):
        def action(simulator, form):
            with simulator.client("binary") as other:
                with simulator.client(form) as client:
                    self.assertEqual(other.request().fragments, [])
                    self.assertEqual(client.request((ACQUIRE, {})).fragments, [(ACQUIRE, {"Success": True})])
                    event = [(STATE, {"State": "MasterPresent", "MasterClientID": "client-2"})]
                    self.assertEqual(client.next_event(PATIENCE).fragments, event)
                    self.assertEqual(other.next_event(PATIENCE).fragments, event)
                    self.assertEqual(other.request((ACQUIRE, {}), (RELEASE, {})).fragments,
                                     [(ACQUIRE, {"Success": False}), (RELEASE, {"Success": False})])
                self.assertEqual(other.next_event(PATIENCE).fragments, [(STATE, {"State": "NoMasterPresent"})])
        self.each_form(action)

    def test_values(self):
        def action(simulator, form):
            with simulator.client(form) as client:
                self.assertEqual(client.request(("OstraInterfacePort", {}), ("PelVtConnectServer", {})).fragments,
                                 [("OstraInterfacePort", {"Port": 1}),
                                  ("PelVtConnectServer", {"Address": "Zürich", "Port": 5003})])
                tuning = {"Frequency": 30.0, "DemodulationFrequency": 0.0, "Bandwidth": 2.5, "PanoramaSpan": 0.0}
                reply = client.request(("DF_Params", {"Frequency": 31, "Bandwidth": 2.5}))
                self.assertEqual(reply.fragments, [("DF_Params", tuning)])
                self.assertEqual(client.next_event(PATIENCE).fragments, [("DF_Params", tuning)])
        self.each_form(action, ranges={"Frequency": [20, 30]},
                       state={"OstraInterfacePort": {"Port": 1}, "PelVtConnectServer": {"Address": "Zürich", "Port": 5003}})

    def test_events_at_times(self):
        def action(simulator, form):
            with simulator.client(form) as client:
                for _ in range(3):
                    self.assertEqual(client.next_event(PATIENCE).fragments, [("RouterVtServerPort", {"Port": 9})])
        self.each_form(action, events=[{"afterConnection": 1, "every": 1, "times": 3,
                                        "fragments": [{"RouterVtServerPort": {"Port": 9}}]}])

    def test_faults(self):
        def action(simulator, form):
            with simulator.client(form, 0.05) as client:
                self.assertRaises(TimeoutError, client.request, (STATE, {}))
            with simulator.client(form, 0.05) as client:
                self.assertRaises(TimeoutError, client.request, (STATE, {}))
            for error, text in ((ConnectionError, "inside a message"), (ProtocolError, "begins with")):
                with simulator.client(form) as client:
                    self.assertRaisesRegex(error, text, client.request, (STATE, {}))
            with simulator.client(form) as client:
                self.assertRaises(ConnectionError, client.request)
        self.each_form(action, faults=[{"client": number + 1, "fault": fault} for number, fault in
                                       enumerate(("silence", "wrongID", "halfMessage", "garbage", "cutConnection"))])

    def test_command_line(self):
        for option in ((), ("--xml",)):
            with self.subTest(option), Simulator() as simulator:
                result = simulator.command(*option, "--events", "2", "acquire tune 5 watch state release ports")
                self.assertEqual((result.stderr, result.returncode), ("", 0))
                tuning = "DF_Params Frequency=5.00 DemodulationFrequency=0.00 Bandwidth=0.00 PanoramaSpan=0.00"
                self.assertEqual(result.stdout.splitlines(), [
                    "Reply AcquireMastership Success=true", "Reply " + tuning,
                    "Event MastershipState State=MasterPresent MasterClientID=client-1", "Event " + tuning,
                    "Reply MastershipState State=MasterPresent MasterClientID=client-1",
                    "Reply ReleaseMastership Success=true",
                    "Reply OstraInterfacePort Port=5001 RouterVtServerPort Port=5002 "
                    "PelVtConnectServer Address=127.0.0.1 Port=5003"])
                self.assertEqual(simulator.command("release").returncode, 1)
                self.assertIn("no command 'relase'", simulator.command("relase").stderr)
                self.assertIn("needs a number", simulator.command("tune fast").stderr)
        self.assertEqual(simulator.command("state").returncode, 1, "nobody listens any more")


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
