// SPDX-License-Identifier: MIT
// Upper case by the table of letters of the C library, whatever the locale of the process.
#include "ground/letter_case.h"

#include <clocale>
#include <cstring>
#include <cwchar>
#include <cwctype>
#include <locale.h>

namespace ground {
namespace {

// The C library's own table of letters. Where there is none, ASCII alone has capitals.
locale_t utf8_letters() {
    static const locale_t letters = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return letters;
}

class LocaleScope {
  public:
    explicit LocaleScope(locale_t locale) : old_(uselocale(locale)) {}
    ~LocaleScope() { uselocale(old_); }
    LocaleScope(const LocaleScope &) = delete;
    LocaleScope &operator=(const LocaleScope &) = delete;

  private:
    locale_t old_;
};

} // namespace

std::string upper_case(const char *utf8) {
    const LocaleScope scope(utf8_letters());
    std::string out;
    std::mbstate_t in_state{}, out_state{};
    for (const char *end = utf8 + std::strlen(utf8); utf8 < end;) {
        wchar_t letter;
        const size_t bytes =
            std::mbrtowc(&letter, utf8, static_cast<size_t>(end - utf8), &in_state);
        if (bytes > 4) { // not UTF-8
            in_state = {};
            out += *utf8++;
            continue;
        }
        char buffer[16];
        const wchar_t capital = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(letter)));
        out.append(buffer, std::wcrtomb(buffer, capital, &out_state));
        utf8 += bytes;
    }
    return out;
}

} // namespace ground
