/* SPDX-License-Identifier: MIT */
/**
 * @file updates.h
 * Brings what was drawn onto the e-paper. Drawing changes only the canvas; one of these calls
 * shows it. Areas are pixels of the screen. They are widened to multiples of 4, then cut to the
 * screen, and ignored when nothing is left. An area of size 0 is therefore ignored where it begins
 * at a multiple of 4, and shows 4 pixels elsewhere.
 */
#ifndef KELVANE_UPDATES_H
#define KELVANE_UPDATES_H

#include "api.h"
#include "canvas.h"

KELVANE_BEGIN_DECLS

/** Update modes: the waveform the panel uses, as the device layer and traces number them. */
enum {
    UPDATE_GREY = 0,            /**< normal grey update */
    UPDATE_BW = 1,              /**< two levels */
    UPDATE_DU4 = 229,           /**< four levels, direct */
    UPDATE_A2_ENTER = 230,      /**< enters fast two-level mode, with a flash */
    UPDATE_A2_EXIT = 231,       /**< leaves fast two-level mode, with a flash */
    UPDATE_PARTIAL_HQ = 233,    /**< high-quality partial update */
    UPDATE_PARTIAL_GREY = 234,  /**< partial grey update */
    UPDATE_PARTIAL_BLACK = 238, /**< partial update for black areas */
    UPDATE_A2 = 239             /**< update inside fast two-level mode */
};

/** Shows the whole screen with a flash that clears all ghosts. */
KELVANE_API void FullUpdate(void);
/** FullUpdate() in the panel's best quality. */
KELVANE_API void FullUpdateHQ(void);
/** Shows the whole screen without a flash. */
KELVANE_API void SoftUpdate(void);
/** SoftUpdate() in the panel's best quality. */
KELVANE_API void SoftUpdateHQ(void);
/** Refines the grey levels of what is on the screen. */
KELVANE_API void FineUpdate(void);
/** 1 when FineUpdate() has an effect on this panel. */
KELVANE_API int FineUpdateSupported(void);
/** 1 when the panel has high-quality updates. */
KELVANE_API int HQUpdateSupported(void);

/** Shows an area in all greys. The ordinary choice. */
KELVANE_API void PartialUpdate(int x, int y, int w, int h);
/** PartialUpdate() for areas that were black. */
KELVANE_API void PartialUpdateBlack(int x, int y, int w, int h);
/** Shows an area in black and white: faster. */
KELVANE_API void PartialUpdateBW(int x, int y, int w, int h);
/** Shows an area in the panel's best quality. */
KELVANE_API void PartialUpdateHQ(int x, int y, int w, int h);
/** Shows an area in four levels without a flash. */
KELVANE_API void PartialUpdateDU4(int x, int y, int w, int h);

/** Shows an area that changes often, such as an animation. */
KELVANE_API void DynamicUpdate(int x, int y, int w, int h);
/** DynamicUpdate() in black and white. */
KELVANE_API void DynamicUpdateBW(int x, int y, int w, int h);
/**
 * Shows an area in the panel's fastest two-level mode, which the first call enters. Any other
 * update leaves the mode; ExitUpdateA2() leaves it and cleans the area.
 */
KELVANE_API void DynamicUpdateA2(int x, int y, int w, int h);
/** Leaves the fastest mode and shows its area once more; nothing outside the mode. */
KELVANE_API void ExitUpdateA2(void);
/** 1 while in the fastest mode. */
KELVANE_API int IsInA2Update(void);

/** @name Pages
 * Additions.
 * @{ */
/**
 * Shows the whole screen after a turn of the page: without a flash, and with one at each
 * @p every-th call, or when CleanNextPage() asked for it. Any other flash of the whole screen
 * counts as one.
 * @param every 1: each turn flashes; below 1: only those that were asked for
 */
KELVANE_API void PageUpdate(int every);
/**
 * The next PageUpdate() flashes: to be called where a chapter starts, and with a page that has
 * pictures, which leave ghosts on the one after it.
 */
KELVANE_API void CleanNextPage(void);
/** @} */

/** @name Night
 * Additions. At night the screen shows black for white and white for black. The application draws
 * as by day: the canvas stays as it is, and areas are turned on their way to the panel.
 * @{ */
/**
 * Begins or ends the night. Nothing is shown until the next update; FullUpdate() shows it cleanly.
 * The night ends with the screen.
 * @param on not 0: night
 */
KELVANE_API void SetNightMode(int on);
/** 1 at night. */
KELVANE_API int GetNightMode(void);
/**
 * Areas of the screen that stay as they are drawn, such as pictures: they replace those of the call
 * before, and the covers of a list in the page, which lists keep by themselves when they are drawn.
 * A box, a menu or the keyboard above them is turned as everything else, whether it opens before
 * this call or behind it.
 * @param areas copied; flags are ignored, and areas may overlap. Null for none
 * @param count 0 to 64; what is above that is ignored
 */
KELVANE_API void SetNightPictures(const irect *areas, int count);
/** @} */

/** Returns when the panel has finished what it shows. */
KELVANE_API void WaitForUpdateComplete(void);

/** Queues EVT_SHOW to the current handler: draw everything again. */
KELVANE_API void Repaint(void);

/** Does nothing but warn on standard error. @deprecated Use a timer and PartialUpdate(). */
KELVANE_API void ScheduleUpdate(int x, int y, int w, int h, int bw);

KELVANE_END_DECLS

#endif
