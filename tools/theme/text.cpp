// SPDX-License-Identifier: MIT
// Reads and writes the parameter text, a line an entry.
#include "text.h"

#include <algorithm>
#include <tuple>

#include "ground/fold.h"
#include "ground/lines.h"

namespace tool {

std::string ThemeText::packed() const {
    std::string out;
    for (const Entry &p : parameters) out += p.name + "=" + p.value + "\n";
    std::vector<Translation> sorted = translations;
    std::ranges::sort(sorted, {}, [](const Translation &t) {
        return std::tuple(ground::folded(t.language), t.key, t.language);
    });
    for (const Translation &t : sorted) out += t.language + ":" + t.key + "=" + t.text + "\n";
    return out;
}

std::vector<Line> lines_of(std::string_view text) {
    std::vector<Line> lines;
    for (size_t number = 1; !text.empty(); ++number) {
        std::string_view line = ground::take_line(text);
        line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
        line.remove_suffix(line.size() - (line.find_last_not_of('\r') + 1));
        if (!line.empty() && line[0] != '#') lines.push_back({number, line});
    }
    return lines;
}

bool split(std::string_view line, Entry &entry) {
    const size_t equals = line.find('=');
    if (equals == line.npos) return false;
    entry = {std::string(line.substr(0, equals)), std::string(line.substr(equals + 1))};
    return true;
}

bool split(const Entry &entry, Translation &translation) {
    const size_t colon = entry.name.find(':');
    if (colon == entry.name.npos) return false;
    translation = {entry.name.substr(0, colon), entry.name.substr(colon + 1), entry.value};
    return true;
}

} // namespace tool
