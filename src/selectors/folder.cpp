// SPDX-License-Identifier: MIT
// Reads folders. Nothing is opened that is none, so that pipes and devices keep nobody waiting.
#include "selectors/folder.h"

#include <algorithm>
#include <sys/stat.h>

#include "file/directory.h"
#include "kelvane/files.h"

namespace selectors {
namespace {

constexpr size_t most_folders = 100000;

bool is_folder(const std::string &path) {
    struct stat st {};
    return kv_stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

// Most file systems tell without another call.
bool is_folder(const std::string &path, const dirent &entry) {
    if (entry.d_type == DT_DIR) return true;
    if (entry.d_type != DT_LNK && entry.d_type != DT_UNKNOWN) return false;
    return is_folder(child_of(path, entry.d_name));
}

bool goes_before(const std::string &a, const std::string &b) {
    const int order = kv_strcasecmp(a.c_str(), b.c_str());
    return order != 0 ? order < 0 : a < b;
}

} // namespace

std::optional<std::vector<std::string>> read_folders(const std::string &path) {
    if (!is_folder(path)) return std::nullopt;
    const file::Directory directory(kv_opendir(path.c_str()));
    if (!directory) return std::nullopt;
    std::vector<std::string> names;
    while (const dirent *entry = kv_readdir(directory.get())) {
        if (entry->d_name[0] == '.' || !is_folder(path, *entry)) continue;
        names.emplace_back(entry->d_name);
        if (names.size() == most_folders) break;
    }
    std::sort(names.begin(), names.end(), goes_before);
    return names;
}

std::string without_slash(std::string path) {
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

std::string child_of(const std::string &path, const std::string &name) {
    return path == "/" ? path + name : path + "/" + name;
}

std::string parent_of(const std::string &path) {
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos) return path;
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool is_within(const std::string &path, const std::string &root) {
    if ((path + "/").find("/../") != std::string::npos) return false;
    if (path == root) return true;
    const std::string below = root == "/" ? root : root + "/";
    return path.compare(0, below.size(), below) == 0;
}

} // namespace selectors
