// SPDX-License-Identifier: MIT
// Which form of a text goes with a number, language by language.
#include <algorithm>
#include <iterator>
#include <string_view>

#include "kelvane/languages.h"

namespace {

using Rule = int (*)(int n);

// From..to among the last digit, but not among the teens.
bool ends_in(int n, int from, int to) {
    const int last = n % 10, last_two = n % 100;
    return last >= from && last <= to && (last_two <= 9 || last_two > 19);
}
bool ends_in_one(int n) {
    return n % 10 == 1 && n % 100 != 11;
}

int single(int) {
    return 0;
}
int one_other(int n) {
    return n == 1 ? 0 : 1;
}
int above_one(int n) {
    return n > 1 ? 1 : 0;
}
int arabic(int n) {
    if (n >= 0 && n <= 2) return n;
    const int last_two = n % 100;
    if (last_two >= 3 && last_two <= 10) return 3;
    return last_two >= 11 ? 4 : 5;
}
int east_slavic(int n) {
    if (ends_in_one(n)) return 0;
    return ends_in(n, 2, 4) ? 1 : 2;
}
int lithuanian(int n) {
    if (ends_in_one(n)) return 0;
    return ends_in(n, 2, 9) ? 1 : 2;
}
int czech(int n) {
    if (n == 1) return 0;
    return n >= 2 && n <= 4 ? 1 : 2;
}
int latvian(int n) {
    if (ends_in_one(n)) return 0;
    return n != 0 ? 1 : 2;
}
int macedonian(int n) {
    if (n % 10 == 1) return 0;
    return n % 10 == 2 ? 1 : 2;
}
int polish(int n) {
    if (n == 1) return 0;
    return ends_in(n, 2, 4) ? 1 : 2;
}
int romanian(int n) {
    if (n == 1) return 0;
    return n == 0 || (n % 100 >= 1 && n % 100 <= 19) ? 1 : 2;
}
int slovenian(int n) {
    const int last_two = n % 100;
    if (last_two == 1 || last_two == 2) return last_two - 1;
    return last_two == 3 || last_two == 4 ? 2 : 3;
}

struct Language {
    std::string_view code;
    Rule rule;
};

// Sorted by code. Chinese and Turkish go by the French rule.
constexpr Language languages[] = {
    {"am", one_other},   {"ar", arabic},      {"az", one_other},  {"be", east_slavic},
    {"bg", one_other},   {"cs", czech},       {"da", one_other},  {"de", one_other},
    {"el", one_other},   {"en", one_other},   {"es", one_other},  {"et", one_other},
    {"fi", one_other},   {"fr", above_one},   {"he", one_other},  {"hr", east_slavic},
    {"hu", one_other},   {"it", one_other},   {"ka", single},     {"kk", one_other},
    {"lt", lithuanian},  {"lv", latvian},     {"mk", macedonian}, {"nl", one_other},
    {"no", one_other},   {"pl", polish},      {"pt", one_other},  {"ro", romanian},
    {"ru", east_slavic}, {"sk", czech},       {"sl", slovenian},  {"sv", one_other},
    {"tr", above_one},   {"uk", east_slavic}, {"zh", above_one},
};

// An unknown language has one form.
Rule find_rule(std::string_view code) {
    const auto *found =
        std::lower_bound(std::begin(languages), std::end(languages), code,
                         [](const Language &l, std::string_view c) { return l.code < c; });
    return found != std::end(languages) && found->code == code ? found->rule : single;
}

} // namespace

const char *GetPluralKeySuffix(const char *lang, int n) {
    static constexpr const char *suffixes[] = {"", "_2", "_3", "_4", "_5", "_6"};
    return suffixes[find_rule(lang ? lang : "")(n)];
}
