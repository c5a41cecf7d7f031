// SPDX-License-Identifier: MIT
// The side files of a dictionary: how words are compared, and which forms words have.
#pragma once

#include <string>
#include <string_view>

#include "letters.h"
#include "mistakes.h"

namespace dict {

// Changes letters as the lines of a file say: "áàâ=a" has each character on the left compared as
// the one on the right, "'-=" drops those on the left, "identity" has each be itself. A character
// may be written "U+00E1"; lines that begin with "#" are comments.
void read_letters(std::string_view text, const std::string &path, Letters &letters,
                  Mistakes &mistakes);
// A file that makes the same letters again.
std::string letters_text(const Letters &letters);

// The section for a file of rules, one a line; lines that begin with "#" are comments.
std::u16string read_rules(std::string_view text, const std::string &path, Mistakes &mistakes);
// A file that makes the same rules again.
std::string rules_text(std::u16string_view section);

// A keyboard layout as it is.
std::string read_keyboard(std::string_view text, const std::string &path, Mistakes &mistakes);

} // namespace dict
