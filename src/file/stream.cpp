// SPDX-License-Identifier: MIT
// Reads whole files, and closes written ones only when they are on the disk.
#include "file/stream.h"

#include <sys/stat.h>

namespace file {

bool close_written(Stream f) {
    return kv_fclose(f.release()) == 0;
}

std::optional<Contents> read_whole(std::FILE *f, std::size_t most) {
    struct stat st;
    if (fstat(fileno(f), &st) != 0 || !S_ISREG(st.st_mode)) return std::nullopt;
    const auto size = static_cast<std::size_t>(st.st_size);
    if (size > most) return std::nullopt;
    Contents all{std::make_unique_for_overwrite<char[]>(size + 1), size};
    if (size > 0 && kv_fread(all.bytes.get(), 1, size, f) != size) return std::nullopt;
    return all;
}

} // namespace file
