/* SPDX-License-Identifier: MIT */
/**
 * @file dictionary_view.h
 * What a word means, over the page on which it stands: the dictionary with its list of words, or a
 * small box beside the word.
 *
 * Both show the dictionary that is open (OpenDictionary()), else the one that the user chose last,
 * which the setting "dictionary" of the global configuration names, else the first of
 * EnumDictionaries() that can be opened. It stays open when they close. Where there is none, a
 * message says so.
 *
 * One of them is open at a time: opening another one closes it first, and nothing opens while
 * something else is above it. They have the input until they close. The handler before hears
 * #EVT_RESTORE then, and what lay beneath is there again.
 *
 * docs/dictionaries.md shows them, with their keys.
 */
#ifndef KELVANE_DICTIONARY_VIEW_H
#define KELVANE_DICTIONARY_VIEW_H

#include "api.h"
#include "canvas.h"

KELVANE_BEGIN_DECLS

/**
 * Opens the dictionary with its list of words and an article, and returns at once. The user looks
 * further words up, chooses among the dictionaries, and closes it. Without a screen nothing
 * happens.
 * @param word looked up at first; null and "": the word that was looked up last
 * @param where the word's place on the screen: it is shown inverted, and stays in sight where that
 *              can be. Null: it is on no page
 */
KELVANE_API void OpenDictionaryView(const char *word, const irect *where);
/**
 * OpenDictionaryView() for an owner who closes it when the reason for it has gone. The user may
 * close it as well.
 * @return the number of this view, for CloseControlledDictionaryView(); 0 when none was opened
 */
KELVANE_API int OpenControlledDictionaryView(const char *word, const irect *where);
/**
 * Closes that view, with its keyboard or menu; at once, or, while something else is above it, when
 * that has gone. Nothing happens when it is closed already, or is another one.
 */
KELVANE_API void CloseControlledDictionaryView(int view);
/**
 * Opens a box beside the word with the beginning of its article, and returns at once. Any key
 * closes it and so does a tap beside it; a tap on it opens the view of the same word. A finger that
 * was down when it opened does not count. Without a screen nothing happens.
 * @param word null and "": the word that was looked up last
 * @param where the word's place on the screen, shown inverted. Null: the box is in the middle
 */
KELVANE_API void OpenFastTranslation(const char *word, const irect *where);

KELVANE_END_DECLS

#endif
