// SPDX-License-Identifier: MIT
// Breaks lines where the language allows it, and aligns them.
#include "text/layout.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>
#include <vector>

#include "ground/number.h"
#include "hw.h"
#include "text/line.h"
#include "text/measure.h"
#include "text/walker.h"

namespace text {
namespace {

constexpr std::array<uint16_t, 3> dots = {'.', '.', '.'};

enum class LineEnd { newline, text, overflow };

struct Line {
    int begin, end;    // of what is drawn
    int next;          // where the next line begins
    int64_t width = 0; // for the alignment
    LineEnd ended_by = LineEnd::text;
    bool is_last = false, has_dots = false;
};

// A place between two characters, and the width of the line up to it.
struct Cut {
    int at = -1;
    int64_t width = 0;
};

class RectLayout {
  public:
    RectLayout(int w, int h, Reader &text, int begin, int flags)
        : text_(text), end_(int64_t{begin} + most_characters), flags_(flags), w_(w), h_(h),
          linespacing_(kvstate.current_font->linespacing),
          dots_width_(measure(dots.data(), dots.size())) {}

    // The next line, when `used` pixels of the height are used.
    Line next_line(int begin, int64_t used) {
        const bool is_last = used + 2 * linespacing_ > h_;
        Line line = break_line(begin, is_last);
        line.is_last = is_last;
        line.next = skip_to_next_line(line.next);
        trim(line);
        if (is_last && (flags_ & TEXT_DOTS) != 0 && has(line.next)) append_dots(line);
        return line;
    }
    // Whether there is a character to be laid out.
    bool has(int at) { return at < end_ && text_.has(at); }
    int64_t linespacing() const { return linespacing_; }

  private:
    // Where the search for a line's end is, and the step to the character there once it is known.
    struct Scan {
        Pace pace;
        int at, step = 0;
        int64_t width = 0;
    };
    enum class Stop { end, unknown, overflow };

    Line break_line(int begin, bool is_last);
    LineEnd find_end(int begin, Scan &scan);
    Stop run(Scan &scan);
    Line cut_line(int begin, const Cut &overflow, bool is_last);
    Cut go_back(int begin, const Cut &overflow) const;
    int careful_step(Pace &pace, uint16_t &c);
    int skip_to_next_line(int at);
    void trim(Line &line) const;
    void append_dots(Line &line);

    Reader &text_;
    const int64_t end_; // no character from here on is laid out
    const int flags_;
    const int w_;
    const int64_t h_, linespacing_, dots_width_;
    Walker walker_;
    std::array<int64_t, 256> widths_; // of the line up to and with each of its last characters
};

// Goes on to the first character that was not read, that the tables do not know or that does not
// fit. All that measuring a page takes is this loop, in which a step is two look-ups; it is a
// function of its own so that it stays in registers. Where a line may break is found afterwards,
// from its end.
[[gnu::noinline]] RectLayout::Stop RectLayout::run(Scan &scan) {
    const int end = static_cast<int>(std::min<int64_t>(text_.size(), end_));
    const int64_t most = w_;
    const uint16_t *const text = text_.data();
    Pace pace = scan.pace;
    int at = scan.at, step = 0;
    int64_t width = scan.width;
    Stop stop = Stop::end;
    for (; at < end; ++at) {
        if (!pace.find(text[at], step)) {
            stop = Stop::unknown;
            break;
        }
        if (width + step > most) {
            stop = Stop::overflow;
            break;
        }
        width += step;
        widths_[static_cast<size_t>(at) % widths_.size()] = width;
    }
    scan = {pace, at, step, width};
    return stop;
}

LineEnd RectLayout::find_end(int begin, Scan &scan) {
    for (;; ++scan.at) {
        Stop stop = run(scan);
        while (stop == Stop::end && has(scan.at)) stop = run(scan);
        if (stop == Stop::end) return LineEnd::text;
        if (stop == Stop::unknown) {
            uint16_t &c = text_.data()[scan.at];
            if (c == newline) return LineEnd::newline;
            scan.step = careful_step(scan.pace, c);
        }
        if (scan.width + scan.step > w_ && scan.at > begin) return LineEnd::overflow;
        scan.width += scan.step;
        widths_[static_cast<size_t>(scan.at) % widths_.size()] = scan.width;
    }
}

Line RectLayout::break_line(int begin, bool is_last) {
    Scan scan{walker_.start_line(), begin};
    const LineEnd end = find_end(begin, scan);
    walker_.end_line();
    if (end == LineEnd::overflow) return cut_line(begin, {scan.at, scan.width}, is_last);
    return {begin, scan.at, scan.at, scan.width, end};
}

// The line when the character at `overflow` is too much.
Line RectLayout::cut_line(int begin, const Cut &overflow, bool is_last) {
    const bool may_go_back =
        !is_last || ((flags_ & ALIGN_JUSTIFY) != 0 && (flags_ & TEXT_DOTS) == 0);
    const Cut cut = may_go_back ? go_back(begin, overflow) : overflow;
    const uint16_t *const text = text_.data();
    if ((flags_ & ALIGN_RIGHT) != 0 && text[cut.at - 1] == ' ')
        return {begin, cut.at, cut.at, measure(text + begin, cut.at - 1 - begin),
                LineEnd::overflow};
    return {begin, cut.at, cut.at, cut.width, LineEnd::overflow};
}

// The last place where the line may break, or the overflow.
Cut RectLayout::go_back(int begin, const Cut &overflow) const {
    const uint16_t *const text = text_.data();
    int at = overflow.at;
    while (at > begin && !breaks_after(text[at - 1])) --at;
    if (at == begin) return overflow;
    if (overflow.at - at < static_cast<int>(widths_.size()))
        return {at, widths_[static_cast<size_t>(at - 1) % widths_.size()]};
    return {at, measure(text + begin, at - begin)};
}

int RectLayout::careful_step(Pace &pace, uint16_t &c) {
    SubstBrokenChar(&c);
    return walker_.slow_step(pace, c);
}

int RectLayout::skip_to_next_line(int at) {
    while (has(at) && text_.data()[at] == ' ') ++at;
    return has(at) && text_.data()[at] == newline ? at + 1 : at;
}

void RectLayout::trim(Line &line) const {
    while (line.end > line.begin && text_.data()[line.end - 1] == ' ') --line.end;
}

// Takes characters off the end until the dots fit.
void RectLayout::append_dots(Line &line) {
    int fitting = line.begin;
    int64_t width = 0, fitting_width = 0;
    walker_.restart();
    for (int at = line.begin; at < line.end;) {
        width += walker_.step(text_.data()[at++]).total();
        if (width + dots_width_ <= w_) fitting = at, fitting_width = width;
    }
    if (fitting < line.end) line.next = fitting;
    walker_.end_line();
    line.end = fitting;
    line.width = fitting_width + dots_width_;
    line.has_dots = true;
}

// Where lines go, and how they are drawn.
class RectPainter {
  public:
    RectPainter(int64_t x, int64_t y, int w, int flags, Reader &text)
        : x_(x), y_(y), w_(w), flags_(flags), text_(text), color_(kvstate.current_color) {}

