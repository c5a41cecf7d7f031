// SPDX-License-Identifier: MIT
// Theme files, and what replaces their pictures, as they lie on a device.
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "kelvane/config.h"
#include "kelvane/languages.h"
#include "kelvane/theme.h"
#include "support/headless.h"
#include "support/tempdir.h"
#include "support/theme_file.h"
#include "support/zip_file.h"

namespace {

namespace fs = std::filesystem;

class ThemeTest : public headless::Test {
  protected:
    void open(const ThemeFile &theme, const std::string &name = "t") {
        write_file("system/themes/" + name + ".tqt", theme.bytes());
        OpenTheme(name.c_str());
    }
};

// The grey level of the first pixel of a picture, -1 without one.
int grey(const char *name) {
    const std::unique_ptr<ibitmap, void (*)(void *)> bm(GetResource(name, nullptr), std::free);
    return bm ? bm->data[0] >> 4 : -1;
}

std::string resolved(const char *name, int length = 100) {
    char out[100] = "";
    return resolve_resource_name(name, out, length) ? out : "(refused)";
}

std::string bmp(int level) {
    std::unique_ptr<ibitmap, void (*)(void *)> bm(NewBitmap(1, 1), std::free);
    bm->data[0] = static_cast<uint8_t>(level * 0x11);
    SaveBitmap("saved.bmp", bm.get());
    return read_file("saved.bmp");
}

int open_files() {
    return static_cast<int>(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
}

TEST_F(ThemeTest, ThemeAndLanguageCloseWithTheScreen) {
    const int closed = open_files();
    ThemeFile theme("a=first\n");
    theme.add("pic", ThemeFile::picture(0x10));
    open(theme, "default");
    write_file("system/language/en.txt", "English\n@Yes=Of course\n");
    LoadLanguage("en");
    AddTranslation("@Added", "by hand");
    EXPECT_STREQ(GetThemeString("a", "none"), "first");
    ClearOnExit();
    EXPECT_LE(open_files(), closed) << "the theme's file is closed";
    EXPECT_STREQ(GetThemeString("a", "none"), "none");
    EXPECT_EQ(grey("pic"), -1);
    EXPECT_STREQ(GetLangText("@Added"), "@Added");
    EXPECT_STREQ(GetLangText("@Yes"), "@Yes");

    write_file("system/themes/default.tqt", ThemeFile("a=second\n").bytes());
    ASSERT_EQ(OpenScreenExt(), 1);
    EXPECT_STREQ(GetThemeString("a", "none"), "second") << "the new screen loads what is there now";
    EXPECT_STREQ(GetLangText("@Yes"), "Of course");
}

} // namespace

TEST_F(ThemeTest, Parameters) {
    LoadLanguage("en");
    open(ThemeFile("plain=one\r\r\n"
                   " \t indented = two \n"
                   "#comment=three\n"
                   "without equals\n"
                   "twice=1\ntwice=2=3\n"
                   "^turned=landscape\nturned=portrait\n"
                   "hex=0xffffff\nnegative=-12x\nempty=\n"
                   "*:@All=all languages\nEN:@Own=own\nde:@Other=other\n"
                   "rect=-10,0,-1,50,CxM\nshort=5,,7\n"
                   "last=end"));
    const struct {
        const char *name, *portrait, *landscape;
    } texts[] = {{"plain", "one", "one"}, {"indented ", " two ", " two "},
                 {"#comment", "-", "-"},  {"without equals", "-", "-"},
                 {"twice", "2=3", "2=3"}, {"turned", "portrait", "landscape"},
                 {"empty", "", ""},       {"*:@All", "-", "-"},
                 {"last", "end", "end"},  {nullptr, "-", "-"}};
    for (int orientation : {0, 1, 2, 3}) {
        SetOrientation(orientation);
        const bool landscape = orientation == 1 || orientation == 2;
        for (const auto &t : texts)
            EXPECT_STREQ(GetThemeString(t.name, "-"), landscape ? t.landscape : t.portrait);
    }
    SetOrientation(0);
    EXPECT_EQ(GetThemeInt("hex", 1), 0xFFFFFF);
    EXPECT_EQ(GetThemeInt("negative", 1), -12);
    EXPECT_EQ(GetThemeInt("empty", 1), 0);
    EXPECT_EQ(GetThemeInt("missing", 1), 1);
    EXPECT_STREQ(GetLangText("@All"), "all languages");
    EXPECT_STREQ(GetLangText("@Own"), "own");
    EXPECT_STREQ(GetLangText("@Other"), "@Other");
    irect r;
    GetThemeRect("rect", &r, 1, 2, 3, 4, 5);
    EXPECT_EQ(r.x, ScreenWidth() - 10);
    EXPECT_EQ(r.w, 10);
    EXPECT_EQ(r.h, 50);
    EXPECT_EQ(r.flags, ALIGN_CENTER | VALIGN_MIDDLE);
    kv_getthemerect("short", &r, 1, 2, 3, 4, 5);
    EXPECT_EQ(std::tie(r.x, r.y, r.w, r.h, r.flags), std::tuple(5, 0, 7, 4, 5));
}

TEST(ThemeOfPartner, GoesFirst) {
    const TempDir device;
    write_file("system/config/device.cfg", "partner=Shop\n"); // read once, so before all else
    write_file("system/themes/t.tqt",
               ThemeFile("x=all\nx.Shop=partner\n^x=turned\n^x.Shop=turned partner\n").bytes());
    OpenTheme("t");
    EXPECT_STREQ(GetThemeString("x", "-"), "partner");
    kvstate.orientation = 1;
    EXPECT_STREQ(GetThemeString("x", "-"), "turned partner");
    OpenTheme("none");
}

TEST_F(ThemeTest, AliasesAndStyles) {
    write_file("x.cfg", "key=value\n");
    open(ThemeFile("a=b\nb=c\nc=d\nd=e\ne=f\nself=self\nset=:x.cfg:key\nfall=:x.cfg:no:other\n"
                   "bad=:x.cfg\ngone=:made/"
                   "x.cfg:key:none\nreader.application.style=2\nodd.application.style=7\n"));
    const std::pair<const char *, const char *> names[] = {
        {"a", "e"},       {"d", "f"},        {"self", "self"},     {"unknown", "unknown"},
        {"set", "value"}, {"fall", "other"}, {"bad", "(refused)"}, {nullptr, "(refused)"},
        {"gone", "none"}};
    for (auto [name, expected] : names) EXPECT_EQ(resolved(name), expected);
    EXPECT_FALSE(fs::exists("made"));
    EXPECT_EQ(resolved("unknown", 4), "unk");
    EXPECT_EQ(resolved("a", 0), "(refused)");
    EXPECT_EQ(GetDefaultAppStyle(), 3);
    EXPECT_EQ(GetAppStyle("reader"), 2);
    EXPECT_EQ(GetAppStyle("odd"), 3);
    EXPECT_EQ(GetAppStyle(nullptr), 3);
    EXPECT_EQ(GetAppGlobalStyle(), 3);
    open(ThemeFile("application.style=1\n"));
    EXPECT_EQ(GetAppStyle("default"), 1);
    EXPECT_EQ(GetAppStyle("reader"), 3) << "as it was at first";
    EXPECT_EQ(GetAppGlobalStyle(), 3);
}

TEST_F(ThemeTest, PictureVariants) {
    ThemeFile theme("key=B\n");
    theme.add("a", ThemeFile::picture(0x10));
    theme.add("b", ThemeFile::picture(0x20));
    theme.add("B:4", ThemeFile::picture(0x30));
    theme.add("^b", ThemeFile::picture(0x40));
    theme.add("c:4", ThemeFile::picture(0x50));
    theme.add("^c:4", ThemeFile::picture(0x60));
    theme.add("small", std::string("\1\0\1\0\4\0\2\0x", 9)); // a row more than it has bytes
    theme.add("a", ThemeFile::picture(0x70));
    theme.add("AZ@[`{", ThemeFile::picture(0xA0)); // both letters, and what stands beside letters
    theme.add("damaged", "text that is no picture");
    const std::string longest(80, 'n'); // variants are found by the start of such a name
    theme.add(longest.substr(0, 61) + ":4", ThemeFile::picture(0x80));
    theme.add("^" + longest.substr(0, 62), ThemeFile::picture(0x90));
    open(theme);
    const struct {
        const char *name;
        int portrait, landscape;
    } pictures[] = {{"a", 1, 1},        {"A", 1, 1},
                    {"b", 3, 4},        {"c", 5, 6},
                    {"small", -1, -1},  {"d", -1, -1},
                    {"az@[`{", 10, 10}, {"az`[`{", -1, -1},
                    {"az@{`{", -1, -1}, {longest.c_str(), 8, 9}};
    for (int orientation : {0, 2}) {
        SetOrientation(orientation);
        for (const auto &p : pictures) {
            EXPECT_EQ(grey(p.name), orientation == 0 ? p.portrait : p.landscape) << p.name;
            if (std::string(p.name) != "small") {
                EXPECT_EQ(IsResourcePresent(p.name), p.portrait >= 0);
            }
        }
    }
    SetOrientation(0);
    OpenTheme(nullptr); // changes nothing
    errno = EIO;        // of something else, before
    ibitmap *other = NewBitmap(2, 2), *kept = GetResource("a", other);
    EXPECT_EQ(GetResource("d", other), other);
    ibitmap *keyed = GetKeyResource("key", nullptr);
    ASSERT_TRUE(keyed);
    EXPECT_EQ(keyed->data[0], 0x30);
    OpenTheme("none");
    EXPECT_EQ(kept->data[0], 0x10) << "given away";
    EXPECT_EQ(IsResourcePresent("a"), 0);
    for (ibitmap *bm : {other, kept, keyed}) std::free(bm);
}

TEST_F(ThemeTest, ReplacedPictures) {
    ThemeFile theme("");
    for (const char *name : {"archived", "x", "broken", "plain"})
        theme.add(name, ThemeFile::picture(0x10));
    write_zip("system/resources/t.zip", {{"archived.BMP", bmp(2)},
                                         {"x.bmp", bmp(3)},
                                         {"empty.bmp", ""},
                                         {"notes.txt", "n"},
                                         {"y.bmp", "no"}});
    write_file("system/themes/t/broken.bmp", "BM");
    write_file("system/themes/t/x.bmp", bmp(4));
    write_file("system/themes/t/late.bmp", bmp(5));
    write_file("system/themes/t/config.txt", "parameter=value\n");
    write_file("system/resources/t/late.bmp", bmp(6));
    write_file("system/themes/t/upper.bmp", bmp(8));
    write_file("system/resources/t/upper.BMP", bmp(9));
    fs::create_directory("system/resources/t/folder.bmp");
    write_file("system/resources/t/y.bmp", bmp(7));
    open(theme);
    const std::pair<const char *, int> pictures[] = {
        {"archived", 2}, {"x", 3},      {"broken", 1}, {"late", 6},  {"y", 7},
        {"plain", 1},    {"empty", -1}, {"notes", -1}, {"upper", 9}, {"folder", -1}};
    for (auto [name, level] : pictures) {
        EXPECT_EQ(IsResourcePresent(name), level >= 0) << name;
        EXPECT_EQ(grey(name), level) << name;
        EXPECT_EQ(grey(name), level) << name << " again";
    }
    EXPECT_STREQ(GetThemeString("parameter", "-"), "-");
    // A refused theme leaves nothing of the one before; a link goes by its target's name.
    theme.magic.back() = 2;
    open(theme, "newer");
    EXPECT_EQ(grey("archived"), -1);
    fs::create_symlink("t.tqt", "system/themes/link.tqt");
    OpenTheme("link");
    EXPECT_EQ(grey("late"), 6);
    fs::rename("system/themes/t.tqt", "system/themes/.default.tqt");
    OpenTheme("t"); // the default's pictures, replaced for the name that was asked for
    EXPECT_EQ(grey("plain"), 1);
    EXPECT_EQ(grey("late"), 6);
    EXPECT_STREQ(EnumThemes()[0], "link");
}

TEST_F(ThemeTest, FontsOfTheTheme) {
    const std::string face = read_file("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf");
    ASSERT_FALSE(face.empty());
    ThemeFile theme("head=#own,30,0x555555\n^head=default,40\nfar=../config/own,9\n");
    theme.add("own", face);
    theme.add("../config/own", face);
    open(theme);
    const auto files = [] { return std::distance(fs::recursive_directory_iterator("."), {}); };
    const auto before = files();
    ifont *font = GetThemeFont("head", nullptr);
    ASSERT_TRUE(font);
    EXPECT_EQ(font->size, 30);
    EXPECT_EQ(font->color, 0x555555);
    EXPECT_EQ(font->aa, 0);
    EXPECT_STREQ(font->family, "DejaVu Sans");
    ifont *larger = OpenFont(font->name, 40, 1);
    ASSERT_TRUE(larger) << "a font's name opens it in another size";
    EXPECT_STREQ(larger->family, "DejaVu Sans");
    for (ifont *f : {font, larger, GetThemeFont("far", nullptr)}) CloseFont(f);
    EXPECT_EQ(files(), before) << "fonts are read from the theme, and nothing is written";
    EXPECT_EQ(GetThemeFont("missing", nullptr), nullptr);
}

TEST_F(ThemeTest, FontsOfOneNameInTwoThemes) {
    const std::string faces[] = {"DejaVuSans", "DejaVuSerif"};
    for (const std::string &face : faces) {
        ThemeFile theme("window.font=own,20\n");
        theme.add("own", read_file("/usr/share/fonts/truetype/dejavu/" + face + ".ttf"));
        write_file("system/themes/" + face + ".tqt", theme.bytes());
    }
    OpenTheme("DejaVuSans");
    ifont *former = GetThemeFont("window.font", nullptr);
    OpenTheme("DejaVuSerif");
    ifont *present = GetThemeFont("window.font", nullptr);
    ASSERT_TRUE(former && present);
    EXPECT_STREQ(former->family, "DejaVu Sans");
    EXPECT_STREQ(present->family, "DejaVu Serif");
    SetFont(former, BLACK);
    EXPECT_GT(StringWidth("text"), 0) << "its file is gone";
    CloseFont(former);
    CloseFont(present);
    OpenTheme("none");
    EXPECT_EQ(GetThemeFont("window.font", "own,20"), nullptr);
}

// Damaged files give what is whole in them, or nothing, and soon.
TEST_F(ThemeTest, DamagedFiles) {
    ThemeFile theme("name=value\n");
    theme.add("pic", ThemeFile::picture(0x10));
    theme.add("^pic:4", ThemeFile::picture(0x20));
    const std::string good = theme.bytes();
    const auto use = [](const std::string &bytes) {
        write_file("system/themes/t.tqt", bytes);
        OpenTheme("t");
        const int level = grey("pic");
        EXPECT_TRUE(level == 1 || level == -1);
        IsResourcePresent("pic");
        const std::string text = GetThemeString("name", "value");
        EXPECT_EQ(text, "value");
    };
    for (size_t size = 0; size < good.size(); size++) use(good.substr(0, size));
    const size_t header = good.size() - 2 * ThemeFile::pack(ThemeFile::picture(0)).size();
    for (size_t at = 16; at < header && at < 80; at++)
        for (int value : {0, 1, 0x7F, 0xFF}) {
            std::string bad = good;
            bad[at] = static_cast<char>(value);
            if (at >= 44 && (at < 60 || at >= 72)) continue; // names and padding
            use(bad);
        }
    ThemeFile many("");
    many.add("pic", ThemeFile::picture(0x10));
    many.add_entry("header", 9, static_cast<size_t>(-20), 17);
    many.add_entry("bomb", 0xFFFFFFF0, 0, 17);
    for (int i = 0; i < 100'000; i++) many.add_entry("e" + std::to_string(i), 9, 0, 17);
    open(many);
    EXPECT_EQ(grey("pic"), 1);
    EXPECT_EQ(IsResourcePresent("e99999"), 1);
    for (const char *name : {"header", "bomb"}) EXPECT_EQ(grey(name), -1) << name;
    for (const size_t too_much : {0, 1}) {
        ThemeFile full(std::string("name=x\n").append((4 << 20) - 7 + too_much, '#'));
        full.add("pic", ThemeFile::picture(0x10).append((8 << 20) - 9 + too_much, 'x'));
        open(full);
        EXPECT_STREQ(GetThemeString("name", "-"), too_much ? "-" : "x");
        EXPECT_EQ(grey("pic"), too_much ? -1 : 1);
    }
    ThemeFile large("");
    large.add("pic", ThemeFile::picture(0x10));
    large.add("picture", std::string("\xFF\xFF\x90\0\4\0\xFF\xFF", 8).append(0xFFFF * 0x90, 'x'));
    large.add_entry("wide", 9, 0, 1 << 30); // begins as "pic" does
    open(large);
    fs::resize_file("system/themes/t.tqt", (1 << 30) + (1 << 20)); // takes no room
    OpenTheme("t");
    for (const char *name : {"picture", "wide"}) EXPECT_EQ(grey(name), -1) << name;
}

// What a theme unpacks to is bounded, alone and together, whatever its index promises.
TEST_F(ThemeTest, Bombs) {
    ThemeFile bombs("blank=blank,20\nfull=full,20\n");
    const std::string face = read_file("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf");
    bombs.add("blank", std::string(face).append(55 << 20, '\0'));
    bombs.add("full", std::string(face).append((8 << 20) - face.size(), '\0'));
    for (int i = 1; i <= 32; ++i) bombs.add_entry("e" + std::to_string(i), 8 << 20, 0, 17);
    open(bombs);
    EXPECT_EQ(GetThemeFont("blank", nullptr), nullptr) << "packed more than 100 to 1";
    ifont *full = GetThemeFont("full", nullptr);
    EXPECT_TRUE(full);
    CloseFont(full);
    EXPECT_EQ(IsResourcePresent("e31"), 1);
    EXPECT_EQ(IsResourcePresent("e32"), 0) << "more than 256 MiB together";
}

// Records that no bitmap has, or whose pixels would lie outside their block.
TEST_F(ThemeTest, RecordsOfPictures) {
    const struct {
        const char *name;
        uint16_t width, height, depth, scanline;
        size_t bytes;
        int level;
    } records[] = {{"good", 4, 2, 4, 2, 4, 1},           {"padded", 4, 2, 4, 8, 16, 1},
                   {"halved", 5, 2, 4, 2, 4, 1},         {"masked", 4, 2, 0x8004, 2, 6, 1},
                   {"no width", 0, 2, 4, 2, 4, -1},      {"no height", 4, 0, 4, 2, 4, -1},
                   {"depth", 4, 2, 5, 2, 4, -1},         {"no depth", 4, 2, 0, 2, 4, -1},
                   {"rows", 60, 3, 8, 1, 3, -1},         {"no rows", 0xFFFF, 0xFFFF, 4, 0, 4, -1},
                   {"cut mask", 4, 2, 0x8004, 2, 5, -1}, {"cut", 4, 2, 4, 2, 3, -1}};
    ThemeFile theme("");
    for (const auto &r : records) {
        std::string bytes;
        for (const uint16_t number : {r.width, r.height, r.depth, r.scanline})
            bytes += {static_cast<char>(number), static_cast<char>(number >> 8)};
        theme.add(r.name, bytes.append(r.bytes, '\x11'));
    }
    open(theme);
    for (const auto &r : records) EXPECT_EQ(grey(r.name), r.level) << r.name;
}

// Names that meet in one bucket of a plain hash table are found as fast as any others.
TEST_F(ThemeTest, PreparedNames) {
    std::vector<std::string> names{""};
    for (int pair = 0; pair < 15; ++pair) { // 63 * 'A' + 'z' is 63 * 'B' + ';'
        const size_t count = names.size();
        for (size_t i = 0; i < count; ++i) names.push_back(names[i] + "B;");
        for (size_t i = 0; i < count; ++i) names[i] += "Az";
    }
    std::string parameters, texts = "English\n";
    for (const std::string &name : names) {
        parameters += name + "=1\n*:t" + name + "=1\n";
        texts += name + "=1\n";
    }
    write_file("system/language/en.txt", texts);
    const auto start = std::clock();
    LoadLanguage("en");
    open(ThemeFile(parameters));
    int found = 0;
    for (const std::string &name : names)
        found += GetThemeInt(name.c_str(), 0) + (*GetLangText(name.c_str()) == '1') +
                 (*GetLangText(("t" + name).c_str()) == '1');
    EXPECT_EQ(found, 3 * static_cast<int>(names.size()));
    EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 2);
}

TEST_F(ThemeTest, PipesAreNotWaitedFor) {
    for (const char *folder : {"system/themes/t", "system/language", "system/resources"})
        fs::create_directories(folder);
    for (const char *pipe : {"system/themes/pipe.tqt", "system/themes/t/x.bmp",
                             "system/resources/t.zip", "system/language/de.txt"})
        ASSERT_EQ(mkfifo(pipe, 0600), 0);
    open(ThemeFile("a=b\n"));
    EXPECT_EQ(grey("x"), -1);
    OpenTheme("pipe");
    EXPECT_STREQ(GetThemeString("a", "-"), "-");
    LoadLanguage("de");
    EnumLanguages();
    EXPECT_STREQ(GetLangText("de"), "de");
}

// A text that was handed out is valid until the language changes.
TEST_F(ThemeTest, TextsThatSomebodyHolds) {
    write_file("system/language/en.txt", "English\n@A=one\n");
    LoadLanguage("en");
    EnumLanguages();
    const char *held = GetLangText("@A"), *name = GetLangText("en");
    open(ThemeFile("*:@A=a text of the theme, too long to lie in its record\n*:en=Theme's\n"));
    const char *themed = GetLangText("@A");
    open(ThemeFile("*:@A=another\n"));
    write_file("system/language/en.txt", "Renamed\n");
    EnumLanguages();
    EXPECT_STREQ(GetLangText("@A"), "another");
    EXPECT_STREQ(GetLangText("en"), "Renamed");
    EXPECT_STREQ(held, "one");
    EXPECT_STREQ(name, "English");
    EXPECT_STREQ(themed, "a text of the theme, too long to lie in its record");
    AddTranslation("@A", themed);
    AddTranslation("@A", GetLangText("@A") + 2); // part of the text that it replaces
    EXPECT_STREQ(GetLangText("@A"), "text of the theme, too long to lie in its record");
}

TEST_F(ThemeTest, ChangesLeaveNothingBehind) {
    ThemeFile theme("a=b\n");
    theme.add("pic", ThemeFile::picture(0x10));
    write_zip("system/resources/t.zip", {{"x.bmp", bmp(3)}});
    open(theme);
    const int before = open_files();
    for (int i = 0; i < 1000; i++) {
        OpenTheme(i % 2 ? "t" : "none");
        std::free(GetResource("pic", nullptr));
    }
    EXPECT_EQ(open_files(), before);
}
