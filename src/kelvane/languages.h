/* SPDX-License-Identifier: MIT */
/**
 * @file languages.h
 * Texts in the user's language.
 *
 * Each text that a user sees is looked up by a key, by custom a word behind an "@": "@Error". The
 * translations of a language stand in "./system/language/CODE.txt", and themes may add some. A
 * key without a translation stands for itself. The file format and the plural forms are described
 * in docs/languages.md.
 *
 * The texts that these functions return belong to the library, or are the caller's own key. They
 * stay valid until the next LoadLanguage(), or AddTranslation() of the same key.
 */
#ifndef KELVANE_LANGUAGES_H
#define KELVANE_LANGUAGES_H

#include "api.h"

KELVANE_BEGIN_DECLS

/**
 * Lists the languages that have a file, and makes the name of each in its own language the text of
 * its code: GetLangText("de") is "Deutsch" afterwards.
 * @return their codes in alphabetical order, ended by null, the library's until the next call; null
 *         when memory runs out
 */
KELVANE_API char **EnumLanguages(void);
/**
 * Replaces all translations by those of one language, or of English when it has no file; without
 * either, keys stand for themselves. What AddTranslation() added is dropped. A language that only a
 * folder of AddLanguageFolder() has is one, too: what that lacks is English.
 * @param code "en", "de", ...; null is ignored
 */
KELVANE_API void LoadLanguage(const char *code);
/** Adds one translation, or replaces it, until the next LoadLanguage(). Nulls are ignored. */
KELVANE_API void AddTranslation(const char *key, const char *text);

/**
 * An addition: loads an application's own texts, "PATH/CODE.txt" of the present language, now and
 * after each change of it. The file is as those of the device; its first line counts for nothing.
 * What the language lacks is taken from "PATH/en.txt". Such texts, in either language, come before
 * all of the device and its theme, and those of folders that were added later before those of
 * earlier ones; a text that AddTranslation() gets afterwards comes before all.
 *
 * When the language that was asked for last has no file of the device, and so is English, a folder
 * that has it makes it the present one.
 * @param path to be readable as long as the application runs; null is ignored, and so is a folder
 *             that is there already
 */
KELVANE_API void AddLanguageFolder(const char *path);
/** An addition: the code of the language that was loaded last, such as "en"; "" before the first.
 */
KELVANE_API const char *GetLanguage(void);

/**
 * The text for a key. A translation that is itself the "@" and name of another key leads on to that
 * key's text, through ten such steps at most; one that leads to a key without a translation is
 * returned as it is.
 * @return the text; @p key itself when there is none, null for null
 */
KELVANE_API const char *GetLangText(const char *key);
/** The text for a key as GetLangText() finds it, but it leads nowhere on. */
KELVANE_API const char *GetLangTextS(const char *key);
/** The text for a key of the language, not of English, else @p key itself. */
KELVANE_API const char *GetCurrentLangText(const char *key);
/**
 * GetLangText() from a certain step on.
 * @param depth the steps that were taken; it counts on, and is 10 when the text led to a key
 *              without a translation. Null counts as 0
 */
KELVANE_API const char *GetLangTextR(const char *key, int *depth);
/**
 * GetLangText() of a key that is made as by printf(3), of at most 1023 bytes.
 * @return as GetLangText(); a text that is its own key is overwritten by the next call. Null for
 *         null
 */
KELVANE_API const char *GetLangTextF(const char *format, ...) __attribute__((format(printf, 1, 2)));
/**
 * The text for a number of things: of the key with the suffix of GetPluralKeySuffix() for the
 * present language, else of @p key.
 */
KELVANE_API const char *GetLangTextPlural(const char *key, int n);
/**
 * What a key ends in for @p n things: "" for the first form, "_2" to "_6" for the others.
 * @param lang the language's code, in lower case; an unknown or null one has a single form
 * @return static
 */
KELVANE_API const char *GetPluralKeySuffix(const char *lang, int n);

/** 1 when the language is written from right to left. */
KELVANE_API int IsRTL(void);
/** Sets the direction of the open book: 0 left to right, 1 right to left, -1 as the language. */
KELVANE_API void SetRTLBook(int rtl);
/** The direction set by SetRTLBook(), else IsRTL(). */
KELVANE_API int IsBookRTL(void);

KELVANE_END_DECLS

#endif
