// SPDX-License-Identifier: MIT
// Pictures by name.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "ground/guard.h"
#include "ground/number.h"
#include "kelvane/theme.h"
#include "raster/bitmap.h"
#include "raster/bitmap_tracker.h"
#include "theme/builtin.h"
#include "theme/parameters.h"
#include "theme/source.h"
#include "theme/variants.h"

namespace {

int parse_side(const char *text) {
    return std::max(ground::parse_int(text, nullptr, 10), 1);
}

// Whether a default is really the size of a blank bitmap, a text "*(W,H)".
bool is_size(const ibitmap *deflt) {
    const char *text = reinterpret_cast<const char *>(deflt);
    return text && text[0] == '*' && text[1] == '(';
}

// The height is the width when it is left out. Null for a size that no bitmap has.
ibitmap *make_blank(const ibitmap *size) {
    const char *start = reinterpret_cast<const char *>(size);
    char text[32 + 1] = {}; // a bitmap that begins so is longer, and need not contain a zero
    memccpy(text, start, '\0', sizeof text - 1);
    const char *comma = std::strchr(text, ',');
    const int width = parse_side(text + 2);
    return NewBitmap(width, comma ? parse_side(comma + 1) : width);
}

// The picture for landscape, if the screen is held so, then the common one; each for many greys
// first.
ibitmap *find_variant(const char *name) {
    const auto find_depth = [](const std::string &plain) {
        ibitmap *found = theme::source.picture(theme::deep_name(plain).c_str());
        return found ? found : theme::source.picture(plain.c_str());
    };
    ibitmap *found = nullptr;
    if (theme::is_landscape()) found = find_depth(theme::turned_name(name));
    return found ? found : find_depth(name);
}

ibitmap *find_or_make(const char *name, const ibitmap *deflt) {
    ibitmap *found = name ? find_variant(name) : nullptr;
    if (found) return found;
    if (is_size(deflt)) return make_blank(deflt);
    if (!raster::bitmap_tracker.found) return nullptr;
    return deflt ? CopyBitmapNoTrack(deflt) : NewBitmap(2, 2);
}

} // namespace

ibitmap *GetResource(const char *name, ibitmap *deflt) {
    return ground::guarded_or(
        [&]() -> ibitmap * {
            ibitmap *found = find_or_make(name, deflt);
            if (!found) return is_size(deflt) ? nullptr : deflt;
            if (raster::bitmap_tracker.found) raster::bitmap_tracker.found(found, name);
            return found;
        },
        [&]() -> ibitmap * { return is_size(deflt) ? nullptr : deflt; });
}

namespace theme {

Picture::Picture(const char *name, ibitmap *deflt) : bitmap_(GetResource(name, deflt)) {
    if (bitmap_ != deflt) owned_.reset(bitmap_);
}

Picture::Picture(const char *name, const char *builtin_name)
    : Picture(name, builtin_image(builtin_name)) {}

Picture Picture::or_else(const char *name, const Picture &deflt) {
    return Picture(name, deflt.bitmap_);
}

} // namespace theme
