# SPDX-License-Identifier: GPL-3.0-or-later
"""The emulator's control socket: commands, and the events that say how the machine ended (QEMU Machine Protocol)."""
import json
import queue
import socket
import threading

from kestrolab.process import LabError

ANSWER_LIMIT = 120


class Control:
    def __init__(self, connection: socket.socket):
        self.socket = connection
        self.events: list[dict] = []
        self.answers: queue.Queue = queue.Queue()
        self.reader = threading.Thread(target=self.read, daemon=True)
        self.reader.start()
        self.answers.get(timeout=ANSWER_LIMIT)
        self.execute("qmp_capabilities")

    def read(self):
        with self.socket.makefile("rb") as lines:
            try:
                for line in lines:
                    message = json.loads(line)
                    if "event" in message:
                        self.events.append(message)
                    else:
                        self.answers.put(message)
            except OSError:
                pass
        self.answers.put({"error": {"desc": "the machine is off"}})

    def execute(self, command: str, **arguments):
        self.socket.sendall(json.dumps({"execute": command, "arguments": arguments}).encode() + b"\n")
        try:
            answer = self.answers.get(timeout=ANSWER_LIMIT)
        except queue.Empty:
            answer = {"error": {"desc": f"no answer within {ANSWER_LIMIT} seconds"}}
        if "error" in answer:
            raise LabError(f"{command}: {answer['error']['desc']}")
        return answer["return"]

    def shutdown_reason(self) -> str:
        """Why the machine went off: "guest-reset", "guest-shutdown", "host-signal" …; empty while it runs or after a cut."""
        self.reader.join(5)
        return next((event["data"].get("reason", "") for event in self.events if event["event"] == "SHUTDOWN"), "")

    def close(self):
        self.socket.close()
