// SPDX-License-Identifier: MIT
// Asks FriBidi for levels, within bounds.
#include "text/paragraph.h"

namespace text {
namespace {

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

} // namespace

Paragraph::Paragraph(const uint16_t *units, int len, FriBidiParType base)
    : text(units, units + len), types(text.size()), levels(text.size()) {
    std::vector<FriBidiBracketType> brackets(text.size());
    fribidi_get_bidi_types(text.data(), len, types.data());
    limit_isolates(types);
    fribidi_get_bracket_types(text.data(), len, types.data(), brackets.data());
    limit_brackets(brackets);
    highest = fribidi_get_par_embedding_levels_ex(types.data(), brackets.data(), len, &base,
                                                  levels.data());
}

FriBidiParType paragraph_type(Direction direction) {
    return direction == Direction::right_to_left ? FRIBIDI_PAR_RTL : FRIBIDI_PAR_LTR;
}

} // namespace text
