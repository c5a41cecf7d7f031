// SPDX-License-Identifier: MIT
// What closing the screen asks of the pager.
#pragma once

namespace pager {

// Forgets the theme's pager and a press.
void reset();

} // namespace pager
