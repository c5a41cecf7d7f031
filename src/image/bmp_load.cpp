// SPDX-License-Identifier: MIT
// BMP files from disk and from archives.
#include <cstddef>
#include <cstdio>
#include <new>
#include <sys/stat.h>

#include "file/zip_member.h"
#include "ground/log.h"
#include "hw.h"
#include "image/bmp.h"
#include "image/limits.h"
#include "image/stream.h"
#include "kelvane/bitmaps.h"
#include "kelvane/files.h"

namespace {

constexpr size_t least_member = 33;

} // namespace

int max_bmp_size() {
    return device_display_height() * device_display_width() * 3 + 1024;
}

ibitmap *LoadBitmap(const char *path) try {
    if (!path) return nullptr;
    const image::Stream file(kv_fopen(path, "rb"));
    if (!file) {
        kv_warn(__func__, "Cannot open bitmap: %s\n", path);
        return nullptr;
    }
    struct stat st;
    if (fstat(fileno(file.get()), &st) == 0 && st.st_size > max_bmp_size()) {
        kv_warn(__func__, "Bitmap is too large: %s\n", path);
        return nullptr;
    }
    const auto bytes = file::read_whole(file.get(), image::max_file_bytes);
    return bytes ? image::bmp::parse(__func__, path, bytes->raw()).release() : nullptr;
} catch (const std::bad_alloc &) {
    return nullptr;
}

ibitmap *zLoadBitmap(void *zip, const char *name) try {
    const auto member = read_zip_member(zip, name, image::max_zip_member_bytes);
    if (!member || member->size() < least_member) return nullptr;
    return image::bmp::parse(__func__, name, *member).release();
} catch (const std::bad_alloc &) {
    return nullptr;
}
