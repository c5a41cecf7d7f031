// SPDX-License-Identifier: MIT
// Saving with a crash after each page that reaches the file, with each read or write failing, and
// with each allocation failing.
#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>
#include <new>
#include <random>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "scene.h"
#include "support/repeats.h"

extern "C" int __real_ftruncate(int, off_t);

namespace {

constexpr int never = INT_MAX;

// Counts down to the operation that goes wrong; `never` again afterwards, or 0 for ever.
struct countdown {
    int left = never;
    bool for_ever = false;
    bool struck = false;

    bool strikes() {
        if (left == never) return false;
        if (left > 0) {
            left--;
            return false;
        }
        if (!for_ever) left = never;
        return struck = true;
    }
};

countdown crash;      // counts pages written and lengths set, and syncs where power fails
countdown io_failure; // counts reads, pages written, lengths set and syncs
countdown allocation_failure;

// Power that fails takes along what was not synced: each page of the file is as it was at the last
// sync, or as it was written, and so is the length.
struct {
    bool fails = false;
    std::string synced;
    std::minstd_rand chance;

    static std::string contents(int fd) {
        struct stat st;
        std::string all(fstat(fd, &st) == 0 ? static_cast<size_t>(st.st_size) : 0, '\0');
        if (pread(fd, all.data(), all.size(), 0) != ssize_t(all.size())) abort();
        return all;
    }
    bool lost() { return chance() / 7 % 2 == 0; }
    void fail(int fd) {
        const std::string written = contents(fd);
        std::string left(lost() ? synced.size() : written.size(), '\0');
        for (size_t page = 0; page < left.size(); page += 4096) {
            const std::string &from = lost() ? synced : written;
            const size_t size = std::min<size_t>(4096, left.size() - page);
            if (page < from.size()) from.copy(&left[page], size, page);
        }
        if (pwrite(fd, left.data(), left.size(), 0) != ssize_t(left.size()) ||
            __real_ftruncate(fd, static_cast<off_t>(left.size())) != 0)
            abort();
    }
} power;

// Where a process may be killed, or power fail.
void step(int fd) {
    if (!crash.strikes()) return;
    if (power.fails) power.fail(fd);
    _exit(0);
}

bool memory_runs_out() {
    return allocation_failure.strikes();
}

} // namespace

extern "C" {

size_t __real_kv_fread(void *, size_t, size_t, std::FILE *);
size_t __real_kv_fwrite(const void *, size_t, size_t, std::FILE *);
void *__real_malloc(size_t);
void *__real_calloc(size_t, size_t);
void *__real_realloc(void *, size_t);
char *__real_strdup(const char *);

size_t __wrap_kv_fread(void *to, size_t size, size_t n, std::FILE *f) {
    return io_failure.strikes() ? __real_kv_fread(to, size, n / 2, f)
                                : __real_kv_fread(to, size, n, f);
}

// As the system writes: page by page. A kill or a full disk ends it between two pages.
size_t __wrap_kv_fwrite(const void *from, size_t size, size_t n, std::FILE *f) {
    if (crash.left == never && io_failure.left == never) return __real_kv_fwrite(from, size, n, f);
    const auto *bytes = static_cast<const char *>(from);
    const auto at = static_cast<size_t>(ftell(f));
    for (size_t done = 0; done < n;) {
        step(fileno(f));
        if (io_failure.strikes()) return done;
        const size_t piece = std::min(n - done, 4096 - (at + done) % 4096);
        if (__real_kv_fwrite(bytes + done, 1, piece, f) != piece) abort();
        done += piece;
    }
    return n;
}

int __wrap_fdatasync(int fd) {
    if (power.fails) {
        step(fd);
        power.synced = power.contents(fd);
    }
    if (!io_failure.strikes()) return 0;
    errno = EIO;
    return -1;
}

int __wrap_ftruncate(int fd, off_t size) {
    step(fd);
    if (io_failure.strikes()) {
        errno = EIO;
        return -1;
    }
    return __real_ftruncate(fd, size);
}

void *__wrap_malloc(size_t size) {
    return memory_runs_out() ? nullptr : __real_malloc(size);
}
void *__wrap_calloc(size_t n, size_t size) {
    return memory_runs_out() ? nullptr : __real_calloc(n, size);
}
void *__wrap_realloc(void *old, size_t size) {
    return memory_runs_out() ? nullptr : __real_realloc(old, size);
}
char *__wrap_strdup(const char *text) {
    return memory_runs_out() ? nullptr : __real_strdup(text);
}
}

