// SPDX-License-Identifier: MIT
// Scripts, traces, frames, recordings and the monkey.
#include "hw_linux/script.h"

#include <climits>
#include <gtest/gtest.h>
#include <png.h>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "hw.h"
#include "hw_linux/menu.h"
#include "hw_linux/player.h"
#include "kelvane/canvas.h"
#include "kelvane/updates.h"
#include "support/headless.h"

namespace {

std::string describe(const hw::Action &a) {
    std::string text = a.delay_ms ? "+" + std::to_string(a.delay_ms) + " " : "";
    const auto add = [&](std::initializer_list<int> numbers) {
        for (int n : numbers) text += " " + std::to_string(n);
    };
    switch (a.verb) {
    case hw::Verb::key:
        text += "key", add({a.type, a.par1});
        break;
    case hw::Verb::pointer:
        text += "pointer", add({a.type, a.par1, a.par2});
        break;
    case hw::Verb::raw:
        text += "raw", add({a.type, a.mod, a.par1, a.par2});
        break;
    case hw::Verb::command:
        text += "command", add({a.par1});
        break;
    case hw::Verb::frame:
        text += "frame " + a.file;
        break;
    case hw::Verb::await:
        text += "await " + a.file;
        break;
    case hw::Verb::clock:
        text += "clock", add({static_cast<int>(a.time_s % 3600)});
        break;
    case hw::Verb::close:
        text += "close";
        break;
    }
    return text;
}

std::string parsed(const std::string &text) {
    const hw::Script script = hw::parse_script(text);
    std::string all;
    for (const hw::Action &a : script.actions) all += describe(a) + "; ";
    if (script.final_delay_ms) all += "+" + std::to_string(script.final_delay_ms);
    for (const hw::ScriptError &e : script.errors)
        all += "!" + std::to_string(e.line) + ": " + e.message;
    return all;
}

TEST(Script, EveryVerb) {
    const struct {
        const char *text, *expected;
    } cases[] = {
        {"", ""},
        {"# nothing\n\n  \t\r\n#\n", ""},
        {"wait 5\nwait 7", "+12"},
        {"key down OK\nwait 30\nkey up KEY_OK # let go", "key 25 5; +30 key 26 5; "},
        {"key down 26", "key 25 16; "},
        {"press DOWN", "key 25 9; +50 key 26 9; "},
        {"wait 1\r\npress 22 700\r\nwait 2\r\n", "+1 key 25 7; +700 key 26 7; +2"},
        {"down 1 2\nmove -3 4\nup 2147483647 -2147483648",
         "pointer 30 1 2; pointer 31 -3 4; pointer 29 2147483647 -2147483648; "},
        {"\ttap 10 20  ", "pointer 30 10 20; +50 pointer 29 10 20; "},
        {"touch 2 move 5 6\nsync 3", "raw 31 2 5 6; raw 39 0 0 3; "},
        {"raw 40 1 -2 70000", "raw 40 1 -2 70000; "},
        {"menu /AVRCP Events/Set volume/70", "command 2107; "},
        {"menu /Quit\ncommand 203\norientation 2\nquit",
         "command 901; command 203; command 802; command 901; "},
        {"frame a name # with signs.png", "frame a name # with signs.png; "},
        {"type a \u0416# ",
         "raw 19267 0 97 0; raw 19267 0 32 0; raw 19267 0 1046 0; raw 19267 0 35 0; "},
        {"close", "close; "},
    };
    for (const auto &c : cases) EXPECT_EQ(parsed(c.text), c.expected) << c.text;
    for (const hw::MenuItem &item : hw::menu_items())
        EXPECT_EQ(parsed("menu " + std::string(item.path)),
                  "command " + std::to_string(item.command) + "; ");
}

TEST(Script, MistakesAreNamedWithTheirLine) {
    const struct {
        const char *text, *expected;
    } cases[] = {
        {"jump", "!1: unknown verb: jump (wait, key, press, "},
        {"quit\nwait", "command 901; !2: a number is missing (a number from 0 to 2147483647)"},
        {"wait 5x", "!1: not a number: 5x (a number from 0 to "},
        {"wait -1", "!1: out of range: -1 (a number from 0 to "},
        {"wait 99999999999", "!1: out of range: 99999999999 ("},
        {"wait 1 2", "+1!1: more words than expected: 2"},
        {"key sideways OK", "!1: unknown word: sideways (down, up)"},
        {"press NOKEY", "!1: no such key: NOKEY (BACK, AUX8, LEFT, "},
        {"press 99", "!1: no such key: 99 ("},
        {"press", "!1: a key is missing ("},
        {"tap 1", "!1: a number is missing ("},
        {"menu /Quit/Never", "!1: no such menu item: /Quit/Never (/Battery, /SD Card, "},
        {"menu /SD Card/Lost", "!1: no such menu item: /SD Card/Lost (/SD Card/Inserted, /SD "
                               "Card/Removed)"},
        {"menu /AVRCP Events/Set volume", "!1: no such menu item: /AVRCP Events/Set volume "
                                          "(/AVRCP Events/Set volume/0, "},
        {"menu Quit", "!1: no such menu item: Quit (/Battery, "},
        {"menu", "!1: no such menu item (/Battery, "},
        {"command 900", "!1: no such command: 900 ("},
        {"orientation 4", "!1: out of range: 4 (a number from 0 to 3)"},
        {"frame", "!1: a file name is missing"},
        {"type", "!1: a text is missing"},
        {"await", "!1: the name of a task is missing"},
        {"await my task", "await my task; "},
        {"clock 2025-03-21 09:41", "clock 2460; "},
        {"clock 2025-03-21", "!1: a date and a time are meant, such as 2025-03-21 09:41"},
        {"touch -1 down 0 0", "!1: out of range: -1 ("},
    };
    for (const auto &c : cases) {
        const std::string said = parsed(c.text);
        EXPECT_TRUE(said.starts_with(c.expected)) << said;
    }
}

class Session : public headless::Test {
  protected:
    static void set(const char *variable, const std::string &value) {
        setenv(variable, value.c_str(), 1);
    }
    std::string file(const char *name) const { return files_.path() / name; }

