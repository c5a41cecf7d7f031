// SPDX-License-Identifier: MIT
// Draws the line with the text, and tells what lies where in it. Text that is longer than the line
// is moved so that the cursor stays in sight.
#include <algorithm>
#include <string>

#include "kelvane/keyboard.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "keyboard/draw.h"
#include "raster/screen_scope.h"
#include "text/font_scope.h"

namespace keyboard {
namespace {

constexpr const char *dot = "\u2022";
constexpr int starts_right_to_left = 2;

// What the line shows for some of the characters.
std::string shown(const Board &b, size_t from, size_t to) {
    if (!b.is_password() || (b.has_eye() && b.eye_is_open)) return b.entry.utf8(from, to);
    std::string text;
    for (size_t i = from; i < std::min(to, b.entry.text().size()); ++i)
        text += i == b.revealed ? b.entry.utf8(i, i + 1) : dot;
    return text;
}

std::string shown(const Board &b) {
    return shown(b, 0, b.entry.text().size());
}

// In the current font.
int width_before(const Board &b, size_t position) {
    return StringWidth(shown(b, 0, position).c_str());
}

// Where there is no text yet, as the interface does. Dots have no direction.
bool runs_from_right(const Board &b) {
    const auto &text = b.entry.text();
    if (b.is_password()) return false;
    if (text.empty()) return IsRTL() != 0;
    return rtl_direction(text.data(), static_cast<int>(text.size())) == starts_right_to_left;
}

// Inside the border.
irect inside_of(const Board &b) {
    const irect &r = b.place.entry;
    const int border = b.look.border, corner = std::max(b.look.radius / 2, border);
    return {r.x + corner, r.y + border, std::max(r.w - 2 * corner, 1),
            std::max(r.h - 2 * border, 1), 0};
}

int icon_w(const Board &b) {
    return 10 * b.look.unit;
}

irect text_rect(const Board &b) {
    const irect in = inside_of(b);
    const int margin = b.look.units(35) - b.look.border;
    const int left = in.x + (IsRTL() ? icon_w(b) : margin);
    const int right = in.x + in.w - (IsRTL() ? margin : icon_w(b));
    return {left, in.y, std::max(right - left, 1), in.h, 0};
}

// The cursor stays in the line, and so does the end of a text that is longer than it.
void scroll_to(Board &b, int cursor_x, int text_w) {
    const int room = std::max(text_rect(b).w - b.look.unit, 1);
    b.scroll = std::clamp(b.scroll, cursor_x - room, cursor_x);
    b.scroll = std::clamp(b.scroll, 0, std::max(text_w - room, 0));
}

// The column of a place so far from where the text begins.
int column_of(const Board &b, int offset) {
    const irect r = text_rect(b);
    return runs_from_right(b) ? r.x + r.w - offset + b.scroll : r.x + offset - b.scroll;
}

// Before a character stands a bar; one that is typed over is inverted.
void draw_cursor(const Board &b, int offset) {
    const irect r = text_rect(b);
    const size_t at = b.entry.cursor();
    const bool types_over = b.kind.mask && at < b.entry.text().size();
    const int w = types_over ? width_before(b, at + 1) - offset : b.look.unit;
    const int h = std::min(b.look.units(75), r.h), y = r.y + (r.h - h) / 2;
    const int x = column_of(b, offset) - (runs_from_right(b) ? w : 0);
    types_over ? InvertArea(x, y, w, h) : FillArea(x, y, w, h, BLACK);
}

void draw_text(const Board &b, const std::string &text, int text_w) {
    const irect r = text_rect(b);
    const int x = runs_from_right(b) ? column_of(b, text_w) : column_of(b, 0);
    const bool is_inverted = b.entry.all_selected();
    const ifont *font = b.look.entry.get();
    if (is_inverted) FillArea(x, r.y + b.look.units(15), text_w, r.h - b.look.units(30), BLACK);
    SetFont(font, is_inverted ? WHITE : BLACK);
    DrawString(x, r.y + (r.h - (font ? font->height : 0)) / 2, text.c_str());
}

void draw_icon(const Board &b) {
    const ibitmap *icon = b.eye_is_open ? b.look.eye_struck.get() : b.look.eye.get();
    if (!b.has_eye()) icon = b.entry.text().empty() ? nullptr : b.look.clear_entry.get();
    if (!icon) return;
    const irect r = icon_rect(b);
    DrawBitmap(r.x + (r.w - icon->width) / 2, r.y + (r.h - icon->height) / 2, icon);
}

} // namespace

irect icon_rect(const Board &b) {
    const irect in = inside_of(b);
    const int w = std::min(icon_w(b), in.w);
    return {IsRTL() ? in.x : in.x + in.w - w, in.y, w, in.h, 0};
}

void draw_entry(Board &b) {
    if (!b.buffer) return;
    const raster::ScreenScope screen;
    const text::FontScope font(b.look.entry.get());
    const std::string text = shown(b);
    const int text_w = StringWidth(text.c_str()), cursor_x = width_before(b, b.entry.cursor());
    scroll_to(b, cursor_x, text_w);
    const irect in = inside_of(b), r = text_rect(b);
    FillAreaRect(&in, WHITE);
    draw_icon(b);
    SetClipRect(&r);
    draw_text(b, text, text_w);
    if (!b.entry.all_selected()) draw_cursor(b, cursor_x);
}

size_t character_at(const Board &b, int x) {
    const text::FontScope font(b.look.entry.get());
    const int offset = runs_from_right(b) ? column_of(b, 0) - x : x - column_of(b, 0);
    size_t least = 0, most = b.entry.text().size();
    while (least < most) {
        const size_t middle = (least + most) / 2;
        const int here = width_before(b, middle), next = width_before(b, middle + 1);
        if ((here + next) / 2 < offset)
            least = middle + 1;
        else
            most = middle;
    }
    return least;
}

} // namespace keyboard
