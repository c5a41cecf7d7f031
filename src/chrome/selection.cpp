// SPDX-License-Identifier: MIT
// The theme's selection markers.
#include "chrome/selection.h"

#include <optional>
#include <string>

#include "chrome/chrome.h"
#include "ground/guard.h"
#include "kelvane/frames.h"
#include "raster/box.h"

namespace {

using namespace raster;

constexpr int hatch_step = 3;

enum Style { SQUARE_BORDER = 1, ROUND_BORDER = 2, UNDERLINE = 3, BAR = 4 };
enum BackgroundStyle { INVERTED = 1, HATCHED = 2 };

// The style of the key used last; a null key is one of its own.
struct LoadedStyle {
    std::optional<std::string> key;
    iselection_style style;
};
std::optional<LoadedStyle> loaded;

const iselection_style &style_of(const char *key) {
    const auto wanted = key ? std::optional<std::string>(key) : std::nullopt;
    if (!loaded || loaded->key != wanted)
        loaded = LoadedStyle{wanted, LoadSelectionProperties(key)};
    return loaded->style;
}

Box marker_box(const irect &rect, const iselection_style &s) {
    const bool sided = s.indent_left != 0 || s.indent_right != 0;
    const int64_t left = sided ? s.indent_left : s.indent_horizontal;
    const int64_t right = sided ? s.indent_right : s.indent_horizontal;
    return {rect.x + left, rect.y, rect.w - left - right, rect.h};
}

// Rows from the bottom up, each a pixel shorter at both ends. Only rows of the canvas are drawn.
void draw_underline(const Box &m, int size, int color) {
    const icanvas *c = GetCanvas();
    const int64_t bottom = m.y + m.h - 1;
    const int64_t last = c ? std::min<int64_t>(bottom, c->height - 1) : -1;
    for (int64_t y = std::max<int64_t>(bottom - size + 1, 0); y <= last; ++y) {
        const int64_t cut = bottom - y;
        DrawLine(saturated(m.x + cut), static_cast<int>(y), saturated(m.x + m.w - cut),
                 static_cast<int>(y), color);
    }
}

void draw_background(const Box &m, const iselection_style &s) {
    const irect r = to_rect(m);
    switch (s.background_style) {
    case INVERTED:
        InvertArea(r.x, r.y, r.w, r.h);
        break;
    case HATCHED:
        hatch(m, hatch_step, s.background_color);
        break;
    default:
        fill(m, s.background_color);
        break;
    }
}

void draw_marker(const Box &m, const iselection_style &s) {
    const irect r = to_rect(m);
    const int color = s.background_color;
    switch (s.style) {
    case SQUARE_BORDER:
        DrawBorder(&r, s.border_size, 0, 0, color);
        break;
    case ROUND_BORDER:
        DrawBorder(&r, s.border_size, ROUND_ALL, s.border_radius, color);
        break;
    case UNDERLINE:
        draw_underline(m, s.border_size, color);
        break;
    case BAR:
        fill({m.x, m.y + m.h - s.border_size, m.w, s.border_size}, color);
        break;
    default:
        draw_background(m, s);
        break;
    }
}

} // namespace

namespace chrome {

void reset_selection() {
    loaded.reset();
}

void mark_drawn(const irect &rect) {
    ground::guarded([&] {
        iselection_style style = style_of("default");
        const bool is_marker = style.style >= SQUARE_BORDER && style.style <= BAR;
        if (!is_marker && style.background_style != HATCHED) style.background_style = INVERTED;
        draw_selection(rect, style);
    });
}

void draw_selection(const irect &rect, const iselection_style &style) {
    const Box marker = marker_box(rect, style);
    if (!Box(rect).empty() && !marker.empty()) draw_marker(marker, style);
}

} // namespace chrome

void DrawPickOutEx(const irect *rect, const char *key) {
    ground::guarded([&] {
        if (rect) chrome::draw_selection(*rect, style_of(key));
    });
}

void DrawPickOut(int x, int y, int w, int h, const char *key) {
    const irect rect = iRect(x, y, w, h, 0);
    DrawPickOutEx(&rect, key);
}
