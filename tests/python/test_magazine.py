# SPDX-License-Identifier: MIT
"""The magazine keeps what the user does: over a kill, a restart, and a change of the language."""

import os
import shutil
from pathlib import Path

import pytest
from kelvane.control import Application, ControlError

issue = Path(__file__).resolve().parents[2] / "examples/magazine/issue"


@pytest.fixture
def start(tmp_path):
    running = []

    def begin(device="device", articles=issue):
        app = Application([os.environ["KELVANE_MAGAZINE"], articles], folder=tmp_path / device)
        app.say("clock 2026-03-04 14:32")
        running.append(app)
        return app

    yield begin
    for app in running:
        app.process.kill()


def press(app, *keys):
    for key in keys:
        app.press(key)
        app.wait(300)


def test_place_and_bookmarks_outlive_the_process(start, tmp_path):
    articles = tmp_path / "issue"  # with a name that a file of settings could take for a value
    shutil.copytree(issue, articles)
    (articles / "en/1-lighthouse.txt").rename(articles / "en/1=light=house.txt")
    app = start(articles=articles)
    press(app, "OK", "NEXT", "OK", "OK")
    page = app.frame()
    press(app, "BACK")
    shelf = app.frame()
    app.process.kill()  # as an empty battery does
    app.process.wait()
    app = start(articles=articles)
    assert app.frame() == shelf
    press(app, "OK")
    assert app.frame() == page
    press(app, "NEXT")
    app.close()
    app = start(articles=articles)
    press(app, "OK", "PREV")
    assert app.frame() == page


def test_the_place_is_kept_in_the_other_language(start, tmp_path):
    app = start("de")
    app.say("language de")
    press(app, "OK", "NEXT", "NEXT")
    german = app.frame()
    app = start("en")
    press(app, "OK", "NEXT", "NEXT")
    english = app.frame()
    app.say("language de")
    assert app.frame() == german
    app.say("language en")
    assert app.frame() == english


def test_an_article_that_a_language_lacks_is_not_another_one(start, tmp_path):
    articles = tmp_path / "issue"
    shutil.copytree(issue, articles)
    (articles / "de/2-bread.txt").unlink()
    app = start(articles=articles)
    app.say("language de")
    shelf = app.frame()
    app.say("language en")
    press(app, "DOWN", "OK", "NEXT")
    app.say("language de")
    press(app, "UP")
    assert app.frame() == shelf


def test_a_folder_without_articles_is_told(tmp_path):
    with pytest.raises(ControlError, match="has no articles"):
        Application([os.environ["KELVANE_MAGAZINE"], tmp_path], folder=tmp_path / "device")
