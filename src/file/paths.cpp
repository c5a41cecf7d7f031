// SPDX-License-Identifier: MIT
// Operations on paths and directories, and the wait for storage that each begins with.
#include "kelvane/files.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <string_view>
#include <unistd.h>

#include "file/hooks.h"
#include "file/storage.h"
#include "ground/fold.h"
#include "ground/heap.h"
#include "internal.h"

namespace {

constexpr std::string_view waiting_roots[] = {"./system/mnt/ext1", "./system/mnt/ext2",
                                              "./system/tmp/photo"};

bool is_on_storage(const char *path) {
    return std::any_of(std::begin(waiting_roots), std::end(waiting_roots), [path](auto root) {
        return ground::compare_folded(path, root.data(), root.size()) == 0;
    });
}

constexpr const char *data_folder = "./system/data";

bool is_file_name(std::string_view name) {
    return !name.empty() && name != "." && name != ".." && name.size() <= NAME_MAX &&
           std::none_of(name.begin(), name.end(),
                        [](char c) { return static_cast<uint8_t>(c) < ' ' || c == '\x7F'; });
}

// Whether a relative path stays in the folder that it is relative to, and names something there.
bool is_inside(std::string_view path) {
    while (true) {
        const size_t end = std::min(path.find('/'), path.size());
        if (!is_file_name(path.substr(0, end))) return false;
        if (end == path.size()) return true;
        path.remove_prefix(end + 1);
    }
}

// Whether the folder of a path is there. The path is as before.
bool has_folder(char *path) {
    char *const slash = std::strrchr(path, '/');
    *slash = '\0';
    struct stat st;
    const bool is_folder = stat(path, &st) == 0 && S_ISDIR(st.st_mode);
    *slash = '/';
    return is_folder;
}

// Waits for the storage of `path`; false for null, with errno set as the system calls do.
bool ready_for(const char *path) {
    if (!path) {
        errno = EFAULT;
        return false;
    }
    safe_wait(path);
    return true;
}

} // namespace

bool storage_may_be_settling() {
    return file_hooks.clock_ms() - std::atomic_ref(kvstate.waketime) <= 999; // on any thread
}

void pause_for_storage() {
    file_hooks.pause(100000);
}

void safe_wait(const char *path) {
    if (!path || !is_on_storage(path)) return;
    while (storage_may_be_settling() && !file_hooks.storage_ready()) pause_for_storage();
}

void kv_buildpath(const char *path) {
    if (!ready_for(path)) return;
    const ground::HeapString prefix(strdup(path));
    if (!prefix || !*path) return;
    for (char *slash = prefix.get(); (slash = std::strchr(slash + 1, '/'));) {
        *slash = 0;
        mkdir(prefix.get(), 0777);
        *slash = '/';
    }
}

int kv_mkdir(const char *path, mode_t mode) {
    return ready_for(path) ? mkdir(path, mode) : -1;
}

int kv_stat(const char *path, struct stat *st) {
    return ready_for(st ? path : nullptr) ? stat(path, st) : -1;
}

int kv_access(const char *path, int mode) {
    return ready_for(path) ? access(path, mode) : -1;
}

int kv_unlink(const char *path) {
    return ready_for(path) ? unlink(path) : -1;
}

int kv_rmdir(const char *path) {
    return ready_for(path) ? rmdir(path) : -1;
}

int kv_truncate(const char *path, off_t length) {
    return ready_for(path) ? truncate(path, length) : -1;
}

int kv_rename(const char *from, const char *to) {
    return to && ready_for(from) ? rename(from, to) : -1;
}

DIR *kv_opendir(const char *path) {
    return ready_for(path) ? opendir(path) : nullptr;
}

dirent *kv_readdir(DIR *dir) {
    return dir ? readdir(dir) : nullptr;
}

int kv_closedir(DIR *dir) {
    return dir ? closedir(dir) : -1;
}

void kv_sync() {
    sync();
}

int AppDataPath(const char *app, const char *name, char *out, int size) {
    if (!out || size < 1) return 0;
    *out = '\0';
    if (!app || !is_inside(app) || std::strchr(app, '/')) return 0;
    if (!name) name = "";
    if (*name && !is_inside(name)) return 0;
    const int length =
        std::snprintf(out, static_cast<size_t>(size), "%s/%s/%s", data_folder, app, name);
    if (length > 0 && length < size) {
        kv_buildpath(out);
        if (has_folder(out)) return 1;
    }
    *out = '\0';
    return 0;
}

int has_secure_storage() {
    struct stat st;
    return kv_stat("./system/mnt/secure", &st) == 0 && S_ISDIR(st.st_mode);
}
