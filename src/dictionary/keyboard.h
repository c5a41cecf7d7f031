// SPDX-License-Identifier: MIT
// The keyboard layout that a dictionary brings along, for whoever enters its words.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace dictionary {

inline constexpr const char *keyboard_path = "./system/tmp/dictionary.kbd";

// Writes the text of a layout where keyboards find it; an empty one removes what is there. It need
// not outlast the process, so that nobody waits for the disk.
void put_keyboard(std::span<const uint8_t> layout);

// The language of a layout: the two characters before its first ":"; empty when that stands
// elsewhere than at the name of a language.
std::string keyboard_language(std::span<const uint8_t> layout);

} // namespace dictionary
