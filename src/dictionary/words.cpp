// SPDX-License-Identifier: MIT
// Lists of words that start alike.
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "dictionary/opened.h"
#include "ground/guard.h"
#include "kelvane/dictionary.h"

namespace dictionary {
namespace {

constexpr size_t most_words = 1'000'000, most_text = 16 << 20;

// Words while a list grows: their texts, and where each begins.
struct Words {
    std::string text;
    std::vector<uint32_t> starts;

    // False when the list is full.
    bool add(std::string_view word) {
        if (starts.size() == most_words || word.size() >= most_text - text.size()) return false;
        starts.push_back(static_cast<uint32_t>(text.size()));
        text.append(word).push_back('\0');
        return true;
    }
};

// One block: the pointers, and the texts behind them.
char **in_one_block(const Words &words) {
    const size_t pointers = words.starts.size() + 1;
    auto **list = static_cast<char **>(std::malloc(pointers * sizeof(char *) + words.text.size()));
    if (!list) throw std::bad_alloc();
    char *const text = reinterpret_cast<char *>(list + pointers);
    std::memcpy(text, words.text.data(), words.text.size());
    for (size_t i = 0; i + 1 < pointers; ++i) list[i] = text + words.starts[i];
    list[pointers - 1] = nullptr;
    return list;
}

} // namespace
} // namespace dictionary

char **GetWordListWithPrefix(const char *prefix) {
    using namespace dictionary;
    return ground::guarded(nullptr, [&] {
        Words words;
        if (prefix && opened())
            opened()->dictionary->each_word(std::string(prefix).c_str(),
                                            [&](const char *word) { return words.add(word); });
        return in_one_block(words);
    });
}

void freeWordsWithPrefix(char **words) {
    std::free(words);
}
