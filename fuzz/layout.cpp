// SPDX-License-Identifier: MIT
// Any bytes as text, with any width, height and flags: six bytes of them, then the text.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "text_folder.h"

namespace {

// Each page ends where the next one starts.
void check_pages(const std::string &text, int w, int h, int flags) {
    int starts[4];
    const int pages = Paginate(text.c_str(), w, h, h, flags, starts, 4);
    for (int i = 1; i < pages; ++i) {
        const char *end = DrawTextPage(0, 0, w, h, text.c_str(), starts[i - 1], flags);
        if (end != text.c_str() + starts[i]) std::abort();
    }
}

// Layout ends somewhere in the text, and in the same place whether it draws or not.
void check(const std::string &text, int w, int h, int flags) {
    int height = 0;
    const char *end = DrawTextRect3(3, 2, w, h, text.c_str(), flags, &height);
    if (end < text.c_str() || end > text.c_str() + std::strlen(text.c_str())) std::abort();
    if ((flags & TEXT_ROTATE) == 0 && TextRectHeightEx(w, h, text.c_str(), flags) != height)
        std::abort();
    if (GetFont() == nullptr || kvstate.current_color != BLACK) std::abort();
    if (MinimalTextRectWidth(w, text.c_str()) < 0) std::abort();
    if ((flags & TEXT_ROTATE) == 0 && TextRectEnd(w, h, text.c_str(), flags) != end) std::abort();
    check_pages(text, w, h, flags);
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
    int16_t w, h;
    uint16_t flags;
    std::memcpy(&w, data, 2);
    std::memcpy(&h, data + 2, 2);
    std::memcpy(&flags, data + 4, 2);
    SetFont(fonts[0], BLACK);
    // The flags of pages lie above those that 16 bits hold.
    const int page_flags = (flags & 0xF000) << 12 | (flags & 0x100) << 20;
    check(std::string(data + 6, data + size), w, h, (flags & 0xEFF) | page_flags);
    return 0;
}
