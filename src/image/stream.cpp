// SPDX-License-Identifier: MIT
#include "image/stream.h"

#include <new>
#include <sys/stat.h>

#include "ground/log.h"
#include "image/limits.h"

namespace image {

namespace {

Stream open(const char *function, const char *path, const char *mode) {
    Stream f(kv_fopen(path, mode));
    if (!f) kv_warn(function, "can't open %s\n", path);
    return f;
}

} // namespace

Stream open_picture(const char *function, const char *path) {
    return open(function, path, "rb");
}

Stream create_picture(const char *function, const char *path) {
    return open(function, path, "wb");
}

bool close_written(Stream f) {
    return kv_fclose(f.release()) == 0;
}

std::optional<std::vector<uint8_t>> read_whole(std::FILE *f) {
    struct stat st;
    if (fstat(fileno(f), &st) != 0 || !S_ISREG(st.st_mode)) return std::nullopt;
    const auto size = static_cast<size_t>(st.st_size);
    if (size > max_file_bytes) throw std::bad_alloc();
    std::vector<uint8_t> bytes(size);
    if (kv_fread(bytes.data(), 1, size, f) != size) return std::nullopt;
    return bytes;
}

} // namespace image
