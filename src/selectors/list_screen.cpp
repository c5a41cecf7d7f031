// SPDX-License-Identifier: MIT
// Lays the list out below its title, and answers to what is not the list's own: the counter of
// pages, the button in the title and the key for going back.
#include "selectors/list_screen.h"

#include <algorithm>
#include <cstdint>

#include "chrome/panel.h"
#include "kelvane/events.h"
#include "kelvane/selectors.h"
#include "raster/box.h"
#include "raster/screen_scope.h"

namespace selectors {
namespace {

constexpr int counter_key = KEY_AUX8; // it has no other meaning

irect whole_screen() {
    return {0, 0, ScreenWidth(), std::max(ScreenHeight() - PanelHeight(), 1), 0};
}

// The list is told by its number: it may be closed before a page is chosen.
void page_chosen(int page, void *number) {
    const auto screen = std::dynamic_pointer_cast<ListScreen>(
        find(static_cast<int>(reinterpret_cast<intptr_t>(number))));
    if (!screen || page < 1) return;
    screen->list().show_page(page - 1);
    screen->show_list();
}

} // namespace

ListScreen::ListScreen(const Kind &kind)
    : Screen(kind.turning), title_(kind.title ? kind.title : ""), has_title_(kind.title != nullptr),
      wanted_(kind.place), list_(own_rows(kind.rows)) {}

ilistrows ListScreen::own_rows(ilistrows rows) {
    rows.context = this;
    rows.fill = [](int row, ilistrow *out, void *context) {
        auto &screen = *static_cast<ListScreen *>(context);
        screen.fill(row, *out);
        screen.notice_closing();
    };
    rows.draw = [](int row, const irect *area, void *context) {
        auto &screen = *static_cast<ListScreen *>(context);
        const bool is_drawn = screen.draw_row(row, *area);
        screen.notice_closing();
        return is_drawn ? 1 : 0;
    };
    rows.hproc = [](int action, int row, void *screen) {
        static_cast<ListScreen *>(screen)->tell(action, row);
    };
    return rows;
}

// What lay beneath is on the screen again.
void ListScreen::notice_closing() {
    if (!is_open()) list_.abandon();
}

bool ListScreen::draw_row(int, const irect &) {
    return false;
}

void ListScreen::ask_for_page() {
    const lists::Paging &p = list_.paging();
    OpenPageSelector(p.page + 1, p.last_page() + 1, page_chosen,
                     reinterpret_cast<void *>(intptr_t{number()}));
}

void ListScreen::tell(int action, int row) {
    if (!is_open()) return;
    if (action == LIST_COUNTER)
        ask_for_page();
    else
        told(action, row);
}

void ListScreen::close_by_user() {
    const int row = list_.paging().selected;
    close_with_above(number());
    told(LIST_CLOSED, row);
}

irect ListScreen::lay_out() {
    bar_ = load_title_bar();
    const irect whole = whole_screen(), window = window_place(wanted_, whole);
    const int row_h = lists::look()->row_h, title_h = has_title_ ? bar_.height() : 0;
    irect inside = window_inside(window);
    is_window_ = inside.w >= 2 * row_h && inside.h >= title_h + row_h;
    covered_ = is_window_ ? window : whole;
    if (!is_window_) inside = whole;
    const int bar_h = std::min(title_h, inside.h);
    bar_.place = {inside.x, inside.y, inside.w, bar_h, 0};
    const int top = has_title_ ? std::min(bar_h + bar_.below, inside.h) : 0;
    list_.set_place({inside.x, inside.y + top, inside.w, inside.h - top, 0});
    ground_ = is_window_ ? window : irect{inside.x, inside.y, inside.w, top, 0};
    return covered_;
}

void ListScreen::draw() {
    const raster::ScreenScope screen;
    FillAreaRect(&ground_, WHITE);
    if (has_title_) draw_title_bar(bar_, title_, cut_);
    list_.draw();
    if (is_window_ && is_open()) draw_window_border(covered_);
}

void ListScreen::show_list() {
    if (is_current())
        list_.redraw();
    else
        show();
}

void ListScreen::go_to(int row) {
    if (is_current()) return list_.go_to(row);
    list_.select(row);
    show();
}

void ListScreen::show_row(int row) {
    if (is_current())
        list_.redraw_row(row);
    else
        show();
}

bool ListScreen::handle(int type, int par1, int par2) {
    if (has_title_ && bar_.takes_tap(type, par1, par2)) {
        close_by_user();
        return true;
    }
    if (list_.handle(type, par1, par2)) return true;
    if (type != EVT_KEYPRESS || (par1 != KEY_BACK && par1 != counter_key)) return false;
    if (par1 == KEY_BACK)
        close_by_user();
    else if (list_.paging().last_page() > 0)
        ask_for_page();
    return true;
}

} // namespace selectors
