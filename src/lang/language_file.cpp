// SPDX-License-Identifier: MIT
// Takes a language file apart, line by line.
#include "lang/language_file.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "config/format.h"
#include "ground/fold.h"
#include "ground/lines.h"
#include "kelvane/config.h"

namespace lang {
namespace {

constexpr size_t longest_name = 63;
constexpr size_t longest_line = 16383;

bool is_this_device(std::string_view name) {
    for (const char *own : {cfg_read_string("model", "unknown"), cfg_read_string("partner", "")})
        if (!name.empty() && ground::equal_folded(own, name)) return true;
    return false;
}

// Whether "[X5,Y7]" names this device.
bool is_own_section(std::string_view header) {
    header.remove_prefix(1);
    while (!header.empty()) {
        const size_t end = std::min(header.find_first_of(",]"), header.size());
        if (is_this_device(header.substr(0, end))) return true;
        header.remove_prefix(std::min(end + 1, header.size()));
    }
    return false;
}

void add_line(char *line, const AddTranslation &add) {
    char *equals = std::strchr(line, '=');
    if (!equals) return;
    *equals = '\0';
    config::unescape(equals + 1);
    add(line, equals + 1);
}

} // namespace

// What is longer is dropped, and so is what follows a NUL. Null at the end.
char *LanguageText::take_line(size_t longest) {
    char *line = ground::take_line(rest_).data();
    if (line) line[ground::trim_right({line, strnlen(line, longest)}).size()] = '\0';
    return line;
}

const char *LanguageText::take_name() {
    const char *name = take_line(longest_name);
    constexpr size_t byte_order_mark = 3;
    if (name && *name == '\xEF') name += std::min(std::strlen(name), byte_order_mark);
    return name && *name != '#' ? name : nullptr;
}

Direction LanguageText::take_translations(const AddTranslation &add) {
    Direction direction = Direction::left_to_right;
    bool skipping = false;
    while (char *line = take_line(longest_line)) {
        line += std::strspn(line, " \t");
        if (*line == '[') skipping = !is_own_section(line);
        if (skipping || *line == '#' || *line == '[') continue;
        if (std::strncmp(line, "%RTL", 4) == 0)
            direction = Direction::right_to_left;
        else
            add_line(line, add);
    }
    return direction;
}

} // namespace lang
