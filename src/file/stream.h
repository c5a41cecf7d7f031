// SPDX-License-Identifier: MIT
// Streams that close themselves, and files that are read whole.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "kelvane/files.h"

namespace file {

struct StreamCloser {
    void operator()(std::FILE *f) const { kv_fclose_no_sync(f); }
};
using Stream = std::unique_ptr<std::FILE, StreamCloser>;

// `create` makes the file when there is none, and empties it.
enum class Access { read, rewrite, create };

// Opens a plain file, as kv_fopen() does. Null at once, with errno, for anything else:
// a pipe, a device or a directory in the place of a file is neither waited for nor read. This is
// how the library opens what users, or their programs, may have put there.
Stream open_plain(const char *path, Access how = Access::read);

// Closes a stream that was written. False when not everything reached the disk.
bool close_written(Stream f);

// The bytes of a file, with room for a NUL behind them.
struct Contents {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;

    std::span<char> text() const { return {bytes.get(), size}; }
    std::string_view view() const { return {bytes.get(), size}; }
    std::span<const uint8_t> raw() const {
        return {reinterpret_cast<const uint8_t *>(bytes.get()), size};
    }
};

// All bytes of a regular file; nothing when there are more than `most`, or not all can be read.
// Throws bad_alloc.
std::optional<Contents> read_whole(std::FILE *f, std::size_t most);

} // namespace file
