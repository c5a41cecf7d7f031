// SPDX-License-Identifier: MIT
// Reads archives in aligned pieces, as their index is read forwards and its end is searched for
// backwards.
#include "file/archive_file.h"

#include <algorithm>
#include <cstring>
#include <sys/stat.h>
#include <utility>

#include "kelvane/files.h"

namespace file {
namespace {

uint64_t size_of(std::FILE *file) {
    struct stat st;
    return fstat(fileno(file), &st) == 0 ? static_cast<uint64_t>(st.st_size) : 0;
}

} // namespace

ArchiveFile::ArchiveFile(Stream file)
    : file_(std::move(file)), size_(size_of(file_.get())),
      piece_(std::make_unique_for_overwrite<char[]>(piece_bytes)) {
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);
}

zlib_filefunc64_def ArchiveFile::calls() {
    zlib_filefunc64_def calls{};
    calls.opaque = this;
    calls.zopen64_file = [](void *opaque, const void *, int) { return opaque; };
    calls.zread_file = [](void *, void *stream, void *to, uLong size) -> uLong {
        return static_cast<ArchiveFile *>(stream)->read(static_cast<char *>(to), size);
    };
    calls.ztell64_file = [](void *, void *stream) -> ZPOS64_T {
        return static_cast<ArchiveFile *>(stream)->place_;
    };
    calls.zseek64_file = [](void *, void *stream, ZPOS64_T offset, int origin) -> long {
        return static_cast<ArchiveFile *>(stream)->seek(offset, origin) ? 0 : -1;
    };
    calls.zclose_file = [](void *, void *) { return 0; };
    calls.zerror_file = [](void *, void *) { return 0; };
    return calls;
}

bool ArchiveFile::seek(uint64_t offset, int origin) {
    const uint64_t from = origin == ZLIB_FILEFUNC_SEEK_END   ? size_
                          : origin == ZLIB_FILEFUNC_SEEK_CUR ? place_
                                                             : 0;
    if (offset > INT64_MAX - from) return false;
    place_ = from + offset;
    return true;
}

size_t ArchiveFile::read(char *to, size_t size) {
    size_t done = 0;
    while (done < size && place_ < size_) {
        if (place_ - piece_start_ >= piece_size_ && !fill()) break; // also when it wraps
        const auto at = static_cast<size_t>(place_ - piece_start_);
        const size_t count = std::min(size - done, piece_size_ - at);
        std::memcpy(to + done, &piece_[at], count);
        done += count;
        place_ += count;
    }
    return done;
}

bool ArchiveFile::fill() {
    piece_start_ = place_ - place_ % piece_bytes;
    piece_size_ = 0;
    if (kv_fseek(file_.get(), static_cast<long>(piece_start_), SEEK_SET) != 0) return false;
    const auto there = std::min<uint64_t>(piece_bytes, size_ - piece_start_);
    piece_size_ = kv_fread(piece_.get(), 1, static_cast<size_t>(there), file_.get());
    return place_ - piece_start_ < piece_size_;
}

} // namespace file
