// SPDX-License-Identifier: MIT
// The application's caption strip.
#include <optional>
#include <string>

#include "chrome/chrome.h"
#include "ground/guard.h"
#include "ground/letter_case.h"
#include "kelvane/events.h"
#include "kelvane/frames.h"
#include "kelvane/theme.h"
#include "text/font_scope.h"
#include "theme/parameters.h"

namespace {

std::optional<icaption_properties> caption;
bool enabled = false;

icaption_properties &properties() {
    if (!caption) caption = LoadApplicationCaptionProperties();
    return *caption;
}

// The theme's place for the title, as high as the strip unless the theme says otherwise.
irect title_place(const icaption_properties &p) {
    const int orientation = GetOrientation();
    irect place = orientation == 0 || orientation == 3 ? p.portrait : p.landscape;
    if (place.h == 0) place.h = p.height;
    return theme::screen_relative(place);
}

} // namespace

namespace chrome {

void reset_caption() {
    if (caption) CloseFont(caption->font);
    caption.reset();
    enabled = false;
}

} // namespace chrome

void SetApplicationCaptionHeight(int h) {
    enabled = h > 0;
    properties().height = h;
}

int GetCaptionHeight() {
    return enabled ? properties().height : 0;
}

void DrawApplicationCaption(const char *title, const irect *rect) {
    ground::guarded([&] {
        if (!enabled) return;
        const icaption_properties &p = properties();
        const bool light_text = p.font && p.font->color != 0;
        FillArea(0, 0, ScreenWidth(), p.height, light_text ? BLACK : WHITE);
        DrawLine(0, p.height - 1, ScreenWidth() - 1, p.height - 1, BLACK);
        if (!title) return;
        const irect place = rect ? *rect : title_place(p);
        const std::string text = p.uppercase != 0 ? ground::upper_case(title) : title;
        const text::FontScope font(p.font);
        DrawTextRect2(&place, text.c_str());
    });
}
