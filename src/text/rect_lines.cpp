// SPDX-License-Identifier: MIT
// Finds where a line is full, and the place before that where it may end.
#include "text/rect_lines.h"

#include <algorithm>

#include "text/measure.h"
#include "text/numbers.h"

namespace text {

RectLines::RectLines(int w, int h, Reader &text, int begin, int flags, Marks marks)
    : text_(text), begin_(begin), end_(int64_t{begin} + most_characters), flags_(flags), w_(w),
      h_(h), linespacing_(kvstate.current_font->linespacing),
      dots_width_(measure(dots.data(), dots.size())), marks_(marks) {}

Line RectLines::next_line(int begin, int64_t used) {
    const bool is_last = used + 2 * linespacing_ > h_;
    Line line = break_line(begin, is_last);
    line.is_last = is_last;
    line.next = skip_to_next_line(line.next);
    trim(line);
    if (is_last && (flags_ & TEXT_DOTS) != 0 && has(line.next)) append_dots(line);
    if ((flags_ & TEXT_MARKS) != 0) follow_marks(line);
    return line;
}

// Goes on to the first character that was not read, that the tables do not know or that does not
// fit. All that measuring a page takes is this loop, in which a step is two look-ups; it is a
// function of its own so that it stays in registers. Where a line may break is found afterwards,
// from its end.
[[gnu::noinline]] RectLines::Stop RectLines::run(Scan &scan) {
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

LineEnd RectLines::find_end(int begin, Scan &scan) {
    for (;; ++scan.at) {
        Stop stop = run(scan);
        while (stop == Stop::end && has(scan.at)) stop = run(scan);
        if (stop == Stop::end) return LineEnd::text_end;
        if (stop == Stop::unknown) {
            uint16_t &c = text_.data()[scan.at];
            if (c == newline) return LineEnd::line_feed;
            scan.step = careful_step(scan.pace, c);
        }
        if (scan.width + scan.step > w_ && scan.at > begin) return LineEnd::overflow;
        scan.width += scan.step;
        widths_[static_cast<size_t>(scan.at) % widths_.size()] = scan.width;
    }
}

Line RectLines::break_line(int begin, bool is_last) {
    Scan scan{start_line(), begin};
    const LineEnd end = find_end(begin, scan);
    walker_.end_line();
    if (end == LineEnd::overflow) return cut_line(begin, {scan.at, scan.width}, is_last);
    return {begin, scan.at, scan.at, scan.width, end};
}

// The line when the character at `overflow` is too much.
Line RectLines::cut_line(int begin, const Cut &overflow, bool is_last) {
    const bool may_go_back = !is_last || ((flags_ & (ALIGN_JUSTIFY | TEXT_WHOLE_WORDS)) != 0 &&
                                          (flags_ & TEXT_DOTS) == 0);
    const Cut cut = may_go_back ? go_back(begin, overflow) : keep_number(begin, overflow);
    if ((flags_ & ALIGN_RIGHT) != 0 && text_.data()[cut.at - 1] == ' ')
        return {begin, cut.at, cut.at, width_of(begin, cut.at - 1), LineEnd::overflow};
    return {begin, cut.at, cut.at, cut.width, LineEnd::overflow};
}

// The last place where the line may break, or the overflow.
Cut RectLines::go_back(int begin, const Cut &overflow) {
    int at = last_break(begin, overflow.at);
    while (at > begin && is_number_broken(begin, at)) at = last_break(begin, at - 1);
    return at > begin ? cut_at(begin, at, overflow) : keep_number(begin, overflow);
}

// The last place up to `at` behind a character after which a line may break, or the beginning.
int RectLines::last_break(int begin, int at) const {
    const uint16_t *const text = text_.data();
    while (at > begin && !breaks_after(text[at - 1])) --at;
    return at;
}

// The cut, or that before the number in which it is. A number as long as the line is cut.
Cut RectLines::keep_number(int begin, const Cut &cut) {
    int at = cut.at;
    while (at > begin && is_number_broken(begin, at)) --at;
    return at > begin ? cut_at(begin, at, cut) : cut;
}

Cut RectLines::cut_at(int begin, int at, const Cut &overflow) {
    if (at == overflow.at) return overflow;
    if (overflow.at - at < static_cast<int>(widths_.size()))
        return {at, widths_[static_cast<size_t>(at - 1) % widths_.size()]};
    return {at, width_of(begin, at)};
}

bool RectLines::is_number_broken(int begin, int at) {
    if ((flags_ & TEXT_WHOLE_NUMBERS) == 0 || !has(at)) return false;
    const uint16_t next = has(at + 1) ? text_.data()[at + 1] : uint16_t{0};
    return is_within_number(text_.data(), begin, at, next);
}

// The width of the first characters of a line.
int64_t RectLines::width_of(int begin, int end) {
    if ((flags_ & TEXT_MARKS) == 0) return measure(text_.data() + begin, end - begin);
    Pace pace = start_line();
    int64_t width = 0;
    for (uint16_t *c = text_.data() + begin; c < text_.data() + end; ++c)
        width += careful_step(pace, *c);
    walker_.end_line();
    return width;
}

Pace RectLines::start_line() {
    Pace pace = walker_.start_line();
    if (marks_.font != line_font_code) walker_.slow_step(pace, marks_.font);
    return pace;
}

int RectLines::careful_step(Pace &pace, uint16_t &c) {
    if ((flags_ & TEXT_MARKS) != 0 && is_mark(c)) return 0;
    int step;
    if (pace.find(c, step)) return step;
    SubstBrokenChar(&c);
    return walker_.slow_step(pace, c);
}

void RectLines::follow_marks(Line &line) {
    line.marks = marks_;
    marks_.read(text_.data() + line.begin, text_.data() + line.next);
    line.is_heading = marks_.is_heading;
    if (ends_paragraph(line)) marks_ = {};
    line.marks_after = marks_;
}

int RectLines::skip_to_next_line(int at) {
    while (has(at) && text_.data()[at] == ' ') ++at;
    return has(at) && text_.data()[at] == newline ? at + 1 : at;
}

void RectLines::trim(Line &line) const {
    while (line.end > line.begin && text_.data()[line.end - 1] == ' ') --line.end;
}

// Of which nothing is seen.
bool RectLines::is_blank(uint16_t c) const {
    if (c == newline) return false;
    const bool is_own_mark = (flags_ & TEXT_MARKS) != 0 && is_mark(c);
    return c == ' ' || is_invisible(c) || is_font_code(c) || is_own_mark;
}

bool RectLines::is_empty(const Line &line) const {
    const uint16_t *const text = text_.data();
    return std::all_of(text + line.begin, text + line.end,
                       [this](uint16_t c) { return is_blank(c); });
}

int RectLines::skip_empty_lines(int at) {
    for (int behind = at;; ++behind) {
        while (has(behind) && is_blank(text_.data()[behind])) ++behind;
        if (is_text_end(behind)) return behind;
        if (!has(behind) || text_.data()[behind] != newline) return at;
        at = behind + 1;
    }
}

// Takes characters off the end until the dots fit. They may stand for the first one of all.
void RectLines::append_dots(Line &line) {
    int fitting = line.begin;
    int64_t width = 0, fitting_width = 0;
    Pace pace = start_line();
    for (int at = line.begin; at < line.end;) {
        width += careful_step(pace, text_.data()[at++]);
        if (width + dots_width_ <= w_ && !is_number_broken(line.begin, at))
            fitting = at, fitting_width = width;
    }
    if (fitting < line.end) line.next = std::max(fitting, begin_ + 1);
    walker_.end_line();
    line.end = fitting;
    line.width = fitting_width + dots_width_;
    line.has_dots = true;
}

} // namespace text
