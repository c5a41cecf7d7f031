// SPDX-License-Identifier: MIT
// Draws title bars as the theme has captions, with a button that closes.
#include "selectors/title.h"

#include <algorithm>

#include "hw.h"
#include "kelvane/frames.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "kelvane/theme.h"
#include "lists/look.h"
#include "lists/row.h"
#include "raster/box.h"
#include "raster/rects.h"
#include "text/font_scope.h"

namespace selectors {
namespace {

constexpr int tallest_bar = 1 << 10;

int border_size() {
    return std::clamp(GetThemeInt("border.size", 3), 1, 64);
}

bool is_dark(int color) {
    constexpr int middle = 128;
    return (color & 255) < middle;
}

// As many of the last folders of a path as fit in the current font, at least one. Marks keep its
// slashes in their order where lines run right to left.
std::string fitted_path(const std::string &path, int w) {
    const std::string left_to_right = "\u200E";
    std::string fitted;
    for (size_t start = path.size(); start > 0;) {
        const size_t slash = path.rfind('/', start - 1);
        start = slash == std::string::npos ? 0 : slash;
        std::string longer = left_to_right;
        if (start > 0) longer += "...";
        longer.append(path, start).append(left_to_right);
        if (!fitted.empty() && StringWidth(longer.c_str()) > w) break;
        fitted = longer;
    }
    return fitted;
}

} // namespace

irect TitleBar::exit_place() const {
    if (!exit) return {};
    const int w = std::min(std::max(place.h, exit.width() + margin), place.w);
    return {IsRTL() ? place.x : place.x + place.w - w, place.y, w, place.h, 0};
}

bool TitleBar::takes_tap(int type, int par1, int par2) {
    const auto is_on = [this](int x, int y) {
        return raster::contains(raster::Box(exit_place()), x, y);
    };
    if (type == EVT_POINTERDOWN && !is_on(par1, par2)) hand.state = 0;
    if (type == EVT_POINTERDOWN && !is_on(par1, par2)) return false;
    const int gesture = RecogniseGesture(&hand, type, par1, par2);
    return gesture == GESTURE_TAP || gesture == GESTURE_DOUBLE_TAP;
}

TitleBar load_title_bar() {
    const lists::LookPtr look = lists::look();
    const icaption_properties caption = LoadApplicationCaptionProperties();
    TitleBar bar;
    bar.font.reset(caption.font);
    bar.background = caption.background_color;
    bar.h = std::min(std::max(caption.height, 12 * look->unit), tallest_bar);
    bar.margin = look->margin;
    bar.rule = 2 * look->hairline;
    bar.below = is_dark(bar.background) ? 2 * look->unit : 0;
    if (device_touchpanel() > 0) bar.exit = theme::Picture("close");
    return bar;
}

void draw_title_bar(const TitleBar &bar, const std::string &title, Cut cut) {
    const irect &r = bar.place, exit = bar.exit_place();
    const bool dark = is_dark(bar.background);
    FillAreaRect(&r, bar.background);
    if (!dark) FillArea(r.x, r.y + r.h - bar.rule, r.w, bar.rule, BLACK);
    if (bar.exit) {
        const int x = exit.x + (exit.w - bar.exit.width()) / 2;
        const int y = exit.y + (exit.h - bar.exit.height()) / 2;
        if (dark) FillArea(x, y, bar.exit.width(), bar.exit.height(), WHITE);
        DrawBitmap(x, y, bar.exit.get());
        if (dark) InvertArea(x, y, bar.exit.width(), bar.exit.height());
    }
    const int left = IsRTL() ? std::max(exit.w, bar.margin) : bar.margin;
    const int right = IsRTL() ? bar.margin : std::max(exit.w, bar.margin);
    const text::FontScope font(bar.font.get());
    SetFont(bar.font.get(), dark ? WHITE : BLACK);
    const irect line{r.x + left, r.y, r.w - left - right, r.h, 0};
    const std::string path = cut == Cut::start ? fitted_path(title, line.w) : "";
    const char *text = cut == Cut::start ? path.c_str() : GetLangText(title.c_str());
    lists::draw_line_of_text(line, text, ALIGN_LEFT | TEXT_RTL_MIRROR);
}

irect window_place(const irect &wanted, const irect &screen) {
    const int w = std::clamp(wanted.w, 0, screen.w), h = std::clamp(wanted.h, 0, screen.h);
    return {std::clamp(wanted.x, screen.x, screen.x + screen.w - w),
            std::clamp(wanted.y, screen.y, screen.y + screen.h - h), w, h, 0};
}

irect window_inside(const irect &place) {
    const int around = border_size() + 2 * lists::look()->unit;
    const irect in = raster::widened(place, -around);
    return {in.x, in.y, std::max(in.w, 0), std::max(in.h, 0), 0};
}

void draw_window_border(const irect &place) {
    const irect frame = raster::widened(place, -2 * lists::look()->unit);
    const int radius = std::clamp(GetThemeInt("border.radius", 8), 0, 64);
    DrawBorder(&frame, border_size(), ROUND_ALL, radius, BLACK);
}

} // namespace selectors
