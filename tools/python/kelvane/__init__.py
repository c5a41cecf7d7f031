# SPDX-License-Identifier: MIT
"""libkelvane in Python, for tests and quick tools: every function, record and number of its headers.

    from kelvane import *

    def handler(event, par1, par2):
        if event == EVT_SHOW:
            ClearScreen()
            FullUpdate()
            return 1
        return 0

    KelvaneMain(handler)

help(DrawTextRect) tells what the header does. kelvane.control drives an application in a test.
"""

import atexit

from . import binding, declarations
from .declarations import *  # noqa: the library's names

# The application ends the process, not the library: so Python ends as it always does, and EVT_EXIT
# comes while there is somebody to hear it.
atexit.register(declarations.ClearOnExit)


def OpenScreen():
    """int OpenScreen(void): the same as OpenScreenExt()."""
    return OpenScreenExt()


def PrepareForLoop(handler):
    """void PrepareForLoop(kv_handler h), behind OpenScreenExt()."""
    OpenScreenExt()
    declarations.PrepareForLoop(handler)


def ClearOnExit():
    """void ClearOnExit(void): raises SystemExit when a handler failed."""
    declarations.ClearOnExit()
    if binding.failure:
        raise SystemExit(getattr(binding.failure, "code", 1))


def KelvaneMain(handler):
    """Runs an application and returns when it has ended.

    SystemExit is raised with status 1 when the screen cannot be opened, and when a handler or another
    function that the library called raised an exception; a SystemExit keeps its status.
    """
    binding.failure = None
    if not OpenScreenExt():
        raise SystemExit(1)
    declarations.KelvaneMain(handler)
    if binding.failure:
        raise SystemExit(getattr(binding.failure, "code", 1))
