# SPDX-License-Identifier: MIT
"""An application on a headless device of its own, and clients of its socket."""

import atexit
import os
import shutil
import socket
import subprocess
import sys
import tempfile
from pathlib import Path

device, control, application = (str(Path(p).resolve()) for p in sys.argv[1:4])
place = Path(tempfile.mkdtemp())
atexit.register(shutil.rmtree, place)
path = place / "control"
os.environ.update(KELVANE_DEVICE="headless", KELVANE_CONTROL=str(path), KELVANE_LOG="1")
subprocess.run([device, place], check=True)


def start(**settings):
    log = (place / "log").open("wb")
    app = subprocess.Popen([application], cwd=place, env=os.environ | settings, stdout=log, stderr=log)
    atexit.register(app.kill)
    return app


def shell(*words):
    done = subprocess.run([control, *words], capture_output=True, text=True, timeout=30)
    return done.returncode, done.stdout.strip()


class Client:
    def __init__(self):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(30)
        self.socket.connect(str(path))
        self.answers = self.socket.makefile()

    def leave(self):
        self.answers.close()
        self.socket.close()

    def say(self, line):
        self.socket.sendall(line.encode() + b"\n")
        return self.answers.readline().rstrip("\n")


def expect(what, is_so):
    if not is_so:
        sys.exit(f"{what}")
