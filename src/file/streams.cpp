// SPDX-License-Identifier: MIT
// Streams that retry after a wake, warn about damage and sync on close.
#include "kelvane/files.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <unistd.h>

#include "file/hooks.h"
#include "file/storage.h"
#include "file/stream.h"
#include "file/warning.h"

namespace {

WarningSpacing open_warnings, seek_warnings;

// Runs `operation` again while it fails with an error that settling storage may explain.
template <class Operation, class Succeeded>
auto retry(FILE *f, Operation operation, Succeeded succeeded) {
    for (;;) {
        clearerr(f);
        const auto result = operation();
        if (succeeded(result) || !ferror(f) || !storage_may_be_settling()) return result;
        pause_for_storage();
    }
}

bool some(size_t items) {
    return items > 0;
}

// A descriptor that cannot be synced, such as a pipe's, has nothing to lose.
bool synced(int fd) {
    return fdatasync(fd) == 0 || errno == EINVAL || errno == EROFS;
}

using Opener = FILE *(*)(const char *path, const char *mode);

// Opens a stream when storage is there, and warns about damage.
FILE *open_watched(const char *path, const char *mode, Opener open) {
    if (!path || !mode) return nullptr;
    safe_wait(path);
    FILE *f = open(path, mode);
    if (!f && errno == EROFS) {
        warn_needs_check(open_warnings);
        f = open(path, mode);
    }
    if (!f && errno == EIO) warn_failing_device(open_warnings, path, EIO);
    return f;
}

} // namespace

file::Stream file::open_plain(const char *path, Access how) {
    constexpr const char *modes[] = {"rbe", "r+be", "wbe"};
    return Stream(open_watched(path, modes[static_cast<int>(how)], file_hooks.open_plain));
}

FILE *kv_fopen(const char *path, const char *mode) {
    return open_watched(path, mode, file_hooks.open);
}

size_t kv_fread(void *buf, size_t size, size_t n, FILE *f) {
    if (!buf || !f) return 0;
    return retry(
        f, [=] { return fread(buf, size, n, f); }, some);
}

size_t kv_fwrite(const void *buf, size_t size, size_t n, FILE *f) {
    if (!buf || !f) return 0;
    return retry(
        f, [=] { return fwrite(buf, size, n, f); }, some);
}

int kv_fgetc(FILE *f) {
    if (!f) return -1;
    return retry(
        f, [=] { return fgetc(f); }, [](int c) { return c != EOF; });
}

char *kv_fgets(char *buf, int n, FILE *f) {
    if (!buf || !f) return nullptr;
    return retry(
        f, [=] { return fgets(buf, n, f); }, [](const char *line) { return line != nullptr; });
}

int kv_fseek(FILE *f, long offset, int whence) {
    if (!f) return -1;
    const int result = fseek(f, offset, whence);
    if (errno != EIO) return result;
    warn_needs_check(seek_warnings);
    return 5;
}

long kv_ftell(FILE *f) {
    return f ? ftell(f) : -1;
}

// A failed flush throws the data away, so fclose() would not fail a second time: its result counts.
int kv_fclose(FILE *f) {
    if (!f) return -1;
    const int fd = fileno(f);
    const bool kept = fd < 0 || (fflush(f) == 0 && synced(fd));
    const int error = errno;
    const int closed = fclose(f);
    if (kept) return closed;
    errno = error;
    return -1;
}

int kv_fclose_no_sync(FILE *f) {
    return f ? fclose(f) : -1;
}

int kv_preload(const char *path, int max) {
    FILE *f = kv_fopen(path, "r");
    if (!f) return -1;
    char piece[512];
    size_t left = static_cast<size_t>(max ? std::max(max, 0) : INT_MAX);
    while (left) {
        const size_t got = kv_fread(piece, 1, std::min(left, sizeof piece), f);
        if (!got) break;
        left -= got;
    }
    return kv_fclose_no_sync(f);
}
