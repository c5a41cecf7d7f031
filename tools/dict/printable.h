// SPDX-License-Identifier: MIT
// Texts of files that anybody may have written, for a terminal.
#pragma once

#include <string>
#include <string_view>

namespace dict {

// The text with blanks for characters that would do something to a terminal, but for new lines and
// tabs.
inline std::string printable(std::string_view text) {
    std::string out(text);
    for (size_t i = 0; i < out.size(); ++i) {
        const auto byte = static_cast<unsigned char>(out[i]);
        const bool is_ascii_control = byte < ' ' && byte != '\n' && byte != '\t';
        const bool is_other_control =
            byte == 0xC2 && i + 1 < out.size() && static_cast<unsigned char>(out[i + 1]) < 0xA0;
        if (is_ascii_control || byte == 0x7F) out[i] = ' ';
        if (is_other_control) out.replace(i, 2, " ");
    }
    return out;
}

} // namespace dict
