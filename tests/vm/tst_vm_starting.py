#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""A start in which the emulation stands still is made once more; one that is slow, or that fails, is not."""
import pathlib
import socket
import sys
import unittest
from unittest import mock

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "dev"))

from kestrolab.process import LabError  # noqa: E402
from kestrovm import starting  # noqa: E402
from kestrovm.console import Line, SwitchedOff  # noqa: E402

EARLY = "[    1.780378] Key type blacklist registered\r\n[    1.873356] Asymmetric key parser 'x509' registered\r\n"


class Machine:
    """One switched-on computer that has said TEXT on its console."""

    def __init__(self, text: str):
        connection, self.guest = socket.socketpair()
        self.console = Line(connection)
        self.is_off = False
        self.guest.sendall(text.encode())

    def pull_plug(self):
        if not self.is_off:
            self.is_off = True
            self.guest.shutdown(socket.SHUT_RDWR)
            self.guest.close()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.pull_plug()
        self.console.close()


@mock.patch.object(starting, "LOOK_EVERY", 0.02)
@mock.patch.object(starting, "SILENCE", 0.3)
class Starting(unittest.TestCase):
    def start(self, *texts: str):
        """Waits for "UP" on machines that say these TEXTS, one after the other; what was told, and the machines."""
        told, machines, said = [], [], iter(texts)

        def switched_on():
            machines.append(Machine(next(said)))
            return machines[-1]

        def begin(computer, is_second):
            computer.console.expect("UP", seconds=2)
            return is_second
        with starting.started(switched_on, begin, told.append) as (computer, is_second):
            self.assertIs(computer, machines[-1])
            self.assertFalse(computer.is_off)
            self.assertEqual(is_second, len(machines) == 2)
        self.assertTrue(all(machine.is_off for machine in machines))
        return told, len(machines)

    def test_once(self):
        self.assertEqual(self.start(EARLY + "UP\r\n"), ([], 1))

    def test_once_more(self):
        told, starts = self.start(EARLY, EARLY + "UP\r\n")
        self.assertEqual((len(told), starts), (1, 2))

    def test_not_a_third_time(self):
        with self.assertRaises(SwitchedOff):
            self.start(EARLY, EARLY, EARLY + "UP\r\n")

    def test_silence_that_is_none_of_the_emulation(self):
        for name, text in {"boot menu": "Kestro Recovery\r\n", "later": EARLY + "[   59.200000] EXT4-fs: mounted\r\n",
                           "user space": EARLY + "Please unlock disk\r\n", "nothing": ""}.items():
            with self.subTest(name), self.assertRaises(LabError) as caught:
                self.start(text, "UP\r\n")
            self.assertNotIsInstance(caught.exception, SwitchedOff)


if __name__ == "__main__":
    unittest.main()
