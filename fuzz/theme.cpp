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

namespace fs = std::filesystem;

// A device folder, which is the working directory only while a theme is used: the fuzzer names its
// own files from where it started.
class Device {
  public:
    Device() {
        static const fs::path place = make();
        fs::current_path(place);
    }
    ~Device() { fs::current_path(before_); }

  private:
    static fs::path make() {
        fs::path place = fs::temp_directory_path() / ("kelvane-fuzz-" + std::to_string(getpid()));
        fs::create_directories(place / "system/themes");
        return place;
    }
    fs::path before_ = fs::current_path();
};

void use_picture(const char *name) {
    ibitmap *bm = GetResource(name, nullptr);
    if (!bm) return;
    ibitmap *copy = CopyBitmap(bm); // reads the whole of it
    std::free(copy);
    std::free(bm);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const Device device;
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
