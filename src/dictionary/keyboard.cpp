// SPDX-License-Identifier: MIT
// Puts a dictionary's keyboard layout where it is read.
#include "dictionary/keyboard.h"

#include <string_view>

#include "file/stream.h"
#include "kelvane/files.h"

namespace dictionary {

void put_keyboard(std::span<const uint8_t> layout) {
    kv_unlink(keyboard_path);
    if (layout.empty()) return;
    kv_buildpath(keyboard_path);
    const file::Stream out = file::open_plain(keyboard_path, file::Access::create);
    const bool is_written =
        out && kv_fwrite(layout.data(), 1, layout.size(), out.get()) == layout.size() &&
        std::fflush(out.get()) == 0;
    if (!is_written) kv_unlink(keyboard_path);
}

std::string keyboard_language(std::span<const uint8_t> layout) {
    constexpr size_t code = 2, first_place = 2, last_place = 5;
    const std::string_view text(reinterpret_cast<const char *>(layout.data()), layout.size());
    const size_t colon = text.find(':');
    if (colon < first_place || colon > last_place) return {};
    return std::string(text.substr(colon - code, code));
}

} // namespace dictionary
