// SPDX-License-Identifier: MIT
// Names, lists, walks, copies and moves on real directories.
#include "file_fixture.h"

#include <algorithm>
#include <map>

namespace {

namespace fs = std::filesystem;
using strings = std::vector<std::string>;

TEST_F(FileTest, BuildpathCreatesAllButTheLastComponent) {
    for (const char *path : {"a/b/c", "./d//e/f", "a/b/", "", "/", "plain"}) kv_buildpath(path);
    kv_buildpath(((folder.path() / "abs/x")).c_str());
    kv_buildpath((std::string(5000, 'n') + "/x").c_str());
    for (const char *dir : {"a/b", "d/e", "abs"}) EXPECT_TRUE(fs::is_directory(dir)) << dir;
    for (const char *none : {"a/b/c", "d/e/f", "abs/x", "plain"}) EXPECT_FALSE(fs::exists(none));
    EXPECT_EQ(has_secure_storage(), 0);
    write_file("system/mnt/secure", "");
    EXPECT_EQ(has_secure_storage(), 0);
    fs::remove("system/mnt/secure");
    kv_buildpath("./system/mnt/secure/");
    EXPECT_EQ(has_secure_storage(), 1);
}

TEST_F(FileTest, AnApplicationsDataHaveAFolder) {
    const std::string longest(255, 'n'), too_long(256, 'n'),
        long_path = "./system/data/reader/" + longest;
    const struct {
        const char *app, *name, *path;
        int size = 100;
    } table[] = {
        {"reader", longest.c_str(), long_path.c_str(), 300},
        {"reader", too_long.c_str(), nullptr, 400},
        {too_long.c_str(), "a", nullptr, 400},
        {"reader", "a\nb", nullptr},
        {"a\x7F", "b", nullptr},
        {"reader", "marks.txt", "./system/data/reader/marks.txt"},
        {"reader", "covers/of/1.png", "./system/data/reader/covers/of/1.png"},
        {"..x", nullptr, "./system/data/..x/"},
        {"box", "", "./system/data/box/"},
        {"fits", "a", "./system/data/fits/a", 21},
        {"long", "a", nullptr, 20},
        {"..", "a", nullptr},
        {".", "a", nullptr},
        {"", "a", nullptr},
        {"a/b", "a", nullptr},
        {nullptr, "a", nullptr},
        {"reader", "../other/a", nullptr},
        {"reader", "a/..", nullptr},
        {"reader", "/etc/a", nullptr},
        {"reader", "a//b", nullptr},
        {"reader", "a/", nullptr},
        {"reader", "marks.txt/a", nullptr}, // which is a file
    };
    for (const auto &row : table) {
        SCOPED_TRACE(testing::Message() << &row - table);
        char out[400] = "before";
        EXPECT_EQ(AppDataPath(row.app, row.name, out, row.size), row.path ? 1 : 0);
        EXPECT_STREQ(out, row.path ? row.path : "");
        if (!row.path) continue;
        EXPECT_TRUE(fs::is_directory(fs::path(row.path).parent_path()));
        if (row.path[strlen(row.path) - 1] != '/') write_file(row.path, "");
    }
    for (const char *none : {"./system/data/long", "./system/data/a", "./system/other"})
        EXPECT_FALSE(fs::exists(none)) << none;
    EXPECT_EQ(AppDataPath("reader", "a", nullptr, 100), 0);
    char one = 'x';
    EXPECT_EQ(AppDataPath("reader", "a", &one, 0), 0);
    EXPECT_EQ(one, 'x');
}

TEST(FileNames, Validation) {
    struct Case {
        int flags;
        strings good, bad;
    };
    std::vector<Case> cases = {
        {0, {"..x", " \x7f", "\xc3\xa9\x80\xff", std::string(1023, 'a')}, {"", "a/b", "\x1f"}},
        {KV_NAME_COMPONENT, {"x..y", ".x"}, {"..x"}},
        {KV_NAME_NO_DOTS, {"x.y.z"}, {"..x", "x.."}},
        {KV_NAME_ABSOLUTE, {}, {"x", "/x"}},
        {KV_NAME_RELATIVE, {"x"}, {"/x"}}};
    for (char c : std::string("/\\|'\"`$%&*")) cases[0].bad.push_back({'a', c});
    cases[0].bad.push_back(std::string(1024, 'a'));
    for (const Case &c : cases) {
        for (const auto &name : c.good)
            EXPECT_EQ(kv_validate_name(name.c_str(), c.flags), 1) << name;
        for (const auto &name : c.bad)
            EXPECT_EQ(kv_validate_name(name.c_str(), c.flags), 0) << name;
    }
    EXPECT_EQ(kv_validate_name(nullptr, 0), 0);
}

TEST(FileNames, Extensions) {
    struct Case {
        const char *exts;
        strings listed, others;
    };
    const Case cases[] = {
        {"bmp,png", {"a.bmp", "a.b.PNG", ".bmp"}, {"a.bm", "a.bmpx", "bmp", "a.", ""}},
        {".Bmp,,..png,", {"a.bmp", "a.PNG"}, {"a.", "a.b,p"}},
        {"tar.gz,b/f,\xff", {"a.\xff"}, {"a.gz", "a.tar.gz", "a.b/f"}},
        {"", {}, {"a.", "a.bmp"}}};
    for (const Case &c : cases) {
        for (const auto &name : c.listed)
            EXPECT_EQ(match_ext(name.c_str(), c.exts), name.size() - name.rfind('.') - 1) << name;
        for (const auto &name : c.others) EXPECT_EQ(match_ext(name.c_str(), c.exts), 0) << name;
    }
    EXPECT_EQ(match_ext("a.bmp", nullptr) + match_ext(nullptr, "bmp"), 0);
}

TEST(FileNames, ComparisonFoldsOnlyAscii) {
    const char *const ordered[] = {nullptr, "", "_", "A", "aa", "B", "z", "\xc3\x84", "\xc3\xa4"};
    for (const char *const &a : ordered)
        for (const char *const &b : ordered)
            EXPECT_EQ(std::clamp(kv_strcasecmp(a, b), -1, 1), (&a > &b) - (&a < &b))
                << &a - ordered << " " << &b - ordered;
    EXPECT_EQ(kv_strcasecmp("Az\xc3\xa9", "aZ\xc3\xa9"), 0);
}

TEST(FileNames, Labels) {
    file_hooks.translate = [](const char *key) -> const char * {
        return std::string(key) == "@SDcard" ? "Card" : key;
    };
    struct Case {
        const char *path;
        int outsize;
        const char *label;
    };
    const char *const book = "./system/mnt/ext2/Books/x.epub"; // label "Card: Books/x.epub"
    for (const Case &c : std::initializer_list<Case>{
             {"./system/mnt/ext1/Books/x.epub", 64, "@DeviceMemory: Books/x.epub"},
             {"./system/mnt/ext1/Books/x.epub", 36, "@DeviceMemory: Books/x.epub"},
             {"./system/mnt/ext1/Books/x.epub", 35, ""},
             {book, 64, "Card: Books/x.epub"},
             {book, 30, "Card: Books/x.epub"},
             {book, 29, ""},
             {"./system/mnt/ext2/1234567", 64, ""},
             {"./system/mnt/ext2/12345678", 64, "Card: 12345678"},
             {"./SYSTEM/mnt/ext2/12345678", 64, ""},
             {"./system/mnt/ext3/Books/x.epub", 64, ""},
             {nullptr, 64, ""}}) {
        std::string out(static_cast<size_t>(c.outsize), '?');
        Path2String(c.path, out.data(), c.outsize);
        EXPECT_STREQ(out.c_str(), c.label) << c.outsize;
    }
    char untouched = '?';
    Path2String(book, &untouched, 0);
    Path2String(book, nullptr, 9);
    EXPECT_EQ(untouched, '?');
    file_hooks = {};
}

strings taken(char **list) {
    strings result;
    for (; *list; ++list) result.push_back(*list);
    return result;
}

TEST_F(FileTest, ListsUniteDirectoriesInOrder) {
    for (const char *path : {"d1/b.bmp", "d1/A.BMP", "d1/.hidden.bmp", "d1/x.txt", "d2/a.bmp",
                             "d3/\xff.bmp", "d3/B.png", "d3/\xc3\xa9.tar.bmp"})
        write_file(path, "");
    char **list = nullptr;
    EXPECT_EQ(taken(kv_enum_files(&list, "d1", "d2", nullptr, "bmp", 0)),
              (strings{"a.bmp", "b.bmp"}));
    EXPECT_EQ(taken(kv_enum_files(&list, "d2", "none", "d1", ".bmp", 1)), (strings{"A", "b"}));
    EXPECT_EQ(taken(kv_enum_files(&list, "d1", nullptr, "d3", "bmp,png", 1)),
              (strings{"A", "B", "\xc3\xa9.tar", "\xff"}));
    EXPECT_EQ(taken(kv_enum_files(&list, nullptr, nullptr, nullptr, nullptr, 0)), strings{});
    free(list);
    list = kv_enum_files(nullptr, "none", nullptr, nullptr, "bmp", 0);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(*list, nullptr);
    free(list);
}

TEST_F(FileTest, ListsHoldAtMost1023NamesAndKeepTheLastRead) {
    for (int i = 0; i < 1030; ++i) {
        write_file("many/" + std::to_string(i) + ".x", "");
        if (i < 50) write_file("lower/" + std::to_string(i) + ".x", "");
        if (i < 50) write_file("upper/" + std::to_string(i) + ".X", "");
    }
    char **list = nullptr;
    const auto held = [&](const char *dir1, const char *dir2) {
        return taken(kv_enum_files(&list, dir1, dir2, nullptr, "x", 0));
    };
    EXPECT_EQ(held("many", nullptr).size(), 1023u);
    EXPECT_EQ(held("many", "upper"), held("many", nullptr)) << "full after the first";
    const strings united = held("lower", "upper");
    EXPECT_EQ(united.size(), 50u);
    EXPECT_TRUE(std::is_sorted(united.begin(), united.end()));
    for (const auto &name : united) EXPECT_EQ(name.back(), 'X');
    kv_enum_files(&list, nullptr, nullptr, nullptr, nullptr, 0);
    free(list);
}

struct Walk {
    strings seen;
    std::map<std::string, int> results;