    // Starts again with this script and lets at most an hour pass.
    void play(const std::string &script) {
        write_file(file("script"), script);
        set("KELVANE_SCRIPT", file("script"));
        restart_with("");
        log_.clear();
        start_ = headless::now();
        headless::on_event([this](int type, int par1, int) {
            log_ += std::to_string(type) + ":" + std::to_string(par1) + "@" +
                    std::to_string(headless::now() - start_) + " ";
            if (type != EVT_KEYPRESS) return 1;
            FillArea(0, 0, 100, 100, par1 == KEY_OK ? BLACK : LGRAY);
            PartialUpdate(0, 0, 100, 100);
            return 1;
        });
        headless::advance(3600'000);
    }
    void TearDown() override {
        for (const char *variable : {"KELVANE_SCRIPT", "KELVANE_TRACE", "KELVANE_FRAMES",
                                     "KELVANE_RECORD", "KELVANE_MONKEY"})
            unsetenv(variable);
    }

    std::string log_;
    int64_t start_ = 0;

  private:
    TempDir files_;
};

TEST_F(Session, EachLineComesInItsTimeAndTheEndQuits) {
    play("wait 100\nkey down OK\nwait 1000\nkey up OK\nwait 40\ntouch 0 down 5 6\nsync 1\n"
         "command 701\nwait 300\n");
    EXPECT_EQ(log_, "25:10@100 28:10@1100 26:10@1100 30:5@1140 39:0@1140 151:0@1140 ");
    EXPECT_EQ(kvstate.exiting, EXIT_REQUESTED);
    EXPECT_EQ(headless::now() - start_, 1440);
    EXPECT_FALSE(hw::is_playing());
}

TEST_F(Session, ManyLinesAtOnceLoseNothing) {
    std::string script;
    for (int i = 0; i < 200; ++i) script += "raw 40 0 " + std::to_string(i) + " 0\n";
    play(script);
    EXPECT_EQ(std::count(log_.begin(), log_.end(), '@'), 200);
}

TEST_F(Session, TheTraceTellsEveryUpdate) {
    set("KELVANE_TRACE", file("trace"));
    play("wait 100\npress OK 20\nwait 30\npress UP\n");
    EXPECT_EQ(read_file(file("trace")),
              "{\"seq\":1,\"time_ms\":100,\"kind\":\"partial\",\"call\":\"PartialUpdate\",\"x\":0,"
              "\"y\":0,\"w\":100,\"h\":100,\"mode\":234,\"dynamic\":1,\"changed\":10000,"
              "\"changed_x\":0,\"changed_y\":0,\"changed_w\":100,\"changed_h\":100,\"greys\":1,"
              "\"wait_ms\":0,\"panel_ms\":450}\n"
              "{\"seq\":2,\"time_ms\":150,\"kind\":\"partial\",\"call\":\"PartialUpdate\",\"x\":0,"
              "\"y\":0,\"w\":100,\"h\":100,\"mode\":234,\"dynamic\":1,\"changed\":10000,"
              "\"changed_x\":0,\"changed_y\":0,\"changed_w\":100,\"changed_h\":100,\"greys\":1,"
              "\"wait_ms\":400,\"panel_ms\":450}\n");
}

std::vector<uint8_t> read_picture(const std::string &name, int &width, int &height) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, name.c_str())) return {};
    image.format = PNG_FORMAT_GRAY;
    std::vector<uint8_t> grey(PNG_IMAGE_SIZE(image));
    png_image_finish_read(&image, nullptr, grey.data(), 0, nullptr);
    width = static_cast<int>(image.width);
    height = static_cast<int>(image.height);
    return grey;
}

