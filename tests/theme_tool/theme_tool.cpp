// SPDX-License-Identifier: MIT
// kelvane-theme from the outside: what it packs the library reads, and what is wrong it tells.
#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <png.h>
#include <set>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <tuple>
#include <vector>

#include "internal.h"
#include "kelvane/bitmaps.h"
#include "kelvane/languages.h"
#include "kelvane/pictures.h"
#include "kelvane/theme.h"
#include "support/tempdir.h"
#include "support/theme_file.h"
#include "tool.h"

namespace {

namespace fs = std::filesystem;

// Rows of grey and alpha.
void write_png(const fs::path &file, const std::vector<uint8_t> &grey_alpha, size_t height = 2) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(grey_alpha.size() / 2 / height);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_GA;
    fs::create_directories(file.parent_path());
    ASSERT_TRUE(png_image_write_to_file(&image, file.c_str(), 0, grey_alpha.data(), 0, nullptr));
}

const std::string small_font =
    read_file("/usr/share/fonts/truetype/dejavu/DejaVuSansMono-Bold.ttf");

// A folder with everything that there is.
void write_folder() {
    write_file("f/parameters.txt", "\xEF\xBB\xBF# a comment\r\n\r\n  window.font=own,20\r\n"
                                   "^pager.height= 0x20\nempty=\nx=a=b \nde:#1=odd\n"
                                   "*:@Both=any\n");
    write_file("f/translations/de.txt", "@Both=deutsch\n@Close=zu: Ende\n# no text\n");
    write_file("f/translations/any-language.txt", "@Close=close\n");
    write_file("f/fonts/own.ttf", small_font);
    write_file("f/notes/readme", "left aside");
    write_png("f/pictures/holes.png", {0, 255, 119, 127, 8, 128, /**/ 255, 255, 34, 0, 247, 255});
    write_png("f/pictures/^holes:4.PNG", {255, 255, 0, 255, 0, 255, 0, 255});
    write_png("f/pictures/Holes:4.png", {17, 255, 34, 255, 51, 255, 68, 255});
    ibitmap *white = NewBitmap(3, 5);
    SaveBitmap("f/pictures/bmp.bmp", white);
    SaveJPEG("f/pictures/jpeg.jpg", white, 90);
    std::free(white);
}

TEST(ThemeTool, PacksWhatTheLibraryReads) {
    const TempDir place;
    write_folder();
    fs::create_directories("system/themes");
    const Result packed = run("pack f system/themes/t.tqt");
    ASSERT_EQ(std::tuple(packed.status, packed.output), std::tuple(0, ""));
    strcpy(kvstate.locale, "de");
    OpenTheme("t");
    for (const auto &[name, value] :
         {std::pair("window.font", "own,20"), {"empty", ""}, {"x", "a=b "}, {"# a comment", "-"}})
        EXPECT_STREQ(GetThemeString(name, "-"), value);
    for (const auto &[key, text] :
         {std::pair("@Both", "deutsch"), {"@Close", "zu: Ende"}, {"#1", "odd"}})
        EXPECT_STREQ(GetLangText(key), text);
    for (const char *name : {"holes", "bmp", "jpeg"}) EXPECT_TRUE(IsResourcePresent(name)) << name;
    ifont *own = GetThemeFont("window.font", nullptr);
    ASSERT_TRUE(own);
    EXPECT_STREQ(own->family, "DejaVu Sans Mono");
    CloseFont(own);
    const auto bytes = [](const char *name) {
        ibitmap *bm = GetResource(name, nullptr);
        const size_t size = bm ? sizeof *bm + size_t{bm->scanline} * bm->height : 0;
        const bool mask = bm && (bm->depth & BITMAP_MASK);
        const std::string all(reinterpret_cast<char *>(bm), size + (mask ? bm->height : 0));
        std::free(bm);
        return all;
    };
    using namespace std::string_literals;
    EXPECT_EQ(bytes("holes"), "\2\0\2\0\4\0\1\0\x12\x34"s);
    EXPECT_EQ(bytes("bmp"), "\3\0\5\0\4\0\2\0"s + "\xFF\xF0\xFF\xF0\xFF\xF0\xFF\xF0\xFF\xF0"s);
    EXPECT_EQ(bytes("jpeg"), bytes("bmp"));
    kvstate.orientation = 1;
    EXPECT_EQ(bytes("holes"), "\2\0\2\0\4\0\1\0\xF0\0"s);
    EXPECT_EQ(GetThemeInt("pager.height", 0), 0x20);
    kvstate.orientation = 0;
    // Without the variants the common one is left: pixels less than half opaque are holes.
    fs::remove("f/pictures/^holes:4.PNG");
    fs::remove("f/pictures/Holes:4.png");
    EXPECT_EQ(run("pack f/ system/themes/t.tqt").status, 0);
    OpenTheme("t");
    EXPECT_EQ(bytes("holes"), "\3\0\2\0\4\x80\2\0\x07\0\xF2\xF0\xA0\xA0"s);
    OpenTheme("none");
}

