// SPDX-License-Identifier: MIT
// Any bytes as text, with any width, height and flags: six bytes of them, then the text.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "text_folder.h"

namespace {

// Layout ends somewhere in the text, and in the same place whether it draws or not.
void check(const std::string &text, int w, int h, int flags) {
    int height = 0;
    const char *end = DrawTextRect3(3, 2, w, h, text.c_str(), flags, &height);
    if (end < text.c_str() || end > text.c_str() + std::strlen(text.c_str())) std::abort();
    if ((flags & TEXT_ROTATE) == 0 && TextRectHeightEx(w, h, text.c_str(), flags) != height)
        std::abort();
    if (GetFont() == nullptr || kvstate.current_color != BLACK) std::abort();
    if (MinimalTextRectWidth(w, text.c_str()) < 0) std::abort();
    GetMultilineStringWidth(text.c_str(), w, nullptr, flags);
    DrawStringR(20, 60, text.c_str());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static fuzz::TextFolder folder;
    const fuzz::Visit visit(folder);
    static ifont *fonts[] = {OpenFont("default", 12, 1), OpenFont("defaultb", 14, 0)};
    static const bool registered = (RegisterFontList(fonts, 2), true);
    static_cast<void>(registered);
    if (size < 6) return 0;
    int16_t w, h, flags;
    std::memcpy(&w, data, 2);
    std::memcpy(&h, data + 2, 2);
    std::memcpy(&flags, data + 4, 2);
    SetFont(fonts[0], BLACK);
    check(std::string(data + 6, data + size), w, h, flags);
    return 0;
}
