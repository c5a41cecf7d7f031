// SPDX-License-Identifier: MIT
// Files that take the place of others only when they are whole.
#pragma once

#include <string>

#include "file/stream.h"

namespace file {

// The new contents of a file, written beside it. Until commit() the file is as it was, and a full
// disk or an end on the way leaves it so. Links are followed; permissions and owner are kept.
// Another hard link to the file keeps the old contents.
//
// Straight into its place goes what is no plain file, such as a device, and a file that lies in a
// folder where none can be made, or whose owner the process cannot give to another: there a failure
// on the way leaves it cut.
class Replacement {
  public:
    // Opens the file as kv_fopen() does to write it. Throws bad_alloc.
    explicit Replacement(const char *path);
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;
    // What was not committed is dropped.
    ~Replacement();

    // Where to write to; null, with errno, when the file cannot be written.
    std::FILE *stream() const { return stream_.get(); }

    // Puts what was written in the place of the file, on the disk too. False, with errno, when that
    // fails.
    bool commit();

    enum class Outcome { done, exists, failed };
    // The same where no file is in the place; `exists` when there is one now, or when the file
    // system cannot tell.
    Outcome commit_new();

  private:
    void open_beside();
    bool take_identity_of(const struct stat &old);
    void drop();
    bool close_stream() { return close_written(std::move(stream_)); }

    Stream stream_;
    std::string target_; // behind all links
    std::string beside_; // empty when the writing goes straight to the place
};

} // namespace file
