// SPDX-License-Identifier: MIT
// Any bytes as the archive whose pictures replace those of a theme.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "device_folder.h"
#include "picture_file.h"
#include "theme/overrides.h"

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    prepare_loaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const fuzz::DeviceFolder folder;
    const fuzz::Visit visit(folder);
    std::filesystem::create_directories("system/resources");
    std::FILE *file = std::fopen("system/resources/t.zip", "w");
    if (!file || std::fwrite(data, 1, size, file) != size) std::abort();
    std::fclose(file);
    theme::Overrides overrides;
    overrides.find("t");
    for (const char *name : {"a", "A", "b", "f/c", "^a"})
        if (overrides.has(name) && !overrides.load(name) && overrides.has(name)) std::abort();
    return 0;
}
