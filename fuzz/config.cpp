// SPDX-License-Identifier: MIT
// Any bytes as a configuration file: what is loaded, saved and loaded again is the same.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

#include "config/format.h"

namespace {

using values = std::map<std::string, std::string>;

int note(const char *name, void *value, void *out) {
    (*static_cast<values *>(out))[name] = static_cast<char *>(value);
    return 0;
}

values parse(std::string text, ihash h) {
    hash_clear(h);
    if (!config::parse_settings(text, h)) std::abort();
    values all;
    hash_enumerate(h, nullptr, note, &all);
    if (all.size() != static_cast<size_t>(hash_count(h))) std::abort();
    return all;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    ihash h = hash_new(101);
    const values first = parse(std::string(data, data + size), h);
    const config::SettingsText saved = config::format_settings(h);
    const values second = parse(saved.text, h);
    if (saved.exact != (first == second)) std::abort(); // only a long value may be cut
    for (const auto &[name, value] : first)
        if (!saved.exact && value.size() > 8000) return hash_destroy(h), 0;
    if (!saved.exact || config::format_settings(h).text != saved.text) std::abort();
    hash_destroy(h);
    return 0;
}