[[gnu::noinline]] void *operator new(size_t size) {
    if (void *p = memory_runs_out() ? nullptr : __real_malloc(size)) return p;
    throw std::bad_alloc();
}
[[gnu::noinline]] void *operator new(size_t size, const std::nothrow_t &) noexcept {
    return memory_runs_out() ? nullptr : __real_malloc(size);
}
[[gnu::noinline]] void *operator new[](size_t size) {
    return operator new(size);
}
[[gnu::noinline]] void *operator new[](size_t size, const std::nothrow_t &t) noexcept {
    return operator new(size, t);
}
[[gnu::noinline]] void operator delete(void *p) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete(void *p, size_t) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete[](void *p) noexcept {
    std::free(p);
}
[[gnu::noinline]] void operator delete[](void *p, size_t) noexcept {
    std::free(p);
}

namespace {

settings numbered(const char *prefix, int n, const std::string &value) {
    settings all;
    for (int i = 0; i < n; i++) all[prefix + std::to_string(i)] = value;
    return all;
}

settings joined(settings a, settings b) {
    b.merge(a);
    return b;
}

// A change of a file: what it holds, and what a save makes of it.
struct change {
    const char *what;
    settings before;
    settings written; // an empty value deletes
    bool ends_in_line_feed = true;
    bool text_is_known = false; // the same handle has saved the file as it was before

