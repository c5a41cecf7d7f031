/* SPDX-License-Identifier: MIT */
/**
 * @file panel.h
 * The status panel: a strip with the time, a title, pages, network and battery.
 *
 * It is off until the theme gives it a height or the application switches it on. From then on the
 * lowest PanelHeight() rows of the screen are its own: each update that shows some of them shows
 * the panel, whatever was drawn there, and it brings itself up to date with every minute and with
 * the battery. What the application draws, and what the library opens, ends above them. A theme
 * with "panel_position" 1 has the device show these rows at the top; nothing else changes.
 *
 * A finger that goes down and up on the panel is not offered to handlers as a pointer. They hear
 * EVT_PANEL instead, unless a component is open above the application: then the pointer is its own.
 */
#ifndef KELVANE_PANEL_H
#define KELVANE_PANEL_H

#include "api.h"

KELVANE_BEGIN_DECLS

/** Whether there is a panel; see SetPanelMode(). */
enum {
    PANEL_BY_THEME = 0, /**< when the theme's "panel.height" is above 0; so it is at first */
    PANEL_ON = 1,       /**< always, as high as its text needs where the theme has no height */
    PANEL_OFF = 2       /**< never */
};

/** Event codes of the panel. The comment gives par1 / par2. */
enum {
    EVT_PANEL = 61 /**< PANEL_PART_* / 0: the panel was tapped */
};

/** What of the panel was tapped. */
enum {
    PANEL_PART_NONE = 0,    /**< between its parts */
    PANEL_PART_CLOCK = 1,   /**< the time */
    PANEL_PART_TEXT = 2,    /**< the text of SetPanelText() */
    PANEL_PART_PAGES = 3,   /**< the pages of SetPanelPages() */
    PANEL_PART_LOCK = 4,    /**< locked keys */
    PANEL_PART_NETWORK = 5, /**< the wireless network, while its radio is on */
    PANEL_PART_BATTERY = 6  /**< battery, per cent and plug */
};

/**
 * Switches the panel on or off. The application draws its screen anew afterwards, as its height has
 * changed.
 * @param mode PANEL_BY_THEME, PANEL_ON or PANEL_OFF; anything else is ignored
 * @return the mode before
 */
KELVANE_API int SetPanelMode(int mode);

/**
 * Rows that the panel takes from the foot of the screen; 0 while it is off and without a screen. At
 * most a third of the screen's height.
 */
KELVANE_API int PanelHeight(void);

/**
 * What stands beside the time, such as the title of a book: cut with dots where there is no room.
 * Shown with the next update of the panel's rows, or of its own within a step of the loop.
 * @param text copied; null or "" for none
 */
KELVANE_API void SetPanelText(const char *text);

/** "3 / 340" beside the text, shown as SetPanelText() is. @param pages below 1 shows none */
KELVANE_API void SetPanelPages(int page, int pages);

/**
 * Draws the panel on the screen as it is now, whatever canvas is current, and updates nothing. Each
 * update does so itself: this is for pictures taken of the screen in between.
 */
KELVANE_API void DrawPanel(void);

KELVANE_END_DECLS

#endif
