// SPDX-License-Identifier: MIT
#include "text/cjk.h"

#include <new>
#include <utility>
#include <vector>

#include "text/current.h"

namespace text {
namespace {

constexpr const char *cjk_name = "fireflysung";

// One for each size that was needed. Never destroyed: applications may close fonts at exit.
std::vector<ifont *> &cjk_fonts = *new std::vector<ifont *>;
bool is_missing; // it was looked for, and is not there
// What was current before one of them; null while none is in use.
ifont *before;

ifont *find_cjk_font(int size, int aa) {
    for (ifont *font : cjk_fonts)
        if (font->size == size && font->aa == aa) return font;
    if (is_missing) return nullptr;
    cjk_fonts.reserve(cjk_fonts.size() + 1);
    ifont *font = open_font(cjk_name, size, aa);
    is_missing = !font;
    if (!is_missing) cjk_fonts.push_back(font);
    return font;
}

} // namespace

bool cjk_is_used() {
    return before != nullptr;
}

ifont *put_aside_for_cjk(ifont *font) {
    return std::exchange(before, font);
}

void forget_font(const ifont *font) {
    if (before == font) before = nullptr;
    std::erase(cjk_fonts, font);
}

void reset_cjk() {
    before = nullptr;
    is_missing = false;
    while (!cjk_fonts.empty()) CloseFont(cjk_fonts.back());
}

} // namespace text

void select_need_font(unsigned short c, ifont *current, int color) try {
    if (!text::is_cjk(c)) {
        if (ifont *font = text::put_aside_for_cjk(nullptr)) text::restore_font(font, color);
        return;
    }
    const bool is_needed =
        !text::before && current && text::has_face() && !text::current.cache->face().has(c);
    ifont *font = is_needed ? text::find_cjk_font(current->size, current->aa) : nullptr;
    if (!font) return;
    text::restore_font(font, color);
    if (text::has_face())
        text::before = current;
    else
        text::restore_font(current, color); // its tables did not find room
} catch (const std::bad_alloc &) {
    // The character is drawn with what the current face has for it.
}
