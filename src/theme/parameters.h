// SPDX-License-Identifier: MIT
// The parameters that are kept between look-ups, and how values are read.
#pragma once

#include <string>

#include "kelvane/bitmaps.h"
#include "raster/bitmap_ptr.h"
#include "text/font_ptr.h"

namespace theme {

struct FontSpec {
    std::string face;
    int size = 12;
    int antialias = 1;
    int color = 0;
};

// Whether the screen is held in landscape, where names that begin with "^" go first.
bool is_landscape();
// Makes negative values screen-relative, as GetThemeRect does.
irect screen_relative(irect r);

// Reads "[#]face[,size[,colour]]"; a leading # turns anti-aliasing off.
FontSpec parse_font(const char *text);

// A bitmap by name that is freed unless it is built in.
class Picture {
  public:
    Picture() = default;
    // The theme's picture, or the built-in one of `builtin_name` when the theme has none.
    Picture(const char *name, const char *builtin_name);
    explicit Picture(const char *name) : Picture(name, name) {}
    // The theme's picture, or another one's.
    static Picture or_else(const char *name, const Picture &deflt);
    const ibitmap *get() const { return bitmap_; }
    explicit operator bool() const { return bitmap_ != nullptr; }
    int width() const { return bitmap_ ? bitmap_->width : 0; }
    int height() const { return bitmap_ ? bitmap_->height : 0; }

  private:
    Picture(const char *name, ibitmap *deflt);
    ibitmap *bitmap_ = nullptr;
    raster::BitmapPtr owned_;
};

enum class TitleStyle { standard = 0, low = 1 };

// What most components need of the open theme.
struct UiParameters {
    TitleStyle title_style;
    text::FontPtr window_font, header_font;
    text::FontPtr menu_font_normal, menu_font_active;
    text::FontPtr button_font_normal, button_font_active;
    int window_color, header_color;
    int menu_color_normal, menu_color_selected, menu_color_disabled;
    raster::BitmapPtr button_normal, button_selected;
    Picture button_back, button_prev, button_next;
};

// Loaded at the first use after a theme was opened.
const UiParameters &ui_parameters();
// Closes the fonts and frees the pictures, as another theme opens.
void drop_ui_parameters();
// Another one with each theme: who keeps what it loaded keeps the number as well.
unsigned theme_number();

} // namespace theme
