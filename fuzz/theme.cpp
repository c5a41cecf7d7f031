// SPDX-License-Identifier: MIT
// Any bytes as a theme file: its parameters, pictures and fonts are asked for, whole or not.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "device_folder.h"
#include "kelvane/bitmaps.h"
#include "kelvane/text.h"
#include "kelvane/theme.h"

namespace {

void use_picture(const char *name) {
    ibitmap *bm = GetResource(name, nullptr);
    if (!bm) return;
    ibitmap *copy = CopyBitmap(bm); // reads the whole of it
    std::free(copy);
    std::free(bm);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const fuzz::DeviceFolder folder;
    const fuzz::Visit visit(folder);
    std::filesystem::create_directories("system/themes");
    std::FILE *file = std::fopen("system/themes/t.tqt", "w");
    if (!file || std::fwrite(data, 1, size, file) != size) std::abort();
    std::fclose(file);
    OpenTheme("t");
    use_picture("pic");
    use_picture("a");
    IsResourcePresent("pic");
    char out[16];
    resolve_resource_name("a", out, sizeof out);
    CloseFont(GetThemeFont("a", nullptr));
    return 0;
}
