// SPDX-License-Identifier: MIT
// The configuration editor: what the rows of a table show, change, keep and tell.
#include <algorithm>
#include <gtest/gtest.h>

#include "config_editor/values.h"
#include "hw_linux/input.h"
#include "hw_seam.h"
#include "kelvane/config_editor.h"
#include "kelvane/lists.h"
#include "menus_support.h"
#include "support/theme_file.h"

using boxes::screen;

namespace {

const char *sizes[] = {"Small", "Large", nullptr};
const char *range[] = {"1", "60", nullptr};
const char *few[] = {"1", "3", nullptr};
const char *many[] = {"1", "20", nullptr};

iconfigedit row(int type, const char *text, const char *name, const char *deflt = nullptr,
                const char **variants = nullptr, iconfigedit *submenu = nullptr) {
    return {type, nullptr, text, nullptr, name, deflt, variants, submenu, nullptr};
}

iconfigedit nested[] = {row(CONFIG_PASSWORD, "Password", "secret"),
                        row(CONFIG_NUMBER, "Devices", "devices", "2", many),
                        {}};
iconfigedit table[] = {row(CONFIG_HEADING, "Reading", nullptr),
                       row(CONFIG_SWITCH, "Swipes", "swipes", "1"),
                       row(CONFIG_SWITCH | CONFIG_HIDDEN, "Hidden", "hidden", "1"),
                       row(CONFIG_CHOICE, "Size", "size", "Small", sizes),
                       row(CONFIG_POSITION, "Side", "side", "0", sizes),
                       row(CONFIG_NUMBER, "Sleep", "sleep", "10", range),
                       row(CONFIG_NUMBER, "Columns", "columns", "2", few),
                       row(CONFIG_TEXT, "Name", "name", ""),
                       row(99, "Unknown", "unknown", "7"),
                       row(CONFIG_ACTION, "Sign in", nullptr),
                       row(CONFIG_SUBMENU, "Account", nullptr, nullptr, nullptr, nested),
                       {}};

class ConfigEditor : public boxes::Test {
  protected:
    ConfigEditor() {
        told.clear();
        use_multi_touch();
        config = OpenConfig("./settings.cfg", table);
        before = screen();
    }
    ~ConfigEditor() override { CloseConfigNoSave(config); }

    void open() {
        ASSERT_EQ(OpenConfigEditor("Settings", config, table, hear, nullptr), 1);
        headless::advance(100);
    }
    static void hear(const iconfigedit *row, void *) {
        told += row ? std::string(row->text) + " " : "end ";
    }
    static void press(std::initializer_list<int> keys) {
        for (const int key : keys) {
            headless::press(key);
            headless::advance(300);
        }
    }
    static void type(const char *text) {
        for (; *text; ++text) headless::raw(hw::typed_character, 0, *text, 0);
        headless::advance(300);
    }
    // What another process reads.
    static std::string saved(const char *name) {
        iconfig *other = OpenConfig("./settings.cfg", nullptr);
        std::string value = ReadString(other, name, "(none)");
        CloseConfigNoSave(other);
        return value;
    }

