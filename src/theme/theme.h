// SPDX-License-Identifier: MIT
// How everything looks: pictures, fonts, colours, sizes and texts by name.
//
// Every look-up takes the caller's default and returns that same value when the theme has nothing
// under the name; without an open theme that is always so.
#pragma once

#include "kelvane/bitmaps.h"
#include "kelvane/canvas.h"
#include "kelvane/pager.h"
#include "text/text.h"

// The groups of parameters that a component reads at once. The caller keeps the record and owns
// the font and the bitmaps in it.
struct icaption_properties {
    ifont *font; // may be null
    int height;
    int background_color;
    irect landscape, portrait; // of the title, not screen-relative yet; height 0: the caption's
    int uppercase;
};

// How a selection is marked. Fields keep their order.
struct iselection_style {
    int style; // see DrawPickOut()
    int background_color;
    int background_style;
    int border_size, border_radius;
    int indent_horizontal, indent_left, indent_right;
};

extern "C" {

// Opens a theme by name and reloads the cached parameters.
void OpenTheme(const char *name);

const char *GetThemeString(const char *name, const char *deflt);
// The string as strtol base 0 reads it.
int GetThemeInt(const char *name, int deflt);
// A new font of the value "[#]face[,size[,colour]]"; null when it cannot be opened.
ifont *GetThemeFont(const char *name, const char *deflt);

// The value "x,y,w,h[,flags]" over the defaults, field by field; flags are letters. GetThemeRect
// then counts negative positions from the far edge of the screen, and negative sizes up to it.
void kv_getthemerect(const char *name, irect *out, int x, int y, int w, int h, int flags);
void GetThemeRect(const char *name, irect *out, int x, int y, int w, int h, int flags);

// A new bitmap, freed by the caller, or deflt itself. A default that is really a text "*(W,H)"
// gives a new white bitmap of that size.
ibitmap *GetResource(const char *name, ibitmap *deflt);

ipager LoadPagerProperties(void);
icaption_properties LoadApplicationCaptionProperties(void);
// A null key means "default". A named key takes what it lacks from "default".
iselection_style LoadSelectionProperties(const char *key);
}

namespace theme {

// Makes negative values screen-relative, as GetThemeRect does.
irect screen_relative(irect r);

} // namespace theme
