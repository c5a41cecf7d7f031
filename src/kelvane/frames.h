/* SPDX-License-Identifier: MIT */
/**
 * @file frames.h
 * What surrounds content: borders, selection markers, window frames and the application caption.
 * Their pictures, fonts and sizes come from the theme, or are built in where it has none.
 */
#ifndef KELVANE_FRAMES_H
#define KELVANE_FRAMES_H

#include "api.h"
#include "bitmaps.h"
#include "canvas.h"

KELVANE_BEGIN_DECLS

/** Which corners DrawBorder() rounds. */
enum estyle {
    ROUND_ALL = 1,
    ROUND_TOP = 2,
    ROUND_DOWN = 3,
    ROUND_LEFT = 4,
    ROUND_RIGHT = 5,
    ROUND_TOP_LEFT = 6,
    ROUND_TOP_RIGHT = 7,
    ROUND_BOTTOM_LEFT = 8,
    ROUND_BOTTOM_RIGHT = 9
};

/** Corner flags of DrawRectRound(). */
enum {
    RECT_ROUND_TL = 1, /**< not supported: said on standard error */
    RECT_ROUND_TR = 2, /**< not supported: said on standard error */
    RECT_ROUND_BL = 4,
    RECT_ROUND_BR = 8
};

/** Flags of DrawFrame(). */
enum {
    FRAME_BUTTON_CLOSE = 0x1, /**< buttons of the title bar, from the right */
    FRAME_BUTTON_MOVEUP = 0x2,
    FRAME_BUTTON_MOVEDOWN = 0x4,
    FRAME_BUTTONS = 0xFFFF,         /**< any button: the frame has a title bar */
    FRAME_DICTIONARY = 0x04000000,  /**< the pieces and margins of dictionaries */
    FRAME_INNER_SIDES = 0x08000000, /**< the client area is measured from the sides, not corners */
    FRAME_OVERLAP = 0x10000000,     /**< top corners for overlapping; not with a title bar */
    FRAME_HEADER = 0x20000000,      /**< a title bar */
    FRAME_UPDATE = 0x40000000       /**< CheckFramePointer() updates the title bar */
};

/** @name Borders and selection
 * @{ */
/**
 * A black frame five pixels thick, its lower corners rounded by pictures where @p flags
 * (RECT_ROUND_*) ask for it. @p color is not used.
 */
KELVANE_API void DrawRectRound(int x, int y, int w, int h, int color, int flags);
/**
 * A border inside @p r; null draws nothing.
 *
 * The theme's corner pictures are chosen by the first call, for good: the white ones when its
 * colour is WHITE. Without all four, corners are drawn as arcs.
 * @param border_size thickness in pixels; drawn arcs need at least 2
 * @param style an estyle: which corners are round; any other number rounds none
 * @param radius of the round corners, at most half of either side; below 1 every corner is square
 */
KELVANE_API void DrawBorder(const irect *r, int border_size, int style, int radius, int color);
/**
 * The theme's selection marker over a rectangle: a border, a rounded border, an underline, a bar
 * or a background.
 * @param key which component's marker; null or "default" for the common one
 */
KELVANE_API void DrawPickOut(int x, int y, int w, int h, const char *key);
/** DrawPickOut() of a record; null draws nothing. */
KELVANE_API void DrawPickOutEx(const irect *rect, const char *key);
/**
 * Replaces the levels of a 4-bit raster: with p = percent / 100, level v becomes v p + 16 (1 - p),
 * or -p v when p is negative; a level of 16, as all are at 0 percent, sets a bit of the pixel to
 * the left. Canvases that can be drawn on have depth 8 or 24 and stay as they are.
 */
KELVANE_API void Transparent(int x, int y, int w, int h, int percent);
/** Transparent() of a record. */
KELVANE_API void TransparentRect(irect rect, int percent);
/** @} */

/** @name Window frames
 * @{ */
/** Loads the pictures of frames at the first call and lays out the buttons of a title bar. */
KELVANE_API void frame_init(int x, int y, int w, int h, int flags);
/**
 * A window frame with a white inside. It should be at least as wide and as high as two of its
 * corners: 24 by 24 pixels with the built-in pictures, 24 by 48 with a title bar.
 * @param icon left of the title; may be null
 * @param title may be null; only a frame with a title bar has room for it
 * @param flags FRAME_*
 * @param clientarea receives the inside; may be null
 */
KELVANE_API void DrawFrame(int x, int y, int w, int h, const ibitmap *icon, const char *title,
                           int flags, irect *clientarea);
/**
 * Redraws the buttons of a frame, pressed where (@p px, @p py) lies inside. With FRAME_UPDATE the
 * title bar is updated when a button was hit or a coordinate is negative.
 * @return the FRAME_BUTTON_* bit of the pressed button; 0 for none
 */
KELVANE_API int CheckFramePointer(int x, int y, int w, int h, int flags, int px, int py);
/** @} */

/** @name Application caption
 * The strip with the application's title at the top of the screen. It is off until it gets a
 * height.
 * @{ */
/** Sets the height in pixels and switches the caption on; below 1 switches it off. */
KELVANE_API void SetApplicationCaptionHeight(int h);
/**
 * Draws the caption when it is on.
 * @param title may be null
 * @param rect where the title goes, with its text flags; null means the theme's place
 */
KELVANE_API void DrawApplicationCaption(const char *title, const irect *rect);
/** Height of the caption; 0 while it is off. */
KELVANE_API int GetCaptionHeight(void);
/** @} */

KELVANE_END_DECLS

#endif