    settings after() const {
        settings all = joined(before, written);
        std::erase_if(all, [&](const auto &item) { return item.second.empty(); });
        return all;
    }
    std::string text() const {
        std::string text = text_of(before);
        if (!ends_in_line_feed) text.pop_back();
        return text;
    }
    int save(const scene &s, int crash_at = never) const {
        iconfig *c = OpenConfig(s.path.c_str(), nullptr);
        if (text_is_known) {
            c->changed = 1;
            SaveConfig(c);
        }
        crash.left = crash_at;
        for (const auto &[name, value] : written)
            value.empty() ? DeleteString(c, name.c_str())
                          : WriteString(c, name.c_str(), value.c_str());
        const int saved = SaveConfig(c);
        CloseConfigNoSave(c);
        return saved;
    }
};

const change changes[] = {
    {"a first save", {}, {{"a", "1"}}},
    {"a small file grows", numbered("k", 9, "v"), numbered("a", 9, "w")},
    {"a small file shrinks", numbered("k", 9, "v"), {{"k1", ""}, {"k2", ""}}},
    {"without a last line feed", numbered("k", 9, "v"), {{"k8", "x"}}, false},
    {"small becomes large", {{"k", "v"}}, numbered("a", 900, "value")},
    {"large becomes small", numbered("k", 900, "value"), numbered("k", 890, "")},
    {"large grows at its start", numbered("k", 900, "value"), numbered("a", 7, "longer value")},
    {"large shrinks at its start", numbered("k", 900, "value"), {{"k0", ""}, {"k1", ""}}},
    {"large keeps its length", numbered("k", 900, "value"), {{"k5", "VALUE"}}},
    {"large and known, one line changes",
     numbered("k", 900, "value"),
     {{"k5", "VALUE"}},
     true,
     true},
    {"large and known, lines far apart change",
     numbered("k", 900, "value"),
     {{"k0", "VALUE"}, {"k899", "VALUE"}},
     true,
     true},
    {"large without a last line feed", numbered("k", 900, "value"), {{"z", "1"}}, false},
    {"grows by more than its length", numbered("k", 300, "value"), numbered("b", 700, "value")},
    {"long lines", numbered("k", 9, std::string(5000, 'v')),
     numbered("j", 9, std::string(5001, 'w'))},
};

// Every setting is the old or the new one, and there is no other.
void expect_nothing_lost(const settings &found, const change &c) {
    const settings after = c.after();
    for (const auto &[name, value] : c.before)
        EXPECT_GE(found.count(name), after.count(name)) << name;
    for (const auto &setting : found) {
        const auto is = [&](const settings &all) {
            const auto same = all.find(setting.first);
            return same != all.end() && *same == setting;
        };
        EXPECT_TRUE(is(c.before) || is(after)) << setting.first << "=" << setting.second;
    }
}

// Saves in a child that crashes at that step. False when the save was over before.
bool crashed(const change &c, const scene &s, int step) {
    const pid_t child = fork();
    if (child == 0) {
        _exit(c.save(s, step) == 1 ? 1 : 2);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status == 0;
}

TEST(ConfigFaults, ACrashAfterAnyPageLosesNothing) {
    const scene s;
    const change next = {"", {}, {{"next", "1"}}};
    for (const change &c : changes) {
        SCOPED_TRACE(c.what);
        int step = 0;
        for (bool more = true; more; step++) {
            SCOPED_TRACE(step);
            s.put(c.text());
            more = crashed(c, s, step);
            expect_nothing_lost(s.read(), c);
            // The next save puts the file in order.
            EXPECT_EQ(next.save(s), 1);
            expect_nothing_lost(s.read(), {"", joined(c.before, next.written), c.written});
            EXPECT_EQ(s.text(), text_of(s.read()));
            if (HasFailure()) return;
        }
        EXPECT_GT(step, 1);
    }
}

// Its value may be cut where a page of the new text was lost.
void expect_no_name_lost(const settings &found, const change &c) {
    const settings after = c.after();
    for (const auto &[name, value] : c.before) {
        // A last line without a line feed is taken for torn when NULs follow it.
        if (!after.count(name) || (!c.ends_in_line_feed && name == c.before.rbegin()->first))
            continue;
        ASSERT_EQ(found.count(name), 1u) << name;
        const std::string &is = found.at(name);
        EXPECT_TRUE(value.starts_with(is) || after.at(name).starts_with(is)) << name << "=" << is;
    }
}

TEST(ConfigFaults, APowerFailureLosesNoSetting) {
    const scene s;
    for (const change &c : changes) {
        SCOPED_TRACE(c.what);
        for (int seed = 1; seed <= repeats(3, 1); seed++) {
            int at = 0;
            for (bool more = true; more; at++) {
                SCOPED_TRACE(std::to_string(at) + " " + std::to_string(seed));
                s.put(c.text());
                power = {true, c.text(), std::minstd_rand(static_cast<unsigned>(seed * 1000 + at))};
                more = crashed(c, s, at);
                power.fails = false;
                expect_no_name_lost(s.read(), c);
                if (HasFailure()) return;
            }
        }
    }
}

TEST(ConfigFaults, TwoCrashesLoseNothing) {
    const scene s;
    const change c = {"", numbered("k", 9, std::string(900, 'v')),
                      joined({{"k3", ""}}, numbered("a", 3, std::string(800, 'w')))};
    bool first = true, second = true;
    for (int i = 0; first; i++) {
        for (int j = 0; second; j++) {
            SCOPED_TRACE(std::to_string(i) + ", " + std::to_string(j));
            s.put(c.text());
            first = crashed(c, s, i);
            second = crashed(c, s, j);
            expect_nothing_lost(s.read(), c);
            if (HasFailure()) return;
        }
        second = true;
    }
}

TEST(ConfigFaults, AnyFailingReadOrWriteLosesNothing) {
    const scene s;
    for (const change &c : changes) {
        for (const bool for_ever : {false, true}) {
            bool failed = true;
            for (int step = 0; failed; step++) {
                SCOPED_TRACE(c.what + (" " + std::to_string(step)));
                s.put(c.text());
                io_failure = {step, for_ever};
                c.save(s);
                failed = io_failure.struck;
                io_failure = {};
                expect_nothing_lost(s.read(), c);
                if (HasFailure()) return;
            }
        }
    }
}

// A failing sync leaves nothing undone but the promise that a save has been kept.
TEST(ConfigFaults, ASaveThatAnswersYesIsOnTheDisk) {
    const scene s;
    for (const change &c : changes) {
        SCOPED_TRACE(c.what);
        int successes = 0;
        for (int step = 0; successes == 0; step++) {
            s.put(c.text());
            io_failure = {step, true};
            const int saved = c.save(s);
            const bool failed = io_failure.struck;
            io_failure = {};
            EXPECT_EQ(saved, !failed) << step;
            EXPECT_TRUE(!saved || s.text() == text_of(c.after()));
            successes += saved;
            if (HasFailure()) return;
        }
    }
}

// The first save of a file that is not there is whole, or has not been.
TEST(ConfigFaults, AFirstSaveIsMadeWholeOrNotAtAll) {
    const change c = {"", {}, numbered("k", 900, "value")};
    int made = 0;
    for (int step = 0; made == 0; step++) {
        const scene s;
        made = !crashed(c, s, step);
        const bool exists = std::filesystem::exists(s.path);
        EXPECT_TRUE(!exists || s.text() == text_of(c.written));
        EXPECT_TRUE(!made || (exists && step > 1));
    }
    for (int step = 0; made == 1; step++) {
        const scene s;
        io_failure = {step, false};
        const int saved = c.save(s);
        if (!io_failure.struck) made = 2;
        io_failure = {};
        EXPECT_EQ(saved, std::filesystem::exists(s.path)) << step;
        EXPECT_EQ(c.save(s), 1) << "the next try";
        EXPECT_EQ(s.text(), text_of(c.written));
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(s.folder.path()), {}), 1);
    }
}

