// SPDX-License-Identifier: MIT
// Goes down a rectangle or a page, line by line.
#include "text/layout.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "hw.h"
#include "text/page_break.h"
#include "text/rect_lines.h"
#include "text/rect_painter.h"

namespace text {
namespace {

// Text that is not aligned otherwise is aligned to the left.
int mirrored(int flags) {
    const bool is_rtl = hooks.is_rtl() != 0;
    if ((flags & TEXT_RTL_MIRROR) == 0 || !is_rtl || (flags & ALIGN_CENTER) != 0) return flags;
    const int other = (flags & ALIGN_RIGHT) != 0 ? ALIGN_LEFT : ALIGN_RIGHT;
    return (flags & ~(ALIGN_LEFT | ALIGN_RIGHT)) | other;
}

// Lines with dots are of no page that another one follows.
bool has_page_rules(int flags) {
    return (flags & (TEXT_MARKS | TEXT_NO_WIDOWS | TEXT_NO_EMPTY_TOP)) != 0 &&
           (flags & TEXT_DOTS) == 0;
}

// The lines of a page that ends where the rules allow it.
class PageLines {
  public:
    PageLines(RectLines &layout, int begin, int flags) : layout_(layout) {
        bool is_done = false;
        for (int at = begin; !is_done && layout.has(at); at = lines_.back().next) {
            add(layout.next_line(at, used_));
            is_done = lines_.back().is_last;
        }
        if (lines_.empty() || !layout.has(lines_.back().next)) return;
        add(layout.line_after(lines_.back()));
        lines_.resize(lines_of_page(rules_, flags));
        if ((flags & TEXT_NO_EMPTY_TOP) != 0 && layout.ends_paragraph(lines_.back()))
            lines_.back().next = layout.skip_empty_lines(lines_.back().next);
    }
    const std::vector<Line> &lines() const { return lines_; }

  private:
    void add(const Line &line) {
        const bool is_empty = layout_.is_empty(line);
        const bool is_first = rules_.empty();
        rules_.push_back(
            {.starts_paragraph = is_first || rules_.back().ends_paragraph,
             .ends_paragraph = layout_.ends_paragraph(line),
             .is_bound = line.is_heading || (is_empty && !is_first && rules_.back().is_bound)});
        lines_.push_back(line);
        used_ += layout_.linespacing();
    }

    RectLines &layout_;
    std::vector<Line> lines_;
    std::vector<PageLine> rules_;
    int64_t used_ = 0;
};

} // namespace

Layout kv_textrect(int64_t x, int64_t y, int w, int h, Reader &text, int begin, int flags,
                   Draw draw, Marks marks) {
    if (!has_face()) {
        while (text.read()) {
        }
        return {ScreenHeight(), text.size(), 0};
    }
    flags = mirrored(flags);
    if ((flags & TEXT_ROTATE) != 0) std::swap(w, h);

    RectLines layout(w, h, text, begin, flags, marks);
    const RectPainter painter(x, y, w, flags, text);
    Layout result{.end = begin};
    const auto place = [&](const Line &line) {
        if (draw == Draw::yes && !painter.is_above_clip(result.height))
            painter.draw(line, result.height);
        result.height += layout.linespacing();
        result.last_line_width = line.width;
        result.end = line.next;
        result.marks = line.marks_after;
        return !line.is_last;
    };
    if (has_page_rules(flags)) {
        const PageLines page(layout, begin, flags);
        std::for_each(page.lines().begin(), page.lines().end(), place);
    } else {
        while (layout.has(result.end) && place(layout.next_line(result.end, result.height))) {
        }
    }
    return result;
}

} // namespace text
