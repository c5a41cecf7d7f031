// SPDX-License-Identifier: MIT
// Opens dictionaries and searches them.
#include "dictionary/dictionary.h"

#include <array>
#include <cstdio>
#include <string>

#include "dictionary/analysis.h"
#include "dictionary/keyboard.h"
#include "ground/utf8.h"

namespace dictionary {
namespace {

// What may be unpacked and walked over for the forms of one word, and unpacked for one list of
// words. Only files that were made to hurt reach these.
constexpr uint64_t most_for_forms = 64 << 20, most_for_list = 256 << 20;

std::string to_utf8(WordView word) {
    std::string text;
    for (const uint16_t c : word) text += utf8::encoded(c);
    return text;
}

void report_search(const char *word) {
    std::fprintf(stderr, "dictionary internal lookup: \"%s\"\n", word);
}

} // namespace

std::unique_ptr<Dictionary> Dictionary::open(file::Stream stream) {
    std::unique_ptr<Dictionary> d(new Dictionary(std::move(stream)));
    if (!d->file_.read_header()) {
        std::fputs("corrupted dictionary file or wrong version\n", stderr);
        return nullptr;
    }
    d->read_sections();
    if (d->index_.size() == 0) {
        std::fputs("corrupted dictionary index\n", stderr);
        return nullptr;
    }
    return d;
}

void Dictionary::read_sections() {
    using enum File::Packing;
    cache_ = Cache(file_.value(limit_field));
    if (const auto pairs = file_.read_section(collation_field, none)) collation_.apply(*pairs);
    if (const auto rules = file_.read_section(morphology_field, zlib))
        morphology_ = Morphology(*rules, collation_);
    if (auto layout = file_.read_section(keyboard_field, zlib)) keyboard_ = std::move(*layout);
    language_ = keyboard_language(keyboard_);
    if (const auto entries = file_.read_section(index_field, zlib))
        index_ = Index(*entries, file_.value(containers_field), collation_);
}

std::optional<Match> Dictionary::find(const char *word) {
    report_search(word);
    if (!*word) return std::nullopt;
    has_plug_in(); // which says whose rules apply
    return search(word);
}

std::optional<Match> Dictionary::find_form(const char *word) {
    report_search(word);
    if (!*word) return std::nullopt;
    if (!has_plug_in()) return search_forms(word);
    const auto analysed = analyse(word, language_.c_str());
    if (!analysed) return search(word);
    std::fprintf(stderr, "morpho result: \"%s\"\n", analysed->c_str());
    return search(analysed->c_str());
}

// The word; or the first of its forms that is there; or the nearest word to the first of all these
// that has one.
std::optional<Match> Dictionary::search_forms(const char *word) {
    std::optional<Match> best = search(word);
    if (best && best->is_exact) return best;
    const uint64_t limit = cache_.searched() + most_for_forms;
    morphology_.try_forms(collation_.without_dropped(word), collation_, [&](WordView form) {
        const std::string text = to_utf8(form);
        report_search(text.c_str());
        const auto match = search(text.c_str());
        if (match && (!best || match->is_exact)) best = match;
        return (match && match->is_exact) || cache_.searched() > limit;
    });
    return best;
}

// Whether the word that is searched comes after all of a container.
bool Dictionary::is_behind(Container &c) const {
    return c.size() == 0 || collation_.order(c.walk(c.size() - 1), collated_) < 0;
}

std::optional<Match> Dictionary::search(const char *word) {
    collated_.clear();
    collation_.append(word, collated_);
    if (collated_.empty() || is_before(collated_, index_.first_word(0))) return std::nullopt;
    size_t number = index_.find(collated_);
    Container *c = container(number);
    if (c && is_behind(*c)) c = ++number < index_.size() ? container(number) : nullptr;
    if (!c || c->size() == 0) return std::nullopt;
    const auto [record, is_exact] = c->find(word, collated_, collation_);
    const WordView first = WordView(collated_).first(1);
    if (collation_.start_order(c->walk(record), first) != 0) return std::nullopt;
    return Match{{number, record}, is_exact};
}

std::optional<Position> Dictionary::neighbour(Position from, Step step) {
    const Container *here = container(from.container);
    if (!here) return std::nullopt;
    if (step == Step::next && from.record + 1 < here->size())
        return Position{from.container, from.record + 1};
    if (step == Step::previous && from.record > 0) return Position{from.container, from.record - 1};
    const bool is_last =
        step == Step::next ? from.container + 1 >= index_.size() : from.container == 0;
    if (is_last) return std::nullopt;
    const size_t beside = step == Step::next ? from.container + 1 : from.container - 1;
    const Container *c = container(beside);
    if (!c || c->size() == 0) return std::nullopt;
    return Position{beside, step == Step::next ? 0 : c->size() - 1};
}

std::optional<Entry> Dictionary::entry(Position position) {
    const Container *c = container(position.container);
    if (!c || position.record >= c->size()) return std::nullopt;
    return c->entry(position.record);
}

void Dictionary::each_word(const char *prefix, const std::function<bool(const char *)> &put) {
    const Word start = collation_.collate(prefix);
    const uint64_t limit = cache_.unpacked() + most_for_list;
    const size_t first = index_.find_before(start);
    for (size_t i = first; i < index_.size(); ++i) {
        const Container *c = container(i);
        if (!c) return;
        for (size_t record = 0; record < c->size(); ++record) {
            const int order = collation_.start_order(c->headword(record), start);
            if (order < 0 && i == first) continue; // only there words come before the prefix
            if (order != 0 || !put(c->headword(record))) return;
        }
        if (cache_.unpacked() > limit) return;
    }
}

} // namespace dictionary
