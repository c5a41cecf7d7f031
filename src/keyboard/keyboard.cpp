// SPDX-License-Identifier: MIT
#include "keyboard/keyboard.h"

// The built-in English layout needs no file.
void LoadKeyboard(const char *) {}
