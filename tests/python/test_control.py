# SPDX-License-Identifier: MIT
"""What kelvane.control does when something goes wrong: it tells, and leaves nothing behind."""

import os
import subprocess
import sys
import tempfile

import pytest
from kelvane.control import Application, ControlError

hello = os.environ["KELVANE_HELLO"]


@pytest.mark.parametrize("command, options, error", [
    ("no-such-program", [], FileNotFoundError),
    ("/bin/false", [], ControlError),
    ([hello], ["--size", "large"], subprocess.CalledProcessError),
    (["sh", "-c", "echo not today >&2; exec sleep 100"], [], ControlError),
])
def test_a_start_that_fails_leaves_nothing(tmp_path, monkeypatch, command, options, error):
    monkeypatch.setattr(tempfile, "tempdir", str(tmp_path))
    with pytest.raises(error, match="not today" if "sh" in command else ""):
        Application(command, options, seconds=0.5)
    assert list(tmp_path.iterdir()) == []
    with pytest.raises(ChildProcessError):
        os.waitpid(-1, os.WNOHANG)


def test_a_line_that_cannot_be_done_is_an_error(tmp_path):
    """In a folder with a path that is too long for a socket."""
    with Application(hello, folder=tmp_path / ("long" * 30)) as app:
        for line, error in (("press NOWHERE", "no such key: NOWHERE"), ("type a\nb", "more than one line")):
            with pytest.raises((ControlError, ValueError), match=error):
                app.say(line)
        app.press("NEXT")
        assert app.state()["updates"] == 2
        app.process.kill()
        for _ in range(2):
            with pytest.raises(ControlError, match="press OK 50: the application has ended"):
                app.press("OK")
        assert app.close() == -9


@pytest.mark.parametrize("last, status, said", [("os.abort()", -6, ""), ("undefined", 1, "NameError")])
def test_an_application_that_ends_badly_fails_its_test(last, status, said):
    command = [sys.executable, "-c", f"""
import os
from kelvane import *
def handler(event, a, b):
    if event == EVT_EXIT:
        {last}
KelvaneMain(handler)"""]
    with pytest.raises(ControlError, match=rf"(?s)status {status}: .*{said}"):
        with Application(command):
            pass
    with pytest.raises(KeyError), Application(command):
        raise KeyError
    with Application(command) as app:
        assert app.close() == status
