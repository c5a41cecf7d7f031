// SPDX-License-Identifier: MIT
// Aligns, underlines and draws lines, across or upwards.
#include "text/rect_painter.h"

#include <algorithm>
#include <iterator>

#include "ground/number.h"

namespace text {

void RectPainter::draw(const Line &line, int64_t top) const {
    std::vector<uint16_t> changed;
    int len = line.end - line.begin;
    const uint16_t *text = text_.data() + line.begin;
    if (line.has_dots || (flags_ & TEXT_MARKS) != 0) {
        changed = shown(line, text, text + len);
        text = changed.data();
        len = static_cast<int>(changed.size());
    }
    if (len > 0) draw_characters(text, len, line, top);
}

bool RectPainter::is_above_clip(int64_t top) const {
    const icanvas *canvas = kvstate.canvas;
    return (flags_ & TEXT_ROTATE) == 0 && canvas &&
           y_ + top + kvstate.current_font->height <= canvas->clipy1;
}

// In the font that it goes on in, without marks, with the dots.
std::vector<uint16_t> RectPainter::shown(const Line &line, const uint16_t *text,
                                         const uint16_t *end) const {
    std::vector<uint16_t> out;
    out.reserve(static_cast<size_t>(end - text) + 1 + dots.size());
    if (line.marks.font != line_font_code) out.push_back(line.marks.font);
    const bool has_marks = (flags_ & TEXT_MARKS) != 0;
    std::copy_if(text, end, std::back_inserter(out),
                 [=](uint16_t c) { return !has_marks || !is_mark(c); });
    if (line.has_dots) out.insert(out.end(), dots.begin(), dots.end());
    return out;
}

void RectPainter::draw_characters(const uint16_t *text, int len, const Line &line,
                                  int64_t top) const {
    const bool is_justified = (flags_ & ALIGN_JUSTIFY) != 0 && line.ended_by == LineEnd::overflow;
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

int64_t RectPainter::offset_of(const Line &line) const {
    if ((flags_ & ALIGN_CENTER) != 0) return (w_ - line.width) / 2;
    if ((flags_ & ALIGN_RIGHT) != 0) return w_ - line.width;
    return 0;
}

void RectPainter::underline(int64_t x, int64_t y, int64_t length, Run run) const {
    const int64_t offset = int64_t{current.baseline} + 1;
    const int color = kvstate.current_color;
    if (run == Run::across)
        FillArea(ground::saturated(x), ground::saturated(y + offset), ground::saturated(length), 1,
                 color);
    else
        FillArea(ground::saturated(x + offset), ground::saturated(y - length + 1), 1,
                 ground::saturated(length), color);
}

} // namespace text
