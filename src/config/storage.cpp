// SPDX-License-Identifier: MIT
// Locks, reads and rewrites files so that a crash leaves whole values.
#include "config/storage.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <string_view>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

#include "kelvane/files.h"

namespace config {
namespace {

// The system copies so much of a write at a time; a kill may fall in between.
constexpr size_t atomic_write = 4096;
// A file that is replaced as often while it is opened is taken as it is.
constexpr int most_replacements = 100;

void lock(std::FILE *f, int how) {
    while (flock(fileno(f), how) != 0 && errno == EINTR) {
    }
}

// Whether another file has the path by now.
bool was_replaced(std::FILE *f, const char *path) {
    struct stat is, named;
    return fstat(fileno(f), &is) == 0 && kv_stat(path, &named) == 0 &&
           (is.st_dev != named.st_dev || is.st_ino != named.st_ino);
}

bool write_at(std::FILE *f, size_t offset, std::string_view bytes) {
    errno = 0; // a seek takes an old EIO for its own
    return kv_fseek(f, static_cast<long>(offset), SEEK_SET) == 0 &&
           kv_fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
}

bool resize(std::FILE *f, size_t size) {
    return ftruncate(fileno(f), static_cast<off_t>(size)) == 0;
}

// What follows reaches the disk later than what was written: power may fail in between.
bool write_barrier(std::FILE *f) {
    return fdatasync(fileno(f)) == 0 || errno == EINVAL; // what cannot be synced has no disk
}

// Appends blank lines until the file is as long as the new text, so that the disk has room for it.
bool reserve(std::FILE *f, size_t old_size, size_t size) {
    if (size <= old_size) return true;
    if (write_at(f, old_size, std::string(size - old_size, '\n')) && write_barrier(f)) return true;
    resize(f, old_size);
    return false;
}

// Appends a copy of the new text, far enough behind for the text itself. The copy is laid over
// NULs: where a kill cuts it, its last line is torn and does not count. False when the disk has no
// room, or the file would be too long to be read; the file is as before then.
bool append_copy(std::FILE *f, size_t old_size, const std::string &text) {
    const size_t start = std::max(old_size, text.size()) + 1;
    if (start + text.size() > longest_file) return false;
    std::string copy(start - old_size - 1, '#');
    if (!copy.empty()) copy.back() = '\n';
    copy += text;
    if (write_at(f, old_size, "\n") && resize(f, start + text.size()) &&
        write_at(f, old_size + 1, copy) && write_barrier(f))
        return true;
    resize(f, old_size);
    return false;
}

// Writes over the old text when a copy of the new one lies behind it. The old text first becomes a
// comment: a line that a kill leaves half old, half new, would be a setting that nobody made. What
// is cut of the new text is stated again by the copy.
bool overwrite_before_copy(std::FILE *f, size_t old_size, const std::string &text) {
    return write_at(f, 0, std::string(old_size, '#')) && write_at(f, 0, text);
}

// Writes over the old text in one go; blank lines stand for what the new text has less.
bool overwrite(std::FILE *f, size_t old_size, std::string text) {
    if (!reserve(f, old_size, text.size())) return false;
    if (text.size() < old_size) text.append(old_size - text.size(), '\n');
    return write_at(f, 0, text);
}

// Writes the bytes that differ, when the texts are of one length and a kill cannot split the write.
// False when it is not done.
bool overwrite_difference(std::FILE *f, std::string_view old, std::string_view text) {
    if (old.size() != text.size()) return false;
    const auto first = std::mismatch(old.begin(), old.end(), text.begin()).first - old.begin();
    const auto rest = std::mismatch(old.rbegin(), old.rend() - first, text.rbegin()).first;
    const auto end = old.rend() - rest;
    if (first == end) return true;
    const size_t start = static_cast<size_t>(first), size = static_cast<size_t>(end - first);
    if (start / atomic_write != (start + size - 1) / atomic_write) return false;
    return write_at(f, start, text.substr(start, size));
}

// The length of a text without a torn last line.
size_t untorn_size(std::string_view text) {
    const size_t last_line = text.rfind('\n') + 1;
    return text.find('\0', last_line) == text.npos ? text.size() : last_line;
}

} // namespace

void UnlockingCloser::operator()(std::FILE *f) const {
    lock(f, LOCK_UN);
    kv_fclose_no_sync(f);
}

// Another file that took its place while the lock was waited for holds what counts.
LockedStream open_locked(const char *path, Access how) {
    for (int tries = 0;; ++tries) {
        file::Stream f = file::open_plain(path, how);
        if (!f) return nullptr;
        std::setvbuf(f.get(), nullptr, _IONBF, 0); // each write is one system call
        lock(f.get(), how == Access::read ? LOCK_SH : LOCK_EX);
        LockedStream locked(f.release());
        if (tries == most_replacements || !was_replaced(locked.get(), path)) return locked;
    }
}

LockedStream open_or_create(const char *path) {
    const int fd = open(path, O_RDWR | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
    if (fd >= 0) close(fd);
    return open_locked(path, Access::rewrite);
}

Created create_settings(const char *path, const std::string &text) {
    file::Replacement file(path);
    if (kv_fwrite(text.data(), 1, text.size(), file.stream()) != text.size())
        return Created::failed;
    return file.commit_new();
}

std::optional<file::Contents> read_settings(std::FILE *f) {
    auto all = file::read_whole(f, longest_file);
    if (all) all->size = untorn_size(all->view());
    return all;
}

bool replace_text(std::FILE *f, size_t old_size, const std::optional<std::string> &old,
                  const std::string &text) {
    if (!resize(f, old_size)) return false; // what follows a torn line must not complete it
    if (old && overwrite_difference(f, *old, text)) return true;
    const bool may_be_cut = std::max(old_size, text.size()) > atomic_write;
    const bool copied = may_be_cut && append_copy(f, old_size, text);
    const bool written =
        copied ? overwrite_before_copy(f, old_size, text) : overwrite(f, old_size, text);
    if (!written) return false;
    if (!copied && text.size() >= old_size) return true;
    return write_barrier(f) && resize(f, text.size());
}

bool sync_and_close(LockedStream f) {
    lock(f.get(), LOCK_UN);
    return kv_fclose(f.release()) == 0;
}

} // namespace config
