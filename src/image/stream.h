// SPDX-License-Identifier: MIT
// Picture files as streams.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <vector>

#include "kelvane/files.h"

namespace image {

struct StreamClose {
    void operator()(std::FILE *f) const { kv_fclose_no_sync(f); }
};
using Stream = std::unique_ptr<std::FILE, StreamClose>;

// Opens a file to be read; null after saying that it cannot be opened.
Stream open_picture(const char *function, const char *path);

// All bytes of a stream; none when they cannot all be read. Throws std::bad_alloc, also for a file
// that is too large to be held.
std::optional<std::vector<uint8_t>> read_whole(std::FILE *f);

// Opens a file to be written; null after saying that it cannot be opened.
Stream create_picture(const char *function, const char *path);

// Closes a written file; whether everything reached the disk.
bool close_written(Stream f);

} // namespace image
