// SPDX-License-Identifier: MIT
// How boxes look. Everything is drawn on the screen, whatever the application draws on.
#pragma once

#include "dialogs/stack.h"

namespace dialogs {

void draw(const OpenBox &box);
// Hatches the selected button and shows it, unless selected buttons are black anyway.
void draw_pressed_button(const OpenBox &box);
// Hatches a button and shows it.
void draw_hatched_button(const OpenBox &box, int button);

// Shows the screen: at once in black and white as an answer to input, otherwise in greys after the
// update before.
enum class Show { reaction, news };
void show(Show how);
inline void redraw(const OpenBox &box, Show how) {
    draw(box);
    show(how);
}

} // namespace dialogs
