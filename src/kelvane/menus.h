/* SPDX-License-Identifier: MIT */
/**
 * @file menus.h
 * Menus over whatever is on the screen: lists with pages and submenus, named context menus, and a
 * grid of nine pictures.
 *
 * A menu is an array of items that ends with one of type 0. The arrays, their submenus, icons and
 * fonts stay the caller's and last until the menu has closed; labels are translated and copied when
 * a level opens. What lay beneath a menu is put back when it closes.
 *
 * Callbacks run after every level is closed and the handler before them is back, so they may open
 * the next menu or a dialog, change the handler or end the application. Each menu calls once, and
 * never when it is closed by a call or the application ends. docs/menus.md tells keys and looks.
 */
#ifndef KELVANE_MENUS_H
#define KELVANE_MENUS_H

#include "api.h"
#include "bitmaps.h"
#include "canvas.h"
#include "text.h"
#include "theme.h"

KELVANE_BEGIN_DECLS

/** Kinds of items, of which the low five bits count, and a flag. Other kinds give no row. */
enum {
    ITEM_HEADER = 1,    /**< the title; it stands at the top of every page that follows */
    ITEM_ACTIVE = 2,    /**< can be chosen */
    ITEM_INACTIVE = 3,  /**< is shown and cannot be chosen */
    ITEM_SUBMENU = 5,   /**< opens another level */
    ITEM_SEPARATOR = 6, /**< a line */
    ITEM_BULLET = 7,    /**< can be chosen, with a bullet before it */
    ITEM_HIDDEN = 0x80  /**< flag: no row */
};

/** An item. */
typedef struct imenu_s {
    unsigned short type;     /**< ITEM_*; 0 ends the array */
    short index;             /**< what the callback gets */
    const char *text;        /**< the label, a key of GetLangText(); null counts as empty */
    struct imenu_s *submenu; /**< of ITEM_SUBMENU; null or empty opens nothing */
} imenu;

/** An item with an icon and a font. */
typedef struct imenuex_s {
    unsigned short type;       /**< ITEM_*; 0 ends the array */
    short index;               /**< what the callback gets */
    const char *text;          /**< the label, a key of GetLangText(); null counts as empty */
    struct imenuex_s *submenu; /**< of ITEM_SUBMENU; null or empty opens nothing */
    const ibitmap *icon;       /**< before the label; null for none */
    void *reserved;            /**< not used */
    const ifont *font;         /**< of the label, in a context menu with use_own_font; or null */
} imenuex;

/** Gets the index of the chosen item, or -1 when the menu was dismissed. */
typedef void (*kv_menuhandler)(int index);

/** On which side of an item a context menu opens: irect::flags of a placement. */
enum {
    MENU_SIDE_AUTO = 0,  /**< below an item in the upper half of the screen, else above */
    MENU_SIDE_ABOVE = 1, /**< a side without room gives way to the opposite one */
    MENU_SIDE_BELOW = 2,
    MENU_SIDE_RIGHT = 3,
    MENU_SIDE_LEFT = 4
};

/** A named context menu. Change it only while it is closed. */
typedef struct icontext_menu_s {
    char *id;                             /**< its name, the library's */
    kv_menuhandler hproc;                 /**< gets the answer; null: the menu does not open */
    imenuex *menuex;                      /**< the items; goes before menu */
    imenu *menu;                          /**< the items when menuex is null */
    irect pos_selected_item;              /**< the item beside which it opens; empty: at pos_menu */
    irect pos_menu;                       /**< x, y without an item, and MENU_SIDE_* as flags */
    icontext_menu_properties *properties; /**< the look, the library's; null: the theme's */
    int active_element;                   /**< position of the item selected first; -1 for none */
    short enable_pointer;                 /**< not 0: a pointer from the menu to the item */
    short enable_aura;                    /**< not 0: a white rim around the menu */
    short use_own_font;                   /**< not 0: items may have fonts of their own */
    short update_after_close; /**< not 0: the whole screen is updated after the last level */
    short only_choise;        /**< kept and handed to submenus; has no effect */
} icontext_menu;

/** @name Menus
 * @{ */
/**
 * Opens a menu, as the next level when one is open; there are six levels. Null or empty items and a
 * null callback do nothing.
 * @param pos position in the array of the item that is selected first, or the nearest one before it
 *            that can be; -1, or one without a row: none
 * @param x,y top left of the menu, which is moved to fit on the screen
 */
KELVANE_API void OpenMenu(imenu *menu, int pos, int x, int y, kv_menuhandler hproc);
/** OpenMenu() of extended items. */
KELVANE_API void OpenMenuEx(imenuex *menu, int pos, int x, int y, kv_menuhandler hproc);
/**
 * Gives the top level other items, of any number, and shows them in the same place. What is
 * selected stays at its row or moves to the nearest one that can be chosen. Nothing when no menu is
 * open, or for null.
 */
KELVANE_API void UpdateMenuEx(imenuex *menu);
/** The size of a menu, at 0, 0; empty for null or empty items. A null result does nothing. */
KELVANE_API void GetMenuRect(irect *result, imenu *menu);
/** GetMenuRect() of extended items. */
KELVANE_API void GetMenuRectEx(irect *result, imenuex *menu);
/**
 * Where a menu goes beside an item.
 * @param item on the screen
 * @param placement w and h are the menu's size, flags its side, MENU_SIDE_*
 * @param result the menu's rectangle with the side that was taken, on the screen as far as it fits.
 *               Nulls do nothing
 */
KELVANE_API void CalculatePosition(irect *item, irect *placement, irect *result);
/** The font of all menus from the next one on, which stays the caller's; null: the theme's. */
KELVANE_API void SetMenuFont(ifont *font);
/** @} */

/** @name Context menus
 * @{ */
/**
 * The context menu of a name, which is made at the first call with the theme's look of that moment.
 * @return the record, the library's until the screen closes; null for null or without memory
 */
KELVANE_API icontext_menu *CreateContextMenu(const char *id);
/** Opens one. Null, and a record without items or callback, do nothing. */
KELVANE_API void OpenContextMenu(icontext_menu *context);
/** Closes every level of the open menu and calls nobody. Nothing when none is open. */
KELVANE_API void CloseContextMenu(void);
/** SetContextMenuStruct() of the record of a name; an unknown one does nothing. */
KELVANE_API void SetContextMenu(const char *id);
/**
 * The next menu that opens takes its placement, look and switches from this record, and the one
 * after it no more. Null takes the wish back.
 */
KELVANE_API void SetContextMenuStruct(icontext_menu *context);
/** @} */

/**
 * Opens nine cells in the middle of the screen. The keys of directions move, OK chooses, BACK and a
 * tap outside dismiss. Items that are hidden, of unknown kind or missing leave their cell empty; of
 * kinds that cannot be chosen they are only shown.
 * @param menu at most nine items count; null or empty items do nothing
 * @param pictures one for each cell, each may be null; null for none. They last until the close
 * @param pos the cell selected first, or the nearest before it that can be; -1 for none
 * @param hproc gets the index of the item, or -1; null does nothing
 */
KELVANE_API void OpenMenu3x3(const imenu *menu, const ibitmap *const pictures[9], int pos,
                             kv_menuhandler hproc);

KELVANE_END_DECLS

#endif
