// SPDX-License-Identifier: MIT
// Any bytes as a font file: it opens or does not, and a line is drawn with it. Whatever the fonts
// are, a line that is measured twice is as wide.
#include <cstdint>
#include <cstdlib>
#include <fstream>

#include "text_folder.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static fuzz::TextFolder folder;
    const fuzz::Visit visit(folder);
    std::ofstream("system/fonts/fuzzed.ttf", std::ios::binary)
        .write(reinterpret_cast<const char *>(data), static_cast<std::streamsize>(size));
    const int pixels = size > 0 ? 1 + data[size - 1] % 64 : 1;
    if (ifont *font = OpenFont("fuzzed", pixels, pixels % 2)) {
        SetFont(font, BLACK);
        const char *line = "Wag \xC3\xA9\xD0\x96 1\xD7\x90\xD8\xB3\xE4\xB8\xAD \x11.";
        const int width = StringWidth(line);
        DrawString(2, 2, line);
        DrawTextRect(0, 0, 50, 60, line, ALIGN_JUSTIFY | TEXT_ROTATE);
        if (StringWidth(line) != width) std::abort();
        CloseFont(font);
    }
    EnumFontsEx();
    return 0;
}