    void draw(const Line &line, int64_t top) const {
        std::vector<uint16_t> with_dots;
        int len = line.end - line.begin;
        const uint16_t *text = text_.data() + line.begin;
        if (line.has_dots) {
            with_dots.assign(text, text + len);
            with_dots.insert(with_dots.end(), dots.begin(), dots.end());
            text = with_dots.data();
            len = static_cast<int>(with_dots.size());
        }
        if (len > 0) draw_characters(text, len, line, top);
    }
    bool is_above_clip(int64_t top) const {
        const icanvas *canvas = kvstate.canvas;
        return (flags_ & TEXT_ROTATE) == 0 && canvas &&
               y_ + top + kvstate.current_font->height <= canvas->clipy1;
    }

  private:
    void draw_characters(const uint16_t *text, int len, const Line &line, int64_t top) const {
        const bool is_justified =
            (flags_ & ALIGN_JUSTIFY) != 0 && line.ended_by == LineEnd::overflow;
        // A line whose spaces widen starts at the edge, whatever else is asked for.
        const bool is_full = is_justified && std::find(text, text + len, ' ') != text + len;
        const int64_t offset = is_full ? 0 : offset_of(line);
        // The rectangle of rotated text is as high as its lines are wide.
        const Run run = (flags_ & TEXT_ROTATE) != 0 ? Run::upwards : Run::across;
        const int64_t x = run == Run::upwards ? x_ + top : x_ + offset;
        const int64_t y = run == Run::upwards ? y_ + w_ - offset - 1 : y_ + top;
        const int64_t drawn =
            kv_textblock(x, y, is_justified ? w_ : 0, text, len, color_, run, text_.direction());
        if ((flags_ & TEXT_UNDERLINE) != 0 && drawn > 0) underline(x, y, drawn, run);
    }
    int64_t offset_of(const Line &line) const {
        if ((flags_ & ALIGN_CENTER) != 0) return (w_ - line.width) / 2;
        if ((flags_ & ALIGN_RIGHT) != 0) return w_ - line.width;
        return 0;
    }
    void underline(int64_t x, int64_t y, int64_t length, Run run) const {
        const int64_t offset = int64_t{current.baseline} + 1;
        const int color = kvstate.current_color;
        if (run == Run::across)
            FillArea(ground::saturated(x), ground::saturated(y + offset), ground::saturated(length),
                     1, color);
        else
            FillArea(ground::saturated(x + offset), ground::saturated(y - length + 1), 1,
                     ground::saturated(length), color);
    }

    const int64_t x_, y_;
    const int w_, flags_;
    Reader &text_;
    const int color_;
};

// Text that is not aligned otherwise is aligned to the left.
int mirrored(int flags) {
    const bool is_rtl = hooks.is_rtl() != 0;
    if ((flags & TEXT_RTL_MIRROR) == 0 || !is_rtl || (flags & ALIGN_CENTER) != 0) return flags;
    const int other = (flags & ALIGN_RIGHT) != 0 ? ALIGN_LEFT : ALIGN_RIGHT;
    return (flags & ~(ALIGN_LEFT | ALIGN_RIGHT)) | other;
}

} // namespace

Layout kv_textrect(int64_t x, int64_t y, int w, int h, Reader &text, int begin, int flags,
                   Draw draw) {
    if (!has_face()) {
        while (text.read()) {
        }
        return {ScreenHeight(), text.size(), 0};
    }
    flags = mirrored(flags);
    if ((flags & TEXT_ROTATE) != 0) std::swap(w, h);

    RectLayout layout(w, h, text, begin, flags);
    const RectPainter painter(x, y, w, flags, text);
    Layout result{.end = begin};
    bool is_done = false;
    while (!is_done && layout.has(result.end)) {
        const Line line = layout.next_line(result.end, result.height);
        if (draw == Draw::yes && !painter.is_above_clip(result.height))
            painter.draw(line, result.height);
        result.height += layout.linespacing();
        result.last_line_width = line.width;
        result.end = line.next;
        is_done = line.is_last;
    }
    if (result.end == begin && layout.has(begin)) ++result.end;
    return result;
}

} // namespace text
