// SPDX-License-Identifier: MIT
// The hourglass, as far as the lifecycle asks for it.
#pragma once

namespace hourglass {

// Shows it where the theme or the application wants it as the application ends.
void show_at_exit();
// Forgets it, as the screen closes.
void reset();

} // namespace hourglass
