// SPDX-License-Identifier: MIT
// One script, two devices: what was seen in the window is what the headless device shows.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "session.h"

namespace {

constexpr const char *script = R"(press OK
down 100 200
move 150 260
move 300 400
up 300 400
frame moved.png
menu /Orientation/Landscape 90
press LEFT
tap 20 30
wait 30
menu /Orientation/Portrait 180
press NEXT
press PLUS
tap 580 790
frame turned.png
)";

Lines files_in(const std::string &directory) {
    Lines names;
    for (const auto &entry : std::filesystem::directory_iterator(directory))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace

TEST_F(WindowTest, AScriptGivesTheSameFramesAsOnTheHeadlessDevice) {
    for (const char *mode : {"0", "10"}) {
        SCOPED_TRACE(mode);
        for (const std::string device : {"window", "headless"}) {
            sandbox_.write("script", script);
            sandbox_.write("system/config/global.cfg", std::string("emu_resmode=") + mode + "\n");
            launch({"trail=1", "seed=5"}, {{"DISPLAY", server_.name()},
                                           {"KELVANE_DEVICE", device},
                                           {"KELVANE_SCRIPT", "script"},
                                           {"KELVANE_FRAMES", device}});
            app_->take_rest();
            EXPECT_EQ(app_->wait(), 0);
        }
        const Lines frames = files_in(sandbox_.path("window"));
        EXPECT_GT(frames.size(), 15u);
        EXPECT_EQ(frames, files_in(sandbox_.path("headless")));
        for (const std::string &frame : frames)
            EXPECT_TRUE(sandbox_.read("window/" + frame) == sandbox_.read("headless/" + frame))
                << frame;
    }
}
