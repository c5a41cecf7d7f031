// SPDX-License-Identifier: MIT
// The language that is set, its texts, and those that applications and themes add.
#include "kelvane/languages.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <forward_list>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "file/stream.h"
#include "ground/guard.h"
#include "ground/lines.h"
#include "ground/text_table.h"
#include "hw.h"
#include "internal.h"
#include "kelvane/files.h"
#include "lang/language_file.h"
#include "lang/translations.h"

namespace {

using ground::set_text;
using ground::TextTable;

constexpr const char *folder = "./system/language";
constexpr const char *english_code = "en";
constexpr char prefix = '@';
constexpr int most_steps = 10;
constexpr size_t key_buffer = 1024;

struct Texts {
    TextTable current; // of the language, the names of languages, those of themes
    std::forward_list<TextTable::node_type> replaced; // that somebody may still hold
    std::optional<TextTable> english; // made by the first LoadLanguage() that finds a file
    std::vector<std::string> folders; // of the application's own texts
    TextTable own_english;            // the texts of those folders
    bool is_rtl = false;
    int book_rtl = -1; // -1: as the language
};

// Never destroyed: an application may ask while it ends.
Texts &texts = *new Texts;

// A language's file as it is; empty when it cannot be read. More than any language has is not read.
struct LanguageFile {
    std::string code;
    std::string bytes;
    bool found = false;
};

LanguageFile read_language(std::string code, const std::string &from = folder) {
    constexpr size_t most_bytes = 8 << 20;
    LanguageFile read{std::move(code), {}};
    const std::string path = from + "/" + read.code + ".txt";
    const file::Stream in = file::open_plain(path.c_str());
    if (!in) return read;
    read.found = true;
    for (size_t size = 0; size < most_bytes;) {
        read.bytes.resize(size + (1 << 16));
        const size_t got = kv_fread(&read.bytes[size], 1, 1 << 16, in.get());
        read.bytes.resize(size += got);
        if (got == 0) break;
    }
    return read;
}

LanguageFile find_language(const char *code) {
    LanguageFile file = read_language(code);
    // Storage that has only just appeared answers the second time.
    if (!file.found && !hw_safemode()) file = read_language(code);
    return file.found ? file : read_language(english_code);
}

// Fills a table; the name that the file gives itself is a text of the current table.
lang::Direction fill(TextTable &table, LanguageFile &file, const std::string &code) {
    lang::LanguageText text(file.bytes);
    const char *name = text.take_name();
    if (!name) return lang::Direction::left_to_right;
    set_text(texts.current, code, name);
    return text.take_translations(
        [&](const char *key, const char *value) { set_text(table, key, value); });
}

// A text of that key that was handed out before stays valid.
void add_to(TextTable &table, const char *key, const char *text) {
    const auto former = table.find(std::string_view(key));
    if (former != table.end()) {
        if (former->second == text) return;
        texts.replaced.emplace_front();
        texts.replaced.front() = table.extract(former);
    }
    table.emplace(key, text);
}

// What an application says in one language. The line of the name may be missing.
template <class Add>
void read_own_texts(const std::string &from, const char *code, Add add) {
    LanguageFile file = read_language(code, from);
    std::span<char> bytes = file.bytes;
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    if (std::string_view(file.bytes).starts_with(byte_order_mark))
        bytes = bytes.subspan(byte_order_mark.size());
    lang::LanguageText(bytes).take_translations(add);
}

void load_own_texts(const std::string &from) {
    read_own_texts(from, english_code,
                   [](const char *key, const char *text) { add_to(texts.own_english, key, text); });
    read_own_texts(from, kvstate.locale, lang::add_translation);
}

bool is_word(const char *text) {
    const auto is_letter_or_digit = [](char c) {
        const int lower = c | 0x20;
        return (c >= '0' && c <= '9') || (lower >= 'a' && lower <= 'z');
    };
    while (is_letter_or_digit(*text) || *text == '_') text++;
    return !*text;
}

// The key that a text leads on to, which is the text itself or what `trimmed` gets; else null.
const char *target_of(const char *text, std::string &trimmed) {
    if (is_word(text + 1)) return text;
    trimmed = ground::trim_right(text, [](char c) { return static_cast<signed char>(c) <= ' '; });
    return is_word(trimmed.c_str() + 1) ? trimmed.c_str() : nullptr;
}

// In the language, then in English; null when there is no translation.
const char *find_translation(const char *key) {
    const char *text = ground::find_text(texts.current, key);
    if (!text && !texts.own_english.empty()) text = ground::find_text(texts.own_english, key);
    return text || !texts.english ? text : ground::find_text(*texts.english, key);
}

// Null for a key without a translation. A text that leads, at whatever step, to such a key is taken
// as it is.
const char *look_up(const char *key, int &depth) {
    const char *const first = find_translation(key);
    const char *text = first;
    std::string trimmed;
    while (text && *text == prefix && std::strcmp(text, key) != 0) {
        const char *target = depth < most_steps ? target_of(text, trimmed) : nullptr;
        if (!target) return text;
        depth++;
        key = target;
        text = find_translation(key);
    }
    if (text && *text != prefix) return text;
    if (*key == prefix) depth = most_steps;
    return first;
}

} // namespace

