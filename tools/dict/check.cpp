// SPDX-License-Identifier: MIT
// kelvane-dict check: whether every word of a dictionary can be found.
#include <algorithm>
#include <cstdio>
#include <string>

#include "commands.h"
#include "contents.h"
#include "dictionary/morphology.h"

namespace dict {
namespace {

using namespace dictionary;

// Walks all words and counts what is wrong.
class Checker {
  public:
    Checker(std::string path, Contents &contents) : path_(std::move(path)), contents_(contents) {}

    bool run() {
        if (contents_.index.size() == 0) fault("corrupted dictionary index");
        if (!contents_.damaged.empty()) fault("sections are damaged:" + contents_.damaged);
        const Morphology rules(contents_.rules, contents_.collation); // says what it has to say
        contents_.each_container([this](size_t number, Container *c) { visit(number, c); });
        std::printf("%s: %zu words in %zu containers, %zu faults\n", path_.c_str(), words_,
                    contents_.index.size(), faults_);
        return faults_ == 0;
    }

  private:
    void fault(const std::string &what) {
        constexpr size_t most_named = 20;
        if (++faults_ <= most_named) std::fprintf(stderr, "%s: %s\n", path_.c_str(), what.c_str());
    }
    void fault(size_t container, const std::string &what) {
        fault("container " + std::to_string(container) + ": " + what);
    }

    void visit(size_t number, Container *c) {
        if (c && c->is_damaged())
            fault(number, "is damaged behind record " + std::to_string(c->size()));
        if (!c || c->size() == 0) return fault(number, c ? "has no words" : "cannot be unpacked");
        words_ += c->size();
        Word first = contents_.collation.collate(c->headword(0));
        if (!std::ranges::equal(first, contents_.index.first_word(number)))
            fault(number, "does not begin with the word that the index says");
        if (!before_.empty() && std::ranges::equal(before_, first))
            fault(number, std::string("parts words that compare equal: ") + c->headword(0));
        for (size_t i = 0; i < c->size(); ++i) visit_word(number, c->headword(i));
    }

    void visit_word(size_t container, const char *headword) {
        Word word = contents_.collation.collate(headword);
        if (word.empty()) fault(container, std::string("cannot be found: ") + headword);
        if (is_before(word, before_)) fault(container, std::string("out of order: ") + headword);
        before_ = std::move(word);
    }

    std::string path_;
    Contents &contents_;
    Word before_;
    size_t words_ = 0, faults_ = 0;
};

} // namespace

int check(const std::filesystem::path &path) {
    const auto contents = read_contents(path);
    return contents && Checker(path.string(), *contents).run() ? STATUS_FINE : STATUS_FAILED;
}

} // namespace dict
