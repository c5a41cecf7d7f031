// SPDX-License-Identifier: MIT
// Pictures by name.
#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "kelvane/theme.h"
#include "raster/bitmap.h"
#include "raster/bitmap_tracker.h"
#include "theme/builtin.h"
#include "theme/parameters.h"
#include "theme/source.h"

namespace {

int parse_side(const char *text) {
    return static_cast<int>(std::clamp(std::strtol(text, nullptr, 10), 1L, long{INT_MAX}));
}

// A new bitmap for a default that is really a text "*(W,H)"; the height is the width when it is
// left out. Null for any other default.
ibitmap *make_blank(const ibitmap *deflt) {
    const char *start = reinterpret_cast<const char *>(deflt);
    if (start == nullptr || start[0] != '*' || start[1] != '(') return nullptr;
    char text[32 + 1] = {}; // a bitmap that begins so is longer, and need not contain a zero
    memccpy(text, start, '\0', sizeof text - 1);
    const char *comma = std::strchr(text, ',');
    const int width = parse_side(text + 2);
    return NewBitmap(width, comma != nullptr ? parse_side(comma + 1) : width);
}

// The picture for landscape, if the screen is held so, then the common one; each for many greys
// first. Names are cut where the variants have always cut them.
ibitmap *find_variant(const char *name) {
    constexpr size_t longest_turned = 62, longest_deep = 61;
    const auto find_depth = [](const std::string &plain) {
        ibitmap *found = theme::source.picture((plain.substr(0, longest_deep) + ":4").c_str());
        return found != nullptr ? found : theme::source.picture(plain.c_str());
    };
    ibitmap *found = nullptr;
    if (theme::is_landscape()) {
        std::string turned = "^";
        turned += std::string_view(name).substr(0, longest_turned);
        found = find_depth(turned);
    }
    return found != nullptr ? found : find_depth(name);
}

} // namespace

ibitmap *GetResource(const char *name, ibitmap *deflt) try {
    const auto &tracker = raster::bitmap_tracker;
    ibitmap *found = name != nullptr ? find_variant(name) : nullptr;
    if (found == nullptr) found = make_blank(deflt);
    if (found == nullptr && tracker.found != nullptr)
        found = deflt != nullptr ? CopyBitmapNoTrack(deflt) : NewBitmap(2, 2);
    if (found == nullptr) return deflt;
    if (tracker.found != nullptr) tracker.found(found, name);
    return found;
} catch (const std::bad_alloc &) {
    return deflt;
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
