// SPDX-License-Identifier: MIT
// The layouts of the on-screen keyboard.
#include "keyboard/keyboard.h"

// The built-in English layout needs no file.
void LoadKeyboard(const char *) {}
