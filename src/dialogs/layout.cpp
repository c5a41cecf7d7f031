// SPDX-License-Identifier: MIT
// Adds up the parts of a box from the foot of the screen upwards.
#include "dialogs/layout.h"

#include <algorithm>

#include "kelvane/text.h"

namespace dialogs {
namespace {

constexpr int icon_margin = 45;         // beside the spacing
constexpr int message_icon_margin = 90; // without it
constexpr int message_margins = 120;
constexpr int bar_indent = 41;
constexpr int bar_area_h = 41; // from the foot of the text's part up

// A sixteenth of the longer side of the screen, the height of a row of buttons.
int row_height(const Measures &m) {
    return std::max(m.screen_w, m.screen_h) / 16;
}

int text_width(Kind kind, const Measures &m, int box_w) {
    if (kind == Kind::message) return box_w - 2 * m.spacing - message_margins - m.icon_w;
    const int icon = m.icon_w > 0 ? m.icon_w + m.spacing : 0;
    return box_w - 2 * m.spacing - 2 * icon_margin - icon;
}

// As high as the text and the icon need with the spacing above and below them.
int text_height(const Measures &m, int needed, int limit) {
    const int content = std::max(needed, m.icon_h);
    const int height = std::max(3 * row_height(m), content + 2 * m.spacing);
    return std::min(height, limit);
}

int icon_x(Kind kind, const Measures &m) {
    return kind == Kind::message ? message_icon_margin : m.spacing + icon_margin;
}

int text_x(Kind kind, const Measures &m, const irect &icon) {
    const bool indented = kind == Kind::message || m.icon_w > 0;
    return icon.x + icon.w + (indented ? m.spacing : 0);
}

// The bar stands below the text, which keeps the lines that it needs: the upper part of the bar's
// area is empty.
void lay_out_bar(Layout &l, const Measures &m, int needed) {
    const int y = l.text.y + l.text.h - bar_area_h;
    l.bar = {l.text.x + bar_indent, y, m.bar_w, bar_area_h, 0};
    l.text.h = std::max(l.text.h - bar_area_h, std::min(needed, l.text.h - bar_area_h / 2));
}

} // namespace

Layout lay_out(Kind kind, const Measures &m, const char *text, ButtonRow row) {
    Layout l{};
    l.box.w = std::min(m.screen_w, m.screen_h);
    l.box.x = m.screen_w / 2 - l.box.w / 2;
    const int row_h = row_height(m), inside_h = row == ButtonRow::reserved ? row_h : 0;
    const int raised = kind == Kind::question ? m.raised : 0;
    const int foot = m.screen_h - m.below - raised;
    const int width = text_width(kind, m, l.box.w);
    const int needed = TextRectHeight(width, text, ALIGN_LEFT);
    const int height = text_height(m, needed, std::min(foot, m.screen_h) - inside_h);
    l.box.h = height + inside_h;
    l.box.y = foot - l.box.h;
    l.row = {l.box.x, l.box.y + height, l.box.w, row_h, 0};
    l.icon = {l.box.x + icon_x(kind, m), l.box.y, m.icon_w, height, 0};
    l.text = {text_x(kind, m, l.icon), l.box.y, width, height, 0};
    if (kind == Kind::progress) lay_out_bar(l, m, needed);
    return l;
}

void lay_out_buttons(Layout &layout, const Present &present) {
    const int count = static_cast<int>(std::count(present.begin(), present.end(), true));
    int x = layout.row.x, left = count;
    for (size_t i = 0; i < present.size(); ++i) {
        if (!present[i]) continue;
        const int width = --left == 0 ? layout.row.x + layout.row.w - x : layout.row.w / count;
        layout.buttons[i] = {x, layout.row.y, width, layout.row.h, 0};
        x += width;
    }
}

} // namespace dialogs
