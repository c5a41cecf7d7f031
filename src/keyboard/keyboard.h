// SPDX-License-Identifier: MIT
// The on-screen keyboard's layouts, as the start of the library asks for them.
#pragma once

extern "C" {
// Chooses the layouts of a name such as "EN-RU-UK".
void LoadKeyboard(const char *name);
}
