// SPDX-License-Identifier: MIT
// A page of the gallery and the measures that all pages share.
#pragma once

#include <kelvane.hpp>

struct Page {
    const char *title;
    const char *hint; // one line under the title
    // Draws the whole page into `area`, which is white.
    void (*draw)(const irect &area);
    // Offered each event first. Returns 1 when the page used it.
    int (*handle)(int type, int par1, int par2, const irect &area);
    // The page is left; null when it does not mind.
    void (*leave)();
};

extern const Page shapes_page, pictures_page, text_page, prose_page, updates_page, paint_page,
    events_page, boxes_page, menus_page, form_page, lists_page, dictionary_page, settings_page;

// The page on the screen.
const Page &current_page();
// What everything is measured in: 4 pixels, or more on a denser screen.
int unit();
// The thinnest line.
int hairline();

inline bool inside(const irect &r, int x, int y) {
    return x >= r.x && x < r.x + r.w && y >= r.y && y < r.y + r.h;
}

// Cell `index` of a grid, with a gap of `gap` pixels between cells.
irect grid_cell(const irect &area, int columns, int rows, int index, int gap);

// Notes an event for the page that lists them.
void note_event(int type, int par1, int par2);
