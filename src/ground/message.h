// SPDX-License-Identifier: MIT
// Messages to the user. Whoever can show them installs the way; until then they are printed.
#pragma once

// A line on standard error.
void print_message(int icon, const char *title, const char *text, int timeout_ms);

struct MessageHooks {
    // Shows a message without waiting for an answer. Title and text are translation keys or texts.
    void (*show)(int icon, const char *title, const char *text, int timeout_ms) = print_message;
};
extern MessageHooks message_hooks;
