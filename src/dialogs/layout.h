// SPDX-License-Identifier: MIT
// Where the parts of a box go. Nothing is drawn here and no screen is asked.
#pragma once

#include <array>

#include "kelvane/canvas.h"

namespace dialogs {

enum class Kind { message, progress, question };

inline constexpr int most_buttons = 3;
// Of the three buttons, those that there are.
using Present = std::array<bool, most_buttons>;

// What a layout depends on besides the text.
struct Measures {
    int screen_w, screen_h;
    int spacing;        // around the text
    int below;          // rows of the screen under a box
    int raised;         // by how many rows dialogs stand higher
    int bar_w;          // of a progress bar
    int icon_w, icon_h; // 0 without an icon
};

enum class ButtonRow { none, reserved };

struct Layout {
    irect box, text;
    irect icon; // the column of the icon, as high as the text's part of the box
    irect bar;  // of a progress bar
    irect row;  // of the buttons
    std::array<irect, most_buttons> buttons; // empty where there is none
};

// Measures `text` in the current font. A box is at most as high as the screen: the text then gets
// less room than it needs. A row that is not reserved lies directly under the box.
Layout lay_out(Kind kind, const Measures &m, const char *text, ButtonRow row);

// Shares the row among the buttons; what is left by rounding goes to the last one.
void lay_out_buttons(Layout &layout, const Present &present);

} // namespace dialogs
