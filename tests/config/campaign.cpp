// SPDX-License-Identifier: MIT
// Many processes at one file: nothing is lost, and no kill leaves a file that lacks anything.
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <sched.h>
#include <sys/mount.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <vector>

#include "scene.h"
#include "support/child.h"
#include "support/repeats.h"

namespace {

// Settings that nobody changes; they make the file several pages long.
settings constants() {
    settings all;
    for (int i = 0; i < 400; i++)
        all["constant" + std::to_string(i)] = "of the same value " + std::to_string(i * 7);
    return all;
}

bool has_constants(const settings &all) {
    static const settings expected = constants();
    return std::includes(all.begin(), all.end(), expected.begin(), expected.end());
}

std::string own_key(int process, int i) {
    return "p" + std::to_string(process) + "." + std::to_string(i % 50);
}

constexpr int processes = 8;

// From now on a signal interrupts whatever waits, such as for the lock of a file.
void send_signals() {
    struct sigaction nothing {};
    nothing.sa_handler = [](int) {};
    sigaction(SIGALRM, &nothing, nullptr);
    const itimerval every_ms{{0, 1000}, {0, 1000}};
    setitimer(ITIMER_REAL, &every_ms, nullptr);
}

// One process of the campaign: each save writes a key, the common key, and deletes a key.
int save_often(const scene &s, int process, int saves) {
    send_signals();
    for (int i = 0; i < saves; i++) {
        iconfig *c = OpenConfig(s.path.c_str(), nullptr);
        WriteInt(c, own_key(process, i).c_str(), i);
        WriteInt(c, "common", process * 10000 + i);
        DeleteString(c, own_key(process, i + 25).c_str());
        const int saved = SaveConfig(c);
        CloseConfigNoSave(c);
        if (saved != 1) return 1;
    }
    return 0;
}

settings own_keys(int process, int saves) {
    settings all;
    for (int i = 0; i < saves; i++) {
        all[own_key(process, i)] = std::to_string(i);
        all.erase(own_key(process, i + 25));
    }
    return all;
}

pid_t start(const std::function<int()> &work) {
    const pid_t child = fork();
    if (child == 0) _exit(work());
    return child;
}

TEST(ConfigCampaign, EightProcessesLoseNothing) {
    const int saves = times(60, 1000);
    const scene s;
    s.put(text_of(constants()));
    std::vector<pid_t> children;
    for (int p = 0; p < processes; p++)
        children.push_back(start([&] { return save_often(s, p, saves); }));
    int reads = 0;
    for (size_t done = 0; done < children.size();) {
        ASSERT_TRUE(has_constants(s.read())) << "read " << reads;
        reads++;
        int status = 0;
        if (waitpid(-1, &status, WNOHANG) <= 0) continue;
        EXPECT_EQ(status, 0);
        done++;
    }
    settings expected = constants();
    for (int p = 0; p < processes; p++) expected.merge(own_keys(p, saves));
    settings found = s.read();
    const int common = std::atoi(found["common"].c_str());
    EXPECT_EQ(common % 10000, saves - 1) << "the last save of all wins";
    found.erase("common");
    EXPECT_EQ(found, expected);
    expected["common"] = std::to_string(common);
    EXPECT_EQ(s.text(), text_of(expected)) << "sorted, every line whole";
    std::printf("%d saves, %d reads beside them\n", processes * saves, reads);
}

// Saves for ever, some times with each handle; the file grows and shrinks, so that lines move
// across pages.
[[noreturn]] void save_until_killed(const scene &s, unsigned seed) {
    std::mt19937 random(seed);
    for (;;) {
        iconfig *c = OpenConfig(s.path.c_str(), nullptr);
        for (int i = 0; i < 12; i++) {
            const std::string name = "a" + std::to_string(random() % 20);
            if (random() % 2)
                WriteString(c, name.c_str(), std::string(random() % 900, "vw"[i % 2]).c_str());
            else if (random() % 2)
                DeleteString(c, name.c_str());
            else if (const std::string old = ReadString(c, name.c_str(), ""); !old.empty())
                WriteString(c, name.c_str(), std::string(old.size(), "wv"[i % 2]).c_str());
            if (i % 3 == 2) SaveConfig(c);
        }
        CloseConfig(c);
    }
}

// What is wrong with the file after a kill; empty when nothing is.
std::string damage(const settings &all) {
    static const settings expected = constants();
    if (!has_constants(all)) return "a constant is lost";
    for (const auto &[name, value] : all) {
        if (expected.count(name)) continue;
        const bool known = name[0] == 'a' && name.size() <= 3;
        if (!known) return "nobody wrote the name " + name;
        const std::string v(value.size(), 'v'), w(value.size(), 'w');
        if (value != v && value != w) return "nobody wrote the value " + value;
    }
    return {};
}

TEST(ConfigCampaign, KillsLoseNothing) {
    const int kills = times(300, 10000);
    const scene s;
    std::mt19937 random(20260102);
    s.put(text_of(constants()));
    int torn = 0;
    for (int i = 0; i < kills; i++) {
        const unsigned seed = random();
        const pid_t child = start([&]() -> int { save_until_killed(s, seed); });
        usleep(300 + random() % 2500);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const std::string text = s.text();
        ASSERT_FALSE(text.empty()) << "kill " << i;
        const settings all = s.read();
        ASSERT_EQ(damage(all), "") << "kill " << i;
        torn += text != text_of(all);
    }
    // About one in ten; without them the campaign would show nothing.
    EXPECT_GT(torn, kills / 100);
    std::printf("%d kills, %d of them in the middle of a write\n", kills, torn);
}

// Mounts an empty file system of 16 pages over a folder, for this process alone.
bool mount_small_disk(const std::string &folder) {
    const std::string user = "0 " + std::to_string(getuid()) + " 1";
    const std::string group = "0 " + std::to_string(getgid()) + " 1";
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    std::ofstream("/proc/self/uid_map") << user;
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/gid_map") << group;
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("none", folder.c_str(), "tmpfs", 0, "size=64k") == 0;
}

// Saves on a disk with so many pages left. 0 when nothing is lost.
int save_on_full_disk(const scene &s, const settings &before, size_t pages) {
    if (!before.empty()) s.put(text_of(before));
    const std::string filler = s.folder.path() / "filler";
    std::ofstream(filler) << std::string(size_t{64} << 10, 'x');
    std::error_code ignored;
    const auto filled = std::filesystem::file_size(filler, ignored) / 4096;
    std::filesystem::resize_file(filler, 4096 * (filled - std::min<size_t>(filled, pages)));
    iconfig *c = OpenConfig(s.path.c_str(), nullptr);
    settings after = before;
    for (int i = 0; i < 90; i++) {
        const std::string name = "a" + std::to_string(i);
        WriteString(c, name.c_str(), (after[name] = std::string(90, 'v')).c_str());
    }
    const int saved = SaveConfig(c);
    CloseConfigNoSave(c);
    const settings found = s.read();
    if (found != (saved ? after : before)) return 1;
    if (!saved && before.empty() && std::filesystem::exists(s.path)) return 2;
    std::filesystem::remove(filler);
    std::filesystem::remove(s.path);
    return std::filesystem::is_empty(s.folder.path()) ? 0 : 3;
}

TEST(ConfigCampaign, AFullDiskLosesNothing) {
    const scene s;
    const int result = in_child([&] {
        if (!mount_small_disk(s.folder.path())) return 77;
        settings few, many;
        for (int i = 0; i < 200; i++) (i < 5 ? few : many)["k" + std::to_string(i)] = "value";
        for (const settings &before : {settings(), few, many})
            for (size_t pages = 0; pages < 12; pages++)
                if (const int wrong = save_on_full_disk(s, before, pages)) return wrong;
        return 0;
    });
    if (result == 77) GTEST_SKIP() << "cannot mount a file system";
    EXPECT_EQ(result, 0);
}

} // namespace
