// SPDX-License-Identifier: MIT
// Where the bytes of a book come from: a file of its own, or the first file of an archive.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "bookinfo/file_types.h"
#include "file/stream.h"

namespace book {

// Of the start of a text, which is all that is searched for tags.
inline constexpr size_t scanned_bytes = 9999;

class Source {
  public:
    explicit Source(const Location &location);

    const std::string &path() const { return location_.path; }
    const std::string &name() const { return location_.name; }
    bool is_in_archive() const { return location_.archive != nullptr; }

    // What there is of so many bytes from a place on. Of an archive only the first million bytes
    // are reached. Throws bad_alloc, as all the others.
    std::string read_at(uint64_t place, size_t count);
    std::string start() { return read_at(0, scanned_bytes); }
    // The last bytes of a file; empty in an archive.
    std::string end(size_t count);
    // All of it; empty when there is more than the limit.
    std::string whole(size_t limit);

  private:
    bool open();

    const Location &location_;
    file::Stream file_;
    uint64_t place_ = 0; // in the file
};

} // namespace book
