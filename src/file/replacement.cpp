// SPDX-License-Identifier: MIT
#include "file/replacement.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace file {
namespace {

namespace fs = std::filesystem;

constexpr int most_links = 40; // as the system allows
constexpr int most_names = 100;
constexpr mode_t permission_bits = 07777;

// The file that a path names, through links that may lead to nothing yet.
std::string behind_links(const char *path) {
    fs::path at = path;
    std::error_code error;
    for (int i = 0; i < most_links; ++i) {
        const fs::path next = fs::read_symlink(at, error);
        if (error) break;
        at = at.parent_path() / next;
    }
    return at.string();
}

std::string folder_of(const std::string &path) {
    return path.substr(0, path.rfind('/') + 1);
}

// A name that lists of files leave out, and that no other thread or process uses.
std::string name_beside(const std::string &path) {
    static std::atomic<unsigned> made = 0;
    return folder_of(path) + ".kelvane-" + std::to_string(getpid()) + "-" + std::to_string(made++);
}

// A new name reaches the disk with its folder. A folder that cannot be read has no way to be
// synced.
bool sync_folder_of(const std::string &path) {
    const std::string folder = folder_of(path);
    const int fd = open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0) return true;
    const bool synced = fsync(fd) == 0 || errno == EINVAL || errno == EROFS;
    const int error = errno;
    close(fd);
    errno = error;
    return synced;
}

} // namespace

Replacement::Replacement(const char *path) {
    if (!path) return;
    struct stat old;
    const bool exists = kv_stat(path, &old) == 0;
    if (exists ? S_ISREG(old.st_mode) : errno == ENOENT) {
        if (exists && eaccess(path, W_OK) != 0 && errno != EROFS) return;
        target_ = behind_links(path);
        open_beside();
        if (stream_ && exists && !take_identity_of(old)) drop();
        if (stream_ || !exists || (errno != EACCES && errno != EPERM)) return;
    }
    stream_.reset(kv_fopen(path, "wbe"));
}

Replacement::~Replacement() {
    drop();
}

void Replacement::open_beside() {
    for (int i = 0; i < most_names; ++i) {
        beside_ = name_beside(target_);
        stream_.reset(kv_fopen(beside_.c_str(), "wbxe"));
        if (stream_) return;
        if (errno != EEXIST) break;
    }
    beside_.clear();
}

bool Replacement::take_identity_of(const struct stat &old) {
    const int fd = fileno(stream_.get());
    struct stat now;
    if (fstat(fd, &now) != 0) return false;
    if ((now.st_uid != old.st_uid || now.st_gid != old.st_gid) &&
        fchown(fd, old.st_uid, old.st_gid) != 0)
        return false;
    const mode_t mode = old.st_mode & permission_bits;
    return (now.st_mode & permission_bits) == mode || fchmod(fd, mode) == 0;
}

void Replacement::drop() {
    const int error = errno;
    stream_.reset();
    if (!beside_.empty()) unlink(beside_.c_str());
    beside_.clear();
    errno = error;
}

bool Replacement::commit() {
    if (!stream_ || !close_stream()) return false;
    if (beside_.empty()) return true;
    if (rename(beside_.c_str(), target_.c_str()) != 0) return false;
    beside_.clear();
    return sync_folder_of(target_);
}

Replacement::Outcome Replacement::commit_new() {
    if (!stream_ || !close_stream()) return Outcome::failed;
    if (renameat2(AT_FDCWD, beside_.c_str(), AT_FDCWD, target_.c_str(), RENAME_NOREPLACE) != 0)
        return errno == EEXIST || errno == EINVAL || errno == ENOSYS ? Outcome::exists
                                                                     : Outcome::failed;
    beside_.clear();
    return sync_folder_of(target_) ? Outcome::done : Outcome::failed;
}

} // namespace file
