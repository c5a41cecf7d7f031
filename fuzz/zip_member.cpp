// SPDX-License-Identifier: MIT
// Any bytes as a zip archive, each of whose members is read as a picture and as bytes.
#include <cstdint>
#include <cstdlib>
#include <minizip/unzip.h>

#include "file/archive.h"
#include "kelvane/bitmaps.h"
#include "picture_file.h"

namespace {

constexpr size_t limit = 1 << 20;
constexpr int most_members = 4;

void read_current(unzFile zip) {
    char name[256];
    unz_file_info64 info;
    if (unzGetCurrentFileInfo64(zip, &info, name, sizeof name, nullptr, 0, nullptr, 0) != UNZ_OK)
        return;
    name[sizeof name - 1] = '\0';
    const auto bytes = file::read_member(zip, name, limit);
    if (bytes && bytes->size() > limit) std::abort();
    std::free(zLoadBitmap(zip, name));
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***) {
    prepare_loaders();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static PictureFile file;
    file.put(data, size);
    const unzFile zip = unzOpen(file.path());
    if (zip == nullptr) return 0;
    // Reading a member makes it the current one again, unless another has its name.
    int status = unzGoToFirstFile(zip);
    for (int i = 0; status == UNZ_OK && i < most_members; ++i, status = unzGoToNextFile(zip))
        read_current(zip);
    unzClose(zip);
    return 0;
}
