// SPDX-License-Identifier: MIT
// Orders lines with FriBidi.
#include "text/bidi.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <utility>

#include "ground/guard.h"
#include "kelvane/text.h"
#include "text/paragraph.h"
#include "text/walker.h"

namespace text {
namespace {

// No character below the Hebrew block runs right to left, and few above its neighbours do.
unsigned may_run_right_to_left(unsigned c) {
    return (c - 0x590U < 0x900U - 0x590U) | (c - 0x200FU < 0x2070U - 0x200FU) | (c >= 0xFB1DU);
}

struct VisualOrder {
    std::vector<FriBidiChar> text;
    std::vector<FriBidiStrIndex> from; // where each character was
};

VisualOrder reorder(const uint16_t *units, int len, Direction direction) {
    FriBidiParType base = paragraph_type(direction);
    Paragraph line(units, len, base);
    VisualOrder order{line.text, std::vector<FriBidiStrIndex>(line.text.size())};
    std::iota(order.from.begin(), order.from.end(), 0);
    if (line.highest == 0) return order;
    fribidi_shape_mirroring(line.levels.data(), len, order.text.data());
    // Marks stay left of their letter, where fonts expect to draw them before it. Zero means no
    // memory: then the line stays in the order in which it is read.
    [[maybe_unused]] const FriBidiLevel highest =
        fribidi_reorder_line(0, line.types.data(), len, 0, base, line.levels.data(),
                             order.text.data(), order.from.data());
    return order;
}

unsigned short *converted_copy(const uint16_t *text, int len, Direction direction) {
    return ground::guarded(nullptr, [&]() -> unsigned short * {
        if (!text || len < 0) return nullptr;
        const VisualOrder order = reorder(text, len, direction);
        auto *copy = static_cast<unsigned short *>(
            std::malloc(static_cast<size_t>(len + 1) * sizeof(unsigned short)));
        if (!copy) return nullptr;
        std::transform(order.text.begin(), order.text.end(), copy,
                       [](FriBidiChar c) { return static_cast<unsigned short>(c); });
        copy[len] = 0;
        return copy;
    });
}

// A line without its font codes, and the code in force at each character.
struct Stripped {
    std::vector<uint16_t> text, fonts;
};

Stripped strip_font_codes(const uint16_t *text, int len) {
    Stripped line;
    uint16_t font = line_font_code;
    for (int i = 0; i < len; ++i) {
        if (is_font_code(text[i])) {
            font = text[i];
            continue;
        }
        line.text.push_back(text[i]);
        line.fonts.push_back(font);
    }
    return line;
}

} // namespace

// Without early ends, so that the loops look at many characters at once. Most texts have no bit
// that the first right-to-left block has not.
bool may_have_right_to_left(const uint16_t *text, int len) {
    unsigned found = 0;
    uint16_t all = 0;
    for (int i = 0; i < len; ++i) all |= text[i];
    if (all < 0x590U) return false;
    for (int i = 0; i < len; ++i) found |= may_run_right_to_left(text[i]);
    return found != 0;
}

Direction direction_of(const uint16_t *text, int len) {
    if (!may_have_right_to_left(text, len)) return Direction::none;
    Direction direction = Direction::none;
    bool is_first = true;
    for (int i = 0; i < len; ++i) {
        const FriBidiCharType type = fribidi_get_bidi_type(text[i]);
        const bool is_rtl = FRIBIDI_IS_RTL(type) != 0;
        if (FRIBIDI_IS_STRONG(type) && std::exchange(is_first, false) && is_rtl)
            return Direction::right_to_left;
        // Arabic numbers run left to right, but one after the other right to left.
        if (is_rtl || type == FRIBIDI_TYPE_AN) direction = Direction::left_to_right;
    }
    return direction;
}

Direction strong_direction(uint16_t c) {
    const FriBidiCharType type = fribidi_get_bidi_type(c);
    if (!FRIBIDI_IS_STRONG(type)) return Direction::none;
    return FRIBIDI_IS_RTL(type) ? Direction::right_to_left : Direction::left_to_right;
}

std::vector<uint16_t> visual_line(const uint16_t *text, int len, Direction direction) {
    const Stripped line = strip_font_codes(text, len);
    const VisualOrder order =
        reorder(line.text.data(), static_cast<int>(line.text.size()), direction);
    std::vector<uint16_t> visual;
    visual.reserve(static_cast<size_t>(len));
    uint16_t font = line_font_code;
    for (size_t i = 0; i < order.text.size(); ++i) {
        const uint16_t wanted = line.fonts[static_cast<size_t>(order.from[i])];
        if (wanted != font) visual.push_back(font = wanted);
        visual.push_back(static_cast<uint16_t>(order.text[i]));
    }
    return visual;
}

} // namespace text

int rtl_direction(const unsigned short *text, int len) {
    return text && len > 0 ? static_cast<int>(text::direction_of(text, len)) : 0;
}

unsigned short *rtl_convert_l(const unsigned short *text, int len) {
    return text::converted_copy(text, len, text::Direction::left_to_right);
}

unsigned short *rtl_convert_r(const unsigned short *text, int len) {
    return text::converted_copy(text, len, text::Direction::right_to_left);
}
