// SPDX-License-Identifier: MIT
#include "lang/lang.h"

#include <cstdio>

#include "internal.h"

void LoadLanguage(const char *code) {
    if (code) std::snprintf(kvstate.locale, sizeof kvstate.locale, "%s", code);
}

const char *GetLangText(const char *key) {
    return key;
}
