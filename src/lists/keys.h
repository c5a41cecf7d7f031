// SPDX-License-Identifier: MIT
// Keys where the interface runs right to left.
#pragma once

#include "kelvane/events.h"
#include "lists/look.h"

namespace lists {

// The key that means a direction where the interface runs left to right.
inline int mirrored_key(const Look &look, int code) {
    if (!look.is_rtl || (code != KEY_LEFT && code != KEY_RIGHT)) return code;
    return KEY_LEFT + KEY_RIGHT - code;
}

} // namespace lists
