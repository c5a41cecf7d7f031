// SPDX-License-Identifier: MIT
// What the sources of this area forget when the screen is closed.
#pragma once

namespace chrome {

// Forgets the pictures, fonts and properties that were loaded, and switches the caption off.
void reset();
// One for each source that keeps something.
void reset_borders();
void reset_selection();
void reset_frames();
void reset_caption();
void reset_panel();

} // namespace chrome
