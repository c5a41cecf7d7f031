// SPDX-License-Identifier: MIT
// The language files and the keyboards that come with the library.
#include <glib.h>
#include <gtest/gtest.h>
#include <set>
#include <sstream>

#include "kelvane/languages.h"
#include "lang/language_file.h"
#include "support/tempdir.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::map<std::string, std::string>;

const fs::path tree = SOURCE_DIR;

std::vector<fs::path> files_in(const fs::path &folder, const std::string &extension) {
    std::vector<fs::path> found;
    for (const auto &entry : fs::recursive_directory_iterator(tree / folder))
        if (entry.path().extension() == extension) found.push_back(entry.path());
    std::sort(found.begin(), found.end());
    EXPECT_FALSE(found.empty()) << folder;
    return found;
}

std::string read_valid(const fs::path &file) {
    std::string text = read_file(file);
    const auto size = static_cast<gssize>(text.size());
    EXPECT_TRUE(g_utf8_validate(text.data(), size, nullptr)) << file << " is not UTF-8";
    return text;
}

Texts read_texts(const fs::path &file) {
    std::string bytes = read_valid(file);
    Texts texts;
    lang::LanguageText text(bytes);
    EXPECT_NE(text.take_name(), nullptr) << file;
    text.take_translations([&](const char *key, const char *value) {
        EXPECT_TRUE(texts.emplace(key, value).second) << file << " has " << key << " twice";
        EXPECT_STRNE(value, "") << file << " has no text for " << key;
    });
    return texts;
}

// The first two groups of each match of a pattern.
using Found = std::pair<std::string, std::string>;
std::vector<Found> find_all(const std::string &text, const char *pattern) {
    std::vector<Found> found;
    g_autoptr(GRegex) regex =
        g_regex_new(pattern, GRegexCompileFlags{}, GRegexMatchFlags{}, nullptr);
    g_autoptr(GMatchInfo) match = nullptr;
    g_regex_match(regex, text.c_str(), GRegexMatchFlags{}, &match);
    for (; g_match_info_matches(match); g_match_info_next(match, nullptr)) {
        g_autofree char *first = g_match_info_fetch(match, 1);
        g_autofree char *second = g_match_info_fetch(match, 2);
        found.emplace_back(first ? first : "", second ? second : "");
    }
    return found;
}

// The keys in the sources; "@KA_..." are names of actions.
std::set<std::string> used_keys() {
    std::set<std::string> keys;
    for (const auto &file : files_in("src", ".cpp"))
        for (const auto &[key, none] : find_all(read_file(file), "\"(@(?!KA_)[A-Za-z]\\w*)\""))
            keys.insert(key);
    EXPECT_TRUE(keys.contains("@Error"));
    return keys;
}

std::string conversions(const std::string &text) {
    std::string all;
    for (const auto &[flags, letter] : find_all(text, "%([-+ #0-9.*hljzt]*)([A-Za-z%])"))
        all += flags + letter + " ";
    return all;
}

// What each form of a language stands for: how many of the first numbers.
std::map<std::string, int> forms_of(const std::string &code) {
    std::map<std::string, int> forms;
    for (int n = 0; n < 200; n++) forms[GetPluralKeySuffix(code.c_str(), n)]++;
    return forms;
}

void expect_translation(const Texts &texts, const std::string &key, const std::string &english) {
    const auto found = texts.find(key);
    ASSERT_NE(found, texts.end()) << key << " is missing";
    EXPECT_EQ(conversions(found->second), conversions(english)) << key;
}

// An English key with a second form has all forms of the language. One that stands for a single
// number may say it in words.
void expect_complete(const std::string &code, const Texts &texts, const Texts &english) {
    SCOPED_TRACE("data/language/" + code + ".txt");
    const auto forms = forms_of(code);
    std::set<std::string> expected;
    for (const auto &[key, text] : english) {
        if (key.ends_with("_2")) continue;
        if (!english.contains(key + "_2")) {
            expected.insert(key);
            expect_translation(texts, key, text);
        } else {
            for (const auto &[suffix, numbers] : forms) {
                const auto form = texts.find(key + suffix);
                expected.insert(key + suffix);
                const bool in_words =
                    form != texts.end() && numbers == 1 && conversions(form->second).empty();
                if (!in_words) expect_translation(texts, key + suffix, text);
            }
        }
    }
    for (const auto &[key, text] : texts)
        EXPECT_TRUE(expected.contains(key)) << key << " has no use";
}