TEST(ThemeTool, UnpacksWhatItPacked) {
    const TempDir place;
    write_folder();
    ASSERT_EQ(run("pack f t.tqt").status, 0);
    const Result listed = run("list t.tqt");
    EXPECT_EQ(listed.status, 0);
    for (const char *line : {"4 parameters, 5 translations, 6 resources",
                             "^holes:4                         picture  2 x 2",
                             "holes                            picture  3 x 2, transparent",
                             "own                              font     "})
        EXPECT_NE(listed.output.find(line), listed.output.npos) << line << " in\n" << listed.output;
    for (const char *folder : {"g", "h/"}) {
        const Result unpacked = run("unpack t.tqt " + std::string(folder));
        ASSERT_EQ(std::tuple(unpacked.status, unpacked.output), std::tuple(0, ""));
        EXPECT_EQ(read_file(fs::path(folder) / "fonts/own.ttf"), small_font);
        EXPECT_EQ(read_file(fs::path(folder) / "translations/de.txt"),
                  "@Both=deutsch\n@Close=zu: Ende\n");
        EXPECT_EQ(run("pack " + std::string(folder) + " again.tqt").output, "");
        EXPECT_EQ(read_file("again.tqt"), read_file("t.tqt"));
    }
    EXPECT_EQ(run("unpack t.tqt g").status, 1) << "g is not empty";
    EXPECT_EQ(run("unpack t.tqt no/where").status, 1);
    EXPECT_EQ(run("pack g no/where.tqt").status, 1);
    EXPECT_EQ(run("pack g").status, 2);
    EXPECT_EQ(run("--help").status, 0);
    std::set<std::string> left;
    for (const auto &entry : fs::directory_iterator(".")) left.insert(entry.path().filename());
    EXPECT_EQ(left, (std::set<std::string>{"again.tqt", "f", "g", "h", "t.tqt"}));
}

struct MistakenLine {
    const char *line, *message; // no message: the line is right
};
constexpr MistakenLine mistaken_lines[] = {
    {"novalue", "no \"=\""},
    {"=5", "no name before"},
    {"name =5", "ends with a blank"},
    {"a=1", nullptr},
    {"a=2", "a is there already, at f/parameters.txt:4"},
    {"pager.height=12px", "\"12px\" is not a number"},
    {"^pager.height=", "\"\" is not a number"},
    {"list.selection.style=x", "\"x\" is not a number"},
    {"reader.application.style=7 ", nullptr},
    {"title.style=99999999999", "is not a number"},
    {"window.color=0x1000000", "is not a colour"},
    {"border.color=-1", "is not a colour"},
    {"window.font=,20", "no face"},
    {"header.font=#default,0", "the size is not a number"},
    {"menu.font.normal=default,20,red", "the colour is not one"},
    {"menu.font.active=default,20,0,1", "more than a face"},
    {"pager.font=default ,20", "a blank beside the face"},
    {"button.font.normal=default", nullptr},
    {"application.caption.title.position.portrait=1,2,x", "\"x\" is not a number"},
    {"^application.caption.title.position.portrait=1,2,3,4,CX", "a flag is none of"},
    {"application.caption.title.position.landscape=1,2,3,4,C,5", "more than four numbers"},
    {"^application.caption.title.position.landscape=-1,,", "\"\" is not a number"},
    {"header.margn.left=3", "did you mean header.margin.left?"},
    {"pager.height.Shop=3", nullptr},
    {"alias=leads.nowhere", nullptr},
    {"d e:@Close=x", "\"d e\" before the colon is no language"},
    {"de:=x", "no key"},
    {"de:@Close=zu", nullptr},
    {"DE:@Close=zu", "@Close is there already"},
};

