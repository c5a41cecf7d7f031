// SPDX-License-Identifier: MIT
// Configuration files on disk: locked while they are read or rewritten.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "file/stream.h"

namespace config {

// A longer file is not read, and not written over. It bounds the memory that a file can take.
inline constexpr size_t longest_file = size_t{32} << 20;

// A longer text is not written: a save that a kill cuts may leave two texts in the file.
inline constexpr size_t longest_text = longest_file / 2 - 1;

struct UnlockingCloser {
    void operator()(std::FILE *f) const; // does not sync
};
// An open and locked configuration file.
using LockedStream = std::unique_ptr<std::FILE, UnlockingCloser>;

using file::Access;

// Opens a file under a shared lock to read it, under an exclusive one to rewrite it; the latter
// creates the file when it is missing. Waits for the lock. Null when the file cannot be opened.
LockedStream open_locked(const char *path, Access how);

// The file's text; nothing when it cannot be read or is too long. A last line that has no line feed
// but a NUL was torn by a crash and is left out. Throws bad_alloc.
std::optional<file::Contents> read_settings(std::FILE *f);

// Puts `text`, of at most `longest_text`, in the place of the `old_size` bytes that were read. A
// process killed on the way leaves a file that reads as the old settings, the new ones, or some of
// each, every value whole; when the disk is full the old text stays. False when the text could not
// be written.
bool replace_text(std::FILE *f, size_t old_size, const std::optional<std::string> &old,
                  const std::string &text);

// Releases the lock, then syncs the file to the disk and closes it.
void sync_and_close(LockedStream f);

} // namespace config
