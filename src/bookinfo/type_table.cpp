// SPDX-License-Identifier: MIT
// Makes rows of lines.
#include "bookinfo/type_table.h"

#include "ground/fold.h"
#include "ground/lines.h"
#include "ground/number.h"
#include "kelvane/theme.h"

namespace book {
namespace {

constexpr size_t most_rows = 256; // with the two for folders
constexpr size_t folder_rows = 2;

constexpr auto is_line_end = [](char c) { return ground::is_blank(c) || c == '\n'; };

bool has_extension(std::string_view name, std::string_view extension) {
    if (extension.size() >= name.size()) return false;
    const size_t dot = name.size() - extension.size() - 1;
    return name[dot] == '.' && ground::equal_folded(name.substr(dot + 1), extension);
}

} // namespace

TypeTable::TypeTable(std::optional<std::string_view> lines) {
    add({"", "Folder", "255", "", "ICON_FOLDER"});
    add({"", "Photo", "255", "", "ICON_PHOTO"});
    if (lines)
        add_lines(*lines);
    else
        add({"txt", "Text file", "1", "", "ICON_TXT"});
    rows_.push_back({});
}

const kv_filetype *TypeTable::find(std::string_view name) const {
    for (size_t i = folder_rows; rows_[i].extension; ++i)
        if (has_extension(name, rows_[i].extension)) return &rows_[i];
    return nullptr;
}

// Nothing for a line of fewer fields. What follows the fourth ":" is the icon.
std::optional<TypeTable::Fields> TypeTable::split(std::string_view line) {
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

void TypeTable::add_lines(std::string_view text) {
    while (!text.empty() && rows_.size() < most_rows)
        if (auto fields = split(ground::take_line(text))) add(std::move(*fields));
}

void TypeTable::add(Fields fields) {
    const Fields &f = fields_.emplace_back(std::move(fields));
    rows_.push_back({f[0].c_str(), f[1].c_str(), ground::parse_int(f[2].c_str(), nullptr, 10),
                     f[3].c_str(), icon(f[4].empty() ? "broken_image" : f[4])});
}

ibitmap *TypeTable::icon(const std::string &name) {
    const auto [place, is_new] = icons_.try_emplace(name);
    if (is_new) place->second.reset(GetResource(name.c_str(), nullptr));
    return place->second.get();
}

} // namespace book
