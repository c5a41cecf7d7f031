// SPDX-License-Identifier: MIT
// Reads files of layouts line by line.
#include "keyboard/layout.h"

#include <algorithm>

#include "ground/fold.h"
#include "ground/lines.h"
#include "ground/utf8.h"

namespace keyboard {
namespace {

constexpr size_t longest_header = 63, longest_line = 255;
constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF", end_of_layout = "--";
constexpr size_t usual_touch_keys = 48;
constexpr size_t longest_walk = 5; // keys in a row that need no zones

constexpr std::string_view builtin_text = "EN\n"
                                          "_@$%:;!?\"()\n"
                                          "`1234567890\n"
                                          "qwertyuio\n"
                                          "asdfghjkl\n"
                                          "zxcvbnmp'\n"
                                          " =+-~ .,*/ \n"
                                          "_@$%:;!?\"()\n"
                                          "`1234567890\n"
                                          "QWERTYUIO\n"
                                          "ASDFGHJKL\n"
                                          "ZXCVBNMP'\n"
                                          " =+-~ .,*/ \n";

struct Keyword {
    std::string_view name;
    uint16_t code;
};
// Of two that begin alike the longer one stands first.
constexpr Keyword keywords[] = {
    {"spm", code::wide_space}, {"sp", code::space},    {"bs", code::backspace}, {"ok", code::enter},
    {"cn", code::none},        {"lg", code::language}, {"sh", code::shift},     {"cl", code::clear},
    {"nu", code::numbers},     {"na", code::none}};

constexpr uint32_t action_codes = 1U << code::language | 1U << code::shift | 1U << code::clear |
                                  1U << code::numbers | 1U << code::wide_space |
                                  1U << code::backspace | 1U << code::enter | 1U << code::cancel;

bool is_key_code(uint16_t c) {
    return c > code::space || (c < code::space && (action_codes >> c & 1) != 0);
}

// At most so many bytes, and no part of a character.
std::string_view cut(std::string_view line, size_t longest) {
    if (line.size() <= longest) return line;
    const auto continues = [&](size_t at) { return (line[at] & 0xC0) == 0x80; };
    size_t end = longest;
    while (end > longest - 3 && continues(end)) --end;
    return line.substr(0, end);
}

// Takes the lines of a text in turn. What follows a NUL in a line, or its longest length, is
// dropped.
class Lines {
  public:
    explicit Lines(std::string_view text) : rest_(text) {}

    bool at_end() const { return rest_.empty(); }
    std::string_view take(size_t longest = longest_line) {
        if (at_end()) return {};
        const std::string_view line = ground::take_line(rest_);
        return ground::trim_right(cut(line.substr(0, line.find('\0')), longest),
                                  [](char c) { return c == '\r'; });
    }