TEST(ThemeTool, ScalesSizesAndNothingElse) {
    const TempDir place;
    const struct {
        const char *name, *before, *after;
    } rows[] = {
        {"pager.height", "0x15", "53"},
        {"^pager.height", "-3", "-7"}, // a half goes up
        {"unit.size", "4", "10"},
        {"dialog.frame.spacing", "25", "63"},
        {"header.margin.left", "19", "55"}, // 24 and 60 with the 5 pixels that the library adds
        {"separator.size", "0", "0"},
        {"header.font", "#default,9,0xffffff", "#default,23,0xffffff"},
        {"menu.font.normal", "own", "own,30"},
        {"application.caption.title.position.portrait", "10,-4,-11,-1,CMD", "25,-10,-26,-1,CMD"},
        {"mine.selection.border.size", "1", "3"},
        {"mine.selection.style", "2", "2"},
        {"window.color", "0xFFFFFF", "0xFFFFFF"},
        {"of.an.application", "12", "12"}};
    std::string before, after;
    for (const auto &row : rows) {
        before += std::string(row.name) + "=" + row.before + "\n";
        after += std::string(row.name) + "=" + row.after + "\n";
    }
    write_file("f/parameters.txt", before);
    write_file("f/fonts/own.ttf", small_font);
    // A step of grey becomes a slope, and a hole a larger one.
    write_png("f/pictures/step.png", {0, 255, 255, 255}, 1);
    write_png("f/pictures/hole.png", {0, 255, 0, 0}, 1);
    EXPECT_EQ(run("pack --scale 250 f t.tqt").output, "");
    EXPECT_EQ(run("unpack t.tqt g").output, "");
    EXPECT_EQ(read_file("g/parameters.txt"), after);
    EXPECT_EQ(read_file("g/fonts/own.ttf"), small_font);
    fs::create_directories("system/themes");
    fs::rename("t.tqt", "system/themes/t.tqt");
    OpenTheme("t");
    ibitmap *step = GetResource("step", nullptr), *hole = GetResource("hole", nullptr);
    ASSERT_TRUE(step && hole);
    EXPECT_EQ(step->width * 100 + step->height, 503);
    EXPECT_EQ(std::string(step->data, step->data + 3), "\x01\x8D\xF0");
    EXPECT_EQ(hole->data[hole->scanline * hole->height], 0xE0);
    std::free(step), std::free(hole);
    for (const char *percent : {"24", "801", "2x", "", "-100"})
        EXPECT_EQ(run("pack --scale '" + std::string(percent) + "' f t.tqt").status, 2) << percent;
}

