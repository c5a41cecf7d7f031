// SPDX-License-Identifier: MIT
// Looks for replacement pictures in the archive and the folders of a theme.
#include "theme/overrides.h"

#include <dirent.h>
#include <optional>
#include <string_view>
#include <sys/stat.h>
#include <utility>

#include "bmp/bmp.h"
#include "file/directory.h"
#include "ground/fold.h"
#include "kelvane/bitmaps.h"
#include "kelvane/files.h"

namespace theme {
namespace {

constexpr std::string_view extension = ".bmp";

std::optional<std::string> picture_name(std::string_view file) {
    if (file.size() <= extension.size()) return {};
    const size_t stem = file.size() - extension.size();
    if (!ground::equal_folded(file.substr(stem), extension)) return {};
    return std::string(file.substr(0, stem));
}

bool is_file(const std::string &path) {
    struct stat st;
    return kv_stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

} // namespace

void Overrides::find(const std::string &theme) {
    clear();
    find_in_archive("./system/resources/" + theme + ".zip");
    find_in_directory("./system/themes/" + theme + "/");
    find_in_directory("./system/resources/" + theme + "/");
}

void Overrides::find_in_archive(const std::string &path) {
    archive_ = file::Archive::open(path.c_str());
    if (!archive_) return;
    for (const file::Archive::Member &member : archive_->members())
        if (auto name = picture_name(member.name); name && member.size > 0)
            archived_.insert(std::move(*name));
}

void Overrides::find_in_directory(const std::string &path) {
    // The standard library's iterators end the process when memory is short.
    const file::Directory directory(kv_opendir(path.c_str()));
    while (const dirent *entry = directory ? kv_readdir(directory.get()) : nullptr)
        if (const auto name = picture_name(entry->d_name); name && is_file(path + entry->d_name))
            files_[*name] = path + entry->d_name;
}

bool Overrides::has(const std::string &name) const {
    return archived_.contains(name) || files_.contains(name);
}

raster::BitmapPtr Overrides::load(const std::string &name) {
    if (const auto found = archived_.find(name); found != archived_.end()) {
        const std::string file = name + std::string(extension);
        if (raster::BitmapPtr picture = bmp::load_member(*archive_, file.c_str())) return picture;
        archived_.erase(found);
    }
    if (const auto found = files_.find(name); found != files_.end()) {
        if (raster::BitmapPtr picture{LoadBitmap(found->second.c_str())}) return picture;
        files_.erase(found);
    }
    return nullptr;
}

} // namespace theme
