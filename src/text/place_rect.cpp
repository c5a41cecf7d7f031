// SPDX-License-Identifier: MIT
// Measures what has to be moved down, and lays it out.
#include "text/place_rect.h"

#include <cstring>

#include "text/current.h"

namespace text {
namespace {

// How far the text is moved down, or to the right when it is rotated.
int64_t vertical_offset(int room, int64_t height, int flags) {
    if ((flags & VALIGN_MIDDLE) != 0) return (room - height) / 2;
    if ((flags & VALIGN_BOTTOM) != 0) return room - height;
    return 0;
}

Layout place(const irect &r, Reader &text, Draw draw, Marks marks) {
    const bool rotated = (r.flags & TEXT_ROTATE) != 0;
    int64_t x = r.x, y = r.y;
    if (draw == Draw::yes && (r.flags & (VALIGN_MIDDLE | VALIGN_BOTTOM)) != 0) {
        const Layout measured = kv_textrect(0, 0, r.w, r.h, text, 0, r.flags, Draw::no, marks);
        (rotated ? x : y) += vertical_offset(rotated ? r.w : r.h, measured.height, r.flags);
    }
    return kv_textrect(x, y, r.w, r.h, text, 0, r.flags, draw, marks);
}

} // namespace

Rect place_rect(const irect &r, const char *utf8, Draw draw, Marks marks) {
    Reader text(utf8, most_characters);
    const Layout layout = place(r, text, draw, marks);
    const char *const end = has_face() ? text.address(layout.end) : utf8 + std::strlen(utf8);
    return {end, layout.height, layout.marks};
}

} // namespace text
