// SPDX-License-Identifier: MIT
// Words looked up in dictionaries, stepped through and listed.
#include "dictionary_support.h"

#include <dlfcn.h>
#include <sys/stat.h>

namespace {

using namespace dictionaries;
namespace fs = std::filesystem;

const std::vector<Words> three_containers = {
    {{"apple", "Apfel"}, {"coop", "Stall"}, {"Co-op", "Genossenschaft"}, {"cow", "Kuh"}},
    {{"dog", "Hund"}, {"Dog", "Kerl"}, {"eel", "Aal"}},
    {{"mouse", "Maus"}, {"pony", "Pony"}}};

class Dictionaries : public DictionaryTest {};

TEST_F(Dictionaries, FindsWordsWhateverTheComparisonDrops) {
    open(file_of(three_containers));
    const struct {
        const char *word, *answer;
    } cases[] = {{"apple", "2 apple: Apfel"},
                 {"APPLE", "2 apple: Apfel"},
                 {"ap-ple", "2 apple: Apfel"},
                 {"coop", "2 coop: Stall"},
                 {"co-op", "2 coop: Stall"}, // both are one character from it: the first
                 {"Co-op", "2 Co-op: Genossenschaft"},
                 {"Dog", "2 Dog: Kerl"},
                 {"dog", "2 dog: Hund"},
                 {"DOG", "2 Dog: Kerl"},
                 {"d'og", "2 dog: Hund"},
                 {"pony", "2 pony: Pony"},
                 {"cop", "1 cow: Kuh"},
                 {"day", "1 dog: Hund"}, // behind the last word of the container before
                 {"b", nothing},         // what follows begins with another letter
                 {"ant", nothing},       // before the first word
                 {"cozy", nothing},
                 {"dug", nothing},
                 {"pq", nothing}, // behind the last word
                 {"", nothing},
                 {"-'-", nothing}};
    for (const auto &[word, answer] : cases)
        for (int times = 0; times < 2; ++times) EXPECT_EQ(look(word), answer) << word;
    EXPECT_EQ(look_exactly("APPLE"), "2 apple: Apfel");
    EXPECT_EQ(look_exactly("cop"), nothing);
    EXPECT_EQ(look_exactly(nullptr), nothing);
    EXPECT_EQ(look(nullptr), "2 apple: Apfel");
    EXPECT_EQ(LookupWord("eel", nullptr, nullptr), DICT_EXACT);
}

TEST_F(Dictionaries, OtherSpellingsAreToldApart) {
    open(file_of({{{"re-sign", "1"}, {"resign", "2"}, {"Resign", "3"}, {"RE'SIGN", "4"}}}));
    EXPECT_EQ(look("resign"), "2 resign: 2");
    EXPECT_EQ(look("re-sign"), "2 re-sign: 1");
    EXPECT_EQ(look("Re-sign"), "2 re-sign: 1");
    EXPECT_EQ(look("RE-SIGN"), "2 RE'SIGN: 4");
    EXPECT_EQ(look("r'esign"), "2 resign: 2");
}

// However often it is searched, and whatever may have been learnt of it.
TEST_F(Dictionaries, AContainerOutOfOrderIsScanned) {
    open(file_of({{{"aa", "1"}, {"am", "2"}, {"ab", "3"}, {"az", "4"}}}));
    for (int times = 0; times < 3; ++times) {
        EXPECT_EQ(look("ab"), "1 am: 2");
        EXPECT_EQ(look("an"), "1 az: 4");
        EXPECT_EQ(look("aa"), "2 aa: 1");
    }
}

TEST_F(Dictionaries, StepsThroughAllWordsAndStaysAtTheEnds) {
    EXPECT_EQ(current(), nothing); // none is open
    open(file_of(three_containers));
    EXPECT_EQ(current(), "2 apple: Apfel");
    EXPECT_EQ(previous(), nothing);
    EXPECT_EQ(current(), "2 apple: Apfel");
    std::string forward = current(), backward;
    for (std::string word; (word = next()) != nothing;) forward += word;
    EXPECT_EQ(forward, "2 apple: Apfel2 coop: Stall2 Co-op: Genossenschaft2 cow: Kuh2 dog: Hund"
                       "2 Dog: Kerl2 eel: Aal2 mouse: Maus2 pony: Pony");
    EXPECT_EQ(current(), "2 pony: Pony");
    backward = current();
    for (std::string word; (word = previous()) != nothing;) backward.insert(0, word);
    EXPECT_EQ(backward, forward);
}

TEST_F(Dictionaries, AFailedSearchLeavesTheCurrentWord) {
    open(file_of(three_containers, {"~x="}));
    EXPECT_EQ(look("eel"), "2 eel: Aal");
    for (const char *word : {"zebra", "", "-", "aaa", "zx"}) EXPECT_EQ(look(word), nothing);
    EXPECT_EQ(look_exactly("cop"), nothing); // though there is a nearest word
    EXPECT_EQ(current(), "2 eel: Aal");
    EXPECT_EQ(look("cop"), "1 cow: Kuh");
    EXPECT_EQ(next(), "2 dog: Hund");
    EXPECT_EQ(look_exactly("coop"), "2 coop: Stall");
    EXPECT_EQ(current(), "2 coop: Stall");
    // A word may be looked up in the text that the look-up before has given.
    char *headword = nullptr;
    LookupWord("mouse", &headword, nullptr);
    EXPECT_EQ(look(headword), "2 mouse: Maus");
}

// Nine containers, and a file that is gone once it is open: only what is unpacked can be read.
TEST_F(Dictionaries, FourContainersStayUnpacked) {
    std::vector<Words> containers;
    for (char c = 'a'; c < 'j'; ++c) containers.push_back({{std::string(2, c), "x"}});
    open(file_of(containers));
    for (const char *word : {"aa", "bb", "cc", "dd", "aa", "ee"}) look(word); // in place of "bb"
    fs::resize_file("system/dictionaries/words.dic", 200);
    for (const char *word : {"aa", "cc", "dd", "ee"})
        EXPECT_EQ(look(word), std::string("2 ") + word + ": x");
    EXPECT_EQ(said([] { EXPECT_EQ(look("bb"), nothing); }),
              "dictionary internal lookup: \"bb\"\nerror reading container 1\n");
    EXPECT_EQ(current(), "2 ee: x"); // the failed one took the place of the oldest, "aa"
}

TEST_F(Dictionaries, ListsWordsWithAPrefix) {
    open(file_of(three_containers));
    EXPECT_EQ(list("CO"), "coop Co-op cow ");
    EXPECT_EQ(list("co-op"), "coop Co-op ");
    EXPECT_EQ(list("d"), "dog Dog ");
    EXPECT_EQ(list("pony"), "pony ");
    EXPECT_EQ(list("b"), "");
    EXPECT_EQ(list("ponyx"), "");
    EXPECT_EQ(list(nullptr), "");
    EXPECT_EQ(list("-"), "apple coop Co-op cow dog Dog eel mouse pony ");
    CloseDictionary();
    EXPECT_EQ(list("d"), "");
    freeWordsWithPrefix(nullptr);
}

// Equal words on both sides of a container's edge: the search begins in the later one, a list has
// them all.
TEST_F(Dictionaries, EdgesOfContainersAreSearchedAsTheyAre) {
    open(file_of({{{"a", "1"}, {"b", "2"}}, {{"b", "3"}, {"c", "4"}}}));
    EXPECT_EQ(look("b"), "2 b: 3");
    EXPECT_EQ(list("b"), "b b ");
}

TEST_F(Dictionaries, ListsFoldersAnewAndFindsNamesInAnyCase) {
    const auto names = [] {
        std::string all;
        for (char **name = EnumDictionaries(); *name; ++name) all.append(*name).append(" ");
        return all;
    };
    EXPECT_EQ(names(), "");
    const char *const folders[] = {"system/dictionaries", "system/mnt/ext1/dictionaries",
                                   "system/mnt/ext2/dictionaries"};
    install(file_of({{{"a", "1"}}}), "Both", folders[0]);
    install(file_of({{{"b", "1"}}}), "middle", folders[1]);
    install(file_of({{{"c", "1"}}}), "bOTH", folders[2]);
    write_file("system/dictionaries/no.txt", "");
    write_file("system/dictionaries/.dic", "");
    EXPECT_EQ(names(), "bOTH middle ");
    EXPECT_EQ(OpenDictionary("BOTH"), 1);
    EXPECT_EQ(current(), "2 c: 1"); // of two, the one that is listed
    EXPECT_EQ(OpenDictionary("Middle"), 1);
    EXPECT_EQ(current(), "2 b: 1");
    for (const char *name : {"midd", "../dictionaries/middle", "", "middle.dic"})
        EXPECT_EQ(said([&] { EXPECT_EQ(OpenDictionary(name), 0); }),
                  std::string("dictionary '") + name + "' not found\n");
    EXPECT_EQ(current(), nothing); // the one before is closed
    EXPECT_EQ(OpenDictionary(nullptr), 0);
    // What is no plain file is refused at once; nobody waits for the other end of a pipe.
    const fs::path folder = "system/dictionaries";
    fs::create_directory(folder / "folder.dic");
    ASSERT_EQ(mkfifo((folder / "pipe.dic").c_str(), 0600), 0);
    fs::create_symlink("/dev/zero", folder / "device.dic");
    fs::create_symlink("nowhere", folder / "dangling.dic");
    for (const char *name : {"folder", "pipe", "device", "dangling"})
        EXPECT_EQ(said([&] { EXPECT_EQ(OpenDictionary(name), 0); }),
                  "couldn't open dictionary file\n")
            << name;
}

TEST_F(Dictionaries, FilesMayBeReplacedOrCutWhileTheyAreOpen) {
    open(file_of(three_containers));
    const fs::path path = "system/dictionaries/words.dic";
    const std::string first = current();
    fs::rename(path, "former");
    install(file_of({{{"other", "x"}}}));
    EXPECT_EQ(look(nullptr), first); // of the file that was opened
    EXPECT_EQ(look("other"), nothing);
    ASSERT_EQ(OpenDictionary("words"), 1);
    write_file(path, "cut");
    EXPECT_EQ(current(), nothing);
    EXPECT_EQ(next(), nothing);
    EXPECT_EQ(list(""), "");
}

TEST_F(Dictionaries, BringTheirKeyboards) {
    const std::string layout = "RU: Russian\nqwerty\n", kept = "system/tmp/dictionary.kbd";
    open(file_of(three_containers, {}, layout));
    EXPECT_EQ(read_file(kept), layout);
    open(file_of(three_containers, {}, "EN: x"));
    EXPECT_EQ(read_file(kept), "EN: x");
    CloseDictionary();
    EXPECT_TRUE(fs::exists(kept));
    open(file_of(three_containers));
    EXPECT_FALSE(fs::exists(kept));
}

TEST_F(Dictionaries, CharactersBeyond16BitsAndBrokenOnesAreOne) {
    open(file_of({{{"a\xF0\x9F\x98\x80z", "smile"}}}));
    for (const char *word : {"a\xEF\xBF\xBDz", "a\xF0\x9F\x98\x81z", "a\xFFz"})
        EXPECT_EQ(look(word), "2 a\xF0\x9F\x98\x80z: smile") << word;
}

// The rules of the file, each candidate in turn.
class Forms : public DictionaryTest {
  protected:
    // What was looked up after a word, in words with a blank behind each.
    static std::string candidates(const char *word) {
        std::string log = said([&] { look(word); }), all;
        const std::string before = "lookup: \"";
        for (size_t at = log.find(before); at != log.npos; at = log.find(before, at)) {
            at += before.size();
            all += log.substr(at, log.find('"', at) - at) + " ";
        }
        return all.substr(all.find(' ') + 1);
    }
};

TEST_F(Forms, AreTriedInOrder) {
    const struct {
        std::vector<std::string> rules;
        const char *word, *candidates;
    } cases[] = {
        {{"~ies/s=y/"}, "ponies", "pony pon poniey ponie "},
        {{"^un="}, "unhappy", "happy "},
        {{"^un/re=in"}, "redo", "indo "},
        {{"~ies/s=y/"}, "PONies", "PONy PON PONiey PONie "}, // compared collated, kept as it is
        {{"~'s="}, "dog's", "dog "},                         // dropped on both sides
        {{"~-="}, "dogs", ""},
        {{"~=e"}, "mak", "make "},
        {{"~%1s="}, "cats", ""}, // the class is not defined
        {{"%1=tT", "~%1s="}, "cats", "ca "},
        {{"%1=dt", "~%1%1ed=%1", "~%1ed=%1e"}, "fitted", "fit fitte "},
        {{"~a%=b"}, "ca%", "cb "}, // no digit, no class
        {{"~x"}, "ax", ""},
        {{"~word="}, "word", ""}, // nothing is left
        {{"~a=", "^a="}, "aba", "ab ba "},
    };
    for (const auto &[rules, word, expected] : cases) {
        open(file_of({{{"aaa", "first"}}}, rules));
        EXPECT_EQ(candidates(word), expected) << rules.back() << " " << word;
    }
}

TEST_F(Forms, TheFirstExactOneWinsThenTheFirstNearest) {
    open(file_of({{{"ponder", "x"}, {"pony", "Pony"}, {"ponytail", "y"}, {"run", "laufen"}}},
                 {"~ies/s=y/", "~nning=n", "^un="}));
    EXPECT_EQ(look("ponies"), "2 pony: Pony");
    EXPECT_EQ(current(), "2 pony: Pony");
    EXPECT_EQ(look("running"), "2 run: laufen");
    EXPECT_EQ(look("ponies"), "2 pony: Pony");
    EXPECT_EQ(look("ponds"), "1 pony: Pony"); // as without the rules, though "pond" has one too
    EXPECT_EQ(look("unponf"), "1 pony: Pony");
    EXPECT_EQ(next(), "2 ponytail: y"); // that is the current word, whatever was tried behind it
    EXPECT_EQ(look("unx"), nothing);
}

TEST_F(Forms, UnknownKindsAreNamedAndSkipped) {
    install(file_of({{{"go", "gehen"}}}, {"!x=", "~es="}));
    EXPECT_EQ(said([] { EXPECT_EQ(OpenDictionary("words"), 1); }), "unknown morphem type '!'\n");
    EXPECT_EQ(look("goes"), "2 go: gehen");
}

TEST_F(Forms, ThePlugInTakesTheirPlace) {
    ASSERT_TRUE(dlopen(MORPHWRAPPER, RTLD_NOW)) << dlerror(); // found by its name from now on
    open(file_of({{{"go", "gehen"}}}, {"~es="}, "EN: English"));
    EXPECT_EQ(said([] { EXPECT_EQ(look("went"), "2 go: gehen"); }),
              "dictionary internal lookup: \"went\"\nusing Lingvo morphology\n"
              "morpho result: \"go\"\n");
    EXPECT_EQ(look("goes"), nothing); // the rules rest
    EXPECT_EQ(look_exactly("went"), nothing);
}

TEST_F(Forms, WithoutAPlugInThatIsSaidOnce) {
    open(file_of(three_containers));
    EXPECT_EQ(said([] { look("dog"), look("cow"); }),
              "dictionary internal lookup: \"dog\"\nusing internal morphology\n"
              "dictionary internal lookup: \"cow\"\n");
}

} // namespace
