// SPDX-License-Identifier: MIT
// The table of file types, and the way from a path to its row.
#include "bookinfo/file_types.h"

#include <array>
#include <cstring>
#include <deque>
#include <map>
#include <optional>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "file/storage.h"
#include "file/stream.h"
#include "ground/fold.h"
#include "ground/guard.h"
#include "ground/heap.h"
#include "ground/lines.h"
#include "ground/number.h"
#include "hw.h"
#include "kelvane/files.h"
#include "kelvane/theme.h"

namespace book {
namespace {

constexpr const char *table_path = "./system/config/extensions.cfg";
constexpr const char *photo_folder = "./system/tmp/photo";
constexpr std::string_view anywhere = "ANY:";
constexpr size_t most_rows = 256; // with the two for folders
constexpr size_t most_bytes = 1 << 20;
constexpr size_t folder_rows = 2;
constexpr int text_type = 1;

using Fields = std::array<std::string, 5>; // extension, description, type, program, icon

constexpr auto is_line_end = [](char c) { return ground::is_blank(c) || c == '\n'; };

// Nothing for a line of fewer fields. What follows the fourth ":" is the icon.
std::optional<Fields> split(std::string_view line) {
    Fields fields;
    for (size_t i = 0; i + 1 < fields.size(); ++i) {
        const size_t colon = line.find(':');
        if (colon == line.npos) return std::nullopt;
        fields[i] = line.substr(0, colon);
        line.remove_prefix(colon + 1);
    }
    fields.back() = ground::trim_right(line, is_line_end);
    return fields;
}

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

class Types {
  public:
    Types() {
        add({"", "Folder", "255", "", "ICON_FOLDER"});
        add({"", "Photo", "255", "", "ICON_PHOTO"});
        if (const auto contents = read_table())
            add_lines(contents->view());
        else
            add({"txt", "Text file", std::to_string(text_type), "", "ICON_TXT"});
        rows_.push_back({});
    }

    const kv_filetype *rows() const { return rows_.data(); }
    const kv_filetype *folder() const { return &rows_[0]; }
    const kv_filetype *photos() const { return &rows_[1]; }

    const kv_filetype *find(std::string_view name) const {
        for (size_t i = folder_rows; rows_[i].extension; ++i)
            if (has_extension(name, rows_[i].extension)) return &rows_[i];
        return nullptr;
    }

  private:
    static bool has_extension(std::string_view name, std::string_view extension) {
        if (extension.size() >= name.size()) return false;
        const std::string_view end = name.substr(name.size() - extension.size());
        return name[name.size() - extension.size() - 1] == '.' &&
               ground::equal_folded(end, extension);
    }

    void add_lines(std::string_view text) {
        while (!text.empty() && rows_.size() < most_rows)
            if (auto fields = split(ground::take_line(text))) add(std::move(*fields));
    }

    void add(Fields fields) {
        const Fields &f = fields_.emplace_back(std::move(fields));
        rows_.push_back({f[0].c_str(), f[1].c_str(), ground::parse_int(f[2].c_str(), nullptr, 10),
                         f[3].c_str(), icon(f[4].empty() ? "broken_image" : f[4])});
    }

    ibitmap *icon(const std::string &name) {
        const auto [place, is_new] = icons_.try_emplace(name);
        if (is_new) place->second.reset(GetResource(name.c_str(), nullptr));
        return place->second.get();
    }

    std::deque<Fields> fields_;
    std::map<std::string, ground::HeapPtr<ibitmap>> icons_;
    std::vector<kv_filetype> rows_;
};

// Never destroyed: an application may ask while it ends. Throws bad_alloc; then it is made later.
const Types &types() {
    static const Types &made = *new Types;
    return made;
}

bool leads_anywhere(std::string_view path) {
    return path.starts_with(anywhere);
}

// What a link names, from where the path starts; the path itself when it is no link.
std::string followed(const std::string &path) {
    struct stat st;
    if (lstat(path.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) return path;
    std::array<char, PATH_MAX> target;
    const ssize_t size = readlink(path.c_str(), target.data(), target.size());
    if (size <= 0) return path;
    const std::string_view named(target.data(), static_cast<size_t>(size));
    if (named.front() == '/' || leads_anywhere(named)) return std::string(named);
    return path.substr(0, path.rfind('/') + 1).append(named);
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
    safe_wait(path);
    if (!leads_anywhere(l.path)) l.path = followed(l.path);
    l.name = l.path;
    if (leads_anywhere(l.path)) {
        l.type = types().folder();
    } else if (kv_stat(l.path.c_str(), &l.st) != 0) {
        l.st = {};
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
