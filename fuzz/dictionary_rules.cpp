// SPDX-License-Identifier: MIT
// Any bytes as sections of collation and morphology: a word that is searched has so many forms and
// no more, and the comparison is an order.
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "dictionary/collation.h"
#include "dictionary/morphology.h"
#include "dictionary_answers.h"

using namespace dictionary;

namespace {

int sign(int value) {
    return (value > 0) - (value < 0);
}

void check_order(const Collation &c, const std::string &a, const std::string &b) {
    const Word of_a = c.collate(a.c_str()), of_b = c.collate(b.c_str());
    const int expected = is_before(of_a, of_b) ? -1 : is_before(of_b, of_a) ? 1 : 0;
    fuzz::require(sign(c.order(a.c_str(), of_b)) == expected);
    fuzz::require(sign(c.order(b.c_str(), of_a)) == -expected);
    if (expected == 0) fuzz::require(c.start_order(a.c_str(), of_b) == 0);
    fuzz::require(c.difference(a.c_str(), a.c_str()) == 0);
    fuzz::require(c.difference(a.c_str(), b.c_str()) == c.difference(b.c_str(), a.c_str()));
}

} // namespace

// A byte with the length of a word, the word, a byte with the number of pairs, those, and rules.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const fuzz::QuietErrors quiet;
    const auto take = [&](size_t wanted) {
        const std::span<const uint8_t> taken(data, std::min(wanted, size));
        data += taken.size();
        size -= taken.size();
        return taken;
    };
    const auto length = take(1);
    const auto letters = take(length.empty() ? 0 : length[0]);
    const std::string word(letters.begin(), letters.end());
    const auto pairs = take(1);
    const auto collation = std::make_unique<Collation>();
    collation->apply(take(pairs.empty() ? 0 : 4 * size_t{pairs[0]}));
    check_order(*collation, word, word.substr(word.size() / 2));
    check_order(*collation, word.c_str(), std::string("dog"));
    const Morphology morphology({data, size}, *collation);
    size_t forms = 0;
    morphology.try_forms(collation->without_dropped(word.c_str()), *collation, [&](WordView form) {
        fuzz::require(!form.empty() && form.size() <= longest_form);
        return ++forms, false;
    });
    fuzz::require(forms <= most_forms);
    return 0;
}
