// SPDX-License-Identifier: MIT
// A device folder with dictionaries, and what they answer as text.
#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "kelvane/dictionary.h"
#include "support/dictionary_file.h"

class DictionaryTest : public testing::Test {
  protected:
    ~DictionaryTest() override { CloseDictionary(); }

    // Opens a dictionary of this content.
    static void open(const dictionaries::File &file) {
        dictionaries::install(file);
        ASSERT_EQ(OpenDictionary("words"), 1);
    }

    // "2 headword: translation", of a call with two places for results.
    template <class Call>
    static std::string told(Call call) {
        char *headword = nullptr, *translation = nullptr;
        const int result = call(&headword, &translation);
        if (!headword || !translation) return "no results";
        return std::to_string(result) + " " + headword + ": " + translation;
    }
    static std::string look(const char *word) {
        return told([&](char **h, char **t) { return LookupWord(word, h, t); });
    }
    static std::string look_exactly(const char *word) {
        return told([&](char **h, char **t) { return LookupWordExact(word, h, t); });
    }
    static std::string current() { return told(LookupCurrent); }
    static std::string next() { return told(LookupNext); }
    static std::string previous() { return told(LookupPrevious); }

    static std::string list(const char *prefix) {
        char **const words = GetWordListWithPrefix(prefix);
        std::string all;
        for (char **word = words; *word; ++word) all.append(*word).append(" ");
        freeWordsWithPrefix(words);
        return all;
    }

    // What `work` writes on standard error.
    template <class Work>
    static std::string said(Work work) {
        testing::internal::CaptureStderr();
        work();
        return testing::internal::GetCapturedStderr();
    }

    static constexpr const char *nothing = "0 : ";

    TempDir dir_;
};