  private:
    std::string_view rest_;
};

std::string_view without_mark(std::string_view text) {
    if (text.starts_with(byte_order_mark)) text.remove_prefix(byte_order_mark.size());
    return text;
}

void place_row(std::string_view line, const RowSpan &span, Block &block) {
    const std::string_view keys = ground::trim(line);
    std::array<uint16_t, block_cells> codes;
    const char *at = keys.data();
    const size_t count = utf8::decode(at, at + keys.size(), codes.data(), span.width);
    const size_t first = span.first + (span.width - count) / 2;
    for (size_t i = 0; i < count; ++i)
        block[first + i] = is_key_code(codes[i]) ? codes[i] : code::none;
}

void take_block(Lines &lines, Block &block) {
    for (const RowSpan &span : block_rows) place_row(lines.take(), span, block);
}

// Two small letters, as few keys begin with.
bool may_be_keyword(std::string_view row) {
    const auto is_small = [](char c) { return c >= 'a' && c <= 'z'; };
    return row.size() > 1 && is_small(row[1]) && is_small(row[0]);
}

uint16_t take_code(std::string_view &row) {
    if (may_be_keyword(row))
        for (const Keyword &keyword : keywords) {
            if (!row.starts_with(keyword.name)) continue;
            row.remove_prefix(keyword.name.size());
            return keyword.code;
        }
    const char *at = row.data();
    const bool is_ascii = static_cast<unsigned char>(*at) < 0x80;
    const uint16_t c =
        is_ascii ? static_cast<unsigned char>(*at++) : utf8::next(at, at + row.size());
    row.remove_prefix(static_cast<size_t>(at - row.data()));
    return c;
}

// A colon without a digit behind it is a key of its own.
int take_width(std::string_view &row) {
    if (row.size() < 2 || row[0] != ':' || row[1] < '1' || row[1] > '9') return 1;
    const int width = row[1] - '0';
    row.remove_prefix(2);
    return width;
}

// Returns the width of the row.
int add_row(std::string_view row, TouchLayout &layout) {
    int column = 0;
    while (!row.empty()) {
        if (ground::is_blank(row.front())) {
            row.remove_prefix(1);
            continue;
        }
        const uint16_t key = take_code(row);
        const int width = take_width(row);
        if (is_key_code(key) || key == code::space) layout.add(key, column, layout.rows, width);
        column += width;
    }
    return std::min(column, most_columns);
}

// However a layout ends, the lines up to its mark belong to it.
void take_touch_layout(Lines &lines, TouchLayout &layout) {
    layout.keys.reserve(usual_touch_keys);
    bool has_ended = false;
    while (!lines.at_end()) {
        const std::string_view row = lines.take();
        if (row.starts_with(end_of_layout)) {
            if (layout.rows > 0 || has_ended) break;
        } else if (!has_ended && layout.rows < most_touch_rows) {
            const int width = add_row(row, layout);
            has_ended = width == 0;
            layout.rows += width > 0;
            layout.columns = std::max(layout.columns, width);
        }
    }
}

// False at an empty header.
bool add_section(Lines &lines, std::vector<Language> &languages) {
    const std::string_view header = ground::trim_right(without_mark(lines.take(longest_header)));
    if (header.empty()) return false;
    Language &language = languages.emplace_back();
    const char *begin = header.data(), *end = utf8::skip(begin, begin + header.size(), 2);
    language.code.assign(begin, end);
    take_block(lines, language.lower);
    take_block(lines, language.upper);
    if (header.find(':') == header.npos) return true;
    for (TouchLayout *layout :
         {&language.touch_lower, &language.touch_upper, &language.touch_numeric})
        take_touch_layout(lines, *layout);
    return true;
}

// Both words count as far as the shorter one goes.
void add_external_keys(std::string_view line, std::vector<ExternalKey> &keys) {
    const auto blank = std::find_if(line.begin(), line.end(), ground::is_blank);
    const auto end = static_cast<size_t>(blank - line.begin());
    const std::string_view from = line.substr(0, end), to = ground::trim(line.substr(end));
    std::array<uint16_t, longest_line> typed, characters;
    const char *at = from.data(), *other = to.data();
    const size_t count =
        std::min(utf8::decode(at, at + from.size(), typed.data(), typed.size()),
                 utf8::decode(other, other + to.size(), characters.data(), characters.size()));
    for (size_t i = 0; i < count; ++i)
        if (characters[i] > code::space) keys.push_back({typed[i], characters[i]});
}

size_t count_keys(const Block &block, const RowSpan &span) {
    const auto *row = block.data() + span.first;
    return span.width - static_cast<size_t>(std::count(row, row + span.width, code::none));
}

// Whether a row of these is one for which `holds` is true, in any language.
template <class Condition>
bool any_row(const Layouts &layouts, size_t rows, Condition holds) {
    for (const Language &language : layouts.languages)
        for (const Block *block : {&language.lower, &language.upper})
            for (size_t row = 0; row < rows; ++row)
                if (holds(count_keys(*block, block_rows[row]))) return true;
    return false;
}

} // namespace

void TouchLayout::add(uint16_t key, int column, int row, int width) {
    if (keys.size() == most_touch_keys || column >= most_columns) return;
    keys.push_back({key, {column, row, std::min(width, most_columns - column), 1, 0}});
}

int TouchLayout::key_at(int column, int row) const {
    const auto found = std::find_if(keys.begin(), keys.end(), [=](const TouchKey &key) {
        return key.pos.y == row && key.pos.x <= column && column < key.pos.x + key.pos.w;
    });
    return found == keys.end() ? -1 : static_cast<int>(found - keys.begin());
}

uint16_t Language::typed(uint16_t key) const {
    const auto found = std::find_if(external.begin(), external.end(),
                                    [=](const ExternalKey &k) { return k.key == key; });
    return found == external.end() ? key : found->character;
}

bool Layouts::has_top_rows() const {
    return any_row(*this, 2, [](size_t keys) { return keys > 0; });
}

bool Layouts::is_zoned() const {
    return any_row(*this, block_rows.size(), [](size_t keys) { return keys > longest_walk; });
}

bool Layouts::has_touch() const {
    return std::any_of(languages.begin(), languages.end(),
                       [](const Language &language) { return language.has_touch(); });
}

void read_sections(std::string_view text, std::vector<Language> &languages) {
    Lines lines(text);
    languages.reserve(most_languages);
    while (languages.size() < most_languages && add_section(lines, languages)) {
    }
}

void read_external(std::string_view text, std::vector<Language> &languages, size_t from) {
    Lines lines(without_mark(text));
    std::string_view code;
    while (!lines.at_end()) {
        const std::string_view line = ground::trim(lines.take());
        if (line.empty()) continue;
        if (std::none_of(line.begin(), line.end(), ground::is_blank)) {
            code = line;
            continue;
        }
        for (size_t i = from; i < languages.size(); ++i)
            if (ground::equal_folded(languages[i].code, code))
                add_external_keys(line, languages[i].external);
    }
}

Layouts builtin_layouts() {
    Layouts layouts;
    read_sections(builtin_text, layouts.languages);
    return layouts;
}

TouchLayout touch_of_block(const Block &block) {
    TouchLayout touch;
    for (const RowSpan &span : block_rows) {
        if (count_keys(block, span) == 0) continue;
        const int left = (block_columns - static_cast<int>(span.width)) / 2;
        for (size_t i = 0; i < span.width; ++i)
            if (const uint16_t key = block[span.first + i]; key != code::none)
                touch.add(key, left + static_cast<int>(i), touch.rows, 1);
        ++touch.rows;
    }
    touch.columns = block_columns;
    std::string_view last = "sh:2 lg cl spm:3 bs:2 ok:2";
    add_row(last, touch);
    ++touch.rows;
    return touch;
}

} // namespace keyboard
