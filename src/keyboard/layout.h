// SPDX-License-Identifier: MIT
// Layouts of keys as files describe them. Nothing here draws.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kelvane/canvas.h"

namespace keyboard {

// What keys do whose code is not a character.
namespace code {
inline constexpr uint16_t none = 0, language = 1, shift = 2, clear = 3, numbers = 4, wide_space = 5,
                          eye = 6, next = 7, backspace = 8, enter = 10, cancel = 27, space = 32;
} // namespace code

// Keys for five keys: six rows in a block of cells, of which 0 is no key.
struct RowSpan {
    size_t first, width;
};
inline constexpr std::array<RowSpan, 6> block_rows{
    {{0, 11}, {11, 11}, {22, 9}, {31, 9}, {40, 9}, {49, 11}}};
inline constexpr int block_columns = 11; // of the widest row; the others stand in their middle
inline constexpr size_t block_cells = 64;
using Block = std::array<uint16_t, block_cells>;

// Keys for fingers: rows of keys that are one or more units wide.
inline constexpr int most_touch_rows = 7, most_columns = 16;
inline constexpr size_t most_touch_keys = 84;

struct TouchKey {
    uint16_t code;
    irect pos; // x and w in units, y the row, h 1
};

struct TouchLayout {
    std::vector<TouchKey> keys; // without gaps
    int rows = 0;
    int columns = 0; // of the widest row

    bool empty() const { return columns == 0; }
    // Adds a key, unless there are enough, and cuts it to the columns there may be.
    void add(uint16_t key, int column, int row, int width);
    // The key that covers a unit; -1 for none.
    int key_at(int column, int row) const;
};

// A key of an external keyboard, and the character that a language has there.
struct ExternalKey {
    uint16_t key, character;
};

// A section of a file.
struct Language {
    std::string code; // two characters
    Block lower{}, upper{};
    TouchLayout touch_lower, touch_upper, touch_numeric;
    std::vector<ExternalKey> external;

    // What a character stands for that an external keyboard has typed.
    uint16_t typed(uint16_t key) const;

    bool has_shift() const { return upper != Block{} && upper != lower; }
    bool has_touch() const { return !touch_lower.empty(); }
};

inline constexpr size_t most_languages = 3;

struct Layouts {
    std::vector<Language> languages; // at most most_languages
    size_t current = 0;

    const Language &language() const { return languages[current]; }
    // One of the first two rows has a key, in any language.
    bool has_top_rows() const;
    // Some row has too many keys to be walked through one by one.
    bool is_zoned() const;
    bool has_touch() const;
};

// Adds the sections of a file to the languages, as long as there is room. Takes any bytes.
void read_sections(std::string_view text, std::vector<Language> &languages);

// Gives the languages from a position on their keys of an external keyboard, as a file says: a line
// of one word is the code of a language, and in lines of two words below it each character of the
// first stands for one of the second. Takes any bytes.
void read_external(std::string_view text, std::vector<Language> &languages, size_t from);

// The layout that needs no file: English, without touch rows.
Layouts builtin_layouts();

// The six rows as touch rows, with a row of what else is needed.
TouchLayout touch_of_block(const Block &block);

} // namespace keyboard