TEST_F(Session, FramesShowWhatThePanelShows) {
    set("KELVANE_FRAMES", file("frames/of/this"));
    play("press OK\nframe " + file("asked.png") + "\npress UP\n");
    const struct {
        const char *name;
        int corner;
    } cases[] = {
        {"frames/of/this/000001.png", 0}, {"asked.png", 0}, {"frames/of/this/000002.png", 0xAA}};
    for (const auto &c : cases) {
        int width = 0, height = 0;
        const std::vector<uint8_t> grey = read_picture(file(c.name), width, height);
        ASSERT_EQ(std::pair(width, height), std::pair(600, 800)) << c.name;
        EXPECT_EQ(grey[0], c.corner) << c.name;
        EXPECT_EQ(grey[99 * 600 + 99], c.corner) << c.name;
        EXPECT_EQ(grey[100], 255) << c.name;
    }
    EXPECT_FALSE(std::filesystem::exists(file("frames/of/this/000003.png")));
}

TEST_F(Session, ARecordingPlaysTheSame) {
    set("KELVANE_RECORD", file("first"));
    play("wait 40\npress OK 1200\ntap 20 30\nwait 400\ndown 1 2\nwait 10\nmove 50 60\nup 50 60\n"
         "menu /Special Events/EVT_SDIN\nraw 42 1 2 3\norientation 1\nwait 3\nquit\n");
    const std::string heard = log_, recording = read_file(file("first"));
    EXPECT_EQ(recording.substr(0, 36), "wait 40\nkey down 10\nwait 1200\nkey up");
    set("KELVANE_RECORD", file("second"));
    play(recording);
    EXPECT_EQ(log_, heard);
    EXPECT_EQ(read_file(file("second")), recording);
}

