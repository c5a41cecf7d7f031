/* SPDX-License-Identifier: MIT */
/**
 * @file dictionary.h
 * Dictionaries: words looked up in a compact file, and the words around them.
 *
 * Dictionaries are the files that end in ".dic" in "./system/dictionaries",
 * "./system/mnt/ext1/dictionaries" and "./system/mnt/ext2/dictionaries". One is open at a time, and
 * has a current word: the first one after opening, later the last that was found or stepped to.
 *
 * Words are compared as the dictionary says, usually without regard to case, accents and
 * punctuation. What is reported goes to standard error, as it is written in docs/dictionaries.md.
 *
 * Headwords and translations are the library's, valid until the next call of this header. Where a
 * result is not wanted, its place may be null. A dictionary that is damaged finds less; nothing in
 * it can do harm.
 */
#ifndef KELVANE_DICTIONARY_H
#define KELVANE_DICTIONARY_H

#include "api.h"

KELVANE_BEGIN_DECLS

/** What look-ups answer. */
enum {
    DICT_NONE = 0,    /**< nothing was found, or no dictionary is open */
    DICT_NEAREST = 1, /**< the nearest word that follows */
    DICT_EXACT = 2    /**< the word itself, but for what the dictionary does not tell apart */
};

/** @name Opening
 * @{ */
/**
 * The names of all dictionaries, read anew: file names without ".dic", sorted by kv_strcasecmp().
 * Of names that differ only in case the one of the last folder stays.
 * @return the library's list, ended by null, valid until the next call; null when memory runs out
 */
KELVANE_API char **EnumDictionaries(void);
/**
 * Closes the open dictionary and opens another. A keyboard layout that comes with it is written to
 * "./system/tmp/dictionary.kbd"; without one that file is removed.
 * @param name as EnumDictionaries() has it, in any case of letters
 * @return 1; 0 when there is none of that name, it cannot be read, or for null, and none is open
 */
KELVANE_API int OpenDictionary(const char *name);
/** Closes the open dictionary, if any. */
KELVANE_API void CloseDictionary(void);
/** @} */

/** @name Looking up
 * On 0 both results are empty texts, and the current word is as before.
 * @{ */
/**
 * Finds a word; when there is none, a form of it by the dictionary's rules ("ponies": "pony"); when
 * there is none, the nearest word that follows and begins with the same character.
 * @param word null is the dictionary's first word, with the result #DICT_EXACT
 * @return #DICT_EXACT, #DICT_NEAREST or #DICT_NONE
 */
KELVANE_API int LookupWord(const char *word, char **headword, char **translation);
/** Finds a word and nothing else. @return #DICT_EXACT or #DICT_NONE, the latter also for null */
KELVANE_API int LookupWordExact(const char *word, char **headword, char **translation);
/** The current word. @return #DICT_EXACT or #DICT_NONE */
KELVANE_API int LookupCurrent(char **headword, char **translation);
/** Steps to the next word. @return #DICT_EXACT; #DICT_NONE behind the last word */
KELVANE_API int LookupNext(char **headword, char **translation);
/** Steps to the previous word. @return #DICT_EXACT; #DICT_NONE before the first word */
KELVANE_API int LookupPrevious(char **headword, char **translation);
/** @} */

/** @name Lists of words
 * @{ */
/**
 * The words that start with a prefix, as the dictionary compares words, in their own spelling and
 * in the order of the dictionary. A prefix of which the comparison leaves nothing starts all words.
 * A list ends at 1,000,000 words, at 16 MiB of text, or when 256 MiB were unpacked for it.
 * @return a list ended by null, for freeWordsWithPrefix(); empty when there is no such word, for
 *         null and without a dictionary; null when memory runs out
 */
KELVANE_API char **GetWordListWithPrefix(const char *prefix);
/** Frees a list. Null does nothing. */
KELVANE_API void freeWordsWithPrefix(char **words);
/** @} */

KELVANE_END_DECLS

#endif
