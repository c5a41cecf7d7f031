// SPDX-License-Identifier: MIT
// The functions that lay text out in rectangles.
#include <algorithm>
#include <cstring>

#include "ground/guard.h"
#include "ground/number.h"
#include "text/font_scope.h"
#include "text/layout.h"
#include "text/measure.h"
#include "text/place_rect.h"
#include "text/walker.h"

namespace text {
namespace {

constexpr int any_height = 99999;

// The lines of a whole text, laid out one at a time.
class SingleLines {
  public:
    SingleLines(const char *utf8, int w, int flags)
        : text_(utf8, INT32_MAX), w_(w), flags_(flags) {}
    bool next() {
        begin_ = end_;
        if (!text_.has(begin_)) return false;
        const Layout line = kv_textrect(0, 0, w_, 1, text_, begin_, flags_, Draw::no);
        end_ = line.end;
        width_ = line.last_line_width;
        return true;
    }
    // The next line begins here instead.
    void set_end(int end) { end_ = end; }
    int begin() const { return begin_; }
    int end() const { return end_; }
    int64_t width() const { return width_; }
    Reader &text() { return text_; }

  private:
    Reader text_;
    const int w_, flags_;
    int begin_ = 0, end_ = 0;
    int64_t width_ = 0;
};

// Moves the cut of a line back to the space before it. False when the line has none.
bool cut_at_space(SingleLines &lines) {
    const uint16_t *const text = lines.text().data();
    int at = lines.end();
    while (at > lines.begin() && text[at] != ' ') --at;
    if (at == lines.begin()) return false;
    lines.set_end(at);
    return true;
}

int multiline_width(const char *utf8, int maxwidth, int flags) {
    int64_t widest = 0;
    SingleLines lines(utf8, maxwidth, flags & ~(TEXT_ROTATE | TEXT_DOTS));
    while (lines.next()) {
        const bool is_cut =
            lines.text().has(lines.end()) && lines.text().data()[lines.end() - 1] != newline;
        if (is_cut && !cut_at_space(lines)) return maxwidth;
        const int64_t width =
            measure(lines.text().data() + lines.begin(), lines.end() - lines.begin());
        widest = std::max(widest, std::min<int64_t>(width, maxwidth));
        if (is_cut) lines.set_end(lines.end() + 1);
    }
    return widest > 0 ? static_cast<int>(widest) : maxwidth;
}

} // namespace
} // namespace text

char *DrawTextRect3(int x, int y, int w, int h, const char *utf8, int flags, int *height) {
    return ground::guarded(const_cast<char *>(utf8), [&]() -> char * {
        if (height) *height = 0;
        if (!utf8) return nullptr;
        const text::Rect rect =
            text::place_rect({x, y, w, h, flags}, utf8, text::Draw::yes, text::Marks{});
        if (height) *height = ground::saturated(rect.height);
        return const_cast<char *>(rect.end);
    });
}

char *DrawTextRect(int x, int y, int w, int h, const char *utf8, int flags) {
    return DrawTextRect3(x, y, w, h, utf8, flags, nullptr);
}

char *DrawTextRect2(const irect *r, const char *utf8) {
    return r ? DrawTextRect(r->x, r->y, r->w, r->h, utf8, r->flags) : const_cast<char *>(utf8);
}

int TextRectHeightEx(int w, int h, const char *utf8, int flags) {
    return ground::guarded(0, [&]() -> int {
        if (!utf8) return 0;
        text::Reader text(utf8, text::most_characters);
        const text::Layout layout =
            text::kv_textrect(0, 0, w, h, text, 0, flags & ~TEXT_ROTATE, text::Draw::no);
        return ground::saturated(layout.height);
    });
}

int TextRectHeight(int w, const char *utf8, int flags) {
    return TextRectHeightEx(w, text::any_height, utf8, flags);
}

int MinimalTextRectWidth(int w, const char *utf8) {
    return ground::guarded(0, [&]() -> int {
        if (!utf8) return 0;
        if (!text::has_face()) return std::clamp(w, 0, text::width_without_face(std::strlen(utf8)));
        text::SingleLines lines(utf8, w, ALIGN_JUSTIFY);
        int64_t widest = 0;
        while (lines.next()) widest = std::max(widest, lines.width());
        return ground::saturated(widest);
    });
}

int GetMultilineStringWidth(const char *utf8, int maxwidth, const ifont *font, int flags) {
    return ground::guarded(maxwidth, [&]() -> int {
        if (!utf8) return 0;
        const text::FontScope scope;
        SetFont(font, -1);
        const int width = StringWidth(utf8);
        if (width <= maxwidth) return width;
        if (!text::has_face()) return maxwidth;
        return text::multiline_width(utf8, maxwidth, flags);
    });
}
