/* SPDX-License-Identifier: MIT */
/**
 * @file keyboard.h
 * The on-screen keyboard: one line of text, entered with five keys or with a finger.
 *
 * A keyboard opens at the foot of the screen, above whatever is there, edits a copy of the caller's
 * text and writes the text back when the user chooses Enter. One is open at a time: opening another
 * one closes it, and its callback gets null.
 *
 * The callback runs after the keyboard has closed and the handler before it is back, so it may open
 * the next keyboard or a dialog, or end the application. Each keyboard calls once, and never when
 * the screen closes. The handler before hears #EVT_SHOW after the callback: where it draws its page
 * then and the callback opens a dialog or a menu, the keyboard needs #KBD_NO_SHOW.
 *
 * The buffer is the caller's and lasts until the callback. It holds at most maxlen characters of up
 * to three bytes each, and a NUL: **3 * maxlen + 1 bytes** are always enough. Characters beyond
 * U+FFFF, and what is not UTF-8, come back as U+FFFD.
 *
 * docs/keyboard.md shows keyboards, and how the files of layouts are written.
 */
#ifndef KELVANE_KEYBOARD_H
#define KELVANE_KEYBOARD_H

#include "api.h"
#include "canvas.h"

KELVANE_BEGIN_DECLS

/** Flags: a kind of text in the low four bits, where other values are #KBD_NORMAL, and more. */
enum {
    KBD_NORMAL = 0,    /**< any text, with the user's layouts */
    KBD_ENTEXT = 1,    /**< English text */
    KBD_PHONE = 2,     /**< a telephone number */
    KBD_NUMERIC = 4,   /**< a number */
    KBD_IPADDR = 5,    /**< an IP address */
    KBD_URL = 7,       /**< an address of the web */
    KBD_DATE = 8,      /**< digits over a template, see OpenKeyboard() */
    KBD_TIME = 9,      /**< the same */
    KBD_DATETIME = 10, /**< the same; day, month, hour, minute and second are kept in their range */
    KBD_HEX = 11,      /**< hexadecimal digits */
    KBD_HOURS = 12,    /**< digits over a template that begins with an hour, 00 to 23 */
    KBD_KIND = 0xF,    /**< mask of all of these */

    KBD_NOSELECT = 0x200, /**< the first key adds to the text instead of replacing it */
    /** The handler before gets no #EVT_SHOW when the keyboard has closed, but where the screen was
     *  turned meanwhile and cannot be put back. */
    KBD_NO_SHOW = 0x1000,
    /** When the user has closed the keyboard, the handler before gets press and release of
     *  #KEY_KEYBOARD. */
    KBD_SENDKEYBOARDSTATEEVENTS = 0x2000,
    KBD_KEEP_LAYOUT = 0x4000, /**< OpenCustomKeyboard() takes layouts without touch rows as well */
    KBD_NOHATCH = 0x8000,     /**< the rest of the screen is not dimmed, kept or put back */
    KBD_NOUPDATE_AFTER_CLOSE = 0x10000, /**< the screen is not updated when the keyboard closes */
    KBD_NOUPDATE_AFTER_OPEN = 0x40000,  /**< nor when it was drawn first */
    KBD_NO_ENTER = 0x80000,             /**< Enter is ignored */
    /** Behind the title's NUL follows a second text: the label of the Enter key. */
    KBD_CUSTOM_ENTER_KEY = 0x100000,
    KBD_INVERTED_ENTER_KEY = 0x200000, /**< the Enter button is black */
    /** A button "@Next" as well. It does what Enter does, and the handler before gets press and
     *  release of #KEY_KEYBOARD. */
    KBD_NEXT_KEY = 0x800000,
    /** The text is a password: dots stand for its characters. The user can have those shown that
     *  were entered here, never a text that was there before. */
    KBD_PASSWORD = 0x2000000
};

/** What KBD_SENDKEYBOARDSTATEEVENTS and KBD_NEXT_KEY send. */
enum { KEY_KEYBOARD = 16 };

/** @name Opening and closing
 * @{ */
/**
 * Opens a keyboard. Without a screen nothing happens, and nobody is called.
 *
 * The kinds for dates and times are masked: the initial text is a template, such as "31.12.26
 * 23:59:59", of which only the digits can be typed over. An empty template accepts nothing.
 * @param title above the entry line, a key of GetLangText(); null and "" leave its line out
 * @param buffer the initial UTF-8 text, cut to @p maxlen characters; receives the result. Null: no
 *               entry line; each character goes to the handler before as press and release of a key
 *               with its code
 * @param maxlen in characters; below 0 counts as 0
 * @param flags a kind and KBD_* flags; bits without a name are ignored
 * @param proc gets @p buffer after Enter; null after Cancel, which puts the initial text back, and
 *             when the keyboard was closed by a call. May be null
 */
KELVANE_API void OpenKeyboard(const char *title, char *buffer, int maxlen, int flags,
                              void (*proc)(char *text));
/** OpenKeyboard() with a pointer for the callback. */
KELVANE_API void OpenKeyboardEx(const char *title, char *buffer, int maxlen, int flags,
                                void (*proc)(char *text, void *data), void *data);
/**
 * OpenKeyboard() with a layout of its own. On a multi-touch device a layout without touch rows
 * gives way to the user's, unless #KBD_KEEP_LAYOUT.
 * @param name of a file in "./system/language/keyboard", without ".kbd", or, with a slash in it, a
 *             path without ".kbd"; a missing one, and null, stand for the built-in layout
 */
KELVANE_API void OpenCustomKeyboard(const char *name, const char *title, char *buffer, int maxlen,
                                    int flags, void (*proc)(char *text));
/** Closes the open keyboard, whose callback gets null; the buffer stays as it is. */
KELVANE_API void CloseKeyboard(void);
/** @} */

/** @name Asking
 * @{ */
/** The area of the open keyboard, or of one with an entry line and no title. Null does nothing. */
KELVANE_API void GetKeyboardRect(irect *rect);
/** The area of a keyboard that is opened with these parameters. Null does nothing. */
KELVANE_API void GetKeyboardRectWithParams(irect *rect, const char *title, const char *buffer,
                                           int flags);
/** The flags of the keyboard opened last; 0 before the first one. */
KELVANE_API int GetKeyboardFlags(void);
/** 1 while a keyboard is open, else 0. */
KELVANE_API int IsKeyboardOpened(void);
/** @} */

/** @name Layouts
 * @{ */
/**
 * Chooses the user's layouts, and of their languages the one that was used last.
 * @param name a file in "./system/language/keyboard", without ".kbd", or up to three codes of
 *             languages that have one each, such as "EN-RU-UK"; of more than 15 bytes only the
 *             first 15 count. Exact names go before names in small letters. When nothing can be
 *             read, and for null, the built-in English layout is taken
 */
KELVANE_API void LoadKeyboard(const char *name);
/**
 * The names of the layouts in "./system/language/keyboard", sorted, without ".kbd"; names that
 * begin with a dot are left out.
 * @return a null-terminated list, the library's until the next call; null when memory runs out
 */
KELVANE_API char **EnumKeyboards(void);
/** @} */

KELVANE_END_DECLS

#endif
