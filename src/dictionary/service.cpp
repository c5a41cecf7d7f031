// SPDX-License-Identifier: MIT
// The interface to the dictionary that is open.
#include "kelvane/dictionary.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "dictionary/folders.h"
#include "dictionary/keyboard.h"
#include "dictionary/opened.h"
#include "ground/guard.h"

namespace dictionary {
namespace {

// Where results go; either may be null.
struct Results {
    char **headword, **translation;

    void put(const Entry &e) const {
        if (headword) *headword = e.headword;
        if (translation) *translation = e.translation;
    }
    void put_nothing() const {
        static char empty[1];
        empty[0] = '\0'; // whatever an application wrote there
        put({empty, empty});
    }
};

// Never destroyed: an application may ask while it ends.
std::unique_ptr<Opened> &current_dictionary = *new std::unique_ptr<Opened>;

// The one before is closed first: the memory of two is more than an application may expect.
bool open(const std::string &name) {
    CloseDictionary();
    const std::string path = find_path(name.c_str());
    if (path.empty()) {
        std::fprintf(stderr, "dictionary '%s' not found\n", name.c_str());
        return false;
    }
    file::Stream stream = file::open_plain(path.c_str());
    if (!stream) {
        std::fputs("couldn't open dictionary file\n", stderr);
        return false;
    }
    auto dictionary = Dictionary::open(std::move(stream));
    if (!dictionary) return false;
    put_keyboard(dictionary->take_keyboard());
    current_dictionary.reset(new Opened{name_of(path), std::move(dictionary)});
    return true;
}

// Makes a word the current one, if it can be read.
bool go_to(Position position, const Results &results) {
    const auto entry = opened()->dictionary->entry(position);
    if (!entry) return false;
    opened()->current = position;
    results.put(*entry);
    return true;
}

// Runs `search` on the dictionary that is open. What it finds goes to the results.
template <class Search>
int answer(Results results, Search search) {
    results.put_nothing();
    return ground::guarded(DICT_NONE, [&] {
        if (!opened()) return DICT_NONE;
        const std::optional<Match> match = search(*opened()->dictionary);
        if (!match || !go_to(match->position, results)) return DICT_NONE;
        return match->is_exact ? DICT_EXACT : DICT_NEAREST;
    });
}

int answer_step(Results results, Step step) {
    return answer(results, [&](Dictionary &d) -> std::optional<Match> {
        const auto beside = d.neighbour(opened()->current, step);
        return beside ? std::optional(Match{*beside, true}) : std::nullopt;
    });
}

} // namespace

Opened *opened() {
    return current_dictionary.get();
}

} // namespace dictionary

using namespace dictionary;

int OpenDictionary(const char *name) {
    return ground::guarded(0, [&] {
        if (name) return open(name) ? 1 : 0; // a copy: the name may lie in the one that is closed
        CloseDictionary();
        return 0;
    });
}

void CloseDictionary() {
    current_dictionary.reset();
}

int LookupWord(const char *word, char **headword, char **translation) {
    return answer({headword, translation}, [&](Dictionary &d) -> std::optional<Match> {
        if (!word) return Match{{}, true};
        const std::string kept = word; // it may lie in a container
        return d.find_form(kept.c_str());
    });
}

int LookupWordExact(const char *word, char **headword, char **translation) {
    return answer({headword, translation}, [&](Dictionary &d) -> std::optional<Match> {
        if (!word) return std::nullopt;
        const std::string kept = word;
        const auto match = d.find(kept.c_str());
        return match && match->is_exact ? match : std::nullopt;
    });
}

int LookupCurrent(char **headword, char **translation) {
    return answer({headword, translation}, [](Dictionary &) {
        return Match{opened()->current, true};
    });
}

int LookupNext(char **headword, char **translation) {
    return answer_step({headword, translation}, Step::next);
}

int LookupPrevious(char **headword, char **translation) {
    return answer_step({headword, translation}, Step::previous);
}
