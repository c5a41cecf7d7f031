// SPDX-License-Identifier: MIT
// Proves a dictionary of the device folder it runs in against lists that were sorted elsewhere.
//   prove NAME WORDS PREFIXES
// WORDS has the headwords in order, one a line. PREFIXES has a prefix, a tab, the number of the
// first word that starts with it, a tab and how many do, on each line.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

#include <kelvane/dictionary.h>

namespace {

size_t faults = 0;

void expect(bool holds, const std::string &what) {
    if (!holds && ++faults <= 20) std::printf("%s\n", what.c_str());
}

std::vector<std::string> lines_of(const char *path) {
    std::vector<std::string> lines;
    std::ifstream in(path);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// Every word by its own spelling, and the words beside it.
void prove_words(const std::vector<std::string> &words) {
    std::unordered_map<std::string, size_t> first; // of those that are spelt the same
    for (size_t i = 0; i < words.size(); ++i) first.try_emplace(words[i], i);
    for (const std::string &word : words) {
        const size_t at = first[word];
        char *found = nullptr, *article = nullptr;
        expect(LookupWordExact(word.c_str(), &found, &article) == DICT_EXACT && word == found,
               "not found: " + word);
        expect(LookupNext(&found, &article) == (at + 1 < words.size() ? DICT_EXACT : DICT_NONE) &&
                   (at + 1 == words.size() || words[at + 1] == found),
               "the next one is " + std::string(found) + ": " + word);
        if (at + 1 < words.size()) LookupPrevious(nullptr, nullptr);
        expect(LookupPrevious(&found, &article) == (at > 0 ? DICT_EXACT : DICT_NONE) &&
                   (at == 0 || words[at - 1] == found),
               "the previous one is " + std::string(found) + ": " + word);
    }
}

void prove_all_steps(const std::vector<std::string> &words) {
    char *found = nullptr;
    size_t at = 0;
    for (int result = LookupWord(nullptr, &found, nullptr); result == DICT_EXACT;
         result = LookupNext(&found, nullptr), ++at)
        expect(at < words.size() && words[at] == found, "another word in its place: " + words[at]);
    expect(at == words.size(), "the steps end early");
}

void prove_prefixes(const std::vector<std::string> &words, const std::vector<std::string> &lines) {
    for (const std::string &line : lines) {
        const size_t tab = line.find('\t');
        size_t begin = 0, count = 0, at = 0;
        std::istringstream(line.substr(tab)) >> begin >> count;
        char **const list = GetWordListWithPrefix(line.substr(0, tab).c_str());
        while (list[at] && at < count && words[begin + at] == list[at]) ++at;
        expect(at == count && !list[at], "another list for the prefix: " + line);
        freeWordsWithPrefix(list);
    }
}

} // namespace

int main(int count, char **arguments) {
    if (count != 4 || !OpenDictionary(arguments[1])) return 2;
    if (!std::freopen("/dev/null", "w", stderr)) return 2; // each look-up says a line
    const auto words = lines_of(arguments[2]), prefixes = lines_of(arguments[3]);
    prove_words(words);
    prove_all_steps(words);
    prove_prefixes(words, prefixes);
    std::printf("%zu words, %zu prefixes, %zu faults\n", words.size(), prefixes.size(), faults);
    return faults == 0 && !words.empty() ? 0 : 1;
}
