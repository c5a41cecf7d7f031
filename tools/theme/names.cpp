// SPDX-License-Identifier: MIT
// The names that resources may have, which are those that the library looks for.
#include "resources.h"

namespace tool {
namespace {

// The library looks for variants under names of these lengths, and cuts longer ones.
constexpr size_t longest_turned = 62; // behind "^"
constexpr size_t longest_deep = 61;   // before ":4", with "^"

std::string too_long(size_t length, size_t limit, const char *where) {
    return "the name has " + std::to_string(length) + " characters " + where + ", of which only " +
           std::to_string(limit) + " are ever looked for; shorten it";
}

} // namespace

std::string picture_name_fault(std::string_view name) {
    const bool turned = name.starts_with('^'), deep = name.ends_with(":4");
    std::string_view plain = name;
    if (turned) plain.remove_prefix(1);
    if (deep && !plain.empty()) plain.remove_suffix(2);
    if (plain.empty()) return "the picture has no name; put one between ^ and :4";
    if (plain.find(':') != plain.npos)
        return "a name has no colon but in :4, the variant for 16 greys; rename it";
    if (deep && name.size() - 2 > longest_deep)
        return too_long(name.size() - 2, longest_deep, "before :4");
    if (turned && plain.size() > longest_turned)
        return too_long(plain.size(), longest_turned, "behind ^");
    return {};
}

std::string font_name_fault(std::string_view face) {
    if (face.empty()) return "the font has no name; name the file FACE.ttf";
    if (face.find(',') != face.npos || face.starts_with('#') || face.starts_with(' ') ||
        face.ends_with(' '))
        return "no parameter can name a face with a comma, a # before it or blanks around it; "
               "rename it";
    return {};
}

} // namespace tool
