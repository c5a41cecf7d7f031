/* SPDX-License-Identifier: MIT */
/**
 * @file kelvane.h
 * The application interface of libkelvane. Include this one header.
 *
 * An application hands one event handler to KelvaneMain() and is driven by events from then on:
 *
 *     static int handler(int type, int par1, int par2) { ... return 0; }
 *     int main(void) { KelvaneMain(handler); return 0; }
 *
 * Conventions that hold for every function, unless its own comment says otherwise:
 *
 * - Strings are UTF-8 and end with a NUL.
 * - Coordinates are pixels of the current canvas; x grows to the right, y downwards; (0, 0) is the
 *   top left pixel. Sizes below 1 mean an empty area, and nothing is drawn.
 * - Colours are 0x00RRGGBB. On a grey canvas they are drawn as (77 R + 151 G + 28 B) >> 8, from
 *   0 (black) to 255 (white).
 * - A null handle or name is ignored: the call does nothing, or returns the caller's default.
 * - Times are milliseconds.
 * - Everything is called from one thread, the one that runs the loop. Only SendEvent(),
 *   SendEventEx() and what files.h declares may be called from any thread.
 * - Drawing reaches the screen only by a call of updates.h.
 * - Who frees what is said at each function that returns a pointer; where nothing is said, the
 *   library keeps it.
 */
#ifndef KELVANE_H
#define KELVANE_H

#include "kelvane/bitmaps.h"
#include "kelvane/bookinfo.h"
#include "kelvane/canvas.h"
#include "kelvane/config.h"
#include "kelvane/config_editor.h"
#include "kelvane/dialogs.h"
#include "kelvane/dictionary.h"
#include "kelvane/dictionary_view.h"
#include "kelvane/events.h"
#include "kelvane/files.h"
#include "kelvane/frames.h"
#include "kelvane/gestures.h"
#include "kelvane/hash.h"
#include "kelvane/hourglass.h"
#include "kelvane/keyboard.h"
#include "kelvane/languages.h"
#include "kelvane/lists.h"
#include "kelvane/menus.h"
#include "kelvane/pager.h"
#include "kelvane/panel.h"
#include "kelvane/pictures.h"
#include "kelvane/selectors.h"
#include "kelvane/tasks.h"
#include "kelvane/text.h"
#include "kelvane/theme.h"
#include "kelvane/timers.h"
#include "kelvane/updates.h"

#endif
