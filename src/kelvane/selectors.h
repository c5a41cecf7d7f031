/* SPDX-License-Identifier: MIT */
/**
 * @file selectors.h
 * Screens and boxes in which a page, a folder, a font, a time, a date or an orientation is chosen.
 *
 * Each opens above whatever is on the screen, has the input until it closes, and then what lay
 * beneath is there again. OK accepts, BACK and the button Cancel do not; a box has buttons for
 * fingers. Callbacks run once, when their selector is closed already, so they may open the next
 * one; never when it is closed by a call or the application ends. A null callback is allowed:
 * nobody is told.
 *
 * All answer with their number for CloseSelector(), or 0 when nothing was opened: without a screen
 * or memory, and above seven others. An addition.
 *
 * docs/lists.md shows them, with their keys.
 */
#ifndef KELVANE_SELECTORS_H
#define KELVANE_SELECTORS_H

#include "api.h"

KELVANE_BEGIN_DECLS

/** @name Numbers
 * @{ */
/** @param number what was chosen; -1 when nothing was */
typedef void (*kv_numberhandler)(int number, void *context);
/**
 * Asks for a page. UP and DOWN change it by one, LEFT and RIGHT by ten, held by more; a finger
 * moves along the line, or types on the digits, beginning with any but 0.
 * @param page shown first, or the nearest one there is
 * @param pages how many there are: the answer is 1 to @p pages; below 1 counts as 1
 */
KELVANE_API int OpenPageSelector(int page, int pages, kv_numberhandler hproc, void *context);
/**
 * Asks how the screen is to be held, by four pictures of the device; it does not turn it.
 * @param orientation shown as chosen first, as GetOrientation() counts; another one: the present
 */
KELVANE_API int OpenRotationSelector(int orientation, kv_numberhandler hproc, void *context);
/** @} */

/** @name Times
 * @{ */
/** A moment; of a time only the last two count, of a date only the first three. */
typedef struct imoment_s {
    int year;         /**< 1970 to 2199 */
    int month;        /**< 1 to 12 */
    int day;          /**< 1 to as many as the month has */
    int hour, minute; /**< 0 to 23, 0 to 59 */
} imoment;
/** @param chosen valid during the call; null when nothing was chosen */
typedef void (*kv_momenthandler)(const imoment *chosen, void *context);
/**
 * Asks for a time of the day. LEFT and RIGHT go from field to field, UP and DOWN change one, round
 * and round; held, by ten. So does a finger on the plus or minus, which rests for ten.
 * @param start shown first, each field brought to the nearest that there is; null: now. What a
 *              selector does not ask for, it hands on
 */
KELVANE_API int OpenTimeSelector(const imoment *start, kv_momenthandler hproc, void *context);
/** Asks for a date, which is always one of the calendar. See OpenTimeSelector(). */
KELVANE_API int OpenDateSelector(const imoment *start, kv_momenthandler hproc, void *context);
/** @} */

/** @name Folders and fonts
 * @{ */
/** @param path valid during the call; null when nothing was chosen */
typedef void (*kv_pathhandler)(const char *path, void *context);
/**
 * Asks for a folder, walking from one to the next; the first row names the one that is shown and
 * chooses it. Folders whose names begin with a dot are left
 * out; one that cannot be read says so.
 * @param title a key of GetLangText(); null: the path that is shown, without its first folders when
 *              it is too long
 * @param root no way leads out of it; null: "/". Symbolic links lead where they lead
 * @param start the folder shown first; null, or one that cannot be read or lies elsewhere: the root
 * @return also 0 when the root cannot be read
 */
KELVANE_API int OpenDirectorySelector(const char *title, const char *root, const char *start,
                                      kv_pathhandler hproc, void *context);
/**
 * @param name as OpenFont() takes it, valid during the call; null when nothing was chosen
 * @param size in pixels; 0 when it was not asked for
 */
typedef void (*kv_fonthandler)(const char *name, int size, void *context);
/**
 * Asks for a font: a list of the families of EnumFonts(), each written in itself, and then the
 * size, beside a sample, from which BACK returns to the list.
 * @param font selected first, as OpenFont() takes it; null or unknown: the first one
 * @param size shown first, 6 to 200 pixels, or the nearest; below 1: it is not asked for
 */
KELVANE_API int OpenFontSelector(const char *font, int size, kv_fonthandler hproc, void *context);
/** @} */

/**
 * Closes a selector with all that has opened above it, and tells nobody. Another number does
 * nothing, also that of a list of OpenList().
 */
KELVANE_API void CloseSelector(int selector);

KELVANE_END_DECLS

#endif
