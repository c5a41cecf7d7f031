// SPDX-License-Identifier: MIT
// What copies, moves and saved pictures leave behind when they fail on the way.
#include "file/replacement.h"

#include <cstring>
#include <functional>
#include <map>
#include <random>

#include "file_fixture.h"
#include "kelvane/bitmaps.h"
#include "kelvane/pictures.h"
#include "raster/bitmap.h"
#include "support/child.h"

namespace {

namespace fs = std::filesystem;
using file::Replacement;

// Names and contents of the files of the working directory.
std::map<std::string, std::string> everything() {
    std::map<std::string, std::string> all;
    for (const auto &entry : fs::directory_iterator("."))
        if (entry.symlink_status().type() == fs::file_type::regular)
            all[entry.path().filename()] = read_file(entry.path());
    return all;
}

bool write_over(const char *path, const char *text) {
    Replacement file(path);
    return kv_fwrite(text, 1, strlen(text), file.stream()) == strlen(text) && file.commit();
}

TEST_F(FileTest, ReplacementsKeepLinksPermissionsAndTheOldFileUntilTheEnd) {
    write_file("real/f", "old");
    fs::permissions("real/f", fs::perms(0640));
    fs::create_symlink("real/f", "link");
    fs::create_symlink("link", "far link");
    {
        Replacement dropped("far link");
        ASSERT_NE(dropped.stream(), nullptr);
        fputs("new", dropped.stream());
        fflush(dropped.stream());
        EXPECT_EQ(contents("real/f"), "old");
    }
    EXPECT_EQ(contents("real/f"), "old");
    EXPECT_TRUE(write_over("far link", "new"));
    EXPECT_EQ(contents("real/f"), "new");
    EXPECT_TRUE(fs::is_symlink("link") && fs::is_symlink("far link"));
    EXPECT_EQ(fs::status("real/f").permissions(), fs::perms(0640));
    fs::create_symlink("real/unborn", "to nothing");
    EXPECT_TRUE(write_over("to nothing", "born"));
    EXPECT_EQ(contents("real/unborn"), "born");
    EXPECT_TRUE(everything().empty()) << "no temporary file stays";
    EXPECT_EQ(std::distance(fs::directory_iterator("real"), {}), 2);
    fs::create_symlink("loop", "loop");
    for (const char *path : {"", ".", "none/f", "loop", "real/f/x"})
        EXPECT_FALSE(write_over(path, "x")) << path;
    EXPECT_FALSE(write_over(nullptr, "x"));
    EXPECT_TRUE(everything().empty());
    device.open_errors = {EROFS};
    EXPECT_FALSE(write_over("real/f", "x"));
    EXPECT_EQ(device.warnings.size(), 1u) << "damage is told as kv_fopen() tells it";
}

TEST_F(FileTest, ReplacementsNeedNoFolderToWriteTo) {
    write_file("d/f", "old");
    write_file("d/locked", "old");
    fs::permissions("d/f", fs::perms(0666));
    fs::permissions("d/locked", fs::perms(0444));
    fs::permissions("d", fs::perms(0555));
    fs::permissions(folder.path(), fs::perms(0755));
    const int result = in_child([] {
        if (getuid() == 0 && seteuid(65534) != 0) return 77;
        return write_over("d/f", "new") && !write_over("d/locked", "x") && !write_over("d/x", "x")
                   ? 0
                   : 1;
    });
    fs::permissions("d", fs::perms(0755));
    if (result == 77) GTEST_SKIP() << "cannot give up the superuser's rights";
    EXPECT_EQ(result, 0);
    EXPECT_EQ(contents("d/f") + contents("d/locked"), "newold");
}

TEST_F(FileTest, AFullDiskKeepsTheOldFile) {
    const auto bm = raster::make_white_bitmap(200, 200);
    std::minstd_rand random;
    for (size_t i = 0; i < raster::pixel_bytes(*bm); ++i)
        bm->data[i] = static_cast<uint8_t>(random() >> 8);
    write_file("source", std::string(9000, 's'));
    const std::string elsewhere = path_elsewhere("full-");
    write_file(elsewhere, std::string(9000, 'e'));
    write_file("target", "old");
    const auto before = everything();
    const std::function<int()> calls[] = {
        [] { return copy_file("source", "target"); },
        [] { return copy_file("source", "new"); },
        [&] { return move_file(elsewhere.c_str(), "target"); },
        [&] { return SaveBitmap("target", bm.get()); },
        [&] { return SavePNG("target", bm.get()); },
        [&] { return SaveJPEG("target", bm.get(), 90); },
        [&] { return SaveJPEG("new", bm.get(), 90); },
    };
    for (const auto &call : calls)
        for (const int size : {0, 1, 700, 4096}) {
            EXPECT_EQ(in_child([&] {
                          fill_disk(static_cast<size_t>(size));
                          return call();
                      }),
                      0)
                << &call - calls << " " << size;
            EXPECT_TRUE(everything() == before) << &call - calls << " " << size;
        }
    EXPECT_EQ(contents(elsewhere).size(), 9000u);
    fs::remove(elsewhere);
}

TEST_F(FileTest, SizesThatAreRefusedKeepTheOldFile) {
    write_file("target", "old");
    ibitmap empty{};
    empty.depth = 4;
    EXPECT_EQ(SavePNG("target", &empty), 0);
    EXPECT_EQ(SaveJPEG("target", &empty, 90), 0);
    const auto wide = raster::make_white_bitmap(65535, 1);
    EXPECT_EQ(SaveJPEG("target", wide.get(), 90), 0);
    EXPECT_EQ(everything(), (std::map<std::string, std::string>{{"target", "old"}}));
}

TEST_F(FileTest, MovesToItselfOrOfWhatCannotBeReadLoseNothing) {
    const std::string elsewhere = path_elsewhere("move-");
    write_file("f", "text");
    fs::create_symlink(fs::absolute("f"), elsewhere);
    EXPECT_EQ(move_file("f", elsewhere.c_str()), 0) << "a link to the source";
    EXPECT_EQ(move_file(elsewhere.c_str(), "f"), 0) << "the link itself";
    EXPECT_EQ(contents("f"), "text");
    fs::remove(elsewhere);
    fs::create_hard_link("f", "same");
    EXPECT_EQ(move_file("f", "same"), 1);
    EXPECT_EQ(contents("same"), "text");

    fs::create_directory("folder");
    write_file("folder/inside", "kept");
    EXPECT_EQ(move_file("folder", elsewhere.c_str()), 0);
    EXPECT_FALSE(fs::exists(elsewhere));
    EXPECT_EQ(contents("folder/inside"), "kept");
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    EXPECT_EQ(move_file("pipe", elsewhere.c_str()) + copy_file("pipe", "new"), 0);
    // What the kernel shows cannot be removed, and some of it cannot be read.
    EXPECT_EQ(move_file("/proc/version", "version"), 0);
    EXPECT_EQ(move_file("/proc/self/mem", "memory"), 0);
    EXPECT_FALSE(fs::exists("memory"));
}

// A source that fails in the middle: the file is shorter than its size says.
TEST_F(FileTest, AMoveThatCannotReadItsSourceToTheEndKeepsIt) {
    const std::string elsewhere = path_elsewhere("part-");
    write_file(elsewhere, std::string(10000, 'x'));
    file_hooks.open_plain = [](const char *, const char *) -> FILE * {
        cookie_io_functions_t io{};
        io.read = [](void *, char *to, size_t n) -> ssize_t {
            static int left = 2;
            if (left-- <= 0) return errno = EIO, -1;
            memset(to, 'x', n);
            return static_cast<ssize_t>(n);
        };
        return fopencookie(nullptr, "r", io);
    };
    write_file("target", "old");
    EXPECT_EQ(move_file(elsewhere.c_str(), "target"), 0);
    EXPECT_EQ(contents("target"), "old");
    EXPECT_EQ(contents(elsewhere).size(), 10000u);
    fs::remove(elsewhere);
}

} // namespace
