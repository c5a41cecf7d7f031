// SPDX-License-Identifier: MIT
// Orders lines and joins letters with FriBidi.
#include "text/bidi.h"

#include <algorithm>
#include <cstdlib>
#include <fribidi/fribidi.h>
#include <numeric>
#include <utility>

#include "ground/guard.h"
#include "kelvane/text.h"
#include "text/walker.h"

namespace text {
namespace {

// No character below the Hebrew block runs right to left, and few above its neighbours do.
unsigned may_run_right_to_left(unsigned c) {
    return (c - 0x590U < 0x900U - 0x590U) | (c - 0x200FU < 0x2070U - 0x200FU) | (c >= 0xFB1DU);
}

// Without early ends, so that the loops look at many characters at once. Most texts have no bit
// that the first right-to-left block has not.
bool has_any(const uint16_t *text, int len) {
    unsigned found = 0;
    uint16_t all = 0;
    for (int i = 0; i < len; ++i) all |= text[i];
    if (all < 0x590U) return false;
    for (int i = 0; i < len; ++i) found |= may_run_right_to_left(text[i]);
    return found != 0;
}

// FriBidi takes time by the square of the number of isolates, and stack for each bracket. Those
// beyond what any real paragraph has are plain neutral characters.
constexpr int most_isolate_marks = 1000, most_brackets = 1000;

void limit_isolates(std::vector<FriBidiCharType> &types) {
    int left = most_isolate_marks;
    for (FriBidiCharType &type : types)
        if (FRIBIDI_IS_ISOLATE(type) && left-- <= 0) type = FRIBIDI_TYPE_ON;
}

void limit_brackets(std::vector<FriBidiBracketType> &brackets) {
    int left = most_brackets;
    for (FriBidiBracketType &bracket : brackets)
        if (bracket != FRIBIDI_NO_BRACKET && left-- <= 0) bracket = FRIBIDI_NO_BRACKET;
}

// One paragraph as FriBidi wants it.
struct Paragraph {
    std::vector<FriBidiChar> text;
    std::vector<FriBidiCharType> types;
    std::vector<FriBidiLevel> levels;
    FriBidiLevel highest; // 0: no levels could be made

    Paragraph(const uint16_t *units, int len, FriBidiParType base)
        : text(units, units + len), types(text.size()), levels(text.size()) {
        std::vector<FriBidiBracketType> brackets(text.size());
        fribidi_get_bidi_types(text.data(), len, types.data());
        limit_isolates(types);
        fribidi_get_bracket_types(text.data(), len, types.data(), brackets.data());
        limit_brackets(brackets);
        highest = fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), len, &base,
                                                      levels.data());
    }
    int size() const { return static_cast<int>(text.size()); }
};

FriBidiParType paragraph_type(Direction direction) {
    return direction == Direction::right_to_left ? FRIBIDI_PAR_RTL : FRIBIDI_PAR_LTR;
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

int find_newline(const uint16_t *text, int begin, int len) {
    return static_cast<int>(std::find(text + begin, text + len, newline) - text);
}

// A paragraph, or a part of one that joins with nothing around it. Letters without far-reaching
// marks join by their neighbours alone; with marks all of the paragraph has a say.
void shape_part(uint16_t *text, int len, FriBidiParType base) {
    if (!has_any(text, len)) return;
    Paragraph paragraph(text, len, base);
    if (paragraph.highest == 0) return;
    std::vector<FriBidiArabicProp> joining(paragraph.text.size());
    fribidi_get_joining_types(paragraph.text.data(), len, joining.data());
    fribidi_join_arabic(paragraph.types.data(), len, paragraph.levels.data(), joining.data());
    fribidi_shape_arabic(FRIBIDI_FLAGS_ARABIC, paragraph.levels.data(), len, joining.data(),
                         paragraph.text.data());
    std::transform(paragraph.text.begin(), paragraph.text.end(), text,
                   [](FriBidiChar c) { return static_cast<uint16_t>(c); });
}

// Marks by which letters depend on far ones: embeddings, overrides and isolates, and the neutral
// signs among which letters join.
bool is_far_reaching(uint16_t c) {
    return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069) || c == 0x1807 ||
           c == 0x180A || (c >= 0xFFF9 && c <= 0xFFFB);
}

// Whether a letter before and one after it never join, whatever else there is.
bool parts_letters(uint16_t c) {
    return fribidi_get_joining_type(c) == FRIBIDI_JOINING_TYPE_U;
}

// What the letters before `begin` tell of the direction of their paragraph.
FriBidiParType paragraph_type_before(const uint16_t *text, int begin) {
    int start = begin;
    while (start > 0 && text[start - 1] != newline) --start;
    for (; start < begin; ++start) {
        const FriBidiCharType type = fribidi_get_bidi_type(text[start]);
        if (FRIBIDI_IS_LETTER(type))
            return FRIBIDI_IS_RTL(type) ? FRIBIDI_PAR_RTL : FRIBIDI_PAR_LTR;
    }
    return FRIBIDI_PAR_ON;
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

Direction direction_of(const uint16_t *text, int len) {
    if (!has_any(text, len)) return Direction::none;
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

Direction join_letters(uint16_t *text, int len) {
    const Direction direction = direction_of(text, len);
    if (direction != Direction::none) arabic_shape(text, len);
    return direction;
}

int join_further(uint16_t *text, int begin, int len, More more) {
    // Letters that are not joined can be read, too.
    return ground::guarded(len, [&]() -> int {
        int end = len;
        while (more == More::yes && end > begin && !parts_letters(text[end - 1])) --end;
        if (!has_any(text + begin, end - begin)) return end;
        while (begin < end) {
            const int paragraph_end = find_newline(text, begin, len);
            int stop = std::min(end, paragraph_end);
            FriBidiParType base = FRIBIDI_PAR_ON;
            if (std::any_of(text + begin, text + stop, is_far_reaching)) {
                if (paragraph_end == len && more == More::yes) return begin;
                stop = paragraph_end;
                base = paragraph_type_before(text, begin);
            }
            shape_part(text + begin, stop - begin, base);
            begin = stop == paragraph_end ? stop + 1 : stop;
        }
        return std::min(begin, len);
    });
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

void arabic_shape(unsigned short *text, int len) {
    if (text && len > 0) text::join_further(text, 0, len, text::More::no);
}
