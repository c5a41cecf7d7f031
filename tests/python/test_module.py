# SPDX-License-Identifier: MIT
"""The Python module says what the headers say, and passes calls on as C does."""

import ctypes
import importlib.util
import os
import subprocess
import sys
from pathlib import Path

import kelvane
import pytest
from kelvane import binding, declarations
from kelvane.control import Application

root = Path(__file__).resolve().parents[2]


def records():
    return [one for one in vars(declarations).values() if isinstance(one, type)
            and issubclass(one, (binding.Record, ctypes.Union)) and getattr(one, "_fields_", None)]


def test_every_exported_function_is_declared():
    names = (root / "tests/exports/symbols.txt").read_text().split()
    lacking = [name for name in names if getattr(getattr(declarations, name, None), "argtypes", None) is None]
    assert len(names) > 500 and lacking == []
    assert [name for name in names if not getattr(kelvane, name).__doc__] == []


def test_records_and_numbers_are_those_of_the_compiler(tmp_path):
    """Sizes, and the place of each field."""
    wanted, lines = [], []
    for one in records():
        known = one.__name__
        if known == "timeval" or known.startswith("hw_event_s_"):
            continue  # without a name in C, and within a record whose size tells
        wanted.append(f"{known} {ctypes.sizeof(one)}")
        lines.append(f'printf("{known} %zu\\n", sizeof(struct {known}));')
        for name, *_ in one._fields_:
            wanted.append(f"{known}.{name} {getattr(one, name).offset}")
            lines.append(f'printf("{known}.{name} %zu\\n", offsetof(struct {known}, {name}));')
    for name, value in vars(declarations).items():
        if isinstance(value, int) and name.isupper() and not hasattr(ctypes, name):
            wanted.append(f"{name} {value}")
            lines.append(f'printf("{name} %d\\n", (int){name});')
    program = tmp_path / "sizes.c"
    program.write_text("#include <stddef.h>\n#include <stdio.h>\n#include <kelvane.h>\n#include <hw.h>\n"
                       "int main(void) {" + "\n".join(lines) + "}")
    subprocess.run(["gcc", f"-I{root}/src", program, "-o", tmp_path / "sizes"], check=True)
    said = subprocess.run(tmp_path / "sizes", capture_output=True, text=True, check=True).stdout
    assert len(wanted) > 400 and said.splitlines() == wanted


def test_calls_pass_texts_records_and_functions():
    assert kelvane.iRect(1, 2, 3, 4, 5).h == 4
    assert kelvane.GetLangTextF("%s, %d, %.1f, %s", "Größe", -3, 2.5, b"x") == "Größe, -3, 2.5, x"
    table = kelvane.hash_new(10)
    kelvane.hash_add(table, "ключ", ctypes.create_string_buffer(b"value"))
    seen = []
    kelvane.hash_enumerate(table, None, lambda name, value, data: seen.append(name), None)
    assert seen == ["ключ"]
    kelvane.hash_destroy(table)
    item = kelvane.imenu(kelvane.ITEM_ACTIVE, 3, "Öffnen")
    assert item.text == "Öffnen".encode() and item.submenu._type_ is kelvane.imenu
    book = kelvane.bookinfo()
    book.genre[1] = b"Krimi"
    assert list(book.genre)[:3] == [None, b"Krimi", None]
    handler = [lambda *_: 0, lambda *_: 0]
    kelvane.SetEventHandler(handler[0])
    assert kelvane.SetEventHandler(handler[1]) is handler[0]
    assert kelvane.GetEventHandler() is handler[1]
    for wrong in (lambda: kelvane.AppDataPath("a", "b", "a text that cannot be written to", 9),
                  lambda: kelvane.free(kelvane.GetLangText("a copy"))):
        with pytest.raises(ctypes.ArgumentError):
            wrong()


