// SPDX-License-Identifier: MIT
// Configuration files on disk: locked while they are read or rewritten.
#pragma once

#include <cstdio>
#include <memory>
#include <optional>
#include <string>

#include "file/replacement.h"
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

// Opens a file under a shared lock to read it, under an exclusive one to rewrite it. Waits for the
// lock; a file that whoever had it put in the place of the old one is opened instead. Null, with
// errno, when the file cannot be opened.
LockedStream open_locked(const char *path, Access how);

// Opens a file to rewrite it, and makes an empty one when it is missing.
LockedStream open_or_create(const char *path);

using Created = file::Replacement::Outcome;

// Makes a file that is missing. It has its whole text as soon as it is there: neither a full disk
// nor a kill leaves an empty one, which would hide the defaults. `exists` also where the file
// system cannot do that.
Created create_settings(const char *path, const std::string &text);

// The file's text; nothing when it cannot be read or is too long. A last line that has no line feed
// but a NUL was torn by a crash and is left out. Throws bad_alloc.
std::optional<file::Contents> read_settings(std::FILE *f);

// Puts `text`, of at most `longest_text`, in the place of the `old_size` bytes that were read. A
// process killed on the way leaves a file that reads as the old settings, the new ones, or some of
// each, every value whole; when the disk is full the old text stays. When the power fails on the
// way, every setting of both texts is in the file, but its value may be cut. False when the text
// could not be written.
bool replace_text(std::FILE *f, size_t old_size, const std::optional<std::string> &old,
                  const std::string &text);

// Releases the lock, then syncs the file to the disk and closes it. False when not everything is on
// the disk.
bool sync_and_close(LockedStream f);

} // namespace config