    static inline std::string told;
    iconfig *config;
    std::vector<uint8_t> before;
};

TEST_F(ConfigEditor, EachKindIsChangedInItsWaySavedAtOnceAndTold) {
    open();
    press({KEY_OK}); // the heading is passed over
    EXPECT_EQ(saved("swipes"), "0");
    press({KEY_DOWN, KEY_OK, KEY_DOWN, KEY_OK});
    EXPECT_EQ(saved("size"), "Large");
    press({KEY_OK, KEY_OK}); // it is there already: no change is told
    press({KEY_DOWN, KEY_OK, KEY_DOWN, KEY_OK});
    EXPECT_EQ(saved("side"), "1");
    press({KEY_DOWN, KEY_OK});
    type("500"); // brought into the range
    press({KEY_OK});
    EXPECT_EQ(saved("sleep"), "60");
    press({KEY_DOWN, KEY_OK, KEY_DOWN, KEY_OK}); // a menu of few numbers
    EXPECT_EQ(saved("columns"), "3");
    press({KEY_DOWN, KEY_OK});
    type("Ishmael");
    press({KEY_OK});
    EXPECT_EQ(saved("name"), "Ishmael");
    press({KEY_DOWN, KEY_OK}); // of a kind that nobody knows
    press({KEY_DOWN, KEY_OK}); // an action
    EXPECT_EQ(told, "Swipes Size Side Sleep Columns Name Sign in ");
    press({KEY_BACK});
    EXPECT_EQ(told.substr(told.size() - 4), "end ");
    EXPECT_EQ(saved("unknown"), "(none)");
    EXPECT_EQ(saved("hidden"), "(none)");
    EXPECT_TRUE(screen() == before);
}

TEST_F(ConfigEditor, ANestedTableKeepsASecretAndGoesBack) {
    open();
    const std::vector<uint8_t> first = screen();
    SelectListRow(1, 9);
    const std::vector<uint8_t> selected = screen();
    press({KEY_OK, KEY_OK});
    for (int i = 0; i < 33; ++i) headless::raw(hw::typed_character, 0, 0x44F, 0);
    const int64_t time = headless::now();
    press({KEY_OK}); // 66 bytes: a message says so
    EXPECT_GT(headless::now() - time, 3000);
    EXPECT_EQ(saved("secret"), "(none)");
    press({KEY_OK});
    type("Pequod");
    press({KEY_OK});
    EXPECT_NE(saved("secret"), "(none)");
    EXPECT_EQ(saved("secret").find("Pequod"), 12u); // behind the mark of this device's service
    char *secret = ReadSecret(config, "secret", nullptr);
    EXPECT_STREQ(secret, "Pequod");
    free(secret);
    press({KEY_DOWN, KEY_OK});
    type("7"); // more numbers than a menu has room for
    press({KEY_OK, KEY_BACK});
    EXPECT_TRUE(screen() == selected);
    CloseConfigEditor(); // tells nobody
    EXPECT_EQ(told, "Password Devices ");
    EXPECT_TRUE(screen() == before);
}

TEST_F(ConfigEditor, WhatIsGivenUpOrCannotBeSavedIsNoChange) {
    open();
    press({KEY_DOWN, KEY_OK, KEY_BACK}); // a menu
    SelectListRow(1, 4);
    press({KEY_OK});
    type("x");
    press({KEY_OK}); // no number
    CloseConfigEditor();
    EXPECT_EQ(told, "");
    EXPECT_EQ(config->changed, 0);

    open();
    SelectListRow(2, 6);
    press({KEY_OK});
    CloseConfigEditor(); // with the keyboard above it
    EXPECT_EQ(GetEventHandler(), headless::handler());
    EXPECT_TRUE(screen() == before);
    EXPECT_EQ(OpenConfigEditor("Settings", nullptr, table, nullptr, nullptr), 0);

    iconfig *lost = OpenConfig("/proc/none/settings.cfg", table);
    OpenConfigEditor("Settings", lost, table, hear, nullptr);
    press({KEY_DOWN, KEY_OK, KEY_DOWN, KEY_OK});
    const int64_t time = headless::now();
    press({KEY_OK, KEY_OK}); // the same again: it is tried again
    EXPECT_GT(headless::now() - time, 3000);
    EXPECT_EQ(told, "Size Size ");
    CloseConfigEditor();
    CloseConfigNoSave(lost);
    EXPECT_EQ(OpenConfigEditor(nullptr, config, nullptr, nullptr, nullptr), 1); // an empty table
    const std::vector<uint8_t> shown = screen();
    EXPECT_GT(std::count(shown.begin(), shown.end(), 0), 100); // it says so
    press({KEY_OK, KEY_BACK});
    EXPECT_TRUE(screen() == before);
}

TEST_F(ConfigEditor, WhatIsTypedBecomesANumberOfItsRangeOrAMessage) {
    const struct {
        const char *typed, *saved;
        bool is_refused;
    } cases[] = {{"99999999999", "60", false},
                 {"-9999999999", "1", false},
                 {"007", "7", false},
                 {"1.5", "7", true},
                 {"x", "7", true}};
    open();
    SelectListRow(1, 4);
    for (const auto &c : cases) {
        const int64_t time = headless::now();
        press({KEY_OK});
        type(c.typed);
        press({KEY_OK});
        EXPECT_EQ(saved("sleep"), c.saved);
        EXPECT_EQ(headless::now() - time > 3000, c.is_refused) << c.typed;
    }
}

TEST_F(ConfigEditor, ATextThatTheKeyboardCannotShowStaysUntilItIsChanged) {
    for (const std::string &text : {std::string(300, 'a'), std::string("\U0001F40B \xFF")}) {
        WriteString(config, "name", text.c_str());
        open();
        SelectListRow(GetListRow(1) >= 0 ? 1 : 2, 6);
        press({KEY_OK, KEY_OK});
        EXPECT_EQ(ReadString(config, "name", ""), text);
        press({KEY_OK});
        type("b");
        press({KEY_OK});
        EXPECT_NE(ReadString(config, "name", ""), text);
    }
}

TEST_F(ConfigEditor, ATableOfTheEarlierLayoutIsTakenAsOpenConfigDoes) {
    static oldconfigedit old[] = {{"Name", "name", CONFIG_TEXT, "Ahab", nullptr},
                                  {"Side", "side", CONFIG_POSITION, "0", sizes},
                                  {}};
    OpenConfigEditor(
        "Settings", config, reinterpret_cast<iconfigedit *>(old),
        [](const iconfigedit *changed, void *) {
            CloseConfigEditor();
            hear(changed, nullptr); // its copy is still there
        },
        nullptr);
    press({KEY_DOWN, KEY_OK, KEY_DOWN, KEY_OK});
    EXPECT_EQ(saved("side"), "1");
    EXPECT_EQ(told, "Side ");
}

TEST_F(ConfigEditor, HintsStayInAThemeWithLargerType) {
    iconfigedit hinted[] = {row(CONFIG_TEXT, "Name", "name"), {}};
    hinted[0].hint = "Of the reader";
    OpenConfigEditor("Settings", config, hinted, nullptr, nullptr);
    write_file("system/themes/large.tqt",
               ThemeFile("context_menu.item.height=80\nwindow.font=default,32\n").bytes());
    ASSERT_TRUE(hw::hooks.change_theme("large"));
    headless::advance(500);
    const std::vector<uint8_t> changed = screen();
    OpenConfigEditor("Settings", config, hinted, nullptr, nullptr);
    EXPECT_TRUE(screen() == changed);
    CloseConfigEditor();
}

TEST_F(ConfigEditor, TimesAndFontsAreShownAsElsewhere) {
    using config_editor::shown_value;
    const auto time = [](const char *value) {
        return shown_value(row(CONFIG_TIME, "", ""), value);
    };
    EXPECT_EQ(time("14:30"), "14:30");
    kvstate.timeformat = 1;
    EXPECT_EQ(time("14:30") + time("00:05") + time("12:00"), "2:30 PM12:05 AM12:00 PM");
    EXPECT_EQ(shown_value(row(CONFIG_FONT, "", ""), "DejaVuSans"), "DejaVu Sans");
}

TEST_F(ConfigEditor, TheHandlerMayCloseAndOpenTheEditor) {
    static iconfig *shared;
    shared = config;
    OpenConfigEditor(
        "Settings", config, table,
        [](const iconfigedit *changed, void *) {
            hear(changed, nullptr);
            CloseConfigEditor();
            if (told.size() < 60) OpenConfigEditor("Again", shared, table, hear, nullptr);
        },
        nullptr);
    press({KEY_OK, KEY_OK, KEY_BACK});
    EXPECT_EQ(told, "Swipes Swipes end ");
    EXPECT_EQ(saved("swipes"), "1");
}

TEST(ConfigValues, AFileMayHoldAnything) {
    const TempDir dir;
    const struct {
        iconfigedit row;
        const char *stored, *value;
    } cases[] = {
        {row(CONFIG_SWITCH, "", "a", "1"), "0", "0"},
        {row(CONFIG_SWITCH, "", "a", "1"), "2", "1"},
        {row(CONFIG_SWITCH, "", "a", "yes"), "-1", "0"},
        {row(CONFIG_NUMBER, "", "a", "10", range), "60", "60"},
        {row(CONFIG_NUMBER, "", "a", "10", range), "61", "10"},
        {row(CONFIG_NUMBER, "", "a", "99", range), "99999999999999", "1"},
        {row(CONFIG_NUMBER, "", "a", "5"), "-2147483648", "-2147483648"},
        {row(CONFIG_NUMBER, "", "a", "5"), "7 ", "5"},
        {row(CONFIG_NUMBER, "", "a", "20", range), "010", "20"}, // 8 to ReadInt()
        {row(CONFIG_CHOICE, "", "a", "Large", sizes), "Small", "Small"},
        {row(CONFIG_CHOICE, "", "a", "Large", sizes), "small", "Large"},
        {row(CONFIG_CHOICE, "", "a", "x"), "y", ""},
        {row(CONFIG_POSITION, "", "a", "1", sizes), "2", "1"},
        {row(CONFIG_POSITION, "", "a", "9", sizes), "-1", "0"},
        {row(CONFIG_TIME, "", "a", "07:30"), "23:59", "23:59"},
        {row(CONFIG_TIME, "", "a", "07:30"), "24:00", "07:30"},
        {row(CONFIG_TIME, "", "a", "07:30"), "0x:30", "07:30"},
        {row(CONFIG_TIME, "", "a", "7:30"), "07:3", "00:00"},
        {row(CONFIG_DATE, "", "a", "2026-12-31"), "2024-02-29", "2024-02-29"},
        {row(CONFIG_DATE, "", "a", "2026-12-31"), "2026-02-29", "2026-12-31"},
        {row(CONFIG_DATE, "", "a", "2026-13-01"), "0000-00-00", "2000-01-01"},
        {row(CONFIG_PASSWORD, "", "a", "word"), "", ""},
    };
    for (const auto &c : cases) {
        iconfig *config = OpenConfig("./values.cfg", nullptr);
        WriteString(config, "a", c.stored);
        EXPECT_EQ(config_editor::value_of(config, c.row), c.value) << c.row.type << " " << c.stored;
        CloseConfigNoSave(config);
    }
}

} // namespace