TEST(ThemeTool, TellsAllMistakesAtOnce) {
    const TempDir place;
    std::string text;
    for (const MistakenLine &m : mistaken_lines) text += std::string(m.line) + "\n";
    write_file("f/parameters.txt", text + std::string("nul\0=1\n", 7));
    write_file("f/translations/de.txt", "\n\n@Close=x\nkey\n");
    write_file("f/translations/d e.txt", "");
    const std::string longest(60, 'n');
    for (const std::string &name :
         {longest + "nn", longest + "n:4", "^" + longest + "nn", "^" + longest + ":4"})
        write_png("f/pictures/" + name + ".png", std::vector<uint8_t>(8, 255));
    const std::pair<std::string, const char *> pictures[] = {
        {longest + "nn:4.png", "61 are ever looked for"},
        {"^" + longest + "n:4.png", "61 are"},
        {"^" + longest + "nnn.png", "62 are"},
        {"damaged.bmp", "does not load"},
        {"damaged.png", "has the name of"},
        {"broken.jpg", "does not load"},
        {"broken2.tif", "does not load"},
        {"x.gif", "is no picture"},
        {"^.png", "no name"},
        {"a:8.png", "no colon but in :4"},
        {"Font.png", "does not load"}};
    for (const auto &[name, message] : pictures) write_file("f/pictures/" + name, "no picture");
    write_png("f/pictures/large.png", std::vector<uint8_t>(2 * 4200 * 4200, 255), 4200);
    const std::pair<std::string, const char *> fonts[] = {{"cut.ttf", "not in TrueType"},
                                                          {"a,b.ttf", "with a comma"},
                                                          {"x.otf", "is no font"},
                                                          {"font.ttf", "has the name of"}};
    for (const auto &[name, message] : fonts)
        write_file("f/fonts/" + name, small_font.substr(0, small_font.size() / 2));
    write_file("t.tqt", "as it was");

    const Result packed = run("pack f t.tqt");
    EXPECT_EQ(packed.status, 1);
    EXPECT_EQ(read_file("t.tqt"), "as it was");
    std::vector<std::pair<std::string, std::string>> expected{
        {"f/parameters.txt:30: ", "a NUL byte"},
        {"f/pictures/large.png: ", "only 8 are read"},
        {"f/translations/de.txt:3: ", "@Close is there already, at f/parameters.txt:28"},
        {"f/translations/de.txt:4: ", "no \"=\""},
        {"f/translations/d e.txt: ", "not named after a language"}};
    for (size_t i = 0; i < std::size(mistaken_lines); ++i)
        if (mistaken_lines[i].message)
            expected.emplace_back("f/parameters.txt:" + std::to_string(i + 1) + ": ",
                                  mistaken_lines[i].message);
    for (const auto &[name, message] : pictures)
        expected.emplace_back("f/pictures/" + name + ": ", message);
    for (const auto &[name, message] : fonts)
        expected.emplace_back("f/fonts/" + name + ": ", message);
    std::vector<std::string> told = lines(packed.output);
    std::erase_if(told, [](const std::string &line) { return !line.starts_with("f/"); });
    EXPECT_EQ(told.size(), expected.size()) << packed.output;
    for (const auto &[where, what] : expected)
        EXPECT_EQ(std::ranges::count_if(told,
                                        [&, &where = where, &what = what](const std::string &line) {
                                            return line.starts_with(where) &&
                                                   line.find(what) != line.npos;
                                        }),
                  1)
            << where << what << "\n"
            << packed.output;
    EXPECT_NE(run("pack . t.tqt").output.find("no theme's folder"), std::string::npos);
}

// The literals that follow `call`, such as names behind "GetThemeInt(".
std::vector<std::string> literals(std::string_view text, std::string_view call) {
    std::vector<std::string> found;
    for (size_t at = 0; (at = text.find(call, at)) != text.npos;) {
        at += call.size();
        const size_t start = text.find_first_not_of(" \n", at);
        if (start == text.npos || text[start] != '"') continue;
        found.emplace_back(text.substr(start + 1, text.find('"', start + 1) - start - 1));
    }
    return found;
}

// The numbers, colours, fonts and rectangles that sources read by name.
std::set<std::string> parameters_in_sources() {
    std::set<std::string> names;
    const auto add = [&names](const std::string &prefix, const std::vector<std::string> &found) {
        for (const std::string &name : found) names.insert(prefix + name);
    };
    for (const auto &entry : fs::recursive_directory_iterator(SOURCE_DIR "/src")) {
        if (entry.path().extension() != ".cpp") continue;
        const std::string text = read_file(entry.path());
        for (const char *call : {"GetThemeInt(", "GetThemeFont(", "load_title_rect("})
            add("", literals(text, call));
        if (entry.path().filename() != "properties.cpp") continue;
        const std::string_view groups = text;
        const size_t menu = groups.find("LoadContextMenuProperties");
        add("selection.", literals(groups.substr(0, menu), " value("));
        add("selection.", literals(groups.substr(0, menu), "{value("));
        add("context_menu.", literals(groups.substr(menu), " value("));
        add("context_menu.font.", literals(groups.substr(menu), " font("));
    }
    std::erase_if(names, [](const std::string &name) { return name.ends_with('.'); });
    return names;
}

// Whatever the library reads as a number, a font or a rectangle is checked, and documented.
TEST(ThemeTool, KnowsEveryParameterOfTheLibrary) {
    const TempDir place;
    const std::set<std::string> names = parameters_in_sources();
    EXPECT_GT(names.size(), 80U) << names.size();
    const std::string documentation = read_file(SOURCE_DIR "/docs/themes.md");
    std::string text;
    for (const std::string &name : names) {
        text += name + "=,\n";
        EXPECT_NE(documentation.find("`" + name + "`"), documentation.npos) << name;
    }
    write_file("f/parameters.txt", text);
    const std::string told = run("pack f t.tqt").output;
    for (const std::string &name : names)
        EXPECT_NE(told.find(": " + name + ": "), told.npos) << name;
}

