// SPDX-License-Identifier: MIT
// Small files in which a device's kernel shows and takes settings.
#include <cstdio>

#include "file/stream.h"
#include "hw.h"

int hw_read_file(const char *path, char *buffer, int size) {
    if (!path || !buffer || size < 1) return -1;
    const file::Stream file = file::open_plain(path);
    if (!file) return -1;
    // The first byte tells whether the file can be read before the buffer is touched.
    int first = std::fgetc(file.get());
    if (first == EOF && std::ferror(file.get())) return -1;
    std::ungetc(first, file.get());
    size_t count = std::fread(buffer, 1, static_cast<size_t>(size - 1), file.get());
    buffer[count] = '\0';
    return static_cast<int>(count);
}

int hw_write_file(const char *path, const char *text) {
    if (!path || !text) return 0;
    file::Stream file = file::open_plain(path, file::Access::create);
    if (!file) return 0;
    const bool written = std::fputs(text, file.get()) != EOF;
    return std::fclose(file.release()) == 0 && written;
}
