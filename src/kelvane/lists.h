/* SPDX-License-Identifier: MIT */
/**
 * @file lists.h
 * Lists of any length: as a screen of its own (OpenList()), and as a part of an application's page
 * (SelectionList_*). ScrollView_* shows what is higher than its place on the screen.
 *
 * A list asks for its rows one by one as they come into sight, so one of 100000 rows opens, turns
 * its pages and goes to its end as fast as the rows of one page are drawn. Rows and pages count
 * from 0.
 *
 * Callbacks may call anything, also what closes or destroys the list that calls them: it asks,
 * draws and tells nothing more then. An addition.
 *
 * docs/lists.md shows them, with their keys.
 */
#ifndef KELVANE_LISTS_H
#define KELVANE_LISTS_H

#include "api.h"
#include "bitmaps.h"
#include "canvas.h"

KELVANE_BEGIN_DECLS

struct ifont_s;

/** ilistrows::height of rows that are as high as the theme says; any positive number is pixels. */
enum {
    LIST_PLAIN_ROWS = 0,  /**< one line */
    LIST_COVER_ROWS = -1, /**< a cover, a bold title, a second line, and how far one has read */
    LIST_LINED_ROWS = -2  /**< two lines: the least that has ilistrow::line */
};

/** ilistrow::flags. */
enum {
    LIST_ROW_DISABLED = 0x1, /**< grey; it is passed over and cannot be chosen */
    LIST_ROW_HEADING = 0x2,  /**< bold, of the rows below it; passed over as well */
    LIST_ROW_ARROW = 0x4,    /**< an arrow at its end: something opens */
    LIST_ROW_CHOICE = 0x8,   /**< a bullet before it: one of several */
    LIST_ROW_CHOSEN = 0x10   /**< the bullet is filled; with #LIST_ROW_CHOICE */
};

/**
 * What a row shows. Texts are shown as they are, none is translated; null ones are empty. What the
 * pointers lead to has to last until the row is asked for the next time, or another one is.
 */
typedef struct ilistrow_s {
    const char *title;
    const char *line;  /**< the second line, in rows a third higher than plain ones */
    const char *value; /**< at the end of the row */
    /**
     * Scaled to its place; null: a blank cover, or no place for one. Covers stay as they are at
     * night; those of a widget until SetNightPictures() is called next.
     */
    const ibitmap *picture;
    const struct ifont_s
        *font;    /**< of the title, as it is; null: the theme's, bold when selected */
    int progress; /**< 0 to 100, in rows of several lines; -1: no bar */
    int flags;    /**< LIST_ROW_* */
} ilistrow;

/** Fills a row, which is empty and without a bar. */
typedef void (*kv_listrowproc)(int row, ilistrow *out, void *context);
/**
 * Draws a row into @p area, which is white and the clip. The library marks it when it is selected,
 * and draws lines between rows over its last pixels.
 * @return 0: the library draws it as it was filled
 */
typedef int (*kv_listdrawproc)(int row, const irect *area, void *context);

/** What happened in a list. */
enum {
    LIST_CHOSEN = 1,   /**< OK, or a tap; the list stays open */
    LIST_CONTEXT = 2,  /**< MENU, OK held, or a finger that rests: what can be done with the row */
    LIST_SELECTED = 3, /**< the selection has moved, by a key or a finger */
    LIST_COUNTER = 4,  /**< a tap on the counter of pages; the row is the page that is shown */
    LIST_CLOSED = 5    /**< of OpenList(): BACK, or the button in the title; it is closed already */
};
/** @param row the selected one, or -1; of #LIST_COUNTER the page */
typedef void (*kv_listhandler)(int action, int row, void *context);

/** The rows of a list. Nulls and zeroes are good for everything but @p count. */
typedef struct ilistrows_s {
    int count;                 /**< below 0 counts as 0 */
    int height;                /**< pixels from one row to the next, or LIST_*_ROWS */
    kv_listrowproc fill;       /**< null: rows are empty */
    kv_listdrawproc draw;      /**< goes before what was filled; null: the library draws all rows */
    kv_listhandler hproc;      /**< null: nobody is told */
    void *context;             /**< given to the three */
    const ibitmap *empty_icon; /**< shown when there are no rows; the caller's; null: none */
    const char *empty_title;   /**< the same; a key of GetLangText(), copied */
    const char *empty_line;    /**< what to do about it; a key of GetLangText(), copied */
} ilistrows;

