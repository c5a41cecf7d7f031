// SPDX-License-Identifier: MIT
// A window onto content that is higher than its place.
#pragma once

#include "kelvane/gestures.h"
#include "kelvane/lists.h"
#include "lists/look.h"

namespace lists {

class ScrollArea {
  public:
    ScrollArea(kv_scrollproc drawer, void *context);

    void set_place(const irect &place);
    void set_content(int height, int line);
    // As near to it as may be.
    void set_top(int64_t top);
    int top() const { return top_; }
    int content_w() const; // all of it without a screen

    void draw();
    // Takes an event: draws and shows what it changes. The callback may destroy the view; so
    // whoever calls keeps it alive.
    bool handle(int type, int par1, int par2);

  private:
    bool is_scrolled() const { return height_ > place_.h; }
    // What of the place shows content: whole lines.
    int sight_h() const;
    int last_top() const;
    // How far one goes by pages or by parts of them.
    int page(int parts) const;
    irect bar() const;
    irect thumb() const;
    void draw_bar() const;
    void go_to(int64_t top);
    bool key(int code, bool is_held);
    bool pointer(int type, int par1, int par2);
    void swipe(int gesture);
    bool is_on_bar(int x, int y) const;
    void jump(int y);

    kv_scrollproc draw_;
    void *context_;
    int number_; // of this view among all that there were
    irect place_{};
    int height_ = 0, line_ = 1, top_ = 0;
    LookPtr look_;
    kv_gestures hand_{};
    bool is_bar_held_ = false, is_drawing_ = false;
};

} // namespace lists
