// SPDX-License-Identifier: MIT
// Socket and lock of a directory that belongs to its user alone.
#include "hw_linux/tasks/place.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "hw_linux/tasks/real_time.h"

namespace hw::tasks {
namespace {

constexpr const char *socket_name = "kelvane-manager.socket";
constexpr const char *lock_name = "kelvane-manager.lock";
constexpr int waiting_connections = 64;
constexpr int lock_ms = 2000, pause_us = 2000;

// What the file of the lock contains, once a manager has served.
struct LockText {
    uint32_t magic;
    int32_t next_task;
};
constexpr uint32_t lock_magic = 0x4C53414B; // "KASL" backwards on little-endian machines

// Through the descriptor of the directory, whose own name may be too long for an address.
sockaddr_un address_in(int directory) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", directory,
                  socket_name);
    return address;
}

template <class Call>
Descriptor with_socket(int directory, Call call) {
    Descriptor made(socket(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const sockaddr_un address = address_in(directory);
    if (!made || call(made.get(), reinterpret_cast<const sockaddr *>(&address)) != 0) return {};
    return made;
}

bool is_same_file(int directory, int descriptor) {
    struct stat named {
    }, opened{};
    return fstatat(directory, lock_name, &named, AT_SYMLINK_NOFOLLOW) == 0 &&
           fstat(descriptor, &opened) == 0 && named.st_ino == opened.st_ino &&
           named.st_dev == opened.st_dev;
}

bool read_lock_text(int descriptor, LockText &text) {
    return pread(descriptor, &text, sizeof text, 0) == sizeof text && text.magic == lock_magic;
}

// Empty, or what a manager wrote.
bool is_lock(int descriptor) {
    struct stat status {};
    LockText text{};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return false;
    return status.st_size == 0 ||
           (status.st_size == sizeof text && read_lock_text(descriptor, text));
}

Descriptor open_lock(int directory, int how) {
    Descriptor file(
        openat(directory, lock_name, how | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!file || is_lock(file.get())) return file;
    errno = EEXIST;
    return {};
}

void remove_socket(int directory) {
    struct stat status {};
    if (fstatat(directory, socket_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
        S_ISSOCK(status.st_mode))
        unlinkat(directory, socket_name, 0);
}

const char *fault_of(const struct stat &status) {
    if (status.st_uid != geteuid()) return "belongs to another user";
    return status.st_mode & (S_IRWXG | S_IRWXO)
               ? "open to others (a directory with mode 700 is meant)"
               : nullptr;
}

} // namespace

bool Place::open(const char *directory) {
    mkdir(directory, S_IRWXU);
    directory_ = Descriptor(::open(directory, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    const bool is_known = directory_ && fstat(directory_.get(), &status) == 0;
    const char *fault = is_known ? fault_of(status) : std::strerror(errno);
    if (!fault) return true;
    std::fprintf(stderr, "KELVANE_TASKS=%s: %s\n", directory, fault);
    directory_.reset();
    return false;
}

std::string Place::path() const {
    return std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(directory_.get()));
}

// The file that somebody else held may have been removed meanwhile, by a manager that went.
Descriptor Place::try_lock() const {
    for (;;) {
        Descriptor file = open_lock(directory_.get(), O_RDWR | O_CREAT);
        if (!file || flock(file.get(), LOCK_EX | LOCK_NB) != 0) return {};
        if (is_same_file(directory_.get(), file.get())) return file;
    }
}

Descriptor Place::lock() const {
    const int64_t end = real_time_ms() + lock_ms;
    for (;;) {
        Descriptor file = try_lock();
        if (file || errno != EWOULDBLOCK) return file;
        if (real_time_ms() >= end) break;
        usleep(pause_us);
    }
    errno = ETIMEDOUT;
    return {};
}

Descriptor Place::connect() const {
    return with_socket(directory_.get(), [](int number, const sockaddr *address) {
        return ::connect(number, address, sizeof(sockaddr_un));
    });
}

Descriptor Place::listen() const {
    remove_socket(directory_.get());
    return with_socket(directory_.get(), [](int number, const sockaddr *address) {
        if (bind(number, address, sizeof(sockaddr_un)) != 0) return -1;
        return ::listen(number, waiting_connections);
    });
}

// It stands in the file of the lock, which goes when the last task does.
int Place::next_task() const {
    const Descriptor file = open_lock(directory_.get(), O_RDONLY);
    LockText text{};
    return file && read_lock_text(file.get(), text) && text.next_task > 0 ? text.next_task : 1;
}

void Place::set_next_task(int task) const {
    const LockText text{lock_magic, task};
    const Descriptor file = open_lock(directory_.get(), O_RDWR);
    if (file && pwrite(file.get(), &text, sizeof text, 0) < 0) return;
}

void Place::clear() const {
    remove_socket(directory_.get());
    if (open_lock(directory_.get(), O_RDONLY)) unlinkat(directory_.get(), lock_name, 0);
}

} // namespace hw::tasks
