// SPDX-License-Identifier: MIT
// The plug-in that may know the forms of words better than the rules of a dictionary do.
#pragma once

#include <optional>
#include <string>

namespace dictionary {

// Looks for the plug-in, once in a process, and says on standard error which rules apply.
bool has_plug_in();

// What the plug-in makes of a word; nothing when it knows nothing.
// @param language a code such as "en", or empty
std::optional<std::string> analyse(const char *word, const char *language);

} // namespace dictionary
