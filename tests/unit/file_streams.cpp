// SPDX-License-Identifier: MIT
// Waiting, retrying and warning, on a clock that moves only when the library pauses.
#include "file_fixture.h"

#include <fcntl.h>
#include <functional>

#include "file/stream.h"
#include "file/warning.h"

namespace {

namespace fs = std::filesystem;

TEST_F(FileTest, EveryPathOperationWaitsForSettlingStorage) {
    struct stat st;
    const std::function<void(const char *)> operations[] = {
        kv_buildpath,
        [](auto p) { kv_mkdir(p, 0700); },
        [&](auto p) { kv_stat(p, &st); },
        [](auto p) { kv_access(p, F_OK); },
        kv_unlink,
        kv_rmdir,
        [](auto p) { kv_truncate(p, 0); },
        [](auto p) { kv_rename(p, "x"); },
        kv_opendir,
        [](auto p) { kv_fopen(p, "r"); },
    };
    for (const auto &operation : operations) {
        wake(350);
        operation("./System/MNT/ext1/none/x");
        EXPECT_EQ(device.pauses, 4) << "operation " << &operation - operations;
    }
}

TEST_F(FileTest, WaitEndsWithReadyStorageOrAfterTheSettlingTime) {
    struct Case {
        const char *path;
        long long ready_after, since_wake;
        int pauses;
    };
    const long long never = 1'000'000;
    for (const Case &c : std::initializer_list<Case>{
             {"./system/mnt/ext1", never, 0, 10},
             {"./system/mnt/ext2/a", never, 999, 1},
             {"./system/mnt/ext2/a", never, 1000, 0},
             {"./SYSTEM/TMP/PHOTOS", never, 500, 5},
             {"./system/mnt/ext1/a", 0, 0, 0},
             {"./system/mnt/ext1/a", 101, 0, 2},
             {"./system/mnt/ext3", never, 0, 0},
             {"./system/tmp/phot", never, 0, 0},
             {"system/mnt/ext1", never, 0, 0},
         }) {
        wake(c.ready_after);
        device.now_ms += c.since_wake;
        kv_access(c.path, F_OK);
        EXPECT_EQ(device.pauses, c.pauses) << c.path << " " << c.since_wake;
    }
    wake(never);
    kv_rename("a", "./system/mnt/ext1/a");
    EXPECT_EQ(device.pauses, 0) << "the target of a rename does not wait";
}

// A stream whose first operations fail.
struct Flaky {
    int failures;
    std::string data;
};

bool fails(void *cookie) {
    errno = EIO;
    return static_cast<Flaky *>(cookie)->failures-- > 0;
}

FILE *open_flaky(Flaky *flaky, const char *mode) {
    cookie_io_functions_t io{};
    io.read = [](void *cookie, char *buf, size_t n) -> ssize_t {
        if (fails(cookie)) return -1;
        std::string &data = static_cast<Flaky *>(cookie)->data;
        n = data.copy(buf, n);
        data.erase(0, n);
        return static_cast<ssize_t>(n);
    };
    io.write = [](void *cookie, const char *buf, size_t n) -> ssize_t {
        if (fails(cookie)) return 0; // how a cookie says that it failed
        static_cast<Flaky *>(cookie)->data.append(buf, n);
        return static_cast<ssize_t>(n);
    };
    FILE *f = fopencookie(flaky, mode, io);
    setvbuf(f, nullptr, _IONBF, 0);
    return f;
}

TEST_F(FileTest, TransfersAreRetriedWithinTheSecondAfterAWake) {
    static char b[8];
    const std::pair<const char *, bool (*)(FILE *)> transfers[] = {
        {"r", [](FILE *f) { return kv_fread(b, 1, 2, f) == 2 && b[1] == 'b'; }},
        {"r", [](FILE *f) { return kv_fgetc(f) == 'a'; }},
        {"r", [](FILE *f) { return kv_fgets(b, 8, f) == b && !strcmp(b, "ab\n"); }},
        {"w", [](FILE *f) { return kv_fwrite("ab", 1, 2, f) == 2; }},
    };
    struct Case {
        int failures, since_wake, pauses;
        bool works;
    };
    const Case cases[] = {{0, 0, 0, true},    {3, 0, 3, true},   {10, 0, 10, true},
                          {11, 0, 10, false}, {1, 999, 1, true}, {1, 1000, 0, false}};
    for (const Case &c : cases)
        for (const auto &[mode, transfer] : transfers) {
            Flaky flaky{c.failures, *mode == 'r' ? "ab\ncd" : ""};
            FILE *f = open_flaky(&flaky, mode);
            wake(0);
            device.now_ms += c.since_wake;
            EXPECT_EQ(transfer(f), c.works) << c.failures << " after " << c.since_wake;
            EXPECT_EQ(device.pauses, c.pauses) << c.failures << " after " << c.since_wake;
            kv_fclose(f);
        }
}

TEST_F(FileTest, EndOfFileReturnsAtOnce) {
    Flaky flaky{1, ""};
    FILE *f = open_flaky(&flaky, "r");
    char buf[4];
    EXPECT_EQ(kv_fgetc(f), EOF); // leaves an error in the stream
    wake(0);
    EXPECT_EQ(kv_fread(buf, 1, 4, f), 0u);
    EXPECT_EQ(kv_fgetc(f), EOF);
    EXPECT_EQ(kv_fgets(buf, 4, f), nullptr);
    EXPECT_EQ(device.pauses, 0);
    kv_fclose_no_sync(f);
}

const std::string check_warning = "4@Error @FS_need_check 10000";

TEST_F(FileTest, ReadOnlyOpenWarnsOnceRequestsEachTimeAndRetriesOnce) {
    device.open_errors = {EROFS};
    EXPECT_EQ(kv_fopen("f", "w"), nullptr);
    EXPECT_EQ(errno, EROFS);
    EXPECT_EQ(device.opens, 2);
    device.now_s += 15;
    EXPECT_EQ(kv_fopen("f", "w"), nullptr);
    EXPECT_EQ(device.warnings, std::vector{check_warning});
    EXPECT_EQ(device.requests, (std::vector{263, 263}));
    device.now_s += 1;
    device.open_errors = {EROFS, 0};
    FILE *f = kv_fopen("f", "w");
    ASSERT_NE(f, nullptr);
    kv_fclose(f);
    EXPECT_EQ(device.warnings.size(), 2u);
    EXPECT_EQ(device.requests.size(), 3u);
    device.open_errors = {ENOENT};
    device.opens = 0;
    EXPECT_EQ(kv_fopen("f", "r"), nullptr);
    EXPECT_EQ(device.opens, 1);
}

TEST_F(FileTest, FailingOpenNamesADeviceAndSharesTheSpacing) {
    device.mounts = "rootfs / ext4 rw 0 0\n"
                    "/dev/book /books ext4 rw 0 0\n"
                    "/dev/a-name-of-more-than-31-characters /elsewhere vfat rw 0 0\n"
                    "/dev/short /b vfat rw 0 0\n";
    device.open_errors = {EIO};
    EXPECT_EQ(kv_fopen("/books/x", "r"), nullptr);
    EXPECT_EQ(errno, EIO);
    EXPECT_EQ(device.opens, 1) << "no retry";
    EXPECT_TRUE(device.requests.empty());
    EXPECT_EQ(device.warnings, std::vector<std::string>{"4@Error Input/output error at "
                                                        "/dev/a-name-of-more-than-31-cha 10000"});
    device.open_errors = {EROFS, EIO};
    EXPECT_EQ(kv_fopen("/books/x", "w"), nullptr);
    EXPECT_EQ(device.warnings.size(), 1u) << "within 15 seconds";
    EXPECT_EQ(device.requests.size(), 1u);
    device.now_s += 16;
    device.mounts = "rootfs / ext4 rw 0 0\n";
    device.open_errors = {EIO};
    kv_fopen("/books/x", "w");
    EXPECT_EQ(device.warnings.back(), "4@Error Input/output error at  10000");
}

TEST_F(FileTest, NamedDeviceIsThatOfTheLastMountLongerThanTheBest) {
    struct Case {
        const char *path, *mounts, *device;
    };
    for (const Case &c : std::initializer_list<Case>{
             {"/a/b/c", "A /a x x\nAB /a/b x x\nZ /z x x\n", "AB"},
             {"/a/b/c", "AB /a/b x x\nA /a x x\nLONG /zzzzz x x\n", "LONG"},
             {"./system/f", "R / x x\nP /proc x x\nT /tmp x x\n", "T"},
             {"/my card/f", "C /my\\040card x x\nZ /z/zz x x\n", "C"},
             {"/f", "garbage\n\n# c /comment x x\n", ""},
         }) {
        std::string table = c.mounts;
        FILE *f = fmemopen(table.data(), table.size(), "r");
        EXPECT_STREQ(failing_device(f, c.path).text, c.device) << c.mounts;
        fclose(f);
    }
}

TEST_F(FileTest, SeekTakesAStaleErrorForItsOwn) {
    write_file("f", "0123456789");
    FILE *f = kv_fopen("f", "r");
    errno = 0;
    EXPECT_EQ(kv_fseek(f, 4, SEEK_SET), 0);
    EXPECT_TRUE(device.requests.empty());
    for (int i = 0; i < 2; ++i) {
        errno = EIO;
        EXPECT_EQ(kv_fseek(f, 7, SEEK_SET), 5);
        EXPECT_EQ(errno, EIO);
        EXPECT_EQ(kv_ftell(f), 7);
    }
    errno = 0;
    EXPECT_EQ(kv_fseek(f, -1, SEEK_SET), -1);
    device.open_errors = {EROFS};
    kv_fopen("g", "w");
    EXPECT_EQ(device.warnings, (std::vector{check_warning, check_warning})) << "one a kind";
    EXPECT_EQ(device.requests, (std::vector{263, 263, 263}));
    kv_fclose_no_sync(f);
}

TEST_F(FileTest, CloseReportsWhatCouldNotBeWritten) {
    FILE *full = kv_fopen("/dev/full", "w");
    ASSERT_EQ(kv_fwrite("x", 1, 1, full), 1u);
    EXPECT_EQ(kv_fclose(full), -1);
    EXPECT_EQ(errno, ENOSPC);

    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    FILE *to_pipe = fdopen(ends[1], "w");
    kv_fwrite("x", 1, 1, to_pipe);
    EXPECT_EQ(kv_fclose(to_pipe), 0) << "a pipe cannot be synced";
    close(ends[0]);
}

TEST_F(FileTest, OnlyPlainFilesAreOpenedAndNothingIsWaitedFor) {
    fs::create_directory("directory");
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    fs::create_symlink("pipe", "to pipe");
    write_file("plain", "text");
    fs::create_symlink("plain", "to plain");
    for (const auto how : {file::Access::read, file::Access::rewrite}) {
        for (const char *path : {"directory", "pipe", "to pipe", "/dev/zero", "none"}) {
            EXPECT_EQ(file::open_plain(path, how), nullptr) << path;
            EXPECT_NE(errno, 0) << path;
        }
        EXPECT_EQ(file::open_plain(nullptr, how), nullptr);
        const file::Stream f = file::open_plain("to plain", how);
        ASSERT_NE(f, nullptr);
        EXPECT_EQ(fcntl(fileno(f.get()), F_GETFL) & O_NONBLOCK, 0);
        EXPECT_EQ(fcntl(fileno(f.get()), F_GETFD), FD_CLOEXEC);
        EXPECT_EQ(kv_fgetc(f.get()), 't');
    }
    EXPECT_EQ(kv_fwrite("x", 1, 1, file::open_plain("plain", file::Access::rewrite).get()), 1u);
    EXPECT_EQ(contents("plain"), "xext");
    device.open_errors = {EROFS, EIO};
    EXPECT_EQ(file::open_plain("plain"), nullptr);
    EXPECT_EQ(device.requests.size(), 1u) << "damage is told as kv_fopen() tells it";
}

TEST_F(FileTest, NullArgumentsDoNothing) {
    char buf[4];
    struct stat st;
    kv_buildpath(nullptr);
    for (auto call : {+[](struct stat *s) { return kv_stat(nullptr, s); },
                      +[](struct stat *) { return kv_access(nullptr, F_OK); }}) {
        errno = 0;
        EXPECT_EQ(call(&st), -1);
        EXPECT_EQ(errno, EFAULT);
    }
    EXPECT_EQ(kv_mkdir(nullptr, 0) + kv_unlink(nullptr) + kv_rmdir(nullptr), -3);
    EXPECT_EQ(kv_truncate(nullptr, 0) + kv_rename(nullptr, "a") + kv_rename("a", nullptr), -3);
    EXPECT_TRUE(!kv_opendir(nullptr) && !kv_readdir(nullptr) && !kv_fopen(nullptr, "r"));
    EXPECT_EQ(kv_closedir(nullptr) + kv_fclose(nullptr) + kv_fclose_no_sync(nullptr), -3);
    EXPECT_EQ(kv_fread(buf, 1, 1, nullptr) + kv_fwrite(nullptr, 1, 1, stdout), 0u);
    EXPECT_TRUE(!kv_fgets(nullptr, 4, stdin) && !kv_fgets(buf, 4, nullptr));
    EXPECT_EQ(kv_fgetc(nullptr) + kv_fseek(nullptr, 0, SEEK_SET) + kv_ftell(nullptr), -3);
    EXPECT_EQ(kv_preload("none", 0) + kv_preload(nullptr, 0), -2);
}

} // namespace
