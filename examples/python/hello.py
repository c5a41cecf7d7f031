#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""The smallest application: a disc on white that grows with every key; BACK (F3) ends it.

    kelvane-device FOLDER examples/python/hello.py
"""

from kelvane import *

radius = 60


def draw():
    x, y = ScreenWidth() // 2, ScreenHeight() // 2
    ClearScreen()
    DrawCircle(x, y, radius, BLACK)
    DrawCircle(x, y, radius // 2, LGRAY)
    FullUpdate()


def handler(event, par1, par2):
    global radius
    if event == EVT_SHOW:
        draw()
    elif event == EVT_KEYPRESS and par1 == KEY_BACK:
        CloseApp()
    elif event == EVT_KEYPRESS:
        radius += 20
        draw()
    else:
        return 0
    return 1


KelvaneMain(handler)