def run(tmp_path, text, **settings):
    """Runs a program on the headless device and returns its status and all that it said."""
    (tmp_path / "script").write_text("wait 100\npress NEXT\nwait 100\n")
    environment = os.environ | {"KELVANE_DEVICE": "headless", "KELVANE_SCRIPT": "script"} | settings
    done = subprocess.run([sys.executable, "-c", "from kelvane import *\n" + text], cwd=tmp_path,
                          env=environment, text=True, timeout=60, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.returncode, done.stdout


@pytest.mark.parametrize("text, status, said", [
    # An exception ends the application, which still hears EVT_EXIT.
    ("""def handler(event, a, b):
        if event == EVT_EXIT: print("heard the end")
        if event == EVT_KEYPRESS: undefined
     KelvaneMain(handler)
     print("went on")""", 1, ["NameError", "heard the end"]),
    ("""def fire(context): raise ValueError("from a timer")
     def handler(event, a, b):
        if event == EVT_SHOW: SetHardTimer("t", fire, 10)
     KelvaneMain(handler)""", 1, ["ValueError: from a timer"]),
    ("KelvaneMain(lambda event, a, b: exit(7) if event == EVT_KEYPRESS else 0)", 7, []),
    # Whatever ends the application, Python goes on and flushes.
    ("""KelvaneMain(lambda event, a, b: CloseApp() if event == EVT_KEYPRESS else 0)
     print("went on")""", 0, ["went on"]),
    # EVT_EXIT comes before Python is taken down.
    ("""def handler(event, a, b):
        if event == EVT_KEYPRESS: LeaveKelvaneMain()
        if event == EVT_EXIT: print("heard the end")
     KelvaneMain(handler)
     print("left")""", 0, ["left\n", "heard the end"]),
    # A loop of its own.
    ("""def handler(event, a, b):
        if event == EVT_KEYPRESS: undefined
     PrepareForLoop(handler)
     while ProcessEventLoop() == KELVANE_CONTINUE: pass
     ClearOnExit()""", 1, ["NameError"]),
    # An answer has to be a number, where one is asked for.
    ("""def handler(event, a, b):
        if event == EVT_SHOW: SetHardTimer("t", lambda context: print("it rang") or "no number", 10)
        if event == EVT_KEYPRESS: return 1.5
     KelvaneMain(handler)""", 1, ["it rang", "TypeError: 'float'"]),
    # More pictures than there is memory for, one after the other.
    ("""import resource
     resource.setrlimit(resource.RLIMIT_AS, (1 << 30, 1 << 30))
     for _ in range(200):
        picture = NewBitmap(4000, 4000)
        print(picture.contents.width, end="")
        free(picture)""", 0, ["4000" * 200]),
])
def test_every_end_has_its_status(tmp_path, text, status, said):
    ended, output = run(tmp_path, text.replace("\n     ", "\n"))
    assert ended == status, output
    assert [one for one in said if one not in output] == []
    assert "went on" in said or "went on" not in output


def test_without_a_device_the_status_tells(tmp_path):
    assert run(tmp_path, "KelvaneMain(lambda *_: 0)", KELVANE_DEVICE="none")[0] == 1


def test_texts_that_a_callback_sets_last(tmp_path, monkeypatch):
    """A row is drawn behind the call that filled it, when all that belonged to the call is gone."""
    monkeypatch.setenv("PYTHONMALLOC", "debug")  # overwrites what is freed
    program = tmp_path / "rows.py"
    program.write_text("""
import sys
from kelvane import *
texts = [f"Row {n} of a list" for n in range(50)]
kept = [text.encode() for text in texts]
ways = {"kept": lambda row, out, context: setattr(out.contents, "title", kept[row]),
        "field": lambda row, out, context: setattr(out.contents, "title", texts[row]),
        "record": lambda row, out, context: out.__setitem__(0, ilistrow(title=texts[row]))}
rows = ilistrows(count=50, fill=ways[sys.argv[1]])
KelvaneMain(lambda event, a, b: OpenList(ilist(title="A list", rows=rows)) if event == EVT_SHOW else 0)
""")
    frames = []
    for way in ("kept", "field", "record"):
        with Application([sys.executable, program, way]) as app:
            frames.append(app.frame())
    assert frames[0].pixels.count(0) > 1000 and frames[0] == frames[1] == frames[2]


def test_it_draws_what_c_draws():
    """The example in both languages, key by key, as bytes and as arrays."""
    with Application(os.environ["KELVANE_HELLO"]) as c, \
            Application([sys.executable, root / "examples/python/hello.py"]) as python:
        for key in ("NEXT", "OK", "PLUS"):
            c.press(key)
            python.press(key)
            assert c.frame() == python.frame()
        frame = c.frame()
        assert frame[300, 400] == 170 and frame != "a frame"
        if importlib.util.find_spec("numpy"):
            assert frame.array.shape == (800, 600) and frame.array[400, 300] == 170
            assert (frame.array == 0).sum() == frame.pixels.count(0)
        assert c.state()["updates"] == python.state()["updates"] == 4
        assert c.close() == 0
