// SPDX-License-Identifier: MIT
// Draws the strip in the look of the pager. An arrow without a page to lead to is left out.
#include "lists/strip.h"

#include <cstdio>

#include "kelvane/text.h"
#include "lists/row.h"
#include "raster/box.h"
#include "text/font_scope.h"

namespace lists {
namespace {

constexpr int side_percent = 30; // of the width, for each arrow

irect side(const irect &strip, bool is_right) {
    const int w = strip.w * side_percent / 100;
    return {is_right ? strip.x + strip.w - w : strip.x, strip.y, w, strip.h, 0};
}

irect middle(const irect &strip) {
    const int w = strip.w * side_percent / 100;
    return {strip.x + w, strip.y, strip.w - 2 * w, strip.h, 0};
}

void draw_arrow(const irect &r, const theme::Picture &arrow) {
    DrawBitmap(r.x + (r.w - arrow.width()) / 2, r.y + (r.h - arrow.height()) / 2, arrow.get());
}

void draw_dots(const Look &look, const irect &strip) {
    DimArea(strip.x, strip.y, strip.w, look.hairline, BLACK);
    const irect m = middle(strip);
    for (const int x : {m.x, m.x + m.w - look.hairline})
        DimArea(x, strip.y + look.hairline, look.hairline, strip.h - look.hairline, BLACK);
}

} // namespace

void draw_strip(const Look &look, const irect &strip, int page, int last_page) {
    const bool has_before = page > 0, has_after = page < last_page;
    FillAreaRect(&strip, WHITE);
    if (look.is_rtl ? has_after : has_before) draw_arrow(side(strip, false), look.page_left);
    if (look.is_rtl ? has_before : has_after) draw_arrow(side(strip, true), look.page_right);
    draw_dots(look, strip);
    char counter[32];
    std::snprintf(counter, sizeof counter, "%d / %d", page + 1, last_page + 1);
    const text::FontScope font(look.counter.get());
    draw_line_of_text(middle(strip), counter, ALIGN_CENTER);
}

StripPart strip_part_at(const Look &look, const irect &strip, int x, int y) {
    const auto is_on = [&](const irect &r) { return raster::contains(raster::Box(r), x, y); };
    if (!is_on(strip)) return StripPart::nothing;
    if (is_on(middle(strip))) return StripPart::counter;
    return is_on(side(strip, look.is_rtl)) ? StripPart::previous : StripPart::next;
}

} // namespace lists
