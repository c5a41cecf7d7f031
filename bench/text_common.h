// SPDX-License-Identifier: MIT
// The prose, font and folder that the text benchmarks share.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "internal.h"
#include "text/text.h"

constexpr int bench_font_size = 24, bench_width = 560;
constexpr const char *bench_font_file = "/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf";

enum class Language { english, russian };

inline std::string name_of(Language language) {
    return language == Language::english ? "english" : "russian";
}

// About `characters` characters of words in random order, in paragraphs of six sentences.
inline std::string prose(Language language, size_t characters) {
    static const std::vector<std::string_view> english = {
        "the",      "of",       "and",        "a",         "to",         "in",
        "he",       "was",      "that",       "it",        "his",        "her",
        "you",      "with",     "as",         "for",       "had",        "at",
        "not",      "on",       "but",        "be",        "they",       "were",
        "which",    "there",    "could",      "would",     "time",       "people",
        "water",    "through",  "before",     "little",    "never",      "morning",
        "without",  "another",  "Tom",        "You",       "Avenue",     "always",
        "kindness", "question", "remembered", "beautiful", "themselves", "understanding",
        "window",   "evening"};
    static const std::vector<std::string_view> russian = {"и",
                                                          "в",
                                                          "не",
                                                          "на",
                                                          "он",
                                                          "что",
                                                          "с",
                                                          "как",
                                                          "это",
                                                          "она",
                                                          "по",
                                                          "но",
                                                          "они",
                                                          "его",
                                                          "было",
                                                          "так",
                                                          "только",
                                                          "человек",
                                                          "время",
                                                          "когда",
                                                          "потом",
                                                          "сказал",
                                                          "перед",
                                                          "теперь",
                                                          "Он",
                                                          "Уже",
                                                          "Только",
                                                          "который",
                                                          "ничего",
                                                          "случай",
                                                          "комната",
                                                          "вечером",
                                                          "хорошо",
                                                          "спросила",
                                                          "несколько",
                                                          "понимаете",
                                                          "действительно",
                                                          "молчание",
                                                          "дорога",
                                                          "улыбнулся"};
    const auto &words = language == Language::english ? english : russian;
    std::mt19937 random(7);
    std::string text;
    size_t length = 0;
    for (int word = 1; length < characters; ++word) {
        const std::string_view next = words[random() % words.size()];
        const char *gap = word % 72 == 0   ? ".\n"
                          : word % 12 == 0 ? ". "
                          : word % 7 == 0  ? ", "
                                           : " ";
        text += next;
        text += gap;
        length += std::string_view(gap).size();
        for (const char byte : next) length += (byte & 0xC0) != 0x80;
    }
    return text;
}

// A working directory in which the default font is found.
inline void enter_bench_folder() {
    static const bool entered = [] {
        std::string name = "/tmp/kelvane-bench-XXXXXX";
        if (mkdtemp(name.data()) == nullptr) std::abort();
        std::filesystem::current_path(name);
        std::filesystem::create_directories("system/fonts");
        std::filesystem::create_symlink(bench_font_file, "system/fonts/DejaVuSans.ttf");
        std::atexit([] {
            std::error_code ignored;
            std::filesystem::remove_all(std::filesystem::current_path(), ignored);
        });
        kvstate.antialiasing = 1;
        return true;
    }();
    static_cast<void>(entered);
}

// The font, current for as long as it lives; its caches are empty at first.
struct BenchFont {
    ifont *font;
    BenchFont() {
        enter_bench_folder();
        text::reset(); // or the face would be kept as the one that others fall back to
        font = OpenFont("default", bench_font_size, 1);
        if (font == nullptr) std::abort();
        SetFont(font, BLACK);
    }
    ~BenchFont() { CloseFont(font); }
};
