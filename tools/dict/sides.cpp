// SPDX-License-Identifier: MIT
// Reads and writes the side files.
#include "sides.h"

#include <cstdio>
#include <cstdlib>
#include <optional>

#include "dictionary/keyboard.h"
#include "ground/lines.h"
#include "ground/utf8.h"

namespace dict {
namespace {

constexpr unsigned long last_character = 0xFFFF;

// Calls read(line, number) for each line that says something.
template <class Read>
void each_line(std::string_view text, Read read) {
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (text.starts_with(mark)) text.remove_prefix(mark.size());
    for (size_t number = 1; !text.empty(); ++number) {
        const std::string_view line = ground::trim_right(ground::take_line(text));
        if (!line.empty() && line[0] != '#') read(line, number);
    }
}

std::u16string characters(std::string_view text) {
    std::u16string out;
    for (const char *s = text.data(), *const end = s + text.size(); s < end;)
        out += static_cast<char16_t>(utf8::next(s, end));
    return out;
}

std::string to_utf8(std::u16string_view text) {
    std::string out;
    for (const char16_t c : text) out += utf8::encoded(c);
    return out;
}

// The number of "U+00E1" at the front, which is taken off.
std::optional<uint16_t> take_number(std::u16string_view &text) {
    constexpr size_t length = 6;
    if (text.size() < length || !text.starts_with(u"U+")) return std::nullopt;
    const std::string digits = to_utf8(text.substr(2, length - 2));
    char *end = nullptr;
    const unsigned long value = std::strtoul(digits.c_str(), &end, 16);
    if (*end || digits.find_first_of("+-x ") != digits.npos || value > last_character)
        return std::nullopt;
    text.remove_prefix(length);
    return static_cast<uint16_t>(value);
}

std::u16string take_characters(std::u16string_view text) {
    std::u16string out;
    while (!text.empty()) {
        if (const auto number = take_number(text)) {
            out += static_cast<char16_t>(*number);
        } else {
            out += text.front();
            text.remove_prefix(1);
        }
    }
    return out;
}

// What is wrong with a line; empty when it was understood.
std::string read_line(std::string_view line, Letters &letters) {
    if (line == "identity") return letters.clear(), "";
    const size_t equals = line.find('=', 1);
    if (equals == line.npos) return "no \"=\" behind the characters";
    const std::u16string from = take_characters(characters(line.substr(0, equals)));
    const std::u16string to = take_characters(characters(line.substr(equals + 1)));
    if (to.size() > 1) return "more than one character behind \"=\"";
    for (const char16_t c : from) letters[c] = to.empty() ? uint16_t{0} : uint16_t{to[0]};
    return "";
}

std::string fault_of_rule(std::u16string_view rule) {
    switch (rule[0]) {
    case u'%':
        if (rule.size() < 3 || rule[1] < u'0' || rule[1] > u'9' || rule[2] != u'=')
            return "a class is \"%\", a digit, \"=\" and its characters";
        return "";
    case u'^':
    case u'~':
        return rule.find(u'=') == rule.npos ? "no \"=\" behind the patterns" : "";
    default:
        return "a rule begins with \"~\", \"^\" or \"%\"";
    }
}

std::string number_text(uint16_t c) {
    char text[8];
    std::snprintf(text, sizeof text, "U+%04X", c);
    return text;
}

} // namespace

void read_letters(std::string_view text, const std::string &path, Letters &letters,
                  Mistakes &mistakes) {
    each_line(text, [&](std::string_view line, size_t number) {
        if (std::string fault = read_line(line, letters); !fault.empty())
            mistakes.push_back({path, number, std::move(fault)});
    });
}

std::string letters_text(const Letters &letters) {
    std::string text = "identity\n";
    for (const auto &[from, to] : letters)
        text += number_text(from) + "=" + (to ? number_text(to) : "") + "\n";
    return text;
}

std::u16string read_rules(std::string_view text, const std::string &path, Mistakes &mistakes) {
    std::u16string section;
    each_line(text, [&](std::string_view line, size_t number) {
        const std::u16string rule = characters(line);
        if (std::string fault = fault_of_rule(rule); !fault.empty())
            mistakes.push_back({path, number, std::move(fault)});
        else
            (section += rule) += u'\0';
    });
    if (!section.empty()) section += u'\0';
    return section;
}

std::string rules_text(std::u16string_view section) {
    std::string text;
    while (!section.empty() && section[0] != 0) {
        const std::u16string_view rule = section.substr(0, section.find(u'\0'));
        text += to_utf8(rule) + "\n";
        section.remove_prefix(std::min(rule.size() + 1, section.size()));
    }
    return text;
}

std::string read_keyboard(std::string_view text, const std::string &path, Mistakes &mistakes) {
    constexpr size_t largest = 1 << 20;
    const auto *const bytes = reinterpret_cast<const uint8_t *>(text.data());
    if (dictionary::keyboard_language({bytes, text.size()}).empty())
        mistakes.push_back({path, 1, "a layout begins with its language, as \"EN: English\""});
    if (text.size() > largest) mistakes.push_back({path, 1, "is no layout: larger than 1 MiB"});
    return std::string(text);
}

} // namespace dict
