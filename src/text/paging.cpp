// SPDX-License-Identifier: MIT
// Where the pages of a text begin, and a page of it.
#include <climits>
#include <cstring>

#include "ground/guard.h"
#include "kelvane/text.h"
#include "text/place_rect.h"

namespace text {
namespace {

// What the codes of a paragraph say where a page begins within it.
Marks marks_at(const char *utf8, const char *at, int flags) {
    Marks marks;
    if ((flags & TEXT_MARKS) == 0) return marks;
    const char *paragraph = at;
    while (paragraph > utf8 && paragraph[-1] != '\n') --paragraph;
    marks.read(paragraph, at);
    return marks;
}

int paginate(const char *utf8, irect page, int h, int *starts, int most) {
    const char *at = utf8;
    Marks marks;
    int count = 0;
    for (; *at != '\0' && count < most && at - utf8 <= INT_MAX; ++count) {
        if (starts) starts[count] = static_cast<int>(at - utf8);
        const Rect rect = place_rect(page, at, Draw::no, marks);
        at = rect.end;
        marks = rect.marks;
        page.h = h;
    }
    return count;
}

} // namespace
} // namespace text

int Paginate(const char *utf8, int w, int first_h, int h, int flags, int *starts, int max) {
    return ground::guarded(0, [&]() -> int {
        if (!utf8) return 0;
        return text::paginate(utf8, {0, 0, w, first_h, flags}, h, starts, starts ? max : INT_MAX);
    });
}

char *TextRectEnd(int w, int h, const char *utf8, int flags) {
    return ground::guarded(const_cast<char *>(utf8), [&]() -> char * {
        if (!utf8) return nullptr;
        return const_cast<char *>(
            text::place_rect({0, 0, w, h, flags}, utf8, text::Draw::no, text::Marks{}).end);
    });
}

char *DrawTextPage(int x, int y, int w, int h, const char *utf8, int start, int flags) {
    const char *const at =
        utf8 && start > 0 ? utf8 + strnlen(utf8, static_cast<size_t>(start)) : utf8;
    return ground::guarded(const_cast<char *>(at), [&]() -> char * {
        if (!utf8) return nullptr;
        const text::Marks marks = text::marks_at(utf8, at, flags);
        return const_cast<char *>(
            text::place_rect({x, y, w, h, flags}, at, text::Draw::yes, marks).end);
    });
}
