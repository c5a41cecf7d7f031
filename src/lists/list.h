// SPDX-License-Identifier: MIT
// A list of rows that are asked for as they come into sight: its place, its pages, its events.
#pragma once

#include <string>

#include "kelvane/gestures.h"
#include "kelvane/lists.h"
#include "lists/look.h"
#include "lists/paging.h"
#include "lists/row.h"

namespace lists {

class List {
  public:
    explicit List(const ilistrows &rows);

    void set_place(const irect &place);
    void set_count(int count);
    void select(int row);
    // Of a page that is not there the nearest one.
    void show_page(int page);
    const Paging &paging() const { return paging_; }
    const irect &place() const { return place_; }
    // Empty when the row is on another page.
    irect row_rect(int row) const;

    // Draws everything on the screen.
    void draw();
    // One row, where it is on the page.
    void draw_row(int row);
    // The same, and show it.
    void redraw();
    void redraw_row(int row);
    // Selects a row, or the nearest that can be, and shows what that changes.
    void go_to(int row);
    // Whoever owned it is gone, maybe in a callback: nothing is asked, drawn or told any more.
    void abandon() { is_abandoned_ = true; }
    // Takes an event: draws and shows what it changes, and tells the owner, who may then destroy
    // the list; so whoever calls keeps it alive.
    bool handle(int type, int par1, int par2);

  private:
    enum class Press { first, held };
    enum class Told { yes, no };

    // Follows the theme and the number of rows.
    void lay_out();
    // Moves the selection off rows that are passed over.
    void settle();
    int nearest(int row) const;

    ilistrow filled(int row) const;
    bool is_selectable(int row) const;
    int next_selectable(int step) const;
    int nearest_on_page(int row) const;
    RowPlace row_place(int row) const;
    int row_at(int x, int y) const;

    void draw_rows();
    // What lies under a row: what is white already need not be filled.
    enum class Ground { any, white };
    // What an update of it has to keep.
    enum class Tones { two, all };
    Tones draw_row(int row, Ground ground);
    Tones draw_inside(int row, const RowPlace &place);
    void draw_separator(int row);
    void draw_empty() const;

    void tell(int action, int row) const;
    void move_to(int row, Told told);
    void show_move(int from, int to);
    void update_rows(const irect &rows, Tones tones) const;
    void turn(int pages);
    void step(int step, Press press);
    bool key(int code, Press press);
    bool ok_key(int type, int repeats);
    bool pointer(int type, int par1, int par2);
    void gesture(int kind);
    void tap(int x, int y);
    void act_on(int row, int action);
    bool has_lines() const { return look_->has_lines || look_->is_lined(row_h_); }
    bool is_empty() const { return paging_.count < 1; }

    ilistrows rows_;
    std::string empty_title_, empty_line_;
    Paging paging_;
    irect wanted_{}, place_{}; // the place is what of it lies on the screen
    irect strip_{};            // empty where there is one page
    LookPtr look_;
    int row_h_ = 1, top_ = 0; // top: what is free above the first row
    kv_gestures hand_{};
    bool ok_is_down_ = false;
    bool is_fresh_ = true;    // nobody has chosen what is selected
    bool is_settled_ = false; // what is selected can be
    bool is_stale_ = true;    // the screen shows another layout
    bool is_drawing_ = false, is_abandoned_ = false;
};

} // namespace lists
