// SPDX-License-Identifier: MIT
// Takes a language file apart, line by line.
#include "lang/language_file.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "config/format.h"
#include "ground/fold.h"
#include "ground/lines.h"
#include "kelvane/config.h"

namespace lang {
namespace {

constexpr size_t longest_name = 63;
constexpr size_t longest_line = 16383;

// The names by which sections call this device, looked up once for a file.
class DeviceNames {
  public:
    // Whether "[X5,Y7]" is a section for it.
    bool are_in(std::string_view header) const {
        header.remove_prefix(1);
        while (!header.empty()) {
            const size_t end = std::min(header.find_first_of(",]"), header.size());
            if (include(header.substr(0, end))) return true;
            header.remove_prefix(std::min(end + 1, header.size()));
        }
        return false;
    }

  private:
    bool include(std::string_view name) const {
        return !name.empty() &&
               (ground::equal_folded(model_, name) || ground::equal_folded(partner_, name));
    }

    std::string model_ = cfg_read_string("model", "unknown"),
                partner_ = cfg_read_string("partner", "");
};

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
    const DeviceNames device;
    bool skipping = false;
    while (char *line = take_line(longest_line)) {
        line += std::strspn(line, " \t");
        if (*line == '[') skipping = !device.are_in(line);
        if (skipping || *line == '#' || *line == '[') continue;
        if (std::strncmp(line, "%RTL", 4) == 0)
            direction = Direction::right_to_left;
        else
            add_line(line, add);
    }
    return direction;
}

} // namespace lang
