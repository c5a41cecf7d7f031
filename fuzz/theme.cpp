// SPDX-License-Identifier: MIT
// Any bytes as a theme file: its parameters, pictures and fonts are asked for, whole or not.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

#include "kelvane/bitmaps.h"
#include "kelvane/text.h"
#include "kelvane/theme.h"

namespace {

void make_device() {
    const auto place =
        std::filesystem::temp_directory_path() / ("kelvane-fuzz-" + std::to_string(getpid()));
    std::filesystem::create_directories(place / "system/themes");
    std::filesystem::current_path(place);
    if (!std::freopen("/dev/null", "w", stdout)) std::abort();
}

void use_picture(const char *name) {
    ibitmap *bm = GetResource(name, nullptr);
    if (!bm) return;
    ibitmap *copy = CopyBitmap(bm); // reads the whole of it
    std::free(copy);
    std::free(bm);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const bool made = (make_device(), true);
    (void)made;
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
