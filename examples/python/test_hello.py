# SPDX-License-Identifier: MIT
"""Tests hello.py on the headless device, through its socket: python3 -m pytest examples/python"""

import sys
from pathlib import Path

import pytest
from kelvane.control import Application

program = Path(__file__).with_name("hello.py")


@pytest.fixture
def hello():
    with Application([sys.executable, program]) as app:
        yield app


def test_the_disc_grows_with_every_key(hello):
    below_the_disc = 300, 400 + 70
    assert hello.frame()[below_the_disc] == 255
    hello.press("NEXT")
    assert hello.frame()[below_the_disc] == 0
    assert hello.state()["updates"] == 2


def test_the_disc_is_in_the_middle_of_a_larger_screen():
    with Application([sys.executable, program], ["--size", "1404x1872"]) as app:
        frame = app.frame()
        assert (frame.width, frame.height) == (1404, 1872)
        assert frame[702, 936] == 170 and frame[702, 936 + 50] == 0


def test_back_ends_it(hello):
    hello.press("BACK")
    assert hello.process.wait(30) == 0
