// SPDX-License-Identifier: MIT
// The pop-up menu of the device window.
#pragma once

#include <gtk/gtk.h>

namespace hw {

// Makes the menu, its radio items showing the emulated device's present state. Every item runs
// run_command() with its number. The caller owns the reference.
GtkWidget *make_window_menu();

} // namespace hw
