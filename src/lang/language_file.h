// SPDX-License-Identifier: MIT
// The text of a language file: a line with the language's own name, then a translation a line.
#pragma once

#include <cstddef>
#include <functional>
#include <span>

namespace lang {

using AddTranslation = std::function<void(const char *key, const char *text)>;

enum class Direction { left_to_right, right_to_left };

// Takes the lines of a text in turn, each trimmed at its end, and the text apart with it.
class LanguageText {
  public:
    // The byte behind the text's end is written.
    explicit LanguageText(std::span<char> text) : rest_(text) {}

    // The name of the language, from the first line. Null when there is none or that line begins
    // with "#": then nothing in the file counts.
    const char *take_name();
    // Hands on each translation behind the name that holds for this device.
    Direction take_translations(const AddTranslation &add);

  private:
    char *take_line(size_t longest);

    std::span<char> rest_;
};

} // namespace lang