std::vector<std::string> split(const std::string &text, char at) {
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, at);)
        if (at != ' ' || !part.empty()) parts.push_back(part);
    return parts;
}

size_t letters(const std::string &text) {
    return static_cast<size_t>(g_utf8_strlen(text.c_str(), -1));
}

// Reads a keyboard from its first line to its last.
class Keyboard {
  public:
    explicit Keyboard(const fs::path &file) : lines_(split(read_valid(file), '\n')) {}
    void expect_sections(const std::string &code) {
        ASSERT_FALSE(lines_.empty());
        EXPECT_EQ(g_ascii_strcasecmp(lines_[0].substr(0, 2).c_str(), code.c_str()), 0);
        for (int section = 0; next_ < lines_.size(); section++) {
            ASSERT_LT(section, 3);
            const std::string header = take();
            EXPECT_LE(header.size(), 63U);
            for (int block = 0; block < 2; block++) expect_block();
            if (header.find(':') == header.npos) continue;
            for (int layout = 0; layout < 3; layout++) expect_touch_layout();
        }
    }

  private:
    std::string take() {
        if (next_ == lines_.size()) ADD_FAILURE() << "the file ends too early";
        return next_ < lines_.size() ? lines_[next_++] : "--";
    }
    void expect_block() {
        for (size_t width : {11, 11, 9, 9, 9, 11}) {
            const std::string row = take();
            EXPECT_TRUE(letters(row) >= 3 && letters(row) <= width) << row;
        }
    }
    void expect_touch_layout() {
        constexpr const char *key = "^(spm|sp|bs|ok|cn|lg|sh|cl|nu|na|\\S)(?::([1-9]))?$";
        std::set<std::string> keys;
        int rows = 0, count = 0;
        for (std::string row = take(); !row.starts_with("--"); row = take(), rows++) {
            int width = 0;
            for (const std::string &token : split(row, ' ')) {
                const auto found = find_all(token, key);
                ASSERT_EQ(found.size(), 1U) << token << " in " << row;
                const auto &[name, units] = found[0];
                keys.insert(name);
                count++;
                width += units.empty() ? 1 : std::stoi(units);
            }
            EXPECT_LE(width, 16) << row;
        }
        EXPECT_TRUE(rows >= 1 && rows <= 7) << rows << " rows before line " << next_;
        EXPECT_LE(count, 84);
        for (const char *needed : {"bs", "ok", "nu", "lg", "spm"})
            EXPECT_TRUE(keys.contains(needed)) << needed << " before line " << next_;
    }

    std::vector<std::string> lines_;
    size_t next_ = 0;
};

} // namespace

TEST(DeviceData, EveryKeyHasATextInEveryLanguage) {
    const Texts english = read_texts(tree / "data/language/en.txt");
    for (const std::string &key : used_keys())
        EXPECT_TRUE(english.contains(key)) << "data/language/en.txt: " << key << " is missing";
    for (const auto &file : files_in("data/language", ".txt"))
        expect_complete(file.stem(), read_texts(file), english);

    Texts documented;
    for (const auto &[key, text] :
         find_all(read_file(tree / "docs/languages.md"), "\n\\| `(@\\w+)` \\| ([^|]*) \\|"))
        documented[key] = text;
    EXPECT_EQ(documented, english) << "docs/languages.md lists all keys";
}

TEST(DeviceData, KeyboardsHaveAllTheirRows) {
    for (const auto &file : files_in("data/keyboard", ".kbd")) {
        if (file.filename().string().starts_with('.')) continue; // of a kind of text
        SCOPED_TRACE(file.filename());
        Keyboard(file).expect_sections(file.stem());
    }
}
