// SPDX-License-Identifier: MIT
// Any bytes as a language file: every text of it can be looked up, and every lookup ends.
#include <cstdint>
#include <cstdlib>
#include <set>
#include <string>

#include "kelvane/languages.h"
#include "lang/language_file.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    LoadLanguage("none");
    std::set<std::string> keys;
    std::string bytes(data, data + size);
    lang::LanguageText text(bytes);
    if (text.take_name())
        text.take_translations([&](const char *key, const char *value) {
            AddTranslation(key, value);
            keys.insert(key);
        });
    for (const std::string &key : keys) {
        if (!GetLangText(key.c_str()) || !GetLangTextPlural(key.c_str(), 3)) std::abort();
        int depth = 0;
        GetLangTextR(key.c_str(), &depth);
        if (depth < 0 || depth > 10) std::abort();
    }
    return 0;
}
