// SPDX-License-Identifier: MIT
// Widths of characters and strings.
#include <algorithm>
#include <climits>
#include <cstring>

#include "ground/guard.h"
#include "ground/number.h"
#include "text/joining.h"
#include "text/measure.h"
#include "text/units.h"
#include "text/walker.h"

namespace text {

int64_t measure(const uint16_t *text, int len) {
    Walker walker;
    Pace pace = walker.start_line();
    int64_t width = 0;
    for (int i = 0; i < len; ++i) {
        int step;
        if (!pace.find(text[i], step)) {
            Pace after = pace; // so that the loop's own one stays in registers
            step = walker.slow_step(after, text[i]);
            pace = after;
        }
        width += step;
    }
    return width;
}

int width_without_face(size_t bytes) {
    return static_cast<int>(std::min<size_t>(bytes, INT_MAX / 10) * 10);
}

} // namespace text

int CharWidth(unsigned short c) {
    return ground::guarded(0, [&]() -> int {
        if (!text::has_face()) return 10;
        if (c < text::first_printable) return text::control_width();
        if (c == text::soft_hyphen) return 0;
        return text::current.cache->width(text::current.mode, c);
    });
}

int StringWidth(const char *utf8) {
    return ground::guarded(0, [&]() -> int {
        if (!utf8) return 0;
        if (!text::has_face()) return text::width_without_face(std::strlen(utf8));
        text::Units units(utf8);
        text::join_letters(units.data(), units.size());
        return ground::saturated(text::measure(units.data(), units.size()));
    });
}

int StringWidthExt(const char *utf8, int len) {
    return ground::guarded(0, [&]() -> int {
        if (!utf8 || len < 1) return 0;
        const size_t bytes = strnlen(utf8, static_cast<size_t>(len));
        if (!text::has_face()) return text::width_without_face(bytes);
        text::Units units(utf8, bytes);
        return ground::saturated(text::measure(units.data(), units.size()));
    });
}
