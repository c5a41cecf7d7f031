/* SPDX-License-Identifier: MIT */
/**
 * @file pager.h
 * The pager: a strip at the bottom of a touch screen with the page counter between two arrows.
 *
 * A component that has pages keeps an ipager, draws it with DrawPager() and offers pointer events
 * to PagerHandler(), which turns taps on the arrows into KEY_PREV and KEY_NEXT.
 */
#ifndef KELVANE_PAGER_H
#define KELVANE_PAGER_H

#include "api.h"
#include "bitmaps.h"
#include "canvas.h"

KELVANE_BEGIN_DECLS

struct ifont_s;

/** Geometry and state of a pager. */
typedef struct ipager_s {
    struct ifont_s *page_font;       /**< of the counter; may be null */
    int height;                      /**< of the strip; below 1 there is no pager */
    int indent_horizontal;           /**< least distance from the left edge of the screen */
    int left_width;                  /**< of the area that goes back a page */
    int page_width;                  /**< of the counter */
    int rigth_width;                 /**< of the area that goes on a page */
    int separator_size;              /**< thickness of the dotted lines */
    ibitmap *icon_left, *icon_right; /**< the arrows; may be null */
    int current_page, total_pages;   /**< from 1 */
    irect position;                  /**< computed; empty at first */
    int orientation;                 /**< for which position was computed */
} ipager;

/** Computes the position for the present screen; null does nothing. */
KELVANE_API void UpdatePager(ipager *p);
/** Where the pager is; null means a pager of the theme's own properties. */
KELVANE_API irect GetPagerRect(ipager *p);
/** Height of the strip; 0 for null and on a device without touch panel. */
KELVANE_API int GetPagerHeight(ipager *p);
/** Draws the pager; null draws nothing. */
KELVANE_API void DrawPager(ipager *p);
/** Whether a pointer event on a touch device falls on the pager, its far edges included. */
KELVANE_API int IsPagerEvent(ipager *p, int type, int x, int y);
/**
 * Handles a pointer event. A press on an arrow that leads to a page is shown by hatching its
 * area; lifting the finger on an arrow then sends EVT_KEYPRESS with KEY_PREV or KEY_NEXT to the
 * current handler. Lifting it elsewhere on the pager, or dragging there, gives the press up; a
 * finger that lifts outside leaves it pending. This function updates the screen.
 * @return 1 when the event fell on the pager, else 0
 */
KELVANE_API int PagerHandler(ipager *p, int type, int x, int y);

KELVANE_END_DECLS

#endif
