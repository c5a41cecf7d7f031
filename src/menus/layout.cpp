// SPDX-License-Identifier: MIT
// Measures labels and shares a row among its parts.
#include "menus/layout.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "hw.h"
#include "kelvane/text.h"
#include "text/font_scope.h"

namespace menus {
namespace {

constexpr int multi_touch_above_kind = 2;
constexpr int least_units = 40;
constexpr int bold_part = 8; // a selected label is wider by a part of this many

Rules rules_of(const Look &look, int room_h) {
    const icontext_menu_properties &p = look.p;
    return {.border = p.border_size,
            .indent = p.item_border_indent_vertical,
            .limit = room_h,
            .header_h = p.title_height,
            .item_h = p.item_height,
            .separator_h = look.separator_h(),
            .lines = p.separator_frequency == 1 ? Lines::between_items : Lines::as_items,
            .flow = Flow::pages};
}

bool any(const std::vector<Item> &items, int kind) {
    return std::any_of(items.begin(), items.end(),
                       [kind](const Item &item) { return item.kind == kind; });
}

int widest_icon(const std::vector<Item> &items) {
    int width = 0;
    for (const Item &item : items)
        if (item.icon) width = std::max<int>(width, item.icon->width);
    return width;
}

int with_gap(int width, int gap) {
    return width > 0 ? width + gap : 0;
}

Columns columns_of(const std::vector<Item> &items, const Look &look) {
    const int u = look.unit, half = u / 2;
    Columns c;
    c.indent = look.p.item_border_indent_horizontal;
    if (look.p.bullet_show != 0 && any(items, ITEM_BULLET))
        c.bullet_w = with_gap(look.bullet.width(), 2 * u + half);
    c.icon_w = with_gap(widest_icon(items), 3 * u);
    if (any(items, ITEM_SUBMENU)) c.arrow_w = with_gap(look.arrow.width(), u);
    return c;
}

LabelState unselected_state(int kind) {
    return kind == ITEM_INACTIVE ? LabelState::disabled : LabelState::plain;
}

// Selecting a font takes time, so labels in the same one go together.
class Measurer {
  public:
    Measurer(const Look &look, const Fonts &fonts) : look_(look), fonts_(fonts) {}

    int64_t width(const Item &item, LabelState state) {
        const ifont *font = label_font(look_, fonts_, item, state);
        if (font != font_) SetFont(font_ = font, -1);
        return StringWidth(item.text.c_str());
    }

  private:
    const Look &look_;
    const Fonts &fonts_;
    const text::FontScope scope_;
    const ifont *font_ = nullptr;
};

int64_t widest_title(const std::vector<Item> &items, const Look &look, const Fonts &fonts) {
    Measurer measurer(look, fonts);
    int64_t width = 0;
    for (const Item &item : items)
        if (item.kind == ITEM_HEADER)
            width = std::max(width, measurer.width(item, LabelState::title));
    return width;
}

// As it is when selected: wider by a part, or by what bold letters take in the widest one.
int64_t widest_label(const std::vector<Item> &items, const Look &look, const Fonts &fonts) {
    Measurer measurer(look, fonts);
    int64_t width = 0;
    const Item *widest = nullptr;
    for (const Item &item : items) {
        if (item.kind == ITEM_HEADER || item.kind == ITEM_SEPARATOR) continue;
        const int64_t own = measurer.width(item, unselected_state(item.kind));
        if (own > width) width = own, widest = &item;
    }
    if (!widest) return 0;
    const int64_t bold = measurer.width(*widest, LabelState::selected);
    return std::max(width + width / bold_part, bold + look.unit);
}

// What stands in a title bar besides the title.
int beside_title(const Request &request, const Look &look, const Level &level) {
    const bool has_exit = request.exit == ExitButton::in_header;
    const int exit = has_exit ? look.exit.width() + look.exit_x + look.unit : 0;
    if (!level.is_paged()) return exit;
    const text::FontScope scope(look.small_font.get());
    return exit + StringWidth(counter(level.last_page, level.last_page).text) + look.unit;
}

} // namespace

Counter counter(int page, int last_page) {
    Counter made;
    std::snprintf(made.text, sizeof made.text, "%d / %d", page + 1, last_page + 1);
    return made;
}

const ifont *label_font(const Look &look, const Fonts &fonts, const Item &item, LabelState state) {
    if (item.font) return item.font;
    if (fonts.all) return fonts.all;
    switch (state) {
    case LabelState::plain:
        return look.p.font_normal;
    case LabelState::disabled:
        return look.p.font_disabled;
    case LabelState::selected:
        return look.fills_selection() ? look.p.font_selected : look.p.font_normal;
    case LabelState::title:
        return look.p.font_selected;
    }
    return nullptr;
}

Layout lay_out(const Request &request, const Look &look, int room_w, int room_h) {
    std::vector<Item> items = read_items(request.menu, request.own_fonts);
    Layout l;
    l.columns = columns_of(items, look);
    Rules rules = rules_of(look, room_h);
    const bool overflows = unbroken_height(items, rules) > room_h;
    if (overflows && device_touchpanel() > multi_touch_above_kind) rules.flow = Flow::scrolled;
    if (overflows && rules.flow == Flow::pages) l.columns.scroll_w = thumb_w + 2 * look.unit;
    const int64_t label = widest_label(items, look, request.fonts) + l.columns.text_offset() +
                          l.columns.beyond_text();
    const int64_t title = widest_title(items, look, request.fonts) + 2 * l.columns.indent;
    l.level = build_level(std::move(items), rules, request.position);
    const int64_t bar = title + beside_title(request, look, l.level);
    const int64_t least = int64_t{least_units} * look.unit;
    l.w = static_cast<int>(std::min<int64_t>(std::max({label, bar, least}), room_w));
    l.content_h = l.level.height;
    l.h = std::min(l.level.height, room_h);
    return l;
}

} // namespace menus
