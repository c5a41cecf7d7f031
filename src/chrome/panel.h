// SPDX-License-Identifier: MIT
// The status panel, as far as layouts must know of it.
#pragma once

extern "C" {
// Rows that the status panel takes from the bottom of the screen.
int PanelHeight(void);
}
