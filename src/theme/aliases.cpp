// SPDX-License-Identifier: MIT
// Parameters that name other parameters, or a setting in a configuration file.
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include "ground/guard.h"
#include "kelvane/config.h"
#include "kelvane/theme.h"

namespace {

constexpr int most_steps = 3;
constexpr size_t name_buffer = 255;

bool copy_text(const std::string &text, char *out, int outlen) {
    const size_t length = std::min(text.size(), static_cast<size_t>(outlen) - 1);
    std::memcpy(out, text.data(), length);
    out[length] = '\0';
    return true;
}

std::string follow(const char *name) {
    std::string from = name;
    std::string text = GetThemeString(name, name);
    for (int step = 0; step < most_steps && text != from; step++) {
        from = text;
        text = GetThemeString(from.c_str(), from.c_str());
    }
    return text;
}

// ":FILE:KEY[:DEFAULT]". No theme makes the folders of a file that is not there, as opening it
// would, or waits at a pipe.
bool read_setting(const std::string &place, char *out, int outlen) {
    const size_t key = place.find(':', 1);
    if (key == place.npos) return false;
    const size_t end = std::min(place.find(':', key + 1), place.size());
    const char *deflt = end < place.size() ? place.c_str() + end + 1 : "";
    const std::string file = place.substr(1, key - 1);
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) return copy_text(deflt, out, outlen);
    iconfig *config = OpenConfig(file.c_str(), nullptr);
    copy_text(ReadString(config, place.substr(key + 1, end - key - 1).c_str(), deflt), out, outlen);
    CloseConfigNoSave(config);
    return true;
}

} // namespace

int resolve_resource_name(const char *name, char *out, int outlen) {
    return ground::guarded(0, [&]() -> int {
        if (!name || !out || outlen < 1) return 0;
        const std::string text = follow(name);
        return text.starts_with(':') ? read_setting(text, out, outlen)
                                     : copy_text(text, out, outlen);
    });
}

ibitmap *GetKeyResource(const char *name, ibitmap *deflt) {
    char resolved[name_buffer];
    const bool found = resolve_resource_name(name, resolved, sizeof resolved) != 0;
    return GetResource(found ? resolved : name, deflt);
}
