// SPDX-License-Identifier: MIT
// What the file layer does as long as nothing better is installed.
#include "file/hooks.h"

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

FileHooks file_hooks;

namespace {

// False, with errno, when the descriptor is of something else.
bool is_plain(int fd) {
    struct stat st;
    if (fstat(fd, &st) != 0) return false;
    if (S_ISREG(st.st_mode)) return true;
    errno = S_ISDIR(st.st_mode) ? EISDIR : EINVAL;
    return false;
}

int access_of(const char *mode) {
    if (mode[0] == 'w') return O_WRONLY | O_CREAT | O_TRUNC;
    return mode[1] == '+' ? O_RDWR : O_RDONLY;
}

} // namespace

namespace file_defaults {

void system_request(int) {}

const char *translate(const char *key) {
    return key;
}

int storage_ready() {
    return 1;
}

long long clock_ms() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return now.tv_sec * 1000LL + now.tv_nsec / 1000000;
}

long long wall_seconds() {
    return std::time(nullptr);
}

void pause(long long us) {
    usleep(static_cast<useconds_t>(us));
}

// Opening without O_NONBLOCK would wait for the other end of a pipe.
std::FILE *open_plain(const char *path, const char *mode) {
    const int fd = ::open(path, access_of(mode) | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
    if (fd < 0) return nullptr;
    if (is_plain(fd) && fcntl(fd, F_SETFL, 0) == 0)
        if (std::FILE *f = fdopen(fd, mode)) return f;
    const int error = errno;
    close(fd);
    errno = error;
    return nullptr;
}

} // namespace file_defaults
