/* SPDX-License-Identifier: MIT */
/**
 * @file config_editor.h
 * The configuration editor: a screen of settings, a row each, made from a table of iconfigedit.
 *
 * The table that gave OpenConfig() its defaults is shown as a list: the label, a hint below it, and
 * the value at the end of the row. A chosen row opens what edits its kind. Each change is written
 * and saved at once, so that it is there for other processes and after a crash, and the application
 * is told. BACK leaves a nested table, and at last the editor.
 *
 * docs/config.md has a chapter on it, with what each kind stores.
 */
#ifndef KELVANE_CONFIG_EDITOR_H
#define KELVANE_CONFIG_EDITOR_H

#include "api.h"
#include "config.h"

KELVANE_BEGIN_DECLS

/**
 * Kinds of rows, in the low seven bits of iconfigedit::type. A row of any other kind is shown and
 * does nothing.
 */
enum {
    CONFIG_TEXT = 1,     /**< a line of text, typed */
    CONFIG_PASSWORD = 2, /**< the same, hidden, kept with WriteSecret(); at most 64 bytes */
    CONFIG_NUMBER = 3,   /**< an int; variants[0] is the least and variants[1] the greatest */
    CONFIG_SWITCH = 4,   /**< 0 or 1, changed at once; variants: how 0 and 1 are shown */
    CONFIG_CHOICE = 5,   /**< the text of one of the variants */
    CONFIG_POSITION = 6, /**< the same; its position, from 0, is stored */
    CONFIG_HEADING = 7,  /**< of the rows below it; holds no value */
    CONFIG_TIME = 8,     /**< "07:30" */
    CONFIG_DATE = 9,     /**< "2026-12-31" */
    CONFIG_FONT = 10,    /**< the name of a font, as OpenFont() takes it */
    CONFIG_FOLDER = 11,  /**< the path of a folder; variants[0]: no way leads out of that one */
    CONFIG_ACTION = 14,  /**< the application is told that it was chosen; holds no value */
    CONFIG_SUBMENU = 31, /**< opens the nested table */
    CONFIG_KIND = 0x7F,  /**< mask of all of these */
    CONFIG_HIDDEN = 0x80 /**< flag: no row */
};

/**
 * Hears of a row whose setting has been changed and saved, or of a chosen row of kind
 * #CONFIG_ACTION; and with null, as the last call, that the user has left the editor. It is not
 * told when a call closes the editor, also one that closes what the editor was opened above, such
 * as CloseDialog().
 */
typedef void (*kv_configproc)(const iconfigedit *row, void *context);

/**
 * Opens the editor and returns at once; another one that is open closes. A value that its row does
 * not allow is shown as the row's default.
 * @param title a key of GetLangText(); null: no title bar
 * @param config where the settings are; it must stay open as long as the editor
 * @param rows ended by a row of type 0; it must stay, with all it leads to. Labels, hints and
 *             variants are keys of GetLangText(). Null counts as empty. A table of oldconfigedit
 *             rows is accepted as OpenConfig() accepts it; @p proc hears of copies of its rows,
 *             which last until it returns
 * @param proc may be null @param context given to it
 * @return 1; 0 for a null @p config, without a screen and without memory
 */
KELVANE_API int OpenConfigEditor(const char *title, iconfig *config, const iconfigedit *rows,
                                 kv_configproc proc, void *context);

/** Closes the editor with all that is open above it, and tells nobody. */
KELVANE_API void CloseConfigEditor(void);

/** Shows all values anew, after the application has changed some in the handle. */
KELVANE_API void UpdateConfigEditor(void);

KELVANE_END_DECLS

#endif