TEST_F(Session, TheMonkeyDoesTheSameForTheSameSeed) {
    const auto let_loose = [this](const char *seed) {
        set("KELVANE_MONKEY", seed);
        set("KELVANE_RECORD", file("monkey"));
        play("press OK\n");
        EXPECT_EQ(kvstate.exiting, EXIT_REQUESTED) << "it ends";
        return log_ + read_file(file("monkey"));
    };
    testing::internal::CaptureStderr();
    const std::string first = let_loose("7:2000");
    EXPECT_NE(testing::internal::GetCapturedStderr().find("KELVANE_MONKEY=7:2000\n"),
              std::string::npos);
    EXPECT_EQ(let_loose("7:2000"), first);
    EXPECT_NE(let_loose("8:2000"), first);
    EXPECT_TRUE(hw::parse_script(read_file(file("monkey"))).errors.empty()) << "it can be played";
    EXPECT_EQ(first.find("command 901", 0), first.rfind("command 901")) << "only the end quits";
}

TEST_F(Session, ClosingTheWindowEndsTheProcess) {
    ClearOnExit(); // a child could not close its parent's screen
    EXPECT_EXIT(
        {
            set("TMPDIR", file(""));
            play("press OK\nclose\n");
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(Session, APictureThatCannotBeWrittenEndsTheProcessAsAFailure) {
    ClearOnExit();
    const std::string no_folder = file("no/folder/a.png");
    EXPECT_EXIT(play("wait 5\nframe " + no_folder + "\n"), testing::ExitedWithCode(1),
                "script:2: frame: " + no_folder + ": No such file or directory");
    set("KELVANE_FRAMES", file("frames"));
    std::filesystem::create_directories(file("frames/000001.png"));
    EXPECT_EXIT(play("press OK\n"), testing::ExitedWithCode(1),
                "KELVANE_FRAMES: " + file("frames/000001.png") + ": Is a directory");
    ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
    EXPECT_EXIT(play("frame " + file("pipe") + "\n"), testing::ExitedWithCode(1),
                "frame: " + file("pipe") + ": No such device or address");
}

TEST_F(Session, WhatCannotBeDoneIsSaidAndNothingOpens) {
    ClearOnExit();
    ASSERT_EQ(mkfifo(file("pipe").c_str(), 0600), 0);
    write_file(file("bad"), "wait 1\norientation -5\n\nkey over OK\n");
    const struct {
        const char *variable;
        std::string value, message;
    } cases[] = {
        {"KELVANE_SCRIPT", file("bad"),
         file("bad") + ":2: out of range: -5 (a number from 0 to 3)\n" + file("bad") +
             ":4: unknown word: over (down, up)\n"},
        {"KELVANE_SCRIPT", file("missing"), file("missing") + ": No such file or directory\n"},
        {"KELVANE_SCRIPT", "/", "/: Is a directory\n"},
        {"KELVANE_MONKEY", "7", "KELVANE_MONKEY=7: seed:count is meant\n"},
        {"KELVANE_MONKEY", "7:-1", "KELVANE_MONKEY=7:-1: seed:count is meant\n"},
        {"KELVANE_TRACE", file("no/dir"),
         "KELVANE_TRACE=" + file("no/dir") + ": No such file or directory\n"},
        {"KELVANE_FRAMES", file("bad/dir"),
         "KELVANE_FRAMES=" + file("bad/dir") + ": Not a directory\n"},
        {"KELVANE_SCRIPT", file("pipe"), file("pipe") + ": Invalid argument\n"},
        {"KELVANE_TRACE", file("pipe"),
         "KELVANE_TRACE=" + file("pipe") + ": No such device or address\n"},
        {"KELVANE_RECORD", "/", "KELVANE_RECORD=/: Is a directory\n"},
        {"KELVANE_DEVICE", "paper", "KELVANE_DEVICE=paper: no such device (window or headless)\n"},
    };
    for (const auto &c : cases) {
        set("KELVANE_DEVICE", "headless");
        set(c.variable, c.value);
        testing::internal::CaptureStderr();
        EXPECT_EQ(hw_init(), 0) << c.variable;
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.message);
        EXPECT_EQ(hw::device(), nullptr);
        unsetenv(c.variable);
    }
}

} // namespace
