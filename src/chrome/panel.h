// SPDX-License-Identifier: MIT
#pragma once

extern "C" {
// Rows that the status panel takes from the bottom of the screen.
int PanelHeight(void);
}