TEST(ThemeTool, OutlivesHostileFiles) {
    const TempDir place;
    ThemeFile theme("a=b\na=c\n../x:key=text\n:=\n");
    theme.add("picture", ThemeFile::picture(0x10));
    theme.add("../up", ThemeFile::picture(0x10));
    theme.add("a/b", ThemeFile::picture(0x10));
    theme.add("\x1B[31m", ThemeFile::picture(0x10));
    theme.add(".hidden", ThemeFile::picture(0x10));
    theme.add("", ThemeFile::picture(0x10));
    theme.add("short", std::string("\2\0\3\0\x18\0\1\0\1\2\3\4", 12));
    theme.add("tall", std::string("\1\0\xFF\xFF\4\0\1\0\1", 9));
    theme.add("depth", std::string("\1\0\1\0\7\0\1\0\1", 9));
    theme.add("font", std::string("\0\1\0\0\xFF\xFF", 6) + std::string(40, 'x'));
    theme.add_entry("outside", 9, 100'000, 17);
    theme.add_entry("damaged", 9, 1, 12);
    const std::string good = theme.bytes();
    write_file("t.tqt", good);

    const Result listed = run("list t.tqt"), unpacked = run("unpack t.tqt out");
    EXPECT_EQ(std::tuple(listed.status, unpacked.status), std::tuple(1, 1));
    EXPECT_NE(listed.output.find("\n\\x1B[31m  "), listed.output.npos) << listed.output;
    std::set<std::string> files;
    for (const auto &entry : fs::recursive_directory_iterator("."))
        if (!entry.is_directory()) files.insert(entry.path());
    EXPECT_EQ(files, (std::set<std::string>{"./out/parameters.txt", "./out/pictures/picture.png",
                                            "./t.tqt"}));
    EXPECT_EQ(read_file("out/parameters.txt"), "a=c\n:=\n../x:key=text\n");

    for (size_t size = 0; size < good.size(); size += 1 + good.size() / 60) {
        write_file("cut.tqt", good.substr(0, size));
        EXPECT_EQ(run("list cut.tqt").status, 1) << size;
        EXPECT_EQ(run("unpack cut.tqt cut").status, 1) << size;
        fs::remove_all("cut");
    }
    ThemeFile bomb("");
    for (int i = 0; i < 40; ++i) bomb.add_entry("bomb" + std::to_string(i), 60 << 20, 0, 100);
    bomb.add("end", small_font.substr(0, 1000));
    write_file("t.tqt", bomb.bytes());
    EXPECT_NE(run("unpack t.tqt bombs").output.find("40 entries"), std::string::npos);
    EXPECT_EQ(std::distance(fs::recursive_directory_iterator("bombs"), {}), 1);
}

// Pipes, devices, links and files without end in the place of a theme or of what makes one.
TEST(ThemeTool, WaitsForNothing) {
    const TempDir place;
    mkfifo("pipe", 0600);
    for (const char *theme : {"pipe", "/dev/zero", "."})
        EXPECT_NE(run("list " + std::string(theme)).output.find("cannot be opened"),
                  std::string::npos);
    write_file("f/endless", "");
    fs::resize_file("f/endless", uint64_t{5} << 30); // takes no room
    for (const std::string to : {"../../pipe", "/dev/zero", "../endless"})
        for (const std::string file :
             {"pictures/x.png", "pictures/x.jpg", "fonts/x.ttf", "translations/de.txt"}) {
            const fs::path link = "f/" + file;
            fs::create_directories(link.parent_path());
            fs::create_symlink(to, link);
            const Result packed = run("pack f t.tqt");
            EXPECT_EQ(packed.status, 1) << file << to;
            EXPECT_NE(packed.output.find(link.filename().string()), std::string::npos)
                << packed.output;
            fs::remove(link);
        }
    EXPECT_FALSE(fs::exists("t.tqt"));
}

class ShippedTheme : public testing::TestWithParam<std::string> {};

std::vector<std::string> pictures_of(const std::string &listing) {
    std::vector<std::string> names;
    for (const std::string &line : lines(listing))
        if (line.find(" picture ") != line.npos) names.push_back(line.substr(0, line.find(' ')));
    return names;
}

TEST_P(ShippedTheme, IsWhole) {
    const TempDir place;
    const fs::path folder = fs::path(SOURCE_DIR "/themes") / GetParam();
    const std::string documentation = read_file(SOURCE_DIR "/docs/themes.md");
    fs::create_directories("system/themes");
    EXPECT_EQ(run("pack '" + folder.string() + "' system/themes/t.tqt").output, "");
    const std::vector<std::string> pictures = pictures_of(run("list system/themes/t.tqt").output);
    EXPECT_GT(pictures.size(), 80U);
    OpenTheme("t");
    for (const std::string &variant : pictures) {
        const std::string name = variant.substr(variant.starts_with('^') ? 1 : 0);
        kvstate.orientation = variant == name ? 0 : 1;
        EXPECT_TRUE(IsResourcePresent(name.c_str())) << name;
        ibitmap *picture = GetResource(name.c_str(), nullptr);
        EXPECT_TRUE(picture) << name;
        std::free(picture);
        const std::string plain = name.substr(0, name.size() - (name.ends_with("_a") ? 2 : 0));
        EXPECT_NE(documentation.find("`" + plain + "`"), documentation.npos) << name;
    }
    kvstate.orientation = 0;
    // The library knows every parameter: none would take "," as its value.
    std::string spoilt;
    const std::vector<std::string> all = lines(read_file(folder / "parameters.txt"));
    for (const std::string &line : all)
        if (!line.empty() && line[0] != '#') spoilt += line.substr(0, line.find('=') + 1) + ",\n";
    write_file("f/parameters.txt", spoilt);
    EXPECT_EQ(lines(run("pack f t.tqt").output).size(), lines(spoilt).size());
    OpenTheme("none");
}

// The sides of a picture, in pixels.
std::pair<int, int> sides(const char *name) {
    ibitmap *picture = GetResource(name, nullptr);
    const std::pair<int, int> sides =
        picture ? std::pair<int, int>(picture->width, picture->height) : std::pair(0, 0);
    std::free(picture);
    return sides;
}

// Fonts, lengths and pictures agree at every scale that a device gets.
TEST_P(ShippedTheme, KeepsItsMeasuresAtEveryScale) {
    const TempDir place;
    fs::create_directories("system/themes");
    const std::string folder = (fs::path(SOURCE_DIR "/themes") / GetParam()).string();
    for (const auto &[percent, unit] : {std::pair(100, 4), {125, 5}, {150, 6}, {175, 7}}) {
        SCOPED_TRACE(percent);
        ASSERT_EQ(
            run("pack --scale " + std::to_string(percent) + " '" + folder + "' system/themes/t.tqt")
                .output,
            "");
        OpenTheme("t");
        EXPECT_EQ(GetThemeInt("unit.size", 0), unit);
        EXPECT_EQ(GetThemeInt("header.margin.left", 0) + 5, 6 * unit);
        const auto [button_width, bar] = sides("button_close");
        EXPECT_GE(std::min(button_width, bar), 11 * unit);
        EXPECT_EQ(sides("header_top").second, bar + 4 * unit);
        EXPECT_EQ(sides("header_topleft").second, bar + 4 * unit);
        EXPECT_EQ(sides("frame_topleft").second, sides("frame_top").second);
        EXPECT_EQ(sides("frame_bottomleft").first, sides("frame_left").first);
        EXPECT_EQ(sides("icon_question"), sides("icon_error"));
        ibitmap *middle = GetResource("frame_top", nullptr);
        ASSERT_TRUE(middle);
        int border = 0;
        for (int y = 0; y < middle->height; ++y)
            border += (middle->data[y * middle->scanline] & 0xF0) == 0;
        EXPECT_EQ(border, GetThemeInt("border.size", 0));
        std::free(middle);
        OpenTheme("none");
    }
}

INSTANTIATE_TEST_SUITE_P(Themes, ShippedTheme, testing::Values("default", "contrast"),
                         [](const auto &tested) { return tested.param; });

} // namespace