// A value that memory was short for is lost, but neither the one before it nor the handle.
TEST(ConfigFaults, AfterAFailedWriteTheHandleSavesOn) {
    for (int step = 0, failed = 1; failed; step++) {
        const scene s;
        iconfig *c = OpenConfig(s.path.c_str(), nullptr);
        WriteString(c, "a", "old");
        WriteStringVolatile(c, "v", "old");
        allocation_failure = {step, false};
        WriteString(c, "a", "new");
        WriteStringVolatile(c, "v", "new");
        failed = allocation_failure.struck;
        allocation_failure = {};
        for (const char *name : {"a", "v"}) {
            const std::string value = ReadString(c, name, "");
            EXPECT_TRUE(value == "new" || (failed && value == "old")) << name << value << step;
        }
        EXPECT_EQ(SaveConfig(c), 1);
        EXPECT_EQ(s.read().size(), 1u) << step;
        CloseConfigNoSave(c);
    }
}

TEST(ConfigFaults, AnyFailingAllocationLosesNothing) {
    const scene s;
    const change several_pages = {
        "several pages", numbered("k", 45, std::string(99, 'v')), {{"k7", ""}, {"a", "1"}}};
    for (const change &c : {changes[1], changes[2], several_pages}) {
        int failures = 0;
        for (bool failed = true; failed; failures++) {
            SCOPED_TRACE(c.what + (" " + std::to_string(failures)));
            const bool for_ever = failures % 2;
            s.put(c.text());
            allocation_failure = {failures / 2, for_ever};
            iconfig *h = OpenConfig(s.path.c_str(), nullptr);
            for (const auto &[name, value] : c.written)
                value.empty() ? DeleteString(h, name.c_str())
                              : WriteString(h, name.c_str(), value.c_str());
            SaveConfig(h);
            RefreshConfig(&h);
            CloseConfig(h);
            failed = allocation_failure.struck;
            allocation_failure = {};
            expect_nothing_lost(s.read(), c);
            if (HasFailure()) return;
        }
        EXPECT_GT(failures, 50);
    }
}

} // namespace
