// SPDX-License-Identifier: MIT
// A page of rows, each of which opens something over the page. The last answer stands below them.
#pragma once

#include "page.h"

struct Row {
    const char *name;
    void (*open)();
};

class Rows {
  public:
    // `answer` stands there until the first one comes.
    template <int N>
    Rows(const Page &page, const Row (&rows)[N], const char *answer)
        : page_(page), rows_(rows), count_(N), answer_(answer) {}

    void draw(const irect &area);
    // UP and DOWN select, OK and a finger open.
    int handle(int type, int par1, int par2);
    // Shows it when the page is on the screen. It is not copied.
    void answer(const char *text);
    irect selected_area() const { return row_area(selected_); }

  private:
    irect row_area(int index) const { return grid_cell(place_, 1, count_ + 1, index, 0); }
    void draw_row(int index) const;
    void draw_answer() const;
    void select(int index);
    int tapped(int x, int y);
    int key_pressed(int key);

    const Page &page_;
    const Row *rows_;
    int count_;
    const char *answer_;
    int selected_ = 0;
    irect place_{};
};
