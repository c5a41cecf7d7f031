// SPDX-License-Identifier: MIT
// OpenList(): a list with a title bar as a screen.
#include <algorithm>
#include <memory>
#include <string>

#include "chrome/panel.h"
#include "ground/guard.h"
#include "kelvane/events.h"
#include "kelvane/lists.h"
#include "lists/list.h"
#include "raster/box.h"
#include "raster/screen_scope.h"
#include "selectors/screen.h"
#include "selectors/title.h"

namespace selectors {
namespace {

irect whole_screen() {
    return {0, 0, ScreenWidth(), std::max(ScreenHeight() - PanelHeight(), 1), 0};
}

class ListScreen : public Screen {
  public:
    explicit ListScreen(const ilist &asked)
        : Screen((asked.flags & LIST_TURNS) != 0 ? Turning::with_device : Turning::stays),
          title_(asked.title ? asked.title : ""), has_title_(asked.title != nullptr),
          wanted_(asked.place), asked_(asked.rows), list_(own_rows()) {
        list_.select(asked.selected);
    }

    irect lay_out() override;
    void draw() override;
    bool handle(int type, int par1, int par2) override;

    lists::List &list() { return list_; }
    void show_list();
    void show_row(int row);

  private:
    // The same rows, which go through this record.
    ilistrows own_rows();
    void told(int action, int row);
    void close_by_user();
    bool is_window() const { return wanted_.w > 0 && wanted_.h > 0; }

    std::string title_;
    bool has_title_;
    irect wanted_;
    ilistrows asked_;
    lists::List list_;
    TitleBar bar_;
};

ilistrows ListScreen::own_rows() {
    ilistrows own = asked_;
    own.context = this;
    if (asked_.fill)
        own.fill = [](int row, ilistrow *out, void *screen) {
            const ilistrows &rows = static_cast<ListScreen *>(screen)->asked_;
            rows.fill(row, out, rows.context);
        };
    if (asked_.draw)
        own.draw = [](int row, const irect *area, void *screen) {
            const ilistrows &rows = static_cast<ListScreen *>(screen)->asked_;
            return rows.draw(row, area, rows.context);
        };
    own.hproc = [](int action, int row, void *screen) {
        static_cast<ListScreen *>(screen)->told(action, row);
    };
    return own;
}

void ListScreen::told(int action, int row) {
    if (is_open() && asked_.hproc) asked_.hproc(action, row, asked_.context);
}

void ListScreen::close_by_user() {
    const int row = list_.paging().selected;
    close(number());
    if (asked_.hproc) asked_.hproc(LIST_CLOSED, row, asked_.context);
}

irect ListScreen::lay_out() {
    bar_ = load_title_bar();
    const irect whole = whole_screen();
    irect covered = whole, inside = whole;
    if (is_window()) {
        covered = window_place(wanted_, whole);
        inside = window_inside(covered);
    }
    const int bar_h = has_title_ ? std::min(bar_.height(), inside.h) : 0;
    bar_.place = {inside.x, inside.y, inside.w, bar_h, 0};
    list_.set_place({inside.x, inside.y + bar_h, inside.w, inside.h - bar_h, 0});
    return covered;
}

void ListScreen::draw() {
    const raster::ScreenScope screen;
    if (is_window()) draw_window(window_place(wanted_, whole_screen()));
    if (has_title_) draw_title_bar(bar_, title_.c_str());
    list_.draw();
}

void ListScreen::show_row(int row) {
    if (is_on_top())
        list_.redraw_row(row);
    else
        show(); // later
}

void ListScreen::show_list() {
    if (is_on_top())
        list_.redraw();
    else
        show(); // later
}

bool ListScreen::handle(int type, int par1, int par2) {
    if (has_title_ && bar_.takes_tap(type, par1, par2)) {
        close_by_user();
        return true;
    }
    if (list_.handle(type, par1, par2)) return true;
    if (type != EVT_KEYPRESS || par1 != KEY_BACK) return false;
    close_by_user();
    return true;
}

template <class Work>
void with_list(int number, Work work) {
    ground::guarded([&] {
        if (const auto screen = std::dynamic_pointer_cast<ListScreen>(find(number))) work(*screen);
    });
}

} // namespace
} // namespace selectors

int OpenList(const ilist *list) {
    using namespace selectors;
    return ground::guarded(0, [&] { return list ? open(std::make_shared<ListScreen>(*list)) : 0; });
}

void CloseList(int list) {
    selectors::with_list(list, [](selectors::ListScreen &s) { close(s.number()); });
}

void UpdateList(int list, int count) {
    selectors::with_list(list, [&](selectors::ListScreen &s) {
        s.list().set_count(count);
        s.show_list();
    });
}

void SelectListRow(int list, int row) {
    selectors::with_list(list, [&](selectors::ListScreen &s) {
        s.list().select(row);
        s.show_list();
    });
}

int GetListRow(int list) {
    int row = -1;
    selectors::with_list(list, [&](selectors::ListScreen &s) { row = s.list().paging().selected; });
    return row;
}

void UpdateListRow(int list, int row) {
    selectors::with_list(list, [&](selectors::ListScreen &s) { s.show_row(row); });
}

irect GetListRowRect(int list, int row) {
    irect place{};
    selectors::with_list(list, [&](selectors::ListScreen &s) { place = s.list().row_rect(row); });
    return place;
}
