// SPDX-License-Identifier: MIT
// The table of file types: rows for folders, and one for each extension.
#pragma once

#include <array>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ground/heap.h"
#include "kelvane/bookinfo.h"

namespace book {

class TypeTable {
  public:
    // Of the lines of a file; without one there is a row for plain text. Throws bad_alloc.
    explicit TypeTable(std::optional<std::string_view> lines);

    // Ended by a row whose extension is null.
    const kv_filetype *rows() const { return rows_.data(); }
    const kv_filetype *folder() const { return &rows_[0]; }
    const kv_filetype *photos() const { return &rows_[1]; }
    // The first row whose extension ends the name; null for none.
    const kv_filetype *find(std::string_view name) const;

  private:
    using Fields = std::array<std::string, 5>; // extension, description, type, program, icon

    static std::optional<Fields> split(std::string_view line);
    void add_lines(std::string_view text);
    void add(Fields fields);
    ibitmap *icon(const std::string &name);

    std::deque<Fields> fields_;
    std::map<std::string, ground::HeapPtr<ibitmap>> icons_;
    std::vector<kv_filetype> rows_;
};

} // namespace book
