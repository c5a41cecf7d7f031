// SPDX-License-Identifier: MIT
// Translations: the interface that every area uses. Without a language file a key is its own text.
#pragma once

extern "C" {
// Makes `code` ("en", "de", ...) the language of the interface.
void LoadLanguage(const char *code);
// The translation of a key; the key itself when there is none. Owned by the library.
const char *GetLangText(const char *key);
}
