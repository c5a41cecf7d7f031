// SPDX-License-Identifier: MIT
// Configuration files in one process: the format, the layers of a handle, hostile files.
#include <climits>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "config/hooks.h"
#include "internal.h"
#include "kelvane/config.h"

namespace {

namespace fs = std::filesystem;

class Config : public testing::Test {
  protected:
    fs::path root = fs::temp_directory_path() / ("kelvane-config-" + std::to_string(getpid()));
    std::string path = root / "a.cfg";

    void SetUp() override { fs::create_directories(root); }
    void TearDown() override { fs::remove_all(root); }

    void put(const std::string &text) { std::ofstream(path, std::ios::binary) << text; }
    std::string file() {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
};

// A handle that closes without saving.
struct handle {
    iconfig *c;
    explicit handle(const std::string &path, iconfigedit *defaults = nullptr)
        : c(OpenConfig(path.c_str(), defaults)) {}
    ~handle() { CloseConfigNoSave(c); }
    operator iconfig *() const { return c; }
    std::string get(const char *name) const { return ReadString(c, name, "(none)"); }
};

using values = std::map<std::string, std::string>;

values read_values(ihash h) {
    values all;
    const auto note = [](const char *name, void *value, void *out) {
        (*static_cast<values *>(out))[name] = static_cast<char *>(value);
        return 0;
    };
    hash_enumerate(h, nullptr, note, &all);
    return all;
}

values read_file(const std::string &path) {
    return read_values(handle(path).c->hash);
}

using namespace std::string_literals;

TEST_F(Config, LinesBecomeValues) {
    const struct {
        const char *rule;
        std::string text;
        values expected;
    } cases[] = {
        {"the worked example",
         "a=1\r\n#b=2\n  c = x\\ty\nnoequals\n",
         {{"a", "1"}, {"c ", " x\ty"}}},
        {"nothing", "", {}},
        {"blank lines", "\n\n \n\t\n\r\n", {}},
        {"last line without a line feed", "a=1\nb=2", {{"a", "1"}, {"b", "2"}}},
        {"a carriage return at the very end stays", "a=1\r", {{"a", "1\r"}}},
        {"only one carriage return is dropped",
         "a=1\r\r\nb\r=\r2\n",
         {{"a", "1\r"}, {"b\r", "\r2"}}},
        {"a comment may be indented", " \t# a=1\n", {}},
        {"a number sign elsewhere is ordinary", "a#=#1\n", {{"a#", "#1"}}},
        {"the first equals sign counts", "a=b=c\n", {{"a", "b=c"}}},
        {"an empty name and an empty value", "=x\nb=\n", {{"", "x"}, {"b", ""}}},
        {"a later line wins", "a=1\nb=2\na=3\n", {{"a", "3"}, {"b", "2"}}},
        {"a repeated name may be emptied", "a=1\na=\n", {{"a", ""}}},
        {"escapes", "a=\\n\\r\\t\\\\x\n", {{"a", "\n\r\t\\x"}}},
        {"names are not unescaped", "a\\n=1\n", {{"a\\n", "1"}}},
        {"octal numbers",
         "a=\\101\nb=\\1011\nc=\\0000101B\nd=\\78\n",
         {{"a", "A"},
          {"b", "\x09"},
          {"c", "AB"},
          {"d", "\x07"
                "8"}}},
        {"an octal zero ends the value", "a=x\\0y\nb=\\400z\n", {{"a", "x"}, {"b", ""}}},
        {"octal numbers do not overflow", "a=\\" + std::string(5000, '7') + "\n", {{"a", "\xFF"}}},
        {"a backslash at the end stays", "a=x\\\nb=\\", {{"a", "x\\"}, {"b", "\\"}}},
        {"so does one before any other character", "a=\\q\\8\\\"\n", {{"a", "\\q\\8\\\""}}},
        {"bytes of UTF-8 and others",
         "\xC3\xA9=\xE2\x82\xAC\xFF\n",
         {{"\xC3\xA9", "\xE2\x82\xAC\xFF"}}},
        {"a NUL ends its line only", "a=1\0x\nb\0=2\nc=3\n"s, {{"a", "1"}, {"c", "3"}}},
        {"a torn last line does not count", "a=1\nb=2\0\0\0"s, {{"a", "1"}}},
    };
    for (const auto &c : cases) {
        put(c.text);
        EXPECT_EQ(read_file(path), c.expected) << c.rule;
        // What is saved reads back as the same, and saving again changes nothing. The empty name
        // sorts first.
        handle h(path);
        WriteInt(h, "zz", 1);
        ASSERT_EQ(SaveConfig(h), 1) << c.rule;
        values with = c.expected;
        with["zz"] = "1";
        EXPECT_EQ(read_file(path), with) << c.rule;
        const std::string text = file();
        WriteInt(h, "zz", 1);
        ASSERT_EQ(SaveConfig(h), 1) << c.rule;
        EXPECT_EQ(file(), text) << c.rule;
    }
}

TEST_F(Config, SavesSortedEscapedLines) {
    put("# comment\n\n b=old\n\xC3=u\nB=1\n");
    handle h(path);
    WriteString(h, "b", "line1\nline2\r\t\\=#");
    WriteString(h, "aa", "");
    WriteString(h, "a", " x ");
    EXPECT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(file(), "B=1\na= x \naa=\nb=line1\\nline2\\r\\t\\\\=#\n\xC3=u\n");
    EXPECT_EQ(handle(path).get("b"), "line1\nline2\r\t\\=#");
}

// The text is written into a buffer that grows by one step of 16384 an item: a value that is longer
// than the room is cut, never in the middle of an escape, and what follows it is whole.
TEST_F(Config, LongValuesAreCut) {
    const struct {
        size_t length;
        char filler;
        size_t kept; // bytes of the value in the file
    } cases[] = {
        {8000, 'x', 8000},   {8188, '\n', 8188},   {16378, 'x', 16378}, {16379, 'x', 16379},
        {16380, 'x', 16379}, {100000, 'x', 16379}, {8190, '\n', 8189},  {100000, '\n', 8189},
    };
    for (const auto &c : cases) {
        fs::remove(path);
        handle h(path);
        WriteString(h, "a", std::string(c.length, c.filler).c_str());
        WriteString(h, "b", "whole");
        ASSERT_EQ(SaveConfig(h), 1);
        const std::string expected(c.kept, c.filler);
        EXPECT_EQ(read_file(path), (values{{"a", expected}, {"b", "whole"}})) << c.length;
        EXPECT_EQ(h.get("a").size(), c.length) << "the handle keeps the whole";
    }
    // Many values of a few kilobytes are not cut, nor are names of any length.
    fs::remove(path);
    handle h(path);
    values all;
    for (int i = 0; i < 50; i++) {
        const size_t length = i % 5 ? 10 : i % 2 ? 16000 : 70000;
        const std::string name = std::string(length, 'n') + std::to_string(i);
        all[name] = std::string(5000, '\\');
        WriteString(h, name.c_str(), all[name].c_str());
    }
    ASSERT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(read_file(path), all);
}

TEST_F(Config, LayersHideOneAnother) {
    put("k=file\n");
    handle h(path);
    EXPECT_EQ(h.get("k"), "file");
    WriteString(h, "k", "written");
    EXPECT_EQ(h.get("k"), "written");
    WriteStringVolatile(h, "k", "volatile");
    WriteIntVolatile(h, "v", -5);
    EXPECT_EQ(h.get("k"), "volatile");
    EXPECT_EQ(ReadInt(h, "v", 0), -5);
    EXPECT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(file(), "k=written\n");
    EXPECT_EQ(h.get("k"), "volatile");
    WriteInt(h, "k", 12);
    EXPECT_EQ(h.get("k"), "12");

    // A volatile value alone is nothing to save.
    put("k=other\n");
    EXPECT_EQ(SaveConfig(h), 1);
    const std::string before = file();
    WriteStringVolatile(h, "k", "x");
    EXPECT_EQ(h.c->changed, 0);
    EXPECT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(file(), before);
}

TEST_F(Config, NumbersReadLikeStrtolWithinInt) {
    const struct {
        const char *text;
        int value;
    } cases[] = {{"0x10", 16},
                 {"010", 8},
                 {"abc", 0},
                 {"", 0},
                 {" 12", 12},
                 {"-7rest", -7},
                 {"089", 0},
                 {"2147483647", INT_MAX},
                 {"2147483648", INT_MAX},
                 {"-99999999999999999999", INT_MIN}};
    handle h(path);
    for (const auto &c : cases) {
        WriteString(h, "n", c.text);
        EXPECT_EQ(ReadInt(h, "n", 77), c.value) << c.text;
    }
    EXPECT_EQ(ReadInt(h, "absent", 77), 77);
    WriteInt(h, "n", INT_MIN);
    EXPECT_EQ(h.get("n"), "-2147483648");
}

TEST_F(Config, NullIsIgnored) {
    const char *deflt = "d";
    handle h(path);
    EXPECT_EQ(ReadString(nullptr, "a", deflt), deflt);
    EXPECT_EQ(ReadString(h, nullptr, deflt), deflt);
    EXPECT_EQ(ReadSecret(h, "absent", deflt), deflt);
    EXPECT_EQ(ReadInt(nullptr, "a", 3), 3);
    WriteString(nullptr, "a", "x");
    WriteInt(nullptr, "a", 1);
    WriteSecret(nullptr, "a", "x");
    WriteStringVolatile(nullptr, "a", "x");
    WriteIntVolatile(nullptr, "a", 1);
    DeleteString(nullptr, "a");
    ClearConfig(nullptr);
    CloseConfig(nullptr);
    WriteString(h, nullptr, "x");
    WriteString(h, "a", nullptr);
    WriteStringVolatile(h, "a", nullptr);
    DeleteInt(h, nullptr);
    EXPECT_EQ(h.c->changed, 0);
    EXPECT_EQ(SaveConfig(nullptr), 0);
    EXPECT_EQ(RefreshConfig(nullptr), 0);
    iconfig *none = nullptr;
    EXPECT_EQ(RefreshConfig(&none), 0);
    iconfig *unnamed = OpenConfig(nullptr, nullptr);
    ASSERT_NE(unnamed, nullptr);
    WriteInt(unnamed, "a", 1);
    EXPECT_EQ(SaveConfig(unnamed), 0);
    CloseConfig(unnamed);
}

TEST_F(Config, ValuesOfTheHandleMayBeWrittenBack) {
    put("k=value\n");
    handle h(path);
    WriteString(h, "k", ReadString(h, "k", "") + 1); // from the file's table
    WriteString(h, "k", ReadString(h, "k", "") + 1); // from the table that is written
    WriteStringVolatile(h, "k", ReadString(h, "k", ""));
    WriteStringVolatile(h, "k", ReadString(h, "k", "") + 1);
    WriteString(h, "k", ReadString(h, "k", "")); // from the table that drops it
    EXPECT_EQ(h.get("k"), "ue");
    // So may names.
    WriteString(h, "n", "n");
    WriteStringVolatile(h, "n", "n");
    WriteString(h, ReadString(h, "n", ""), "1");
    WriteString(h, "n", "n");
    WriteInt(h, ReadString(h, "n", ""), 2);
    EXPECT_EQ(h.get("n"), "2");
    WriteString(h, "n", "n");
    DeleteString(h, ReadString(h, "n", ""));
    EXPECT_EQ(h.get("n"), "(none)");
}

TEST_F(Config, DeletionsReachTheFile) {
    put("a=1\nb=2\nc=3\n");
    handle h(path);
    DeleteString(h, "a");
    DeleteInt(h, "absent");
    DeleteString(h, "b");
    WriteInt(h, "b", 9); // a write after a deletion wins
    EXPECT_EQ(h.get("a"), "(none)");
    put("a=back\nb=2\nc=4\n"); // another process
    EXPECT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(file(), "b=9\nc=4\n");
    put("a=later\n"); // the deletion has been done, it is not repeated
    WriteInt(h, "b", 9);
    EXPECT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(file(), "a=later\nb=9\n");
}

TEST_F(Config, AnyNumberOfDeletions) {
    const auto key = [](int i) { return "k" + std::to_string(i); };
    std::string text;
    for (int i = 0; i < 1000; i++) text += key(i) + "=1\n";
    put(text + "kept=1\n");
    handle h(path);
    for (int round = 0; round < 2; round++)
        for (int i = 0; i < 1000; i++) DeleteString(h, key(i).c_str());
    WriteInt(h, "k500", 2);
    WriteInt(h, "k999", 2);
    DeleteString(h, "k999");
    const auto listed = [&] {
        std::multiset<std::string> names;
        for (char **name = h.c->deleted_keys; *name; name++) names.insert(*name);
        return names;
    };
    EXPECT_EQ(listed().size(), 999u);
    EXPECT_EQ(listed().count("k500") + listed().count("k999"), 1u);
    while (h.c->deleted_keys[900]) // a name from the list itself
        WriteInt(h, h.c->deleted_keys[900], 3);
    EXPECT_EQ(SaveConfig(h), 1);
    const values left = read_file(path);
    EXPECT_EQ(left.size(), 101u) << "99 taken back, k500, kept";
    EXPECT_EQ(left.at("k500") + left.at("kept"), "21");
    EXPECT_EQ(h.c->deleted_keys[0], nullptr);
    for (int i = 0; i < 20000; i++) DeleteString(h, key(i).c_str());
    for (int i = 0; i < 19999; i++) WriteInt(h, key(i).c_str(), 1);
    EXPECT_EQ(listed(), std::multiset<std::string>{"k19999"});
}

TEST_F(Config, RefreshTakesOverTheFileUnderUnsavedValues) {
    put("a=1\nb=1\nc=1\ngone=1\n");
    handle h(path);
    WriteInt(h, "b", 2);
    WriteIntVolatile(h, "c", 3);
    DeleteString(h, "d");
    put("a=new\nb=new\nc=new\nd=new\n");
    EXPECT_EQ(RefreshConfig(&h.c), 1);
    EXPECT_EQ(h.get("a"), "new");
    EXPECT_EQ(h.get("b"), "2");
    EXPECT_EQ(h.get("c"), "3");
    EXPECT_EQ(h.get("d"), "(none)");
    EXPECT_EQ(h.get("gone"), "1") << "what the file no longer has stays until a save";
    EXPECT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(file(), "a=new\nb=2\nc=new\nd=new\n") << "the refresh has forgotten the deletion";
    fs::remove(path);
    EXPECT_EQ(RefreshConfig(&h.c), 0);
    EXPECT_EQ(h.get("a"), "new");
}

TEST_F(Config, ClearEmptiesTheHandleOnly) {
    put("a=1\n");
    handle h(path);
    WriteInt(h, "b", 2);
    WriteIntVolatile(h, "v", 3);
    ClearConfig(h);
    EXPECT_EQ(h.get("a") + h.get("b") + h.get("v"), "(none)(none)(none)");
    WriteInt(h, "c", 4);
    EXPECT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(file(), "a=1\nc=4\n");
}

TEST_F(Config, AMissingFileIsCreatedByTheFirstRealSave) {
    path = root / "deep/er/a.cfg";
    handle h(path);
    EXPECT_TRUE(fs::is_directory(root / "deep/er"));
    EXPECT_EQ(SaveConfig(h), 1);
    EXPECT_FALSE(fs::exists(path));
    WriteInt(h, "a", 1);
    fs::remove_all(root / "deep");
    EXPECT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(file(), "a=1\n");
    // A file that another process has made meanwhile is merged.
    fs::remove(path);
    handle first(path), second(path);
    WriteInt(first, "a", 1);
    WriteInt(second, "b", 2);
    EXPECT_EQ(SaveConfig(first) + SaveConfig(second), 2);
    EXPECT_EQ(file(), "a=1\nb=2\n");
}

iconfigedit row(int type, const char *name, const char *deflt, iconfigedit *submenu = nullptr) {
    return {type, nullptr, "text", "hint", name, deflt, nullptr, submenu, nullptr};
}

TEST_F(Config, TablesSupplyDefaults) {
    iconfigedit inner[] = {row(1, "inner", "i"), row(31, "x", "x"), row(0, 0, 0)};
    iconfigedit table[] = {
        row(1, "one", "1"),       row(0x82, "hidden", "2"),       row(7, "seven", "x"),
        row(14, "fourteen", "x"), row(31, "submenu", "x", inner), row(0x80 | 31, "s2", "x", inner),
        row(3, nullptr, "x"),     row(3, "nodefault", nullptr),   row(0, "end", "x"),
    };
    inner[1].submenu = table; // a cycle ends
    const values expected = {{"one", "1"}, {"hidden", "2"}, {"inner", "i"}};
    EXPECT_EQ(read_values(handle(path, table).c->hash), expected);

    iconfigedit self[] = {row(31, nullptr, nullptr), row(1, "a", "1"), row(0, 0, 0)};
    self[0].submenu = self;
    EXPECT_EQ(read_values(handle(path, self).c->hash), (values{{"a", "1"}}));

    // Defaults are not saved, and a file puts all of them away.
    {
        handle h(path, table);
        WriteInt(h, "w", 1);
        EXPECT_EQ(SaveConfig(h), 1);
        EXPECT_EQ(file(), "w=1\n");
    }
    EXPECT_EQ(read_values(handle(path, table).c->hash), (values{{"w", "1"}}));
}

TEST_F(Config, TheEarlierTableLayoutIsAccepted) {
    oldconfigedit rows[] = {{"Text", "a", 1, "1", nullptr},
                            {"Text", "seven", 7, "x", nullptr},
                            {"Text", "b", 2, "2", nullptr},
                            {nullptr, nullptr, 0, nullptr, nullptr}};
    for (int i = 0; i < 2; i++) { // the second conversion replaces the first
        handle h(path, reinterpret_cast<iconfigedit *>(rows));
        EXPECT_EQ(read_values(h.c->hash), (values{{"a", "1"}, {"b", "2"}}));
    }
}

// Stands for the system service: turns letters round and pads with a prefix.
std::string requests;
int rot13(int cmd, int param, unsigned char *data, int insize, int outsize) {
    requests += std::to_string(cmd) + "/" + std::to_string(param) + "/" + std::to_string(insize) +
                "/" + std::to_string(outsize) + " ";
    std::string text(reinterpret_cast<char *>(data));
    for (char &c : text)
        if (isalpha(c)) c = static_cast<char>((tolower(c) - 'a' + 13) % 26 + 'a');
    text = cmd == config::REQUEST_ENCIPHER ? "\n:" + text : text.substr(2);
    memcpy(data, text.c_str(), text.size() + 1);
    return static_cast<int>(text.size() + 1);
}

TEST_F(Config, SecretsGoThroughTheSystemService) {
    handle h(path);
    // The emulated service is there without an open screen.
    WriteSecret(h, "code", "1234");
    EXPECT_EQ(h.get("code"), "(encrypted):1234");
    char *code = ReadSecret(h, "code", nullptr);
    EXPECT_STREQ(code, "1234");
    free(code);
    DeleteString(h, "code");
    ASSERT_EQ(SaveConfig(h), 1);
    // What nobody enciphers is not kept: no service, one that does not answer.
    for (const config::service_request none :
         {config::service_request(), +[](int, int, unsigned char *, int, int) { return 0; }}) {
        config::set_cipher(none);
        WriteSecret(h, "pin", "lost");
        EXPECT_EQ(h.c->changed, 0);
        WriteStringVolatile(h, "kept", "x");
        EXPECT_STREQ(ReadSecret(h, "kept", "d"), "d");
    }
    config::set_cipher(rot13);
    WriteStringVolatile(h, "pin", "x");
    WriteSecret(h, "pin", "hello");
    WriteSecret(h, "pin", nullptr);
    WriteSecret(h, "pin", std::string(65, 'x').c_str());
    EXPECT_EQ(h.get("pin"), "\n:uryyb");
    EXPECT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(file(), "pin=\\n:uryyb\n");
    char *secret = ReadSecret(h, "pin", nullptr);
    EXPECT_STREQ(secret, "hello");
    free(secret);
    EXPECT_EQ(requests, "260/0/6/160 261/0/8/160 ");
    WriteSecret(h, "pin", std::string(64, 'x').c_str());
    EXPECT_EQ(h.get("pin").size(), 66u);

    WriteString(h, "long", std::string(160, 'x').c_str());
    EXPECT_EQ(ReadSecret(h, "long", nullptr), ReadString(h, "long", nullptr));
    config::set_cipher([](int, int, unsigned char *data, int, int out) {
        memset(data, 'y', out); // an answer without an end
        return out;
    });
    WriteSecret(h, "pin", "a");
    EXPECT_EQ(h.get("pin"), std::string(160, 'y'));
    config::set_cipher(nullptr);
    EXPECT_STREQ(ReadSecret(h, "absent", "d"), "d");
    EXPECT_EQ(ReadString(h, "absent", nullptr), nullptr);
}

TEST_F(Config, TheGlobalHandleIsTheRuntimes) {
    handle h(path);
    kvstate.cfg = h;
    EXPECT_EQ(GetGlobalConfig(), h.c);
    kvstate.cfg = nullptr;
}

TEST_F(Config, HostileFilesLoseNothing) {
    std::string many, garbage;
    values all;
    for (int i = 0; i < 100000; i++) {
        const std::string name = "key" + std::to_string(i);
        all[name] = std::to_string(i * 7);
        many += name + "=" + all[name] + "\r\n";
    }
    put(many);
    EXPECT_EQ(read_file(path), all);
    handle h(path);
    WriteInt(h, "key5", -1);
    all["key5"] = "-1";
    ASSERT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(read_file(path), all);

    const std::string line(1 << 20, 'v');
    put("a=1\n" + line + "\n" + line + "=1\nb=" + line + "\nc=3");
    EXPECT_EQ(read_file(path), (values{{"a", "1"}, {line, "1"}, {"b", line}, {"c", "3"}}));

    for (unsigned seed = 1; garbage.size() < 200000;)
        garbage += static_cast<char>((seed = seed * 1103515245 + 12345) >> 16);
    put(garbage + "\nlast=1\n");
    const values read = read_file(path);
    EXPECT_EQ(read.at("last"), "1");
    EXPECT_GT(read.size(), 100u);

    // Longer than any configuration, or with more settings: not read, and not written over.
    std::string lines;
    for (int i = 0; i <= 500'000; i++) lines += std::to_string(i) + "=\n";
    for (const std::string &text : {"a=1\n" + std::string(32 << 20, '\n'), "a=1\n" + lines}) {
        put(text);
        handle huge(path);
        EXPECT_EQ(huge.get("a"), "(none)");
        WriteInt(huge, "b", 1);
        EXPECT_EQ(SaveConfig(huge), 0);
        EXPECT_EQ(huge.c->changed, 1);
        EXPECT_EQ(fs::file_size(path), text.size());
    }

    // No save makes a file that cannot be read.
    put("a=1\n");
    handle large(path);
    for (int i = 0; i < 1100; i++)
        WriteString(large, std::to_string(i).c_str(), line.substr(0, 16000).c_str());
    EXPECT_EQ(SaveConfig(large), 0);
    EXPECT_EQ(file(), "a=1\n");
    for (int i = 0; i < 100; i++) DeleteString(large, std::to_string(i).c_str());
    EXPECT_EQ(SaveConfig(large), 1);
    EXPECT_EQ(read_file(path).size(), 1001u);
}

// Names of one and the same public hash, and short ones that lie close to one another: the time
// for such a file must not grow with the square of its lines. Slow code shows here as a time-out.
TEST_F(Config, NamesThatMeetInOneBucketAreReadLikeOthers) {
    values expected;
    for (unsigned i = 0; i < 1u << 16; i++) {
        std::string name;
        for (int bit = 0; bit < 16; bit++) name += i >> bit & 1 ? "a~" : "b?";
        expected[name] = "";
    }
    for (char c = 'a'; c <= 'z'; c++)
        for (char d = 'a'; d <= 'z'; d++)
            for (char e = 'a'; e <= 'z'; e++) expected[{c, d, e}] = std::string(1, c);
    std::string text;
    for (const auto &[name, value] : expected) text += name + "=" + value + "\n";
    put(text);
    handle h(path);
    EXPECT_EQ(read_values(h.c->hash) == expected, true);
    for (int i = 0; i < 10; i++) ASSERT_EQ(RefreshConfig(&h.c), 1);
    EXPECT_EQ(read_values(h.c->hash) == expected, true);
}

TEST_F(Config, FilesThatCannotBeWrittenAreTriedAgain) {
    const std::string directory = root / "dir";
    fs::create_directory(directory);
    for (const std::string &name : {directory, std::string(4096, 'x'), path + "/x",
                                    std::string("/proc/kelvane.cfg"), std::string(root) + "/"}) {
        put("");
        handle h(name);
        WriteInt(h, "a", 1);
        EXPECT_EQ(SaveConfig(h), 0) << name;
        EXPECT_EQ(h.c->changed, 1) << name;
        EXPECT_EQ(h.get("a"), "1") << name;
    }
    handle h(directory);
    WriteInt(h, "a", 1);
    EXPECT_EQ(SaveConfig(h), 0);
    EXPECT_EQ(RefreshConfig(&h.c), 0);
    fs::remove(directory);
    EXPECT_EQ(SaveConfig(h), 1);
    path = directory;
    EXPECT_EQ(file(), "a=1\n");
}

// Runs in a child, whose exit status tells the result.
int in_child(const std::function<int()> &work) {
    const pid_t child = fork();
    if (child == 0) _exit(work());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(Config, ReadOnlyFilesStayAsTheyAre) {
    put("a=1\n");
    fs::permissions(path, fs::perms(0444));
    fs::permissions(root, fs::perms(0555));
    const int result = in_child([&] {
        if (getuid() == 0 && seteuid(65534) != 0) return 77;
        handle h(path), missing(root / "b.cfg"), deep(root / "x/y.cfg");
        if (h.get("a") != "1") return 10;
        int saved = 0;
        for (iconfig *c : {h.c, missing.c, deep.c}) {
            WriteInt(c, "b", 2);
            saved += SaveConfig(c);
            if (c->changed != 1 || ReadInt(c, "b", 0) != 2) return 11;
        }
        return saved;
    });
    fs::permissions(root, fs::perms(0755));
    if (result == 77) GTEST_SKIP() << "cannot give up the superuser's rights";
    EXPECT_EQ(result, 0);
    EXPECT_EQ(file(), "a=1\n");
}

// A limit of the file size stands for a full disk.
TEST_F(Config, AFullDiskKeepsTheOldText) {
    for (const int keys : {10, 1000}) {
        std::string text;
        for (int i = 0; i < keys; i++) text += "key" + std::to_string(10000 + i) + "=1\n";
        put(text);
        const int result = in_child([&] {
            signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{text.size() + 5, text.size() + 5};
            setrlimit(RLIMIT_FSIZE, &limit);
            handle grown(path), same(path), shorter(path);
            WriteString(grown, "a", "longer than 5");
            if (SaveConfig(grown) != 0 || grown.c->changed != 0) return 10;
            if (grown.get("a") != "longer than 5") return 11;
            if (file() != text) return 12;
            WriteInt(same, "key10003", 2); // what takes no more room is saved
            if (SaveConfig(same) != 1) return 13;
            DeleteString(shorter, "key10003");
            return SaveConfig(shorter) == 1 ? 0 : 14;
        });
        EXPECT_EQ(result, 0) << keys;
        text.erase(text.find("key10003"), strlen("key10003=1\n"));
        EXPECT_EQ(file(), text) << keys;
    }
}

class DeviceDescription : public Config {
  protected:
    void SetUp() override {
        fs::create_directories(root / "system/config");
        fs::current_path(root);
        path = "./system/config/device.cfg";
    }
    void TearDown() override {
        fs::current_path("/");
        Config::TearDown();
    }
};

TEST_F(DeviceDescription, LinesAreTrimmedAndTheLastOneWins) {
    put("model = X5  \r\n# note=1\n\t two words \t=\t a = b\x01\t\n"
        "LAST=1\nlast=2\nhex=0x20\nnoequals\nempty=\n=unnamed\nhigh=\xC3\xA9\n" +
        std::string(253, 'x') + "=kept for the next piece\nend=big99999999999999999999");
    const struct {
        const char *name, *value;
    } cases[] = {{"Model", "X5  "}, {"# note", "1"}, {"TWO WORDS", "a = b"}, {"last", "2"},
                 {"noequals", "-"}, {"empty", ""},   {"", "unnamed"},        {"high", "\xC3\xA9"},
                 {"absent", "-"},   {nullptr, "-"}};
    for (const auto &c : cases) EXPECT_STREQ(cfg_read_string(c.name, "-"), c.value) << c.name;
    // A line is read in pieces of 254 bytes: this one is split right behind its "=".
    EXPECT_STREQ(cfg_read_string(std::string(253, 'x').c_str(), "-"), "");
    EXPECT_EQ(cfg_read_int("hex", 0), 32);
    EXPECT_EQ(cfg_read_int("end", 7), 0);
    EXPECT_EQ(cfg_read_int("absent", 7), 7);
}

TEST_F(DeviceDescription, IsReadOnceEvenWhenMissing) {
    EXPECT_EQ(cfg_read_int("a", 7), 7);
    put("a=1\n");
    EXPECT_EQ(cfg_read_int("a", 7), 7);
}

} // namespace
