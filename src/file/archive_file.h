// SPDX-License-Identifier: MIT
// The file of an archive as minizip reads it: single bytes of the index, between many jumps. They
// are served from a piece of the file that is kept, so that few of them are calls of the system.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <minizip/ioapi.h>

#include "file/stream.h"

namespace file {

class ArchiveFile {
  public:
    // Throws bad_alloc.
    explicit ArchiveFile(Stream file);
    ArchiveFile(const ArchiveFile &) = delete;
    ArchiveFile &operator=(const ArchiveFile &) = delete;

    // For unzOpen2_64(). The archive that is opened is closed before this goes.
    zlib_filefunc64_def calls();

  private:
    static constexpr size_t piece_bytes = 16'384;

    bool seek(uint64_t offset, int origin);
    // What there is of so many bytes.
    size_t read(char *to, size_t size);
    // Reads the piece in which the place lies, which is in the file. False when it is not reached.
    bool fill();

    Stream file_;
    uint64_t size_, place_ = 0;
    std::unique_ptr<char[]> piece_;
    uint64_t piece_start_ = 0;
    size_t piece_size_ = 0;
};

} // namespace file
