# SPDX-License-Identifier: MIT
"""Drives an application in a test: on the headless device, through its socket.

    with Application("build/hello") as app:
        before = app.frame()
        app.press("NEXT")
        assert app.frame() != before

Every line of docs/testing.md, "Live control", is said by say(). A line is done when it returns.
"""

import json
import os
import shutil
import socket
import struct
import subprocess
import tempfile
import time
import zlib
from pathlib import Path

from .place import DEVICE


class ControlError(Exception):
    """The application answered that it cannot do a line, or is gone."""


class Frame:
    """What the screen shows: `width`, `height` and `pixels`, a byte of grey each, row by row."""

    def __init__(self, width, height, pixels):
        self.width, self.height, self.pixels = width, height, pixels

    @property
    def array(self):
        """The pixels as an array of numpy, indexed by row and column."""
        import numpy

        return numpy.frombuffer(self.pixels, numpy.uint8).reshape(self.height, self.width)

    def __getitem__(self, place):
        """The grey of a pixel: frame[x, y]."""
        x, y = place
        if not (0 <= x < self.width and 0 <= y < self.height):
            raise IndexError(place)
        return self.pixels[y * self.width + x]

    def __eq__(self, other):
        if not isinstance(other, Frame):
            return NotImplemented
        return (self.width, self.height, self.pixels) == (other.width, other.height, other.pixels)

    @classmethod
    def read(cls, path):
        """A picture that a `frame` line saved: grey, 8 bits, rows without a filter."""
        data, at, packed = Path(path).read_bytes(), 8, b""
        while at < len(data):
            size, kind = struct.unpack_from(">I4s", data, at)
            body = data[at + 8:at + 8 + size]
            if kind == b"IHDR":
                width, height, *form = struct.unpack(">IIBBBBB", body)
            packed += body if kind == b"IDAT" else b""
            at += size + 12
        rows, pitch = zlib.decompress(packed), width + 1
        if form != [8, 0, 0, 0, 0] or any(rows[::pitch]):
            raise ValueError(f"{path} is no frame")
        return cls(width, height, b"".join(rows[y * pitch + 1:(y + 1) * pitch] for y in range(height)))


class Application:
    """An application that runs on a device of its own, until close() or the end of a `with`.

    command is the program, or a list of it and its arguments; options are those of kelvane-device,
    such as ["--language", "de"]; folder is where the device is made, otherwise a temporary one.
    The end of a `with` raises ControlError when the application ended with another status than 0,
    unless close() or the process told it before.
    """

    def __init__(self, command, options=(), folder=None, seconds=30):
        self._temporary = None if folder else tempfile.mkdtemp()
        self.folder = Path(folder or self._temporary).resolve()
        self.log = self.folder / "log"
        self.process = None
        self._socket = socket.socket(socket.AF_UNIX)
        self._answers = self._socket.makefile()
        try:
            self._start([command] if isinstance(command, (str, Path)) else list(command), options)
            self._connect(seconds)
        except BaseException:
            self._clear()
            raise

    def _start(self, words, options):
        environment = {name: value for name, value in os.environ.items()
                       if not name.startswith("KELVANE_")}
        environment |= {"KELVANE_DEVICE": "headless", "KELVANE_CONTROL": "control"}
        program = os.path.abspath(shutil.which(words[0]) or words[0])
        subprocess.run([DEVICE, *options, self.folder], check=True)
        with self.log.open("wb") as log:
            self.process = subprocess.Popen([program, *map(str, words[1:])], cwd=self.folder,
                                            env=environment, stderr=log)

    def _connect(self, seconds):
        self._socket.settimeout(seconds)
        end = time.monotonic() + seconds
        folder = os.open(self.folder, os.O_PATH)  # the path of a socket has to be short
        try:
            while self.process.poll() is None and time.monotonic() < end:
                try:
                    return self._socket.connect(f"/proc/self/fd/{folder}/control")
                except (FileNotFoundError, ConnectionRefusedError):
                    time.sleep(0.02)
        finally:
            os.close(folder)
        raise ControlError(f"it did not start: {self._said()}")

    def _said(self):
        return self.log.read_text(errors="replace").strip()

    def say(self, line):
        """Says a line and returns the answer; raises ControlError for one that cannot be done."""
        if "\n" in line:
            raise ValueError(f"{line!r} is more than one line")
        try:
            self._socket.sendall(line.encode() + b"\n")
            answer = self._answers.readline().rstrip("\n")
        except TimeoutError as error:
            raise ControlError(f"{line}: {error}") from error
        except OSError:
            answer = ""
        if not answer or answer.startswith("error:"):
            raise ControlError(f"{line}: {answer or 'the application has ended: ' + self._said()}")
        return answer

    def press(self, key, ms=50):
        self.say(f"press {key} {ms}")

    def tap(self, x, y):
        self.say(f"tap {x} {y}")
        self.wait(60)  # until the finger is lifted

    def type(self, text):
        self.say(f"type {text}")

    def wait(self, ms):
        """Lets the device's time pass, in which timers fire."""
        self.say(f"wait {ms}")

    def state(self):
        """The time in milliseconds, the orientation, the number of updates, and more."""
        return json.loads(self.say("state"))

    def frame(self):
        """What the screen shows now."""
        path = self.folder / "frame.png"
        self.say(f"frame {path}")
        return Frame.read(path)

    def close(self, seconds=30):
        """Asks the application to end, and returns its status, which is below 0 for a signal."""
        try:
            return self._end(seconds)
        finally:
            self._clear()

    def _end(self, seconds):
        try:
            self._socket.sendall(b"quit\n")
        except OSError:
            pass  # it has ended
        try:
            return self.process.wait(seconds)
        except subprocess.TimeoutExpired:
            raise ControlError("it did not end and was killed") from None

    def _clear(self):
        if self.process:
            self.process.kill()
            self.process.wait()
        self._answers.close()
        self._socket.close()
        if self._temporary:
            shutil.rmtree(self._temporary, ignore_errors=True)

    def __enter__(self):
        return self

    def __exit__(self, kind, *_):
        is_known = self.process.returncode is not None
        try:
            status = self._end(30)
            if status != 0 and not is_known and not kind:
                raise ControlError(f"it ended with status {status}: {self._said()}")
        finally:
            self._clear()