namespace lang {

void add_translation(const char *key, const char *text) {
    add_to(texts.current, key, text);
}

void reset() {
    texts = {};
}

} // namespace lang

char **EnumLanguages(void) {
    return ground::guarded(nullptr, [&]() -> char ** {
        static char **codes = nullptr;
        kv_enum_files(&codes, folder, nullptr, nullptr, "txt", 1);
        for (char **code = codes; code && *code; code++) {
            LanguageFile file = read_language(*code);
            lang::LanguageText text(file.bytes);
            if (const char *name = text.take_name()) lang::add_translation(*code, name);
        }
        return codes;
    });
}

void LoadLanguage(const char *code) {
    // What was read before memory ran out stays.
    ground::guarded([&] {
        if (!code) return;
        LanguageFile file = find_language(code); // first: the code may be a text of the table
        texts.current.clear();
        texts.replaced.clear();
        std::snprintf(kvstate.locale, sizeof kvstate.locale, "%s", file.code.c_str());
        texts.is_rtl = fill(texts.current, file, file.code) == lang::Direction::right_to_left;
        if (file.found && !texts.english) {
            // The first language that is loaded goes by the name that English gives itself.
            LanguageFile english = read_language(english_code);
            fill(texts.english.emplace(), english, file.code);
        }
        for (const std::string &own : texts.folders) load_own_texts(own);
    });
}

void AddLanguageFolder(const char *path) {
    // What was read before memory ran out stays.
    ground::guarded([&] {
        if (!path || std::ranges::find(texts.folders, path) != texts.folders.end()) return;
        texts.folders.emplace_back(path);
        load_own_texts(texts.folders.back());
    });
}

const char *GetLanguage() {
    return kvstate.locale;
}

void AddTranslation(const char *key, const char *text) {
    // The key stays without a translation.
    ground::guarded([&] {
        if (key && text) set_text(texts.current, key, text);
    });
}

const char *GetLangText(const char *key) {
    return GetLangTextR(key, nullptr);
}

const char *GetLangTextR(const char *key, int *depth) {
    return ground::guarded_or(
        [&]() -> const char * {
            if (!key) return nullptr;
            int own_depth = 0;
            const char *text = look_up(key, depth ? *depth : own_depth);
            return text ? text : key;
        },
        [&]() -> const char * { return GetLangTextS(key); });
}

const char *GetLangTextS(const char *key) {
    if (!key) return nullptr;
    const char *text = find_translation(key);
    return text ? text : key;
}

const char *GetCurrentLangText(const char *key) {
    if (!key) return nullptr;
    const char *text = ground::find_text(texts.current, key);
    return text ? text : key;
}

const char *GetLangTextF(const char *format, ...) {
    if (!format) return nullptr;
    char key[key_buffer];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(key, sizeof key, format, arguments);
    va_end(arguments);
    const char *text = GetLangText(key);
    if (text != key) return text;
    static char kept[key_buffer]; // an argument may lie in it, so nothing is formatted there
    std::snprintf(kept, sizeof kept, "%s", key);
    return kept;
}

const char *GetLangTextPlural(const char *key, int n) {
    if (!key) return nullptr;
    static char form[key_buffer];
    std::snprintf(form, sizeof form, "%s%s", key, GetPluralKeySuffix(kvstate.locale, n));
    const char *text = GetLangText(form);
    return std::strcmp(text, form) == 0 ? GetLangText(key) : text;
}

int IsRTL(void) {
    return texts.is_rtl;
}

void SetRTLBook(int rtl) {
    texts.book_rtl = rtl;
}

int IsBookRTL(void) {
    return texts.book_rtl == -1 ? IsRTL() : texts.book_rtl;
}
