// SPDX-License-Identifier: MIT
// Draws the glyphs of a line, underlined or turned upwards when asked.
#include "text/line.h"

#include <algorithm>

#include "ground/guard.h"
#include "text/joining.h"
#include "text/measure.h"
#include "text/symbols.h"
#include "text/units.h"
#include "text/walker.h"

namespace text {
namespace {

// Shares the missing width out among the spaces of a line, in 1/256 pixel.
class Justification {
  public:
    Justification(int width, const uint16_t *text, int len) {
        if (width == 0) return;
        const int64_t missing = width - measure(text, len);
        const int64_t spaces = std::count(text, text + len, ' ');
        if (missing > 0 && spaces > 0) extra_ = missing * 256 / spaces;
    }
    // The pixels that the next space gets.
    int64_t next() {
        fraction_ += extra_ & 255;
        const int64_t carry = fraction_ > 255 ? 1 : 0;
        fraction_ -= carry * 256;
        return (extra_ >> 8) + carry;
    }

  private:
    int64_t extra_ = 0, fraction_ = 0;
};

class LinePainter {
  public:
    LinePainter(int64_t x, int64_t y, int color, Run run)
        : x_(x), y_(y), baseline_(current.baseline), color_(color), target_(color, run) {}

    void draw(const uint16_t *text, int len, Justification justification) {
        for (; len > 0; --len, ++text) {
            const ifont *font = kvstate.current_font;
            const Advance advance = walker_.step(*text);
            if (is_font_code(*text) || font != kvstate.current_font) change_color();
            pen_ += advance.kerning;
            draw_character(*text);
            pen_ += advance.width;
            if (*text == ' ') pen_ += justification.next();
        }
    }
    int64_t pen() const { return pen_; }

  private:
    void change_color() {
        target_.set_color(walker_.is_switched() ? kvstate.current_color : color_);
    }
    void draw_character(uint16_t c) {
        if (!has_face() || is_font_code(c) || is_invisible(c)) return;
        const Glyph *glyph =
            is_symbol_code(c)
                ? symbol_glyph(symbol_of_code(c), symbol_size(current.baseline), current.mode)
                : current.cache->glyph(current.mode, c);
        if (!glyph) return;
        if (target_.run() == Run::across)
            target_.draw(*glyph, x_ + pen_, y_ + baseline_);
        else
            target_.draw(*glyph, x_ + baseline_, y_ - pen_);
    }

    int64_t x_, y_, pen_ = 0;
    const int64_t baseline_; // of the line's own font: all of the line stands on it
    int color_;
    Walker walker_;
    Target target_;
};

void draw_string(int x, int y, const char *utf8, Run run) {
    // Without memory nothing, or only the start of the line, is drawn.
    // Nothing, or only the start of the line, is drawn.
    ground::guarded([&] {
        if (!utf8 || !has_face()) return;
        Units units(utf8);
        const Direction direction = join_letters(units.data(), units.size());
        kv_textblock(x, y, 0, units.data(), units.size(), kvstate.current_color, run, direction);
    });
}

} // namespace

int64_t kv_textblock(int64_t x, int64_t y, int width, const uint16_t *text, int len, int color,
                     Run run, Direction rtl) {
    std::vector<uint16_t> visual;
    const bool is_reordered =
        rtl == Direction::right_to_left ||
        (rtl == Direction::left_to_right && direction_of(text, len) != Direction::none);
    if (is_reordered) {
        visual = visual_line(text, len, rtl);
        text = visual.data();
        len = static_cast<int>(visual.size());
    }
    const Justification justification(width, text, len);
    LinePainter painter(x, y, color, run);
    painter.draw(text, len, justification);
    return painter.pen();
}

} // namespace text

void DrawString(int x, int y, const char *utf8) {
    text::draw_string(x, y, utf8, text::Run::across);
}

void DrawStringR(int x, int y, const char *utf8) {
    text::draw_string(x, y, utf8, text::Run::upwards);
}
