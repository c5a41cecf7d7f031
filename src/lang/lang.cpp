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
    TextTable own, own_english;       // the texts of those folders
    std::string wanted;               // the language that was asked for last
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
lang::Direction read_own_texts(TextTable &table, const std::string &from, const char *code) {
    LanguageFile file = read_language(code, from);
    std::span<char> bytes = file.bytes;
    constexpr std::string_view byte_order_mark = "\xEF\xBB\xBF";
    if (std::string_view(file.bytes).starts_with(byte_order_mark))
        bytes = bytes.subspan(byte_order_mark.size());
    return lang::LanguageText(bytes).take_translations(
        [&](const char *key, const char *text) { add_to(table, key, text); });
}

lang::Direction load_own_texts(const std::string &from) {
    read_own_texts(texts.own_english, from, english_code);
    return read_own_texts(texts.own, from, kvstate.locale);
}

bool is_own_language(const std::string &code, const std::string &from) {
    const bool is_code = code.size() < sizeof kvstate.locale && code.find('/') == code.npos;
    return is_code && read_language(code, from).found;
}

void set_language(const std::string &code) {
    std::snprintf(kvstate.locale, sizeof kvstate.locale, "%s", code.c_str());
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

const char *find_current(const char *key) {
    const char *text = texts.own.empty() ? nullptr : ground::find_text(texts.own, key);
    return text ? text : ground::find_text(texts.current, key);
}

// The application's own, then the device's; in the language, then in English. Null when there is no
// translation.
const char *find_translation(const char *key) {
    for (const TextTable *own : {&texts.own, &texts.own_english})
        if (const char *text = own->empty() ? nullptr : ground::find_text(*own, key)) return text;
    const char *const text = ground::find_text(texts.current, key);
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

const std::string &language() {
    return texts.wanted;
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
        texts.wanted = code; // first: the code may be a text of the table
        LanguageFile file = find_language(texts.wanted.c_str());
        const bool is_own =
            file.code != texts.wanted && std::ranges::any_of(texts.folders, [](const auto &own) {
                return is_own_language(texts.wanted, own);
            });
        for (TextTable *table : {&texts.current, &texts.own, &texts.own_english}) table->clear();
        texts.replaced.clear();
        set_language(is_own ? texts.wanted : file.code);
        texts.is_rtl = fill(texts.current, file, file.code) == lang::Direction::right_to_left;
        if (file.found && !texts.english) {
            // The first language that is loaded goes by the name that English gives itself.
            LanguageFile english = read_language(english_code);
            fill(texts.english.emplace(), english, file.code);
        }
        for (const std::string &own : texts.folders)
            if (load_own_texts(own) == lang::Direction::right_to_left && is_own)
                texts.is_rtl = true;
    });
}

void AddLanguageFolder(const char *path) {
    // What was read before memory ran out stays.
    ground::guarded([&] {
        if (!path || std::ranges::find(texts.folders, path) != texts.folders.end()) return;
        texts.folders.emplace_back(path);
        const bool is_found = texts.wanted != kvstate.locale && is_own_language(texts.wanted, path);
        if (is_found) set_language(texts.wanted);
        if (load_own_texts(path) == lang::Direction::right_to_left && is_found) texts.is_rtl = true;
    });
}

const char *GetLanguage() {
    return kvstate.locale;
}

void AddTranslation(const char *key, const char *text) {
    // The key stays without a translation.
    ground::guarded([&] {
        if (!key || !text) return;
        set_text(texts.current, key, text);
        for (TextTable *own : {&texts.own, &texts.own_english})
            if (const auto former = own->find(std::string_view(key)); former != own->end())
                own->erase(former);
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
    const char *text = find_current(key);
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
