// SPDX-License-Identifier: MIT
// Makes the table of the default comparison from what Unicode says of each character.
#include "letters.h"

#include <algorithm>
#include <set>

#include <glib.h>

#include "ground/utf8.h"

namespace dict {
namespace {

// Letters with marks that are not taken off, in small letters, by language.
struct OwnLetters {
    std::string_view language, letters;
};
constexpr OwnLetters own_letters[] = {
    {"az", "çəğıöşü"},   {"be", "йў"},         {"bg", "й"},         {"bs", "čćđšž"},
    {"cs", "čďěňřšťůž"}, {"da", "æøå"},        {"eo", "ĉĝĥĵŝŭ"},    {"es", "ñ"},
    {"et", "äöüõšž"},    {"fi", "åäö"},        {"fo", "ðæø"},       {"hr", "čćđšž"},
    {"hu", "öőüű"},      {"is", "áðéíóúýþæö"}, {"lt", "ąčęėįšųūž"}, {"lv", "āčēģīķļņšūž"},
    {"mk", "ѓќј"},       {"nb", "æøå"},        {"nn", "æøå"},       {"no", "æøå"},
    {"pl", "ąćęłńóśźż"}, {"ro", "ăâîșț"},      {"ru", "й"},         {"sk", "áäčďéíĺľňóôŕšťúýž"},
    {"sl", "čšž"},       {"sq", "çë"},         {"sr", "čćđšžђћ"},   {"sv", "åäö"},
    {"tr", "çğıöşü"},    {"uk", "йїґ"}};

// Letters with a stroke, which Unicode does not take apart, and other forms of a letter.
constexpr std::pair<uint16_t, uint16_t> plain_letters[] = {
    {0xF8, 'o'},  {0x142, 'l'}, {0x111, 'd'},  {0x127, 'h'},
    {0x167, 't'}, {0x131, 'i'}, {0x3C2, 0x3C3}};

// Where the marks of scripts whose words are read without them lie. The signs of other scripts,
// such as the vowels of India or the voicing of Japanese, make other words.
constexpr std::pair<uint16_t, uint16_t> accents[] = {
    {0x300, 0x36F},   {0x483, 0x487},   {0x591, 0x5C7},  {0x610, 0x61A},
    {0x64B, 0x65F},   {0x670, 0x670},   {0x6D6, 0x6ED},  {0x1AB0, 0x1AFF},
    {0x1DC0, 0x1DFF}, {0x20D0, 0x20FF}, {0xFE20, 0xFE2F}};

constexpr unsigned first_wide = 0xFF01, last_wide = 0xFF5E, wide_offset = 0xFEE0;

bool is_accent(gunichar c) {
    const GUnicodeType type = g_unichar_type(c);
    return type == G_UNICODE_NON_SPACING_MARK && std::ranges::any_of(accents, [&](auto range) {
               return c >= range.first && c <= range.second;
           });
}

bool is_dropped(gunichar c) {
    switch (g_unichar_type(c)) {
    case G_UNICODE_CONNECT_PUNCTUATION:
    case G_UNICODE_DASH_PUNCTUATION:
    case G_UNICODE_OPEN_PUNCTUATION:
    case G_UNICODE_CLOSE_PUNCTUATION:
    case G_UNICODE_INITIAL_PUNCTUATION:
    case G_UNICODE_FINAL_PUNCTUATION:
    case G_UNICODE_OTHER_PUNCTUATION:
    case G_UNICODE_MODIFIER_SYMBOL:
    case G_UNICODE_FORMAT:
    case G_UNICODE_CONTROL:
        return true;
    default:
        return is_accent(c) || (c >= 0x2B0 && c <= 0x2FF); // modifier letters, as in dog\u02BCs
    }
}

bool is_blank(gunichar c) {
    return g_unichar_type(c) == G_UNICODE_SPACE_SEPARATOR || c == '\t' || c == '\n';
}

gunichar without_stroke(gunichar c) {
    const auto *const found =
        std::ranges::find(plain_letters, c, &std::pair<uint16_t, uint16_t>::first);
    return found != std::end(plain_letters) ? found->second : c;
}

// The letter under its marks, as far as they are not a part of one in `own`.
gunichar bare_letter(gunichar c, const std::set<gunichar> &own) {
    gunichar letter, mark;
    while (!own.contains(c) && g_unichar_decompose(c, &letter, &mark) && mark != 0 &&
           is_accent(mark))
        c = letter;
    return own.contains(c) ? c : without_stroke(c);
}

gunichar folded(gunichar c, const std::set<gunichar> &own) {
    if (c >= first_wide && c <= last_wide) c -= wide_offset;
    if (is_blank(c)) return ' ';
    if (is_dropped(c)) return 0;
    constexpr gunichar dotless_i = 0x131;
    if (c == 'I' && own.contains(dotless_i)) return dotless_i;
    return bare_letter(g_unichar_tolower(c), own);
}

std::set<gunichar> letters_of(std::string_view language) {
    std::set<gunichar> letters;
    for (const OwnLetters &own : own_letters) {
        if (own.language != language) continue;
        const char *s = own.letters.data(), *const end = s + own.letters.size();
        while (s < end) letters.insert(utf8::next(s, end));
    }
    return letters;
}

} // namespace

bool has_own_letters(std::string_view language) {
    return !letters_of(language).empty();
}

Letters default_letters(std::string_view language) {
    constexpr gunichar last = 0xFFFF;
    const std::set<gunichar> own = letters_of(language);
    Letters letters;
    for (gunichar c = 1; c <= last; ++c) {
        if (!g_unichar_isdefined(c)) continue;
        const gunichar as = folded(c, own);
        if (as != c && as <= last) letters[static_cast<uint16_t>(c)] = static_cast<uint16_t>(as);
    }
    return letters;
}

std::vector<std::pair<uint16_t, uint16_t>> pairs_of(const Letters &letters) {
    std::vector<std::pair<uint16_t, uint16_t>> pairs;
    for (const auto &[from, to] : letters)
        if (from != to) pairs.emplace_back(from, to);
    return pairs;
}

} // namespace dict
