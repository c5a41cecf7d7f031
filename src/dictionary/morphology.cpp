// SPDX-License-Identifier: MIT
// Reads morpheme rules and tries them on words.
#include "dictionary/morphology.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>

#include "dictionary/format.h"
#include "ground/utf8.h"

namespace dictionary {
namespace {

constexpr size_t classes = 10;
constexpr uint16_t class_mark = '%', at_beginning = '^', at_end = '~';
constexpr size_t longest_list = 0xFFFF; // of patterns, and of variants

// The class that stands at the front of a part of a rule.
std::optional<size_t> class_at(WordView part) {
    if (part.size() < 2 || part[0] != class_mark || part[1] < '0' || part[1] > '9')
        return std::nullopt;
    return part[1] - size_t{'0'};
}

// What of a pattern stands for one character of a word: a character, or a class of them.
struct Element {
    std::optional<size_t> number;
    uint16_t character = 0; // collated
};

// Takes the first element off a pattern, but for characters that are dropped; nothing at its end.
std::optional<Element> take_element(WordView &pattern, const Collation &collation) {
    while (!pattern.empty()) {
        const Element e{class_at(pattern), collation.of(pattern[0])};
        pattern = pattern.subspan(e.number ? 2 : 1);
        if (e.number || e.character != 0) return e;
    }
    return std::nullopt;
}

size_t count_elements(WordView pattern, const Collation &collation) {
    size_t count = 0;
    while (take_element(pattern, collation)) ++count;
    return count;
}

} // namespace

// A word while rules are tried on it.
struct Morphology::Attempt {
    WordView word;
    const Collation &collation;
    const std::function<bool(WordView)> &found;
    size_t tried = 0;
    WordView rest{};                   // of the word, without what the pattern stands for
    std::array<Word, classes> taken{}; // by each class of the pattern, in order
    Word form{};

    void append(WordView variant);
};

// A class stands for what the same class of the pattern took, the second time for what that took
// the second time.
void Morphology::Attempt::append(WordView variant) {
    std::array<size_t, classes> used{};
    while (!variant.empty()) {
        const auto number = class_at(variant);
        const bool is_taken = number && used[*number] < taken[*number].size();
        form.push_back(is_taken ? taken[*number][used[*number]++] : variant[0]);
        variant = variant.subspan(is_taken ? 2 : 1);
    }
}

Morphology::Morphology(std::span<const uint8_t> section, const Collation &collation) {
    text_.resize(std::min(section.size(), most_morphology_bytes) / 2);
    for (size_t i = 0; i < text_.size(); ++i) text_[i] = read_u16(&section[2 * i]);
    WordView rest = text_;
    for (size_t strings = 0; strings < most_strings && !rest.empty() && rest[0] != 0; ++strings) {
        const auto length = static_cast<size_t>(std::ranges::find(rest, 0) - rest.begin());
        read_string(rest.first(length), collation);
        rest = rest.subspan(std::min(length + 1, rest.size()));
    }
}

void Morphology::read_string(WordView string, const Collation &collation) {
    if (string[0] == class_mark)
        define_class(string, collation);
    else if (string[0] == at_beginning || string[0] == at_end)
        add_rule(string);
    else
        std::fprintf(stderr, "unknown morphem type '%s'\n", utf8::encoded(string[0]).c_str());
}

void Morphology::define_class(WordView string, const Collation &collation) {
    const auto number = class_at(string);
    if (!number || string.size() < 3 || string[2] != '=') return;
    classes_.resize(classes);
    classes_[*number].reset();
    for (const uint16_t c : string.subspan(3)) classes_[*number].set(collation.of(c));
}

// The number of the first part behind those of a list.
uint32_t Morphology::add_parts(WordView list) {
    for (size_t count = 0; count < longest_list && parts_.size() < most_parts; ++count) {
        const auto slash = std::ranges::find(list, '/');
        const auto size = static_cast<uint32_t>(slash - list.begin());
        parts_.push_back({static_cast<uint32_t>(list.data() - text_.data()), size});
        if (slash == list.end()) break;
        list = list.subspan(size + 1);
    }
    return static_cast<uint32_t>(parts_.size());
}

void Morphology::add_rule(WordView string) {
    const auto equals = std::ranges::find(string, '=');
    if (equals == string.end()) return; // leads nowhere
    const auto left = static_cast<size_t>(equals - string.begin());
    Rule rule{static_cast<uint32_t>(parts_.size()), 0, 0, string[0] == at_end};
    rule.first_variant = add_parts(string.subspan(1, left - 1));
    rule.end = add_parts(string.subspan(left + 1));
    rules_.push_back(rule);
}

// Whether a pattern stands at its end of the word; then the attempt knows the rest.
bool Morphology::match(WordView pattern, bool is_at_end, Attempt &a) const {
    const size_t count = count_elements(pattern, a.collation);
    // A pattern of which the comparison leaves nothing stands for nothing.
    if (count > a.word.size() || (count == 0 && !pattern.empty())) return false;
    const size_t kept = a.word.size() - count;
    a.rest = is_at_end ? a.word.first(kept) : a.word.subspan(count);
    for (Word &characters : a.taken) characters.clear();
    for (const uint16_t c : is_at_end ? a.word.subspan(kept) : a.word.first(count)) {
        const Element e = *take_element(pattern, a.collation);
        const uint16_t collated = a.collation.of(c);
        const bool fits = e.number ? !classes_.empty() && classes_[*e.number].test(collated)
                                   : e.character == collated;
        if (!fits) return false;
        if (e.number) a.taken[*e.number].push_back(c);
    }
    return true;
}

// True when the search is over.
bool Morphology::try_rule(const Rule &rule, Attempt &a) const {
    for (uint32_t p = rule.first_pattern; p < rule.first_variant; ++p) {
        if (!match(text(parts_[p]), rule.is_at_end, a)) continue;
        for (uint32_t v = rule.first_variant; v < rule.end; ++v) {
            if (++a.tried > most_forms) return true;
            const WordView variant = text(parts_[v]);
            if (variant.size() > longest_form) continue;
            a.form.clear();
            if (rule.is_at_end) a.form.assign(a.rest.begin(), a.rest.end());
            a.append(variant);
            if (!rule.is_at_end) a.form.insert(a.form.end(), a.rest.begin(), a.rest.end());
            if (!a.form.empty() && a.form.size() <= longest_form && a.found(a.form)) return true;
        }
    }
    return false;
}

void Morphology::try_forms(WordView word, const Collation &collation,
                           const std::function<bool(WordView)> &found) const {
    if (word.size() > longest_form) return;
    Attempt attempt{word, collation, found};
    for (const Rule &rule : rules_)
        if (try_rule(rule, attempt)) return;
}

} // namespace dictionary
