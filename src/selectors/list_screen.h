// SPDX-License-Identifier: MIT
// A list below a title bar as a screen, or as a window when it is given a place.
#pragma once

#include <string>
#include <utility>

#include "lists/list.h"
#include "selectors/screen.h"
#include "selectors/title.h"

namespace selectors {

class ListScreen : public Screen {
  public:
    irect lay_out() final;
    void draw() final;
    bool handle(int type, int par1, int par2) final;

    lists::List &list() { return list_; }
    // Shows the rows anew, now or later.
    void show_list();
    void show_row(int row);
    void go_to(int row);

  protected:
    struct Kind {
        const char *title; // null: no title bar
        irect place;       // empty or too small for rows: the whole screen
        Turning turning;
        ilistrows rows; // their number, height, and what is said when there are none
    };
    explicit ListScreen(const Kind &kind);

    virtual void fill(int row, ilistrow &out) = 0;
    virtual bool draw_row(int row, const irect &area);
    // Of a screen that is open, or has just been closed: LIST_CLOSED. Never LIST_COUNTER.
    virtual void told(int action, int row) = 0;
    void set_title(std::string title, Cut cut) {
        title_ = std::move(title);
        cut_ = cut;
    }

  private:
    // The same rows, asked of this screen.
    ilistrows own_rows(ilistrows rows);
    void tell(int action, int row);
    // After each callback that may have closed it.
    void notice_closing();
    void ask_for_page();
    void close_by_user();

    std::string title_;
    Cut cut_ = Cut::end; // of the title
    bool has_title_;
    bool is_window_ = false;
    irect wanted_, covered_{};
    irect ground_{}; // what the list and the title leave to be made white
    lists::List list_;
    TitleBar bar_;
};

} // namespace selectors
