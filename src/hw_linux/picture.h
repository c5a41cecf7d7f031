// SPDX-License-Identifier: MIT
// Pictures of the emulated panel, for scripts and traces.
#pragma once

namespace hw {

// Saves what the panel shows as a grey PNG. False after saying on standard error what is wrong, and
// for whom: `asker` is the line of a script or the variable that asks for it.
bool save_picture(const char *file, const char *asker);

} // namespace hw
