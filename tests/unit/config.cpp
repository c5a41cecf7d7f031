// SPDX-License-Identifier: MIT
// Configuration files in one process: the format, the layers of a handle, saving.
#include <climits>
#include <cstring>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <set>

#include "config/hooks.h"
#include "internal.h"
#include "kelvane/config.h"
#include "unit/config_fixture.h"

namespace {

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
        EXPECT_EQ(settings_in(path), c.expected) << c.rule;
        // What is saved reads back as the same, and saving again changes nothing. The empty name
        // sorts first.
        handle h(path);
        WriteInt(h, "zz", 1);
        ASSERT_EQ(SaveConfig(h), 1) << c.rule;
        values with = c.expected;
        with["zz"] = "1";
        EXPECT_EQ(settings_in(path), with) << c.rule;
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

// Names that WriteString takes and a file cannot hold: the next save finds what the line says.
TEST_F(Config, NamesThatReadBackAsOthers) {
    const struct {
        const char *name, *saved, *saved_again;
    } cases[] = {
        {"#x", "#x=1\n", "zz=2\n"},          {" x", " x=1\n", "x=1\nzz=2\n"},
        {"\tx", "\tx=1\n", "x=1\nzz=2\n"},   {"y\nx", "y\nx=1\n", "x=1\nzz=2\n"},
        {"x=y", "x=y=1\n", "x=y=1\nzz=2\n"}, {"x#", "x#=1\n", "x#=1\nzz=2\n"},
    };
    for (const auto &c : cases) {
        fs::remove(path);
        handle h(path);
        WriteInt(h, c.name, 1);
        ASSERT_EQ(SaveConfig(h), 1);
        EXPECT_EQ(file(), c.saved);
        WriteInt(h, "zz", 2);
        ASSERT_EQ(SaveConfig(h), 1);
        EXPECT_EQ(file(), c.saved_again);
        EXPECT_EQ(h.get(c.name), std::string(c.name) == "x#" ? "1" : "(none)") << c.name;
    }
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
        EXPECT_EQ(settings_in(path), (values{{"a", expected}, {"b", "whole"}})) << c.length;
        EXPECT_EQ(h.get("a").size(), c.length) << "the handle keeps the whole";
        WriteString(h, "c", "");
        ASSERT_EQ(SaveConfig(h), 1);
        EXPECT_EQ(h.get("a").size(), c.kept) << "until it reads what the file says";
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
    EXPECT_EQ(settings_in(path), all);
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
    const values left = settings_in(path);
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
    // What nobody enciphers is not kept: the service does not answer.
    config::hooks.service = [](int, int, unsigned char *, int, int) { return 0; };
    WriteSecret(h, "pin", "lost");
    EXPECT_EQ(h.c->changed, 0);
    WriteStringVolatile(h, "kept", "x");
    EXPECT_STREQ(ReadSecret(h, "kept", "d"), "d");
    config::hooks.service = rot13;
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
    config::hooks.service = [](int, int, unsigned char *data, int, int out) {
        memset(data, 'y', out); // an answer without an end
        return out;
    };
    WriteSecret(h, "pin", "a");
    EXPECT_EQ(h.get("pin"), std::string(160, 'y'));
    config::hooks = {};
    EXPECT_STREQ(ReadSecret(h, "absent", "d"), "d");
    EXPECT_EQ(ReadString(h, "absent", nullptr), nullptr);
}

TEST_F(Config, TheGlobalHandleIsTheRuntimes) {
    handle h(path);
    kvstate.cfg = h;
    EXPECT_EQ(GetGlobalConfig(), h.c);
    CloseConfig(OpenConfig(path.c_str(), nullptr));
    EXPECT_EQ(GetGlobalConfig(), h.c) << "another handle on the file";
    kvstate.cfg = OpenConfig(path.c_str(), nullptr);
    CloseConfig(GetGlobalConfig());
    EXPECT_EQ(GetGlobalConfig(), nullptr);
    kvstate.cfg = OpenConfig(path.c_str(), nullptr);
    CloseConfigNoSave(GetGlobalConfig());
    EXPECT_EQ(GetGlobalConfig(), nullptr);
}

} // namespace
