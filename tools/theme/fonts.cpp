// SPDX-License-Identifier: MIT
// Whether bytes are a TrueType font that FreeType will open, from its table of contents.
#include <algorithm>
#include <array>

#include "resources.h"

namespace tool {
namespace {

constexpr size_t header_size = 12, record_size = 16;

size_t big_endian(std::string_view bytes, size_t at, size_t count) {
    size_t value = 0;
    for (size_t i = 0; i < count; ++i) value = value << 8 | static_cast<uint8_t>(bytes[at + i]);
    return value;
}

} // namespace

bool is_truetype(std::string_view bytes) {
    using namespace std::string_view_literals;
    if (bytes.size() < header_size) return false;
    if (!bytes.starts_with("\0\1\0\0"sv) && !bytes.starts_with("true")) return false;
    constexpr std::array needed = {"cmap"sv, "glyf"sv, "head"sv, "hmtx"sv, "loca"sv, "maxp"sv};
    size_t found = 0;
    const size_t tables = big_endian(bytes, 4, 2);
    if (header_size + tables * record_size > bytes.size()) return false;
    for (size_t i = 0; i < tables; ++i) {
        const size_t at = header_size + i * record_size;
        if (big_endian(bytes, at + 8, 4) + big_endian(bytes, at + 12, 4) > bytes.size())
            return false;
        if (std::ranges::find(needed, bytes.substr(at, 4)) != needed.end()) ++found;
    }
    return found == needed.size();
}

} // namespace tool
