// SPDX-License-Identifier: MIT
// The table of the device, and the way from a path to its row.
#include "bookinfo/file_types.h"

#include <array>
#include <climits>
#include <cstring>
#include <optional>
#include <string_view>
#include <unistd.h>

#include "bookinfo/type_table.h"
#include "file/storage.h"
#include "file/stream.h"
#include "ground/fold.h"
#include "ground/guard.h"
#include "hw.h"
#include "kelvane/files.h"

namespace book {
namespace {

constexpr const char *table_path = "./system/config/extensions.cfg";
constexpr const char *photo_folder = "./system/tmp/photo";
constexpr std::string_view anywhere = "ANY:";
constexpr size_t most_bytes = 1 << 20;

std::optional<file::Contents> read_table() {
    const auto read = [] {
        const file::Stream in = file::open_plain(table_path);
        return in ? file::read_whole(in.get(), most_bytes) : std::nullopt;
    };
    auto contents = read();
    // Storage that has only just appeared answers the second time.
    if (!contents && !hw_safemode()) contents = read();
    return contents;
}

// Never destroyed: an application may ask while it ends. Throws bad_alloc; then it is made later.
const TypeTable &types() {
    static const TypeTable &made = []() -> const TypeTable & {
        const auto contents = read_table();
        return *new TypeTable(contents ? std::optional(contents->view()) : std::nullopt);
    }();
    return made;
}

bool leads_anywhere(std::string_view path) {
    return path.starts_with(anywhere);
}

// What a link names, from where its path starts; the path itself when that cannot be told.
std::string target_of(const std::string &path) {
    std::array<char, PATH_MAX> target;
    const ssize_t size = readlink(path.c_str(), target.data(), target.size());
    if (size <= 0) return path;
    const std::string_view named(target.data(), static_cast<size_t>(size));
    if (named.front() == '/' || leads_anywhere(named)) return std::string(named);
    return path.substr(0, path.rfind('/') + 1).append(named);
}

// Goes to the end of a link. False when no file is there.
bool find_file(Location &l) {
    safe_wait(l.path.c_str());
    if (leads_anywhere(l.path) || lstat(l.path.c_str(), &l.st) != 0) return false;
    if (!S_ISLNK(l.st.st_mode)) return true;
    l.path = target_of(l.path);
    return !leads_anywhere(l.path) && kv_stat(l.path.c_str(), &l.st) == 0;
}

bool is_photo_folder(const std::string &path) {
    return ground::compare_folded(path.c_str(), photo_folder, std::strlen(photo_folder)) == 0;
}

// The name of the first file in an archive, which may be in a folder of it.
std::string first_file(const file::Archive &archive) {
    for (const auto &member : archive.members())
        if (!member.name.empty() && member.name.back() != '/') return member.name;
    return {};
}

void look_into_archive(Location &l) {
    constexpr std::string_view extension = ".zip";
    if (l.path.size() <= extension.size() ||
        !ground::equal_folded(std::string_view(l.path).substr(l.path.size() - extension.size()),
                              extension))
        return;
    l.archive = file::Archive::open(l.path.c_str());
    if (l.archive) l.name = first_file(*l.archive);
}

} // namespace

Location locate(const char *path) {
    Location l;
    l.path = path;
    const bool is_there = find_file(l);
    l.name = l.path;
    if (!is_there) {
        l.st = {};
        if (leads_anywhere(l.path)) l.type = types().folder();
    } else if (S_ISDIR(l.st.st_mode)) {
        l.type = is_photo_folder(l.path) ? types().photos() : types().folder();
    } else {
        look_into_archive(l);
        l.type = types().find(l.name);
    }
    return l;
}

} // namespace book

const kv_filetype *GetSupportedFileTypes(void) {
    return ground::guarded(nullptr, [] { return book::types().rows(); });
}

const kv_filetype *FileType(const char *path) {
    return FileTypeExt(path, nullptr);
}

const kv_filetype *FileTypeExt(const char *path, struct stat *st) {
    if (st) *st = {};
    return ground::guarded(nullptr, [&]() -> const kv_filetype * {
        if (!path) return nullptr;
        const book::Location l = book::locate(path);
        if (st) *st = l.st;
        return l.type;
    });
}