/** A list that is a screen of its own. Zeroes are good for everything but the rows. */
typedef struct ilist_s {
    const char *title; /**< a key of GetLangText(), copied; null: no title bar */
    irect place;       /**< with a frame and a white rim inside, moved onto the screen; empty or too
                            small for a row: all of it */
    int selected;      /**< the row selected first, or the nearest; -1 for none */
    int flags;         /**< LIST_TURNS or 0 */
    ilistrows rows;
} ilist;

/** ilist::flags. */
enum {
    /**
     * The list turns the screen when the device is turned. An application that draws at one
     * orientation only leaves this out.
     */
    LIST_TURNS = 0x1
};

/** @name A list as a screen
 * It has the input until it closes; BACK closes it, and so does the button in its title bar on a
 * touch screen. What lay beneath is there again then, or the handler before hears #EVT_SHOW. Lists
 * may be opened above each other, and above menus, dialogs and the keyboard.
 * @{ */
/**
 * Opens a list and returns at once. A tap on the counter of pages opens the selector of pages, and
 * so does #KEY_AUX8.
 * @param list copied; null opens nothing
 * @return its number for the calls below; 0 without a screen or memory, and above seven others
 */
KELVANE_API int OpenList(const ilist *list);
/**
 * Closes a list with all that has opened above it, and tells nobody. A number of none that is open
 * does nothing, here and below.
 */
KELVANE_API void CloseList(int list);
/** Another number of rows, or the same one when what they show has changed; shows them. */
KELVANE_API void UpdateList(int list, int count);
/**
 * Selects a row and shows its page; -1 selects none. Others, and rows that are passed over: the
 * nearest on the page. Only what changes is shown, and nobody is told.
 */
KELVANE_API void SelectListRow(int list, int row);
/** The selected row; -1 for none. */
KELVANE_API int GetListRow(int list);
/** Shows one row anew, whose texts have changed; nothing while it is on another page. */
KELVANE_API void UpdateListRow(int list, int row);
/** Where a row is on the screen; empty when it is on another page, and of no open list. */
KELVANE_API irect GetListRowRect(int list, int row);
/** @} */

/** @name A list as a part of a page
 * The application draws it with its page, and hands it the events of its handler. What they change
 * the list draws and shows itself. It draws on the screen, whatever canvas is current.
 * @{ */
typedef struct iselectionlist_s iselectionlist;
/**
 * A new list, without a place, with its first row selected.
 * @param rows copied; null: no rows
 * @return the list, freed by SelectionList_Destroy(); null when memory runs out
 */
KELVANE_API iselectionlist *SelectionList_Create(const ilistrows *rows);
/** Frees a list; nothing is drawn. Null does nothing, here and below. */
KELVANE_API void SelectionList_Destroy(iselectionlist *list);
/**
 * Its place, of which what lies on the screen counts; empty ones, and null, show nothing. The page
 * with the selection comes to sight. Nothing is drawn.
 */
KELVANE_API void SelectionList_SetRect(iselectionlist *list, const irect *place);
/**
 * Another number of rows, or the same one when what they show has changed. The selection stays, or
 * moves to the last row; it is the first one of a list that was empty. Nothing is drawn.
 */
KELVANE_API void SelectionList_SetCount(iselectionlist *list, int count);
/** How many rows there are. */
KELVANE_API int SelectionList_GetCount(const iselectionlist *list);
/** Draws the whole list and shows nothing: an update is the page's own. */
KELVANE_API void SelectionList_Draw(iselectionlist *list);
/** Draws one row, whose texts have changed, and shows nothing; nothing while it is out of sight. */
KELVANE_API void SelectionList_DrawRow(iselectionlist *list, int row);
/**
 * Takes an event of a handler: keys, and what a finger does that went down inside.
 *
 * UP and DOWN select the row before or after, round and round; held they turn pages. LEFT, RIGHT
 * (the other way round in languages that are read from right to left), PREV, PREV2, NEXT and NEXT2
 * turn pages, held ten of them. OK, a tap: #LIST_CHOSEN; MENU, OK or a finger held: #LIST_CONTEXT.
 * A swipe and a tap on the arrows below the rows turn pages.
 * @return 1 when it was taken, else 0
 */
