// SPDX-License-Identifier: MIT
// Opens dictionaries and remembers the choice in the settings.
#include "dictionary_view/choice.h"

#include <algorithm>

#include "dictionary/opened.h"
#include "internal.h"
#include "kelvane/config.h"
#include "kelvane/dictionary.h"

namespace dictionary_view {
namespace {

constexpr const char *setting = "dictionary";

bool opens(const std::string &name) {
    return OpenDictionary(name.c_str()) != 0;
}

} // namespace

std::vector<std::string> all_names() {
    std::vector<std::string> names;
    for (char **name = EnumDictionaries(); name && *name; ++name) names.emplace_back(*name);
    return names;
}

std::string open_name() {
    const dictionary::Opened *opened = dictionary::opened();
    return opened ? opened->name : "";
}

bool open_any() {
    if (!open_name().empty()) return true;
    const std::vector<std::string> names = all_names();
    const std::string remembered = ReadString(kvstate.cfg, setting, "");
    if (!remembered.empty() && opens(remembered)) return true;
    return std::any_of(names.begin(), names.end(), opens);
}

bool choose(const std::string &name) {
    const std::string before = open_name();
    if (!opens(name)) {
        if (!before.empty()) opens(before);
        return false;
    }
    WriteString(kvstate.cfg, setting, name.c_str());
    SaveConfig(kvstate.cfg);
    return true;
}

} // namespace dictionary_view
