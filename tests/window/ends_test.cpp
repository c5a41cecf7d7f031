// SPDX-License-Identifier: MIT
// The ways in which an application in the window ends.
#include <algorithm>
#include <csignal>

#include <X11/keysym.h>

#include "menu_clicks.h"
#include "session.h"

namespace {

constexpr int EXIT = 22, HIDE = 24;

class EndsTest : public WindowTest {
  protected:
    // The calls that the application hears between the deed and its end.
    void expect_end(const Lines &calls, int status = 0) {
        EXPECT_EQ(events_in(app_->take_rest(), {EXIT, HIDE}), calls);
        EXPECT_EQ(app_->wait(), status);
        EXPECT_FALSE(sandbox_.has("system/tmp/.current"));
    }
};

class ManagedTest : public EndsTest {
  protected:
    void press_close_button() const {
        const auto frame = server_.place_of(server_.frame_of(window_));
        ASSERT_GT(frame.height, place_.height) << "no title bar";
        server_.click(1, frame.x + frame.width - 10, frame.y + 10);
    }
    void SetUp() override { ASSERT_TRUE(openbox_.take_until("ready")); }

  private:
    desktop::Program openbox_{{"openbox", "--sm-disable", "--startup", "echo ready"},
                              sandbox_.path(""),
                              {{"DISPLAY", server_.name()},
                               {"HOME", sandbox_.path("")},
                               {"XDG_CONFIG_HOME", sandbox_.path("")},
                               {"XDG_CACHE_HOME", sandbox_.path("")}}};
};

} // namespace

TEST_F(EndsTest, CloseAppHidesAndExits) {
    start({"close=27"});
    server_.stroke(XK_F3);
    expect_end({"24 0 0", "22 0 0"});
}

TEST_F(EndsTest, QuitHidesAndExits) {
    start();
    choose_from_menu(server_, root_x(100), root_y(100), "/Quit");
    expect_end({"24 0 0", "22 0 0"});
}

TEST_F(EndsTest, EachSignalExitsWithoutHiding) {
    for (int number : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) {
        SCOPED_TRACE(number);
        start();
        app_->signal(number);
        expect_end({"22 0 0"});
    }
}

TEST_F(ManagedTest, TheCloseButtonExitsWithoutHiding) {
    start();
    press_close_button();
    expect_end({"22 0 0"});
}

TEST_F(ManagedTest, TheCloseButtonEndsAnApplicationThatIsUpdating) {
    start({"busy=1"});
    server_.stroke(XK_Up);
    until("25 17 0");
    press_close_button();
    expect_end({"22 0 0"});
}

TEST_F(EndsTest, ACallbackOfTheToolkitMayCloseTheScreenInAnUpdate) {
    start({"external=1", "vanish=1", "close=27"});
    server_.stroke(XK_Up);
    EXPECT_EQ(events_in(until("vanished 0"), {EXIT, HIDE}), (Lines{"24 0 0", "22 0 0"}));
    until("shown 0");
    app_->signal(SIGTERM);
    EXPECT_EQ(app_->wait(), 3);
}

TEST_F(EndsTest, LosingTheServerExitsWithoutHidingAndIsAFailure) {
    start();
    server_.kill();
    expect_end({"22 0 0"}, 1);
}

TEST_F(EndsTest, AnApplicationThatOpenedTheScreenGoesOnAndMayOpenItAgain) {
    start({"external=1", "close=27"});
    server_.stroke(XK_F3);
    EXPECT_EQ(events_in(until("shown 0"), {21, EXIT, 23, HIDE}),
              (Lines{"24 0 0", "22 0 0", "21 0 0", "23 0 0"}));
    ASSERT_NE(server_.find_window("Marrowleaf "), 0u);
    server_.stroke(XK_F3);
    EXPECT_EQ(events_in(app_->take_rest(), {EXIT, HIDE}), (Lines{"24 0 0", "22 0 0"}));
    EXPECT_EQ(app_->wait(), 3);
}

TEST_F(EndsTest, AForkedChildRunsNoneOfIt) {
    start({"fork=1"});
    EXPECT_EQ(events_in(before_show_, {21, EXIT, 23, HIDE}), (Lines{"21 0 0", "23 0 0"}));
    EXPECT_EQ(std::count(before_show_.begin(), before_show_.end(), "child 7"), 1);
    EXPECT_TRUE(sandbox_.has("system/tmp/.current"));
    app_->signal(SIGTERM);
    expect_end({"22 0 0"});
}

TEST_F(EndsTest, WithoutADisplayTheScreenDoesNotOpen) {
    launch({}, {{"DISPLAY", ":54321"}});
    const Lines lines = app_->take_rest();
    EXPECT_EQ(events_in(lines, {21, EXIT, 23, HIDE}), Lines{});
    EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                            [](const auto &line) { return line.ends_with("OpenScreen() error"); }),
              1);
    EXPECT_EQ(app_->wait(), 3);
}