KELVANE_API int SelectionList_HandleEvent(iselectionlist *list, int type, int par1, int par2);
/**
 * Selects a row, on whose page the list is then; -1 selects none. Others: the nearest. Nothing is
 * drawn and nobody is told. A row that is passed over gives way to the nearest of its page when the
 * list is drawn.
 */
KELVANE_API void SelectionList_SetSelected(iselectionlist *list, int row);
/** The selected row; -1 for none. */
KELVANE_API int SelectionList_GetSelected(const iselectionlist *list);
/** Shows a page, or the nearest, and selects a row of it. Nothing is drawn. */
KELVANE_API void SelectionList_SetPage(iselectionlist *list, int page);
/** The page. */
KELVANE_API int SelectionList_GetPage(const iselectionlist *list);
/** How many pages there are, at least 1; 0 for null. */
KELVANE_API int SelectionList_GetPageCount(const iselectionlist *list);
/** Where a row is on the screen; empty when it is on another page. */
KELVANE_API irect SelectionList_GetRowRect(const iselectionlist *list, int row);
/** @} */

/** @name What is higher than its place
 * A scroll view shows a part of its content, with a scroll bar beside it, and goes through it by
 * pages. As a list in a page, it draws on the screen and shows what an event changes. While a
 * finger that went down on it is down, the slot of that finger is captured: no other component
 * takes it.
 * @{ */
typedef struct iscrollview_s iscrollview;
/**
 * Draws a part of the content.
 * @param area where on the screen, which is white and the clip; as wide as ScrollView_GetWidth()
 * @param top the row of pixels of the content that lies at the top of the area
 */
typedef void (*kv_scrollproc)(const irect *area, int top, void *context);
/**
 * A new view, without a place and without content.
 * @param draw null draws nothing
 * @return the view, freed by ScrollView_Destroy(); null when memory runs out
 */
KELVANE_API iscrollview *ScrollView_Create(kv_scrollproc draw, void *context);
/** Frees a view; nothing is drawn. Null does nothing, here and below. */
KELVANE_API void ScrollView_Destroy(iscrollview *view);
/** Its place, of which what lies on the screen counts; empty ones, and null, show nothing. */
KELVANE_API void ScrollView_SetRect(iscrollview *view, const irect *place);
/**
 * How high the content is. Nothing is drawn.
 * @param height in pixels; below 0 counts as 0
 * @param line the view begins and ends at multiples of it, so that no line of text is cut; below 2:
 *             anywhere
 */
KELVANE_API void ScrollView_SetContent(iscrollview *view, int height, int line);
/** How wide the content is: the place without the scroll bar, which there is always room for. */
KELVANE_API int ScrollView_GetWidth(const iscrollview *view);
/** Draws the part in sight with the scroll bar, and shows nothing. */
KELVANE_API void ScrollView_Draw(iscrollview *view);
/**
 * Takes an event of a handler. LEFT, RIGHT (the other way round in languages that are read from
 * right to left), PREV, PREV2, NEXT and NEXT2 go by a page, UP and DOWN by half of one, and held
 * by one. A swipe goes by a page; a finger that is lifted from the scroll bar, to that place.
 * Nothing is taken while all of the content is in sight.
 * @return 1 when it was taken, else 0
 */
KELVANE_API int ScrollView_HandleEvent(iscrollview *view, int type, int par1, int par2);
/** The row of pixels of the content that is at the top. */
KELVANE_API int ScrollView_GetTop(const iscrollview *view);
/** Shows the content from a row of pixels on, or as near to it as may be. Nothing is drawn. */
KELVANE_API void ScrollView_SetTop(iscrollview *view, int top);
/** @} */

KELVANE_END_DECLS

#endif
