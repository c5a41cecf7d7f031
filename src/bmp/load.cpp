// SPDX-License-Identifier: MIT
// BMP files from disk and from archives.
#include <cstddef>
#include <cstdio>
#include <sys/stat.h>

#include "bmp/bmp.h"
#include "file/archive.h"
#include "file/stream.h"
#include "ground/guard.h"
#include "ground/log.h"
#include "hw.h"
#include "kelvane/bitmaps.h"
#include "kelvane/files.h"

namespace {

constexpr size_t least_member = 33;
constexpr size_t largest_member = 32 << 20;

raster::BitmapPtr load_file(const char *function, const char *path) {
    const file::Stream stream = file::open_plain(path);
    if (!stream) {
        kv_warn(function, "Cannot open bitmap: %s\n", path);
        return nullptr;
    }
    const int most = max_bmp_size();
    struct stat st;
    if (fstat(fileno(stream.get()), &st) == 0 && st.st_size > most) {
        kv_warn(function, "Bitmap is too large: %s\n", path);
        return nullptr;
    }
    const auto bytes = file::read_whole(stream.get(), static_cast<size_t>(most));
    return bytes ? bmp::parse(function, path, bytes->raw()) : nullptr;
}

raster::BitmapPtr parse_member(const char *name, const std::optional<file::MemberBytes> &bytes) {
    if (!bytes || bytes->size() < least_member) return nullptr;
    return bmp::parse("zLoadBitmap", name, *bytes);
}

} // namespace

raster::BitmapPtr bmp::load_member(file::Archive &archive, const char *name) {
    return parse_member(name, archive.read(name, largest_member));
}

int max_bmp_size() {
    return device_display_height() * device_display_width() * 3 + 1024;
}

ibitmap *LoadBitmap(const char *path) {
    return ground::guarded(nullptr, [&]() -> ibitmap * {
        return path ? load_file("LoadBitmap", path).release() : nullptr;
    });
}

ibitmap *zLoadBitmap(void *zip, const char *name) {
    return ground::guarded(nullptr, [&]() -> ibitmap * {
        return parse_member(name, file::read_member(zip, name, largest_member)).release();
    });
}
