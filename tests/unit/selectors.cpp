// SPDX-License-Identifier: MIT
// Selectors by keys and by finger: what they answer, and what they refuse.
#include <climits>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "kelvane/dialogs.h"
#include "kelvane/selectors.h"
#include "kelvane/text.h"
#include "lists_support.h"
#include "support/tempdir.h"

using namespace list_test;
namespace fs = std::filesystem;

namespace {

void take_number(int number, void *) {
    told += std::to_string(number) + " ";
}
void take_moment(const imoment *m, void *) {
    told += !m ? std::string("none ")
               : std::to_string(m->year) + "-" + std::to_string(m->month) + "-" +
                     std::to_string(m->day) + "/" + std::to_string(m->hour) + ":" +
                     std::to_string(m->minute) + " ";
}
void take_path(const char *path, void *) {
    told += std::string(path ? path : "none") + " ";
}
void take_font(const char *name, int size, void *) {
    told += std::string(name ? name : "none") + "," + std::to_string(size) + " ";
}

void take_dialog(int button) {
    told += "dialog:" + std::to_string(button) + " ";
}

class Selectors : public list_test::Test {
  protected:
    void expect_closed() const {
        headless::advance(1);
        EXPECT_EQ(GetEventHandler(), headless::handler());
        EXPECT_TRUE(screen() == before);
    }
};

TEST_F(Selectors, APageIsReachedByStepsAndAlongTheLine) {
    const struct {
        int page, pages;
        std::vector<int> keys;
        const char *told;
    } cases[] = {
        {5, 100, {KEY_OK}, "5 "},
        {5, 100, {KEY_BACK}, "-1 "},
        {5, 100, {KEY_UP, KEY_UP, KEY_DOWN, KEY_RIGHT, KEY_NEXT, KEY_LEFT, KEY_OK}, "16 "},
        {95, 100, {KEY_NEXT2, KEY_OK}, "100 "},
        {5, 100, {KEY_PREV, KEY_PREV2, KEY_OK}, "1 "},
        {INT_MIN, INT_MIN, {KEY_UP, KEY_RIGHT, KEY_OK}, "1 "},
        {INT_MAX, INT_MAX, {KEY_UP, KEY_DOWN, KEY_DOWN, KEY_UP, KEY_OK}, "2147483646 "},
    };
    for (const auto &c : cases) {
        EXPECT_GT(OpenPageSelector(c.page, c.pages, take_number, nullptr), 0);
        press_all(c.keys);
        EXPECT_EQ(take_told(), c.told);
        expect_closed();
    }
    OpenPageSelector(1, 1000, take_number, nullptr);
    hold(KEY_UP, 5000);
    headless::press(KEY_OK);
    EXPECT_GT(std::stoi(take_told()), 30) << "faster when held";
}

// The sheet at 600 x 800 on a multi-touch panel: digits in two rows above the buttons.
TEST_F(Selectors, APageIsTypedOrTouched) {
    use_multi_touch();
    const auto digit = [](int index) { headless::tap(80 + index % 6 * 88, index < 6 ? 650 : 698); };
    const auto ok = [] { headless::tap(150, 765); };
    constexpr int backspace = 5, clear = 11, seven = 7, one = 0, five = 4, zero = 10;
    const struct {
        std::vector<int> digits;
        const char *told;
    } cases[] = {{{one, seven}, "17 "},
                 {{one, seven, zero, one}, "1 "}, // 1701 is more than there are
                 {{seven, one, zero, backspace}, "71 "},
                 {{seven, clear, seven}, "7 "},
                 {{zero}, "5 "},
                 {{seven, clear, zero, five}, "5 "},
                 {{one, seven, zero, zero, zero, five}, "5 "}};
    for (const auto &c : cases) {
        OpenPageSelector(5, 1700, take_number, nullptr);
        for (const int d : c.digits) digit(d);
        ok();
        EXPECT_EQ(take_told(), c.told);
        expect_closed();
    }
    OpenPageSelector(37, 1700, take_number, nullptr);
    int black = 0;
    for (int y = 580; y < 620; ++y) black += kvstate.framebuffer->addr[y * 600 + 37] < 128;
    EXPECT_EQ(black, 1) << "no stump of the bar beside the disc";
    const std::vector<uint8_t> opened = screen();
    headless::press(KEY_OK);
    OpenPageSelector(1, 1700, take_number, nullptr);
    press_all({KEY_RIGHT, KEY_RIGHT, KEY_RIGHT, KEY_UP, KEY_UP, KEY_UP, KEY_UP, KEY_UP, KEY_UP});
    EXPECT_TRUE(screen() == opened) << "nothing stays of the disc where it was";
    headless::press(KEY_OK);
    take_told();
    OpenPageSelector(5, 1700, take_number, nullptr);
    swipe(60, 597, 300, 600);
    headless::press(KEY_OK);
    EXPECT_NEAR(std::stoi(take_told()), 850, 10);
    OpenPageSelector(5, 1700, take_number, nullptr);
    headless::tap(450, 765);
    EXPECT_EQ(take_told(), "-1 ");
    expect_closed();
}

TEST_F(Selectors, DatesAreAlwaysInTheCalendar) {
    const struct {
        imoment start;
        std::vector<int> keys;
        const char *told;
    } cases[] = {
        {{2026, 10, 18, 9, 5}, {KEY_OK}, "2026-10-18/9:5 "},
        {{2026, 10, 18, 9, 5}, {KEY_BACK}, "none "},
        {{2024, 1, 31, 0, 0}, {KEY_RIGHT, KEY_UP, KEY_OK}, "2024-2-29/0:0 "},
        {{2024, 2, 29, 0, 0}, {KEY_LEFT, KEY_UP, KEY_OK}, "2025-2-28/0:0 "},
        {{2100, 2, 31, 0, 0}, {KEY_OK}, "2100-2-28/0:0 "},
        {{2000, 2, 31, 0, 0}, {KEY_UP, KEY_DOWN, KEY_OK}, "2000-2-29/0:0 "},
        {{2026, 12, 31, 0, 0}, {KEY_UP, KEY_NEXT, KEY_UP, KEY_OK}, "2026-1-1/0:0 "},
        {{INT_MAX, INT_MAX, INT_MAX, 7, -3}, {KEY_OK}, "2199-12-31/7:-3 "},
        {{INT_MIN, INT_MIN, INT_MIN, 0, 0}, {KEY_PREV, KEY_DOWN, KEY_OK}, "2199-1-1/0:0 "},
    };
    for (const auto &c : cases) {
        OpenDateSelector(&c.start, take_moment, nullptr);
        press_all(c.keys);
        EXPECT_EQ(take_told(), c.told);
        expect_closed();
    }
}

TEST_F(Selectors, TimesGoRoundAndRound) {
    const imoment start = {2026, 10, 18, 23, 0}, absurd = {0, 0, 0, INT_MIN, INT_MAX};
    OpenTimeSelector(&start, take_moment, nullptr);
    press_all({KEY_UP, KEY_RIGHT, KEY_DOWN, KEY_RIGHT, KEY_UP, KEY_OK});
    EXPECT_EQ(take_told(), "2026-10-18/1:59 ");
    OpenTimeSelector(&absurd, take_moment, nullptr);
    headless::press(KEY_OK);
    EXPECT_EQ(take_told(), "0-0-0/0:59 ");
    use_multi_touch();
    OpenTimeSelector(&start, take_moment, nullptr);
    headless::tap(360, 590);
    headless::tap(360, 590);
    headless::tap(240, 680);
    headless::tap(150, 765);
    EXPECT_EQ(take_told(), "2026-10-18/22:2 ");
    OpenTimeSelector(&start, take_moment, nullptr);
    headless::pointer(EVT_POINTERDOWN, 360, 590);
    headless::advance(1000);
    headless::pointer(EVT_POINTERUP, 360, 590);
    headless::tap(150, 765);
    EXPECT_EQ(take_told(), "2026-10-18/23:10 ") << "a finger that rests";
    OpenTimeSelector(nullptr, nullptr, nullptr);
    headless::press(KEY_OK);
    expect_closed();
}

TEST_F(Selectors, AnOrientationIsOneOfFour) {
    const struct {
        int first;
        std::vector<int> keys;
        const char *told;
    } cases[] = {{0, {KEY_OK}, "0 "},
                 {0, {KEY_RIGHT, KEY_OK}, "1 "},
                 {1, {KEY_RIGHT, KEY_OK}, "3 "},
                 {0, {KEY_LEFT, KEY_OK}, "2 "},
                 {-7, {KEY_DOWN, KEY_UP, KEY_OK}, "0 "},
                 {3, {KEY_BACK}, "-1 "}};
    for (const auto &c : cases) {
        OpenRotationSelector(c.first, take_number, nullptr);
        press_all(c.keys);
        EXPECT_EQ(take_told(), c.told);
        expect_closed();
    }
    OpenRotationSelector(0, take_number, nullptr);
    headless::tap(360, 680);
    EXPECT_EQ(take_told(), "");
    headless::tap(360, 680);
    EXPECT_EQ(take_told(), "3 ") << "a second tap accepts";
}

TEST_F(Selectors, FoldersAreWalkedAndNotLeft) {
    for (const char *path : {"top/Beta/deep", "top/alpha", "top/.hidden", "top/unreadable"})
        fs::create_directories(path);
    write_file("top/file.txt", "");
    mkfifo("top/pipe", 0600);
    fs::create_directory_symlink("Beta", "top/link");
    const struct {
        const char *start;
        std::vector<int> keys;
        const char *told;
    } cases[] = {
        {nullptr, {KEY_OK}, "top "},
        {nullptr, {KEY_BACK}, "none "},
        {nullptr, {KEY_DOWN, KEY_OK, KEY_OK}, "top/alpha "},
        {nullptr, {KEY_DOWN, KEY_DOWN, KEY_MENU}, "top/Beta "},
        {nullptr,
         {KEY_DOWN, KEY_DOWN, KEY_OK, KEY_DOWN, KEY_DOWN, KEY_OK, KEY_OK},
         "top/Beta/deep "},
        {"top/Beta/deep", {KEY_DOWN, KEY_OK, KEY_MENU}, "top/Beta/deep "}, // up, and that one again
        {"top/Beta/", {KEY_DOWN, KEY_OK, KEY_DOWN, KEY_MENU}, "top/link "},
        {"top/../..", {KEY_OK}, "top "},
        {"topple", {KEY_OK}, "top "},
        {"top/pipe", {KEY_OK}, "top "},
        {"top/missing", {KEY_MENU}, "top "},
    };
    for (const auto &c : cases) {
        EXPECT_GT(OpenDirectorySelector("Folder", "top/", c.start, take_path, nullptr), 0);
        press_all(c.keys);
        EXPECT_EQ(take_told(), c.told);
        expect_closed();
    }
    for (const char *root : {"top/pipe", "top/file.txt", "nowhere"})
        EXPECT_EQ(OpenDirectorySelector(nullptr, root, nullptr, take_path, nullptr), 0) << root;
    // One that goes while it is shown says so, and the list stays.
    OpenDirectorySelector(nullptr, "top", nullptr, take_path, nullptr);
    fs::remove_all("top/alpha");
    press_all({KEY_DOWN, KEY_OK});
    headless::advance(4000);
    press_all({KEY_UP, KEY_OK});
    EXPECT_EQ(take_told(), "top ");
    for (int i = 0; i < 300; ++i) fs::create_directory("top/" + std::to_string(i));
    const int many = OpenDirectorySelector(nullptr, "top", nullptr, nullptr, nullptr);
    press_all({KEY_UP, KEY_UP, KEY_OK, KEY_DOWN, KEY_OK});
    CloseSelector(many);
    expect_closed();
}

TEST_F(Selectors, FontsAreAnsweredAsTheyAreOpened) {
    OpenFontSelector("default", 0, take_font, nullptr);
    press_all({KEY_OK});
    const std::string name = take_told();
    const std::string file = name.substr(0, name.find(','));
    EXPECT_EQ(name, file + ",0 ");
    ifont *chosen = OpenFont(file.c_str(), 20, 1), *wanted = OpenFont("default", 20, 1);
    EXPECT_STREQ(chosen->family, wanted->family);
    EXPECT_EQ(chosen->isbold, 0);
    CloseFont(chosen);
    CloseFont(wanted);
    OpenFontSelector(file.c_str(), 24, take_font, nullptr);
    press_all({KEY_OK, KEY_UP, KEY_OK});
    EXPECT_EQ(take_told(), file + ",25 ");
    OpenFontSelector("no such font", INT_MAX, take_font, nullptr);
    const std::vector<uint8_t> list = screen();
    press_all({KEY_OK, KEY_BACK});
    EXPECT_TRUE(screen() == list) << "the list is there again";
    press_all({KEY_DOWN, KEY_OK, KEY_BACK, KEY_BACK});
    EXPECT_EQ(take_told(), "none,0 ");
    OpenFontSelector(nullptr, INT_MIN, nullptr, nullptr);
    press_all({KEY_UP, KEY_OK});
    expect_closed();
}

// Of sheets for two sizes only the number and the sample differ, with the minus between them.
TEST_F(Selectors, ALargeSampleStaysInItsPlace) {
    const auto sheet = [](int size) {
        const int number = OpenFontSelector("default", size, nullptr, nullptr);
        headless::press(KEY_OK);
        const std::vector<uint8_t> seen = screen();
        CloseSelector(number);
        return seen;
    };
    const std::vector<uint8_t> small = sheet(24), large = sheet(200);
    std::vector<int> rows;
    for (int y = 0; y < 800; ++y)
        if (!std::equal(&small[y * 600], &small[y * 600] + 600, &large[y * 600])) rows.push_back(y);
    ASSERT_FALSE(rows.empty());
    EXPECT_LT(rows.back(), 740) << "the rule above the buttons";
    int gap = 0;
    for (size_t i = 1; i < rows.size(); ++i) gap = std::max(gap, rows[i] - rows[i - 1]);
    EXPECT_GT(gap, 40);
    expect_closed();
}

TEST_F(Selectors, TheFolderOneStandsInIsAlwaysNamed) {
    std::string base = "top";
    for (int i = 0; i < 6; ++i) base += "/a folder with a long name";
    for (const char *name : {"/one", "/two"}) fs::create_directories(base + name);
    const auto seen_in = [&](const char *title, const std::string &path) {
        const int number = OpenDirectorySelector(title, path.c_str(), nullptr, nullptr, nullptr);
        const std::vector<uint8_t> title_bar = boxes::above(44), all = screen();
        CloseSelector(number);
        return std::pair(title_bar, all);
    };
    EXPECT_FALSE(seen_in(nullptr, base + "/one").first == seen_in(nullptr, base + "/two").first);
    const auto one = seen_in("Folder", base + "/one"), two = seen_in("Folder", base + "/two");
    EXPECT_TRUE(one.first == two.first);
    EXPECT_FALSE(one.second == two.second);
    expect_closed();
}

TEST_F(Selectors, TheCounterOfAListLeadsToAnyPage) {
    use_multi_touch();
    ilist list{};
    list.rows = rows(100000);
    const int number = OpenList(&list);
    headless::tap(300, 780);
    press_all({KEY_UP, KEY_RIGHT, KEY_OK});
    EXPECT_EQ(GetListRow(number), 11 * 15) << "of fifteen rows each";
    press_all({KEY_AUX8, KEY_UP, KEY_OK});
    EXPECT_EQ(GetListRow(number), 12 * 15);
    headless::tap(300, 780);
    CloseSelector(number);
    EXPECT_EQ(GetListRow(number), 12 * 15) << "it is no selector";
    CloseList(number);
    EXPECT_EQ(take_told(), "");
    expect_closed();
}

TEST_F(Selectors, ACallbackMayOpenTheNextOne) {
    OpenPageSelector(
        1, 9,
        [](int, void *) {
            OpenRotationSelector(
                0, [](int, void *) { Dialog(0, "", "Sure?", "Yes", "No", take_dialog); }, nullptr);
        },
        nullptr);
    press_all({KEY_OK, KEY_OK, KEY_OK});
    EXPECT_EQ(take_told(), "dialog:1 ");
    const int lower = OpenPageSelector(1, 9, take_number, nullptr);
    OpenTimeSelector(nullptr, take_moment, nullptr);
    CloseSelector(lower);
    CloseSelector(lower);
    CloseSelector(-1);
    EXPECT_EQ(take_told(), "");
    expect_closed();
}

TEST_F(Selectors, NothingOpensWithoutAScreen) {
    ClearOnExit();
    EXPECT_EQ(OpenPageSelector(1, 2, take_number, nullptr), 0);
    EXPECT_EQ(OpenRotationSelector(1, take_number, nullptr), 0);
    EXPECT_EQ(OpenTimeSelector(nullptr, take_moment, nullptr), 0);
    EXPECT_EQ(OpenDateSelector(nullptr, take_moment, nullptr), 0);
    EXPECT_EQ(OpenDirectorySelector(nullptr, nullptr, nullptr, take_path, nullptr), 0);
    EXPECT_EQ(OpenFontSelector("default", 20, take_font, nullptr), 0);
    CloseSelector(1);
    EXPECT_EQ(told, "");
}

} // namespace
