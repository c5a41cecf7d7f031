// SPDX-License-Identifier: MIT
// Dictionaries that are cut, damaged or made to hurt: refused or found empty, with the message that
// says why, after a bounded amount of work.
#include <algorithm>
#include <cstring>
#include <sys/resource.h>

#include "dictionary_support.h"
#include "support/child.h"
#include "support/repeats.h"

namespace {

using namespace dictionaries;

constexpr size_t mib = 1 << 20;
constexpr const char *refused = "corrupted dictionary file or wrong version\n";
constexpr const char *no_index = "corrupted dictionary index\n";

class HostileDictionaries : public DictionaryTest {
  protected:
    // Everything that can be asked of a dictionary. Returns whether it opened, or -1 when a result
    // was no text.
    static int ask() {
        const int is_open = OpenDictionary("words");
        for (const char *word : {"dog", "ponies", "", "zzz", "\xFF"}) look(word);
        for (const char *word : {"dog", "a"}) look_exactly(word);
        look(nullptr);
        for (int i = 0; i < 5; ++i) next();
        for (int i = 0; i < 9; ++i) previous();
        current();
        list("d");
        list("");
        CloseDictionary();
        return is_open;
    }
    static int ask_about(const std::string &bytes) {
        write_file("system/dictionaries/words.dic", bytes);
        return ask();
    }
    static File sound() {
        return file_of({{{"apple", "Apfel"}, {"cow", "Kuh"}}, {{"dog", "Hund"}}, {{"pony", "x"}}},
                       {"%1=aeiou", "~%1es/ies=y/e", "^un="}, "EN: English");
    }
    // What opening a dictionary says, and whether it opens.
    static std::string opening(const File &file) {
        install(file);
        int is_open = 0;
        const std::string words = said([&] { is_open = OpenDictionary("words"); });
        return words + (is_open ? "open" : "refused");
    }
};

TEST_F(HostileDictionaries, EachFaultHasItsMessage) {
    const auto sound_with = [](auto change) {
        File f = sound();
        change(f);
        return f;
    };
    const auto field = [&](unsigned at, uint32_t value) {
        return sound_with([=](File &f) { f.fields[at] = value; });
    };
    const auto section = [&](unsigned at, const std::string &bytes) {
        return sound_with([&](File &f) { f.sections[at] = bytes; });
    };
    const auto announced = [&](unsigned at, uint32_t size) {
        return sound_with([=](File &f) { f.sections[at].replace(0, 4, u32(size)); });
    };
    const struct {
        File file;
        std::string said;
    } cases[] = {
        {sound(), "open"},
        {field(0, 0x43494453 + 1), std::string(refused) + "refused"},
        {field(4, 256), std::string(refused) + "refused"},
        {field(12, 16 * mib), "open"},
        {field(12, 16 * mib + 1), std::string(refused) + "refused"},
        {field(28, 1), std::string(refused) + "refused"},
        {announced(36, 16 * mib + 1), std::string(refused) + "refused"},
        {announced(40, 0xFFFFFFFF), std::string(refused) + "refused"},
        {announced(44, 1101 * 20), std::string(refused) + "refused"}, // more than zlib can do
        {section(36, u32(100) + "1234"), "error reading section 24\nopen"},
        {announced(40, 3), "error decompressing section 28\nopen"},
        {announced(44, 12), "error decompressing section 2c\nopen"},
        {announced(56, 12), std::string("error decompressing section 38\n") + no_index + "refused"},
        {section(40, u32(9) + "no zlib data"), "error decompressing section 28\nopen"},
        {section(40, "ab"), "error in section parameters, section 28\nopen"},
        {field(36, 0xFFFFFF00), "error in section parameters, section 24\nopen"}, // ends before it
        {field(44, 0x7FFFFFFF), // the one before ends there
         "error in section parameters, section 28\nerror in section parameters, section "
         "2c\nopen"},
        {field(48, 140), "error in section parameters, section 2c\nopen"}, // ends sections too
        {field(56, 0), std::string(no_index) + "refused"},
        {section(56, File::zipped(u16(0))), std::string(no_index) + "refused"},
        {section(56, File::zipped(u16(9) + "no NUL")), std::string(no_index) + "refused"},
    };
    for (const auto &[file, said] : cases) EXPECT_EQ(opening(file), said) << &file - &cases[0].file;
}

TEST_F(HostileDictionaries, ContainersSayWhatIsWrongWithThem) {
    const struct {
        std::string container; // in the place of the first one
        const char *answer, *said;
    } cases[] = {
        {packed(container({{"apple", "Apfel"}})), "2 apple: Apfel", ""},
        {"no zlib data", nothing, "error unpacking container 0\n"},
        {packed(std::string(4097, 'a')), nothing, "error unpacking container 0\n"},
        {packed(record("apple", "Apfel")), "2 apple: Apfel", ""}, // without a length of 0
        {packed(""), nothing, ""},
        {packed(u16(1) + "apple"), nothing, ""},
        {packed(u16(0xFFFF) + std::string("apple\0x\0", 8)), nothing, ""},
        {packed(u16(8) + std::string("apple\0", 6)), nothing, ""}, // no translation
        {packed(u16(7) + "apple"), nothing, ""},
        {packed(record("apple", "Apfel") + u16(4096)), "2 apple: Apfel", ""},
    };
    for (const auto &c : cases) {
        File f = sound();
        f.containers[0] = c.container;
        f.sections[56] =
            File::zipped(u16(static_cast<unsigned>(c.container.size())) + "apple" + '\0' + u16(0));
        install(f);
        ASSERT_EQ(OpenDictionary("words"), 1);
        look_exactly("-"); // says whose rules apply
        const std::string log = said([&] { EXPECT_EQ(look_exactly("apple"), c.answer); });
        EXPECT_EQ(log, std::string("dictionary internal lookup: \"apple\"\n") + c.said);
        EXPECT_EQ(look(nullptr), c.answer);
    }
    File cut = sound();
    cut.containers.pop_back();
    install(cut);
    OpenDictionary("words");
    EXPECT_EQ(said([] { EXPECT_EQ(look_exactly("pony"), nothing); }),
              "dictionary internal lookup: \"pony\"\nerror reading container 2\n");
}

TEST_F(HostileDictionaries, AnyFieldMayBeAnything) {
    testing::internal::CaptureStderr();
    const std::string bytes = sound().bytes();
    const auto size = static_cast<uint32_t>(bytes.size());
    for (size_t field = 0; field < 128; field += 4)
        for (const uint32_t value : {0U, 1U, 0x7FU, 0xFFU, 4U, 127U, 128U, size - 4, size, size + 1,
                                     0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
            std::string changed = bytes;
            changed.replace(field, 4, u32(value));
            EXPECT_GE(ask_about(changed), 0);
        }
    testing::internal::GetCapturedStderr();
}

TEST_F(HostileDictionaries, AnyByteMayBeCutOffOrChanged) {
    testing::internal::CaptureStderr();
    const std::string bytes = sound().bytes();
    for (size_t i = 0; i < bytes.size(); i += static_cast<size_t>(repeats(1, 3))) {
        EXPECT_GE(ask_about(bytes.substr(0, i)), 0);
        for (const int value : {0, 0x7F, 0xFF, bytes[i] ^ 1}) {
            std::string changed = bytes;
            changed[i] = static_cast<char>(value);
            EXPECT_GE(ask_about(changed), 0);
        }
    }
    testing::internal::GetCapturedStderr();
}

// Files whose parts are as large as they may be.
class HugeDictionaries : public HostileDictionaries {
  protected:
    static File bomb(const std::string &unpacked, size_t containers = 1) {
        File f;
        f.limit = 16 * mib;
        const std::string container = packed(unpacked);
        std::string index;
        for (size_t i = 0; i < containers; ++i) {
            f.containers.push_back(container);
            const char first[] = {static_cast<char>('a' + i / 26), static_cast<char>('a' + i % 26)};
            index += u16(static_cast<unsigned>(container.size())) + std::string(first, 2) + '\0';
        }
        f.sections[56] = File::zipped(index + u16(0));
        return f;
    }
    static std::string repeated(const std::string &text, size_t size) {
        std::string all;
        all.reserve(size + text.size());
        while (all.size() + text.size() <= size) all += text;
        return all;
    }
    // Peak of the memory of a process that asks for everything so many times, over that of one that
    // does nothing, in MiB.
    static long mib_needed(const std::string &bytes, int times) {
        write_file("system/dictionaries/words.dic", bytes);
        return in_child([times] {
            rusage before{}, after{};
            getrusage(RUSAGE_SELF, &before);
            if (!freopen("/dev/null", "w", stderr)) return 255;
            for (int i = 0; i < times; ++i) ask();
            getrusage(RUSAGE_SELF, &after);
            return static_cast<int>(std::min(254L, (after.ru_maxrss - before.ru_maxrss) / 1024));
        });
    }
};

TEST_F(HugeDictionaries, CostLittleMemory) {
#ifdef KELVANE_SANITIZED
    GTEST_SKIP() << "the sanitizers need memory of their own";
#endif
    const std::string small_records = repeated(record("", ""), 16 * mib - 2);
    File many_words = bomb(std::string(100, 'a'));
    many_words.sections[56] = File::zipped(repeated(u16(1) + '\0', 16 * mib - 2) + u16(0));
    File long_word = many_words;
    long_word.sections[56] = File::zipped(u16(1) + std::string(16 * mib - 5, 'a') + '\0' + u16(0));
    File rules = many_words;
    rules.sections[40] = File::zipped(wide("~" + repeated("a/", 8 * mib - 4) + "=") + u16(0));
    File kinds = many_words;
    kinds.sections[40] = File::zipped(repeated(wide("~=") + u16(0), 16 * mib));
    // All at once: as many records and words of a list as there may be, and the largest sections.
    File everything = bomb(repeated(record("dog456789012345", ""), 16 * mib), 9);
    std::string index;
    for (const std::string &c : everything.containers)
        index += u16(static_cast<unsigned>(c.size())) + "dog" + '\0';
    everything.sections[36] = File::raw(std::string(16 * mib - 4, '\0'));
    everything.sections[40] = rules.sections[40];
    everything.sections[44] = File::zipped("EN: English\n" + std::string(15 * mib, 'k'));
    everything.sections[56] =
        File::zipped(index + repeated(u16(1) + "e" + '\0', 15 * mib) + u16(0));
    const std::pair<const char *, File> cases[] = {
        {"records", bomb(small_records, 9)},
        {"records of one word", bomb(repeated(record("dog", ""), 16 * mib), 9)},
        {"long records", bomb(repeated(record(std::string(65000, 'd'), ""), 16 * mib), 9)},
        {"zeros", bomb(std::string(16 * mib, '\0'), 9)},
        {"entries of the index", many_words},
        {"a word of the index", long_word},
        {"patterns", rules},
        {"rules", kinds},
    };
    constexpr long buffers = 4 * 16, beyond = 64;
    for (const auto &[name, file] : cases) {
        const long needed = mib_needed(file.bytes(), 1);
        EXPECT_GE(needed, 0) << name;
        EXPECT_LE(needed, buffers + beyond) << name;
    }
    const long needed = mib_needed(everything.bytes(), 2);
    EXPECT_LE(needed, buffers + beyond);
}

// Rules that match everything, a thousand times a thousand of them, each of whose forms lies in
// another container.
TEST_F(HugeDictionaries, RulesThatExplodeAreTriedForAWhile) {
    std::string patterns, variants;
    for (char a = 'a'; a <= 'z'; ++a)
        for (char b = 'a'; b <= 'z'; ++b) variants += std::string{'/', a, b};
    for (int i = 0; i < 2000; ++i) patterns += "/";
    const std::string rule = "^" + patterns + "=" + variants;
    const auto forms_tried = [&](const File &file) {
        install(file);
        OpenDictionary("words");
        const std::string log = said([] { look("q"); });
        return std::count(log.begin(), log.end(), '"') / 2 - 1;
    };
    File cheap = sound();
    cheap.sections[40] = File::zipped(rules({rule, rule}));
    EXPECT_EQ(forms_tried(cheap), 1000);
    File dear = bomb(std::string(16 * mib, '\0'), 26 * 26);
    dear.sections[40] = cheap.sections[40];
    EXPECT_LE(forms_tried(dear), 20); // each unpacks 16 MiB or twice that
    // All forms lie in one container, which stays unpacked; as it is out of order, each is looked
    // for from its beginning, through words of which the comparison drops nearly all.
    const std::string long_word(65000, '-');
    File walked = bomb(record("2", "") + record("1", "") +
                       repeated(record(long_word + "3", ""), 15 * mib) + record("~", ""));
    walked.sections[36] = File::raw(usual_collation());
    walked.sections[40] = cheap.sections[40];
    walked.sections[56] =
        File::zipped(u16(static_cast<unsigned>(walked.containers[0].size())) + "1" + '\0' + u16(0));
    EXPECT_LE(forms_tried(walked), 20);
}

// Each of very many equal words would be compared with a long spelling.
TEST_F(HugeDictionaries, EqualWordsAreComparedForAWhile) {
    const std::string spelling = "dog" + std::string(10'000, '-');
    const auto nearest = [&](size_t equal_ones) {
        const std::string one = record("dog", "first");
        File f = bomb(repeated(one, equal_ones * one.size()) + record(spelling, "last"));
        f.sections[36] = File::raw(usual_collation());
        install(f);
        EXPECT_EQ(OpenDictionary("words"), 1);
        char *translation = nullptr;
        EXPECT_EQ(LookupWordExact(spelling.c_str(), nullptr, &translation), DICT_EXACT);
        return std::string(translation);
    };
    EXPECT_EQ(nearest(1000), "last");
    EXPECT_EQ(nearest(100'000), "first");
}

// Where a container is out of order, a list does not walk through all that are behind it.
TEST_F(HostileDictionaries, AListEndsWhereWordsAreOutOfOrder) {
    File f = file_of({{{"a", ""}, {"d", ""}}, {{"da", ""}}, {{"dog", ""}, {"c", ""}, {"dz", ""}}});
    install(f);
    OpenDictionary("words");
    EXPECT_EQ(list("d"), "d da dog ");
    EXPECT_EQ(list("dz"), "dz "); // the words before it are passed over in one container
}

// A list ends before it has turned to all of very many containers.
TEST_F(HugeDictionaries, EmptyContainersCostSomethingToo) {
    constexpr size_t most_turned_to = 256 * mib / 1024;
    const auto listed = [&](size_t empty_ones) {
        File f = file_of({{{"a", ""}}});
        const std::string empty = packed("");
        f.containers.insert(f.containers.begin(), repeated(empty, empty_ones * empty.size()));
        f.sections[56] = File::zipped(
            repeated(u16(static_cast<unsigned>(empty.size())) + '\0', empty_ones * 3) +
            u16(static_cast<unsigned>(f.containers.back().size())) + "a" + '\0' + u16(0));
        install(f);
        EXPECT_EQ(OpenDictionary("words"), 1);
        return list("");
    };
    EXPECT_EQ(listed(1000), "a ");
    EXPECT_EQ(listed(most_turned_to), "");
}

// A list ends, whatever is in the file.
TEST_F(HugeDictionaries, ListsAreCutOff) {
    install(bomb(repeated(record("aardvark", ""), 16 * mib), 9));
    OpenDictionary("words");
    char **const words = GetWordListWithPrefix("a");
    size_t count = 0, bytes = 0;
    for (; words[count]; ++count) bytes += std::strlen(words[count]) + 1;
    freeWordsWithPrefix(words);
    EXPECT_EQ(count, 1'000'000U);
    EXPECT_LE(bytes, 16 * mib);
}

} // namespace
