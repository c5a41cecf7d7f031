// SPDX-License-Identifier: MIT
// Lines with right-to-left text in the order in which they are drawn.
#pragma once

#include <cstdint>
#include <vector>

namespace text {

// What rtl_direction() answers.
enum class Direction { none = 0, left_to_right = 1, right_to_left = 2 };

Direction direction_of(const uint16_t *text, int len);

// The direction of one character; none of those that go along with their neighbours.
Direction strong_direction(uint16_t c);

// False for most texts in which nothing runs right to left, at little cost.
bool may_have_right_to_left(const uint16_t *text, int len);

// A line in drawing order. Each character keeps the font that the codes before it chose: where the
// font changes in the new order there is a code, perhaps line_font_code.
std::vector<uint16_t> visual_line(const uint16_t *text, int len, Direction paragraph);

} // namespace text
