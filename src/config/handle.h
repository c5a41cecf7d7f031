// SPDX-License-Identifier: MIT
// What the ways to read and write a handle share. Handles and names are not null here.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "kelvane/config.h"

namespace config {

// Every handle is one of these.
struct OpenedConfig : iconfig {
    // The text that the last save wrote, as long as `hash` holds exactly its values: a save that
    // finds it in the file need not take it apart.
    std::optional<std::string> known_text;

    // Where in `deleted_keys` each name stands; the names are those of the list.
    std::unordered_map<std::string_view, std::size_t> deleted_slots;
};

// The value that counts: volatile, then unsaved, then the file's. Null when there is none.
const char *find(iconfig *c, const char *name);

// Sets a value to be saved. `value` must not lie in one of the handle's tables.
void write(iconfig *c, const char *name, const char *value);

} // namespace config
