// SPDX-License-Identifier: MIT
// 16-bit characters as UTF-8.
#pragma once

#include <string>

inline std::string encode(const std::u16string &text) {
    std::string out;
    for (const unsigned c : text) {
        if (c < 0x80) {
            out += char(c);
        } else if (c < 0x800) {
            out += {char(0xC0 | c >> 6), char(0x80 | (c & 63))};
        } else {
            out += {char(0xE0 | c >> 12), char(0x80 | (c >> 6 & 63)), char(0x80 | (c & 63))};
        }
    }
    return out;
}
