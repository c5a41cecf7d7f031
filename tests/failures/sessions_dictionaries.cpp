// SPDX-License-Identifier: MIT
// A dictionary with everything in it: opened, searched, stepped through and listed.
#include <cstring>

#include "failures/sessions.h"
#include "kelvane/dictionary.h"
#include "support/dictionary_file.h"

namespace failures {
namespace {

class Dictionaries : public Session {
  public:
    Dictionaries() {
        dictionaries::install(dictionaries::file_of(
            {{{"cow", "Kuh"}, {"dog", "Hund"}}, {{"pony", "Pony"}}, {{"run", "laufen"}}},
            {"%1=n", "~ies=y", "~%1%1ing=%1"}, "EN: English\n"));
    }
    ~Dictionaries() override { CloseDictionary(); }

    bool run() override {
        char **const names = EnumDictionaries();
        bool all = names && names[0] && OpenDictionary("WORDS") == 1;
        all = finds("ponies", "pony") && finds("running", "run") && finds("dog", "dog") && all;
        char *next = nullptr;
        all = LookupNext(&next, nullptr) == DICT_EXACT && std::strcmp(next, "pony") == 0 && all;
        char **const list = GetWordListWithPrefix("d");
        all = list && list[0] && all;
        freeWordsWithPrefix(list);
        return all;
    }

  private:
    static bool finds(const char *word, const char *wanted) {
        char *found = nullptr, *translation = nullptr;
        return LookupWord(word, &found, &translation) == DICT_EXACT &&
               std::strcmp(found, wanted) == 0;
    }

    const TempDir dir_;
};

constexpr Area areas_here[] = {{"Dictionaries", make<Dictionaries>}};

} // namespace

constinit const std::span<const Area> dictionary_areas = areas_here;

} // namespace failures
