// SPDX-License-Identifier: MIT
// Decodes base64 by a table of all bytes.
#include "bookinfo/base64.h"

#include <array>
#include <cstdint>

namespace book {
namespace {

constexpr int8_t no_digit = -1;

constexpr std::array<int8_t, 256> make_digits() {
    constexpr std::string_view all =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::array<int8_t, 256> digits{};
    digits.fill(no_digit);
    for (size_t i = 0; i < all.size(); ++i)
        digits[static_cast<unsigned char>(all[i])] = static_cast<int8_t>(i);
    return digits;
}

constexpr std::array<int8_t, 256> digits = make_digits();

} // namespace

std::string from_base64(std::string_view text, size_t limit) {
    std::string bytes;
    if (text.size() / 2 > limit) return bytes; // half of it may be line ends
    bytes.reserve(text.size() / 4 * 3);
    uint32_t bits = 0;
    int count = 0;
    for (const char c : text) {
        const int8_t digit = digits[static_cast<unsigned char>(c)];
        if (digit == no_digit) continue;
        bits = bits << 6 | static_cast<uint32_t>(digit);
        if ((count += 6) < 8) continue;
        count -= 8;
        bytes += static_cast<char>(bits >> count & 0xFF);
    }
    if (bytes.size() > limit) bytes.clear();
    return bytes;
}

} // namespace book
