// SPDX-License-Identifier: MIT
// Configuration files that are hostile, cannot be written or are not there; the device's own file.
#include <cerrno>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "file/hooks.h"
#include "internal.h"
#include "kelvane/config.h"
#include "support/child.h"
#include "unit/config_fixture.h"

namespace {

using namespace std::string_literals;

TEST_F(Config, HostileFilesLoseNothing) {
    std::string many, garbage;
    values all;
    for (int i = 0; i < 100000; i++) {
        const std::string name = "key" + std::to_string(i);
        all[name] = std::to_string(i * 7);
        many += name + "=" + all[name] + "\r\n";
    }
    put(many);
    EXPECT_EQ(settings_in(path), all);
    handle h(path);
    WriteInt(h, "key5", -1);
    all["key5"] = "-1";
    ASSERT_EQ(SaveConfig(h), 1);
    EXPECT_EQ(settings_in(path), all);

    const std::string line(1 << 20, 'v');
    put("a=1\n" + line + "\n" + line + "=1\nb=" + line + "\nc=3");
    EXPECT_EQ(settings_in(path), (values{{"a", "1"}, {line, "1"}, {"b", line}, {"c", "3"}}));

    for (unsigned seed = 1; garbage.size() < 200000;)
        garbage += static_cast<char>((seed = seed * 1103515245 + 12345) >> 16);
    put(garbage + "\nlast=1\n");
    const values read = settings_in(path);
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
    EXPECT_EQ(settings_in(path).size(), 1001u);
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

TEST_F(Config, AFullDiskKeepsTheOldText) {
    for (const int keys : {10, 1000}) {
        std::string text;
        for (int i = 0; i < keys; i++) text += "key" + std::to_string(10000 + i) + "=1\n";
        put(text);
        const int result = in_child([&] {
            fill_disk(text.size() + 5);
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

TEST_F(Config, AFirstSaveOnAFullDiskLeavesNothing) {
    iconfigedit defaults[] = {{1, nullptr, "text", "", "size", "9", nullptr, nullptr, nullptr}, {}};
    EXPECT_EQ(in_child([&] {
                  fill_disk(3);
                  handle h(path, defaults);
                  WriteInt(h, "size", 12345);
                  return SaveConfig(h) == 0 && h.c->changed == 1 && h.get("size") == "12345" ? 0
                                                                                             : 1;
              }),
              0);
    EXPECT_TRUE(fs::is_empty(root)) << "an empty file would hide the defaults";
    EXPECT_EQ(handle(path, defaults).get("size"), "9");
}

TEST_F(Config, APipeIsNoConfigurationFile) {
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    handle h(path);
    WriteInt(h, "a", 1);
    EXPECT_EQ(SaveConfig(h) + RefreshConfig(&h.c), 0);
    EXPECT_EQ(h.c->changed, 1);
}

// As editors save: a new file gets the name while somebody waits for the lock of the old one.
TEST_F(Config, AFileThatIsReplacedWhileASaveWaitsIsTheOneThatIsSaved) {
    put("old=1\n");
    handle h(path);
    WriteString(h, "mine", "3");
    const int old = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(old, LOCK_EX), 0);
    const pid_t child = fork();
    if (child == 0) {
        close(old);
        _exit(SaveConfig(h));
    }
    const std::string waits = "-> FLOCK  ADVISORY  WRITE " + std::to_string(child);
    while (read_file("/proc/locks").find(waits) == std::string::npos) usleep(1000);
    write_file(root / "new.cfg", "new=2\n");
    fs::rename(root / "new.cfg", path);
    close(old);
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_EQ(settings_in(path), (values{{"new", "2"}, {"mine", "3"}}));
}

class DeviceDescription : public Config {
  protected:
    DeviceDescription() { path = "./system/config/device.cfg"; }
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

TEST_F(DeviceDescription, AFailureThatPassesIsNotRemembered) {
    put("a=1\n");
    for (const int error : {EMFILE, ENFILE, ENOMEM, EIO}) {
        static int now;
        now = error;
        file_hooks.open_plain = [](const char *, const char *) -> FILE * {
            errno = now;
            return nullptr;
        };
        EXPECT_EQ(cfg_read_int("a", 7), 7);
    }
    // A file that cannot be read to its end.
    file_hooks.open_plain = [](const char *, const char *) -> FILE * {
        cookie_io_functions_t io{};
        io.read = [](void *, char *, size_t) -> ssize_t { return errno = EIO, -1; };
        return fopencookie(nullptr, "r", io);
    };
    EXPECT_EQ(cfg_read_int("a", 7), 7);
    file_hooks = {};
    EXPECT_EQ(cfg_read_int("a", 7), 1);
}

TEST_F(DeviceDescription, APipeIsNotWaitedFor) {
    fs::create_directories("system/config");
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(cfg_read_int("a", 7), 7);
}

} // namespace
