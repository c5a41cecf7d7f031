// SPDX-License-Identifier: MIT
// Socket and lock of a directory that belongs to its user alone.
#include "hw_linux/tasks/place.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace hw::tasks {
namespace {

constexpr const char *socket_name = "manager";
constexpr const char *lock_name = "lock";
constexpr int waiting_connections = 64;

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
    return fstatat(directory, lock_name, &named, 0) == 0 && fstat(descriptor, &opened) == 0 &&
           named.st_ino == opened.st_ino && named.st_dev == opened.st_dev;
}

} // namespace

bool Place::open(const char *directory) {
    mkdir(directory, S_IRWXU);
    directory_ = Descriptor(::open(directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat status {};
    if (!directory_ || fstat(directory_.get(), &status) != 0) {
        std::fprintf(stderr, "KELVANE_TASKS=%s: %s\n", directory, std::strerror(errno));
        return false;
    }
    if (status.st_uid == geteuid() && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0) return true;
    std::fprintf(stderr, "KELVANE_TASKS=%s: open to others (a directory with mode 700 is meant)\n",
                 directory);
    directory_.reset();
    return false;
}

// The file that was waited for may have been removed meanwhile, by a manager that went.
Descriptor Place::take_lock(int how) const {
    for (;;) {
        Descriptor file(
            openat(directory_.get(), lock_name, O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR));
        if (!file) return {};
        int locked = -1;
        do locked = flock(file.get(), how);
        while (locked != 0 && errno == EINTR);
        if (locked != 0) return {};
        if (is_same_file(directory_.get(), file.get())) return file;
    }
}

Descriptor Place::lock() const {
    return take_lock(LOCK_EX);
}

Descriptor Place::try_lock() const {
    return take_lock(LOCK_EX | LOCK_NB);
}

Descriptor Place::connect() const {
    return with_socket(directory_.get(), [](int number, const sockaddr *address) {
        return ::connect(number, address, sizeof(sockaddr_un));
    });
}

Descriptor Place::listen() const {
    unlinkat(directory_.get(), socket_name, 0);
    return with_socket(directory_.get(), [](int number, const sockaddr *address) {
        if (bind(number, address, sizeof(sockaddr_un)) != 0) return -1;
        return ::listen(number, waiting_connections);
    });
}

// It stands in the file of the lock, which goes when the last task does.
int Place::next_task() const {
    const Descriptor file(openat(directory_.get(), lock_name, O_RDONLY | O_CLOEXEC));
    int task = 0;
    return read(file.get(), &task, sizeof task) == sizeof task && task > 0 ? task : 1;
}

void Place::set_next_task(int task) const {
    const Descriptor file(openat(directory_.get(), lock_name, O_WRONLY | O_CLOEXEC));
    if (file && write(file.get(), &task, sizeof task) < 0) return;
}

void Place::clear() const {
    unlinkat(directory_.get(), socket_name, 0);
    unlinkat(directory_.get(), lock_name, 0);
}

} // namespace hw::tasks
