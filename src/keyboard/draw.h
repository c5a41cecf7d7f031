// SPDX-License-Identifier: MIT
// Draws keyboards, whole and in parts, on the screen. Nothing here updates it.
#pragma once

#include "keyboard/board.h"

namespace keyboard {

void draw_board(const Board &b);
// All keys, those of commands too.
void draw_keys(const Board &b);
void draw_entry(Board &b);

// A key for fingers, as it is or pressed.
void draw_touch_key(const Board &b, const TouchKey &key, bool is_pressed);
void draw_button(const Board &b, int index, bool is_pressed);
// The keys of an area for five keys, with what is selected in it.
void draw_area(const Board &b, const Area &area);

irect touch_rect(const Board &b, const TouchKey &key);
irect grid_rect(const Board &b, const GridKey &key);
irect area_rect(const Board &b, const Area &area);
// Of the sign at the end of the entry line.
irect icon_rect(const Board &b);
// The character of the text that lies nearest to a column of the screen.
size_t character_at(const Board &b, int x);

// A letter in a frame, above the finger that covers its key.
void draw_hint(const Board &b, const irect &at, uint16_t letter);

// The parts of a key.
enum class Face { plain, special, pressed };
void draw_face(const Look &look, const irect &r, Face face);
// What stands on a key.
void draw_legend(const Board &b, const irect &r, uint16_t code, bool is_black,
                 const text::FontPtr &letters);

} // namespace keyboard
