/* SPDX-License-Identifier: MIT */
/**
 * @file dialogs.h
 * Boxes that ask, tell and show progress, over whatever is on the screen.
 *
 * A box stands at the foot of the screen and is answered by keys or by a finger. Boxes may be
 * opened over each other, and are closed in the reverse order; what lay beneath is then put back.
 *
 * Texts and labels are keys of GetLangText(). A box keeps its own copies, so the caller may free
 * or change what it gave. A text that does not fit ends in "...". The title is not shown.
 *
 * Result callbacks run after their box is gone and the handler before it is back, so they may
 * open the next box, change the handler or end the application. Each is called at most once, and
 * never when its box is closed by a call or the application ends. docs/dialogs.md tells which box
 * is for what.
 */
#ifndef KELVANE_DIALOGS_H
#define KELVANE_DIALOGS_H

#include "api.h"

KELVANE_BEGIN_DECLS

/** The first argument of the calls below: one ICON_*, and any of the flags. */
enum {
    ICON_INFORMATION = 1, /**< the pictures come from the theme; without one there is no icon */
    ICON_QUESTION = 2,
    ICON_WARNING = 3,
    ICON_ERROR = 4,
    ICON_WIFI = 5,
    DEF_BUTTON2 = 0x1000, /**< dialogs: the second button is selected first */
    DEF_BUTTON3 = 0x2000, /**< dialogs: the third button is selected first */
    NO_DISMISS = 0x8000 /**< after an answer or its time the box stays on the screen as a picture */
};

/** Gets the number of the button, 1 to 3, or -1 when the dialog was cancelled. */
typedef void (*kv_dialoghandler)(int button);

/** @name Telling
 * @{ */
/**
 * Shows a text and returns when its time is over, a key is pressed, or the box is tapped. Input
 * meanwhile does not reach the application; its handler and key rate stay. Without a screen both
 * texts go to standard error.
 * @param icon ICON_* and NO_DISMISS
 * @param title not shown on the screen
 * @param text null counts as empty
 * @param timeout in milliseconds, counted in steps of 50
 */
KELVANE_API void Message(int icon, const char *title, const char *text, int timeout);
/** @} */

/** @name Asking
 * @{ */
/** Dialog3() without a third button. */
KELVANE_API void Dialog(int icon, const char *title, const char *text, const char *button1,
                        const char *button2, kv_dialoghandler proc);
/**
 * Opens a dialog and returns at once; the answer comes to @p proc. Does nothing while another
 * dialog has the input, or without a screen.
 *
 * The keys left and right select, OK chooses, BACK cancels; on a multi-touch panel only OK counts.
 * A finger chooses the button on which it goes down and up again.
 * @param icon ICON_*, DEF_BUTTON* and NO_DISMISS
 * @param button1 label of the first button; null counts as empty
 * @param button2,button3 null for none
 * @param proc null: any key closes the dialog, and nobody is told
 */
KELVANE_API void Dialog3(int icon, const char *title, const char *text, const char *button1,
                         const char *button2, const char *button3, kv_dialoghandler proc);
/**
 * Dialog3() that runs the event loop until there is an answer. When the answer has come, a box
 * that lay beneath is closed as well.
 * @return 1 to 3; -1 when it was cancelled or closed by a call, when it could not be opened, and
 *         when the application ends
 */
KELVANE_API int DialogSynchro(int icon, const char *title, const char *text, const char *button1,
                              const char *button2, const char *button3);
/** @} */

/** @name Progress
 * @{ */
/**
 * Opens a progress bar, which has all input until it is closed.
 * @param icon ICON_*; the flags do not count
 * @param percent 0 to 100; less and more are drawn as these
 * @param proc gets 1 when the user cancels, after the bar was closed; null: no Cancel button
 */
KELVANE_API void OpenProgressbar(int icon, const char *title, const char *text, int percent,
                                 kv_dialoghandler proc);
/**
 * Shows another text or percentage. Looks for a press of Cancel itself, so it also works while the
 * application is busy and its loop does not run; input that it finds is dropped.
 * @param text null keeps the present one
 * @param percent less than 0 and more than 100 count as these
 * @return 1 when no progress bar has the input, as after Cancel; 0 otherwise
 */
KELVANE_API int UpdateProgressbar(const char *text, int percent);
/** The same as CloseDialog(). */
KELVANE_API void CloseProgressbar(void);
/** @} */

/** Closes the top box, whatever it is, without calling anybody. Nothing when none is open. */
KELVANE_API void CloseDialog(void);
/** How many boxes are open. */
KELVANE_API int GetDialogShow(void);

KELVANE_END_DECLS

#endif
