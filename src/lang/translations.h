// SPDX-License-Identifier: MIT
// The translations of the present language, for those who add to them or forget them.
#pragma once

#include <string>

namespace lang {

// Adds a text as AddTranslation() does, but one of that key that was handed out before stays valid
// until the next LoadLanguage(). Throws bad_alloc.
void add_translation(const char *key, const char *text);

// The code of the language that was asked for last; empty before the first.
const std::string &language();

// Forgets the language: every key stands for itself.
void reset();

} // namespace lang
