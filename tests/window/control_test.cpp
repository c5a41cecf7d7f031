// SPDX-License-Identifier: MIT
// An application in its window, with a person at the keyboard and a controller at its socket.
#include <X11/keysym.h>

#include "session.h"

namespace {

class ControlledWindow : public WindowTest {
  protected:
    void start_controlled(const Lines &options, desktop::Environment environment = {}) {
        environment["KELVANE_CONTROL"] = sandbox_.path("control");
        start(options, "", environment);
    }
    // The answers to these lines.
    Lines answers(const Lines &lines) {
        Lines all;
        for (const std::string &line : lines) {
            desktop::Program client({CONTROL_TOOL, "--socket", sandbox_.path("control"), line},
                                    sandbox_.path(""));
            all += client.take_rest();
        }
        return all;
    }
};

} // namespace

TEST_F(ControlledWindow, APersonAndAControllerTakeTurns) {
    sandbox_.write("system/language/xx.txt", "Other\n@Cancel=no\n");
    start_controlled({"seed=3"});
    EXPECT_EQ(answers({"idle", "press LEFT", "wait 5"}), (Lines{"ok", "ok", "ok"}));
    EXPECT_EQ(until("26 19 0"), (Lines{"25 19 0", "26 19 0"}));
    server_.stroke(XK_Right);
    until("26 20 0");
    // What waits for an update gets that of the person, or of another client.
    desktop::Program waiting({CONTROL_TOOL, "--socket", sandbox_.path("control"), "wait-update"},
                             sandbox_.path(""));
    EXPECT_EQ(answers({"wait 1000", "language xx"}), (Lines{"ok", "ok"}));
    until("shown 0");
    EXPECT_EQ(waiting.take_rest(), Lines{"ok"});
    const Lines state = answers({"state"});
    ASSERT_EQ(state.size(), 1u);
    EXPECT_NE(state[0].find("\"updates\":2,"), std::string::npos) << state[0];
    EXPECT_NE(state[0].find("\"language\":\"xx\""), std::string::npos) << state[0];
    EXPECT_EQ(answers({"frame seen.png", "quit"}), (Lines{"ok", "ok"}));
    EXPECT_EQ(app_->wait(), 0);
    EXPECT_TRUE(sandbox_.has("seen.png"));
    EXPECT_FALSE(sandbox_.has("control"));
}

// The panel would clean for 24 seconds, longer than anybody here waits; what a controller says
// meanwhile is heard afterwards. Each update has its picture.
TEST_F(ControlledWindow, LeavingThePanelEndsTheWaitForIt) {
    start_controlled({"clean=1"}, {{"KELVANE_PANEL", "epaper"}, {"KELVANE_FRAMES", "frames"}});
    server_.stroke(XK_Left);
    until("waiting 0");
    desktop::Program client({CONTROL_TOOL, "--socket", sandbox_.path("control"), "idle"},
                            sandbox_.path(""));
    server_.stroke(XK_F9);
    until("waited 0");
    EXPECT_EQ(client.take_rest(), Lines{"ok"});
    for (int seq = 1; seq <= 13; ++seq) {
        const std::string name = "frames/0000" + std::string(seq < 10 ? "0" : "");
        EXPECT_TRUE(sandbox_.has(name + std::to_string(seq) + ".png")) << seq;
    }
    EXPECT_FALSE(sandbox_.has("frames/000014.png"));
}
