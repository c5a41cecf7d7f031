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

// Joins the letters of a text in which something runs right to left. To be done once: joined
// letters may join otherwise the next time. Returns the direction of the text.
Direction join_letters(uint16_t *text, int len);

// Joins the letters of a text of which `len` characters are there, and those before `begin` joined.
// Returns up to where they are joined now, as they would be in the whole text: perhaps `begin`,
// when the next ones join with what is to come.
enum class More { no, yes };
int join_further(uint16_t *text, int begin, int len, More more);

// A line in drawing order. Each character keeps the font that the codes before it chose: where the
// font changes in the new order there is a code, perhaps line_font_code.
std::vector<uint16_t> visual_line(const uint16_t *text, int len, Direction paragraph);

} // namespace text
