// SPDX-License-Identifier: MIT
// Where messages go while nothing can show them.
#include "ground/message.h"

#include "ground/log.h"

MessageHooks message_hooks;

void print_message(int, const char *title, const char *text, int) {
    kv_warn("message", "%s: %s\n", title, text);
}
