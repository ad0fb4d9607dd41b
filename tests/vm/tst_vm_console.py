#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""The root shell on the serial line: exit codes and output are those of the command, whatever else is said there."""
import contextlib
import os
import pathlib
import pty
import socket
import subprocess
import sys
import tempfile
import threading
import unittest
from unittest import mock

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "dev"))

from kestrolab.process import LabError  # noqa: E402
from kestrovm import recovery  # noqa: E402
from kestrovm.console import Shell, SwitchedOff  # noqa: E402
from kestrovm.sockets import connected  # noqa: E402


class Machine:
    """A shell on a terminal, as on a machine's serial line, behind a socket as QEMU has it."""

    def __init__(self, path: str):
        listener = socket.socket(socket.AF_UNIX)
        listener.bind(path)
        listener.listen()
        self.terminal, other = pty.openpty()
        self.process = subprocess.Popen(["setsid", "--ctty", "sh", "-i"], stdin=other, stdout=other, stderr=other,
                                        env={"PATH": os.environ["PATH"], "PS1": "root# "})
        os.close(other)
        threading.Thread(target=self.serve, args=(listener,), daemon=True).start()

    def serve(self, listener: socket.socket):
        line, _ = listener.accept()
        listener.close()
        self.line = line
        threading.Thread(target=self.say, daemon=True).start()
        while data := line.recv(4096):
            os.write(self.terminal, data)

    def say(self):
        with contextlib.suppress(OSError):  # the terminal's end
            while data := os.read(self.terminal, 4096):
                self.line.sendall(data)
        with contextlib.suppress(OSError):
            self.line.shutdown(socket.SHUT_RDWR)

    def cut(self):
        self.process.kill()
        self.process.wait()
        self.line.close()


class Console(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.folder = holder.name
        path = str(pathlib.Path(holder.name, "shell"))
        self.machine = Machine(path)
        self.addCleanup(self.machine.cut)
        self.shell = Shell(connected(path, lambda: True))
        self.addCleanup(self.shell.close)
        self.shell.wait_until_ready(30)

    def test_exit_codes_and_output(self):
        for command, expected in {
            "true": (0, ""),
            "false": (1, ""),
            "(exit 77)": (77, ""),
            "echo out; echo error >&2": (0, "out\nerror\n"),
            "printf 'no line end'": (0, "no line end"),
            "echo '<END-1 0>' '<BEGIN-2>'": (0, "<END-1 0> <BEGIN-2>\n"),
            "cat": (0, ""),  # the line itself is never a command's input
            "seq 3000": (0, "".join(f"{number}\n" for number in range(1, 3001))),
        }.items():
            with self.subTest(command):
                self.assertEqual(self.shell.attempt(command, 30), expected)

    def test_failing_command_is_an_error_with_its_output(self):
        with self.assertRaisesRegex(LabError, "exit code 3\nnot there"):
            self.shell.run("echo not there; (exit 3)", 30)

    def test_silence_is_an_error(self):
        with self.assertRaisesRegex(LabError, "not said within 1 seconds"):
            self.shell.attempt("sleep 20", 1)

    def test_what_is_not_heard_in_time_is_empty(self):
        self.shell.send("echo BOOT; echo MENU\r")
        self.assertEqual(self.shell.heard_within(30, "MENU\r?\n"), "MENU\r\n")
        self.assertEqual(self.shell.heard_within(0.2, "MENU"), "")

    def test_log_whose_lines_become_shorter(self):
        """The program removes people's names from its log before it saves it."""
        log = pathlib.Path(self.folder, "log")
        computer = mock.Mock(shell=self.shell, workspace=pathlib.Path(self.folder))
        program = recovery.RecoveryRun(computer)
        with mock.patch.object(recovery, "LOG", log):
            log.write_text("[x] job start: /home/someone/image\nsecond\nunfinis")
            program.look()
            log.write_text("[x] job start: /home/xxx/image\nsecond\nunfinished\nsaved\n")
            program.look()
        self.assertEqual(program.text, "[x] job start: /home/someone/image\nsecond\nunfinished\nsaved\n")
        computer.picture.assert_called_once_with("working-page-1")

    def test_machine_that_goes_off(self):
        with self.assertRaises(SwitchedOff):
            self.shell.attempt("kill -9 $$", 30)


class Connection(unittest.TestCase):
    def setUp(self):
        holder = tempfile.TemporaryDirectory()
        self.addCleanup(holder.cleanup)
        self.path = str(pathlib.Path(holder.name, "qmp"))
        self.listener = socket.socket(socket.AF_UNIX)
        self.addCleanup(self.listener.close)

    def test_waits_for_a_socket_that_is_made_bound_and_listened_on_late(self):
        steps = iter([lambda: self.listener.bind(self.path), lambda: None, self.listener.listen])

        def emulator_goes_on():
            next(steps, lambda: None)()
            return True
        with connected(self.path, emulator_goes_on):
            self.listener.accept()[0].close()

    def test_an_emulator_that_ended_is_not_waited_for(self):
        self.listener.bind(self.path)
        with self.assertRaisesRegex(LabError, "did not start"):
            connected(self.path, lambda: False)


if __name__ == "__main__":
    unittest.main()