    int run(const char *path, int dirsfirst, int withdirs) {
        return recurse_action(
            path,
            [](const char *p, int isdir, void *ctx) {
                auto *self = static_cast<Walk *>(ctx);
                self->seen.push_back(std::string(p) + (isdir ? "/" : ""));
                const auto found = self->results.find(self->seen.back());
                return found == self->results.end() ? 0 : found->second;
            },
            this, dirsfirst, withdirs);
    }
};

TEST_F(FileTest, WalkOrders) {
    write_file("t/s/f", "");
    struct Case {
        const char *path;
        int dirsfirst, withdirs;
        strings seen;
    };
    for (const Case &c : std::initializer_list<Case>{
             {"t", 1, 1, {"t/", "t/s/", "t/s/f"}},
             {"t", 0, 1, {"t/s/f", "t/s/", "t/"}},
             {"t", 1, 0, {"t/s/", "t/s/f"}},
             {"t", 0, 0, {"t/s/f", "t/s/"}},
             {"t/s/f", 0, 1, {"t/s/f"}},
             {"t/s/f", 0, 0, {}},
             {"none", 0, 1, {}},
         }) {
        Walk walk;
        EXPECT_EQ(walk.run(c.path, c.dirsfirst, c.withdirs), 0);
        EXPECT_EQ(walk.seen, c.seen) << c.path << c.dirsfirst << c.withdirs;
    }
    EXPECT_EQ(recurse_action("t", nullptr, nullptr, 1, 1), 0);
    EXPECT_EQ(recurse_action(
                  nullptr, [](const char *, int, void *) { return 9; }, nullptr, 1, 1),
              0);
}

TEST_F(FileTest, WalkKeepsTheLargestResultAndStopsAboveOne) {
    for (const char *name : {"t/s/a", "t/s/b", "t/s/c"}) write_file(name, "");
    Walk keep;
    keep.results = {{"t/s/a", 1}, {"t/s/b", -7}};
    EXPECT_EQ(keep.run("t", 0, 1), 1);
    EXPECT_EQ(keep.seen.size(), 5u);
    for (int dirsfirst : {0, 1}) {
        Walk stop;
        stop.results = {{"t/s/a", 2}, {"t/s/b", 3}, {"t/s/c", 4}, {"t/s/", dirsfirst ? 0 : 9}};
        const int result = stop.run("t", dirsfirst, 1);
        EXPECT_GE(result, 2);
        const auto last = std::find(stop.seen.begin(), stop.seen.end(), dirsfirst ? "" : "t/s/");
        EXPECT_EQ(last - stop.seen.begin(), dirsfirst ? 3 : 1) << "no further entry is read";
        if (dirsfirst) continue;
        EXPECT_EQ(strings(last, stop.seen.end()), (strings{"t/s/", "t/"}))
            << "what is told after its contents is told all the same";
        EXPECT_EQ(result, 9);
    }
    Walk at_once;
    at_once.results = {{"t/", 5}};
    EXPECT_EQ(at_once.run("t", 1, 1), 5);
    EXPECT_EQ(at_once.seen, strings{"t/"});
    write_file("file", "");
    Walk negative;
    negative.results = {{"file", -3}};
    EXPECT_EQ(negative.run("file", 0, 1), -3);
}

TEST_F(FileTest, WalkEndsInLoopsAndTakesAnyName) {
    write_file("t/s/\xff\xfe\x80", "");
    write_file("t/\xc3\xa9", "");
    for (int i = 0; i < 20; ++i) fs::create_symlink("..", "t/s/up" + std::to_string(i));
    fs::create_symlink("self", "t/self");
    fs::create_symlink("nowhere", "t/dangling");
    fs::create_symlink("s", "t/again");
    fs::create_directory("t/closed");
    write_file("t/closed/inside", "");
    fs::permissions("t/closed", fs::perms::none);
    Walk walk;
    walk.run("t", 1, 0);
    std::erase(walk.seen, "t/closed/inside"); // the superuser reads it
    std::erase(walk.seen, "t/closed/");
    std::sort(walk.seen.begin(), walk.seen.end());
    EXPECT_EQ(walk.seen, (strings{"t/again/", "t/again/\xff\xfe\x80", "t/s/", "t/s/\xff\xfe\x80",
                                  "t/\xc3\xa9"}));
    fs::permissions("t/closed", fs::perms::all);
}

TEST_F(FileTest, WalkFollowsEachLinkedDirectoryOnce) {
    constexpr int levels = 30;
    for (int i = 0; i < levels; ++i) {
        const std::string here = "t/" + std::to_string(i), next = "../" + std::to_string(i + 1);
        write_file(here + "/f", "");
        for (const char *link : {"/a", "/b"}) fs::create_symlink(next, here + link);
    }
    write_file("t/" + std::to_string(levels) + "/f", "");
    Walk walk;
    walk.run("t/0", 1, 1);
    EXPECT_EQ(walk.seen.size(), 2u * (levels + 1)) << "each level, and its file";
    Walk all;
    all.run("t", 1, 1);
    EXPECT_LE(all.seen.size(), 1 + 4u * (levels + 1)) << "once by its name, once by a link";
}

TEST_F(FileTest, WalkLeavesOutPathsOf1025Bytes) {
    std::string dir = "t";
    while (dir.size() < 900) dir += "/" + std::string(98, 'd');
    const std::string fits = dir + "/" + std::string(1024 - dir.size() - 1, 'f');
    write_file(fits, "");
    write_file(dir + "/" + std::string(1025 - dir.size() - 1, 'g'), "");
    Walk walk;
    walk.run("t", 1, 0);
    EXPECT_EQ(walk.seen.back(), fits);
    EXPECT_EQ(walk.seen.size(), 11u);
}

TEST_F(FileTest, CopiesAnySizeAndName) {
    for (size_t size : {0, 1, 4095, 4096, 4097, 100'000}) {
        std::string text(size, 'x');
        for (size_t i = 0; i < size; ++i) text[i] = static_cast<char>(i * 31);
        write_file("\xff source", text);
        EXPECT_EQ(copy_file("\xff source", "copy"), 1);
        EXPECT_EQ(contents("copy"), text);
    }
    EXPECT_EQ(copy_file("none", "new"), 0);
    EXPECT_FALSE(fs::exists("new"));
    EXPECT_EQ(copy_file("copy", "no/such/dir"), 0);
    EXPECT_EQ(copy_file("copy", "/dev/full"), 0)
        << "a full disk is noticed, however little is written";
    EXPECT_EQ(copy_file(".", "new"), 0) << "only plain files are copied";
    EXPECT_FALSE(fs::exists("new"));
    EXPECT_EQ(copy_file("copy", "./copy"), 1) << "already there";
    EXPECT_EQ(contents("copy").size(), 100'000u);
    EXPECT_EQ(copy_file(nullptr, "a") + copy_file("copy", nullptr), 0);
}

TEST_F(FileTest, MovesByRenamingOrCopying) {
    write_file("A.txt", "upper");
    EXPECT_EQ(move_file("A.txt", "a.txt"), 1);
    EXPECT_EQ(contents("A.txt"), "upper");
    EXPECT_FALSE(fs::exists("a.txt"));
    EXPECT_EQ(move_file("A.txt", "b"), 1);
    EXPECT_EQ(contents("b"), "upper");
    EXPECT_EQ(move_file("b", "none/c"), 0);
    EXPECT_EQ(move_file("none", "c") + move_file(nullptr, nullptr), 0);
    EXPECT_EQ(contents("b"), "upper") << "kept when the move fails";
    EXPECT_FALSE(fs::exists("A.txt"));

    const std::string elsewhere = path_elsewhere("file-");
    EXPECT_EQ(move_file("b", elsewhere.c_str()), 1);
    EXPECT_EQ(contents(elsewhere), "upper");
    EXPECT_FALSE(fs::exists("b"));
    EXPECT_EQ(move_file(elsewhere.c_str(), "/dev/full"), 0);
    EXPECT_EQ(contents(elsewhere), "upper");
    fs::remove(elsewhere);
}

TEST_F(FileTest, AssociatedFilesFollowTheBook) {
    const auto state = [](const char *book, char kind) {
        char *path = GetAssociatedFile(book, kind);
        std::string result = path ? path : "(null)";
        free(path);
        return result;
    };
    const char *const book = "./system/mnt/ext1/a/x.epub";
    EXPECT_EQ(state(book, '0'), "./system/state/0/system/mnt/ext1/a/x.epub");
    EXPECT_TRUE(fs::is_directory("system/state/0/system/mnt/ext1/a"));
    EXPECT_EQ(state("../../x//./y", 'z'), "./system/state/z/%2E%2E/%2E%2E/x/y");
    EXPECT_EQ(state("/b/../x", '1'), "./system/state/1/%2F/b/%2E%2E/x");
    EXPECT_EQ(state("%2F/%2E%2E/5%", '1'), "./system/state/1/%252F/%252E%2E/5%");
    for (const auto &[path, kind] : {std::pair{book, '2'}, {book, '\0'}, {"", '0'}})
        EXPECT_EQ(state(path, kind), "(null)");
    EXPECT_EQ(CheckAssociatedFile(book, '0'), nullptr);

    write_file(book, "book");
    write_file(state(book, '0'), "zero");
    write_file(state(book, 'z'), "zed");
    EXPECT_EQ(copy_file_with_af(book, "copy.epub"), 1);
    EXPECT_EQ(contents("copy.epub") + contents(state("copy.epub", '0')) +
                  contents(state("copy.epub", '1')) + contents(state("copy.epub", 'z')),
              "bookzero(none)zed");
    EXPECT_EQ(move_file_with_af("copy.epub", "new/copy.epub"), 0);
    EXPECT_EQ(copy_file_with_af("none", "copy2"), 0);
    EXPECT_EQ(contents(state("copy.epub", '0')), "zero") << "a failed move leaves the state";
    fs::create_directory("new");
    EXPECT_EQ(move_file_with_af("copy.epub", "new/copy.epub"), 1);
    EXPECT_EQ(contents(state("copy.epub", 'z')) + contents(state("new/copy.epub", 'z')),
              "(none)zed");
    fs::remove("new/copy.epub");
    EXPECT_EQ(unlink_file_with_af("new/copy.epub"), 0);
    EXPECT_EQ(CheckAssociatedFile("new/copy.epub", 'z'), nullptr) << "removed with or without it";
    EXPECT_EQ(unlink_file_with_af(book), 1);
    EXPECT_EQ(unlink_file_with_af(nullptr), 0);
    EXPECT_EQ(CheckAssociatedFile(book, '0'), nullptr);
}

} // namespace
