// SPDX-License-Identifier: MIT
// Starts the application and finds its window.
#include "session.h"

#include <algorithm>

Lines &operator+=(Lines &lines, const Lines &more) {
    lines.insert(lines.end(), more.begin(), more.end());
    return lines;
}

Lines events_in(const Lines &lines, const std::vector<int> &types) {
    Lines events;
    for (const std::string &line : lines)
        for (int type : types)
            if (line.starts_with(std::to_string(type) + " ")) events.push_back(line);
    return events;
}

void WindowTest::launch(const Lines &options, const desktop::Environment &environment) {
    Lines command = {WINDOW_APP};
    command.insert(command.end(), options.begin(), options.end());
    app_.emplace(command, sandbox_.path(""), environment);
}

void WindowTest::start(const Lines &options, const std::string &settings,
                       const desktop::Environment &more) {
    sandbox_.write("system/config/global.cfg", settings);
    sandbox_.write("system/tmp/.current", "window_app\n");
    desktop::Environment environment = more;
    environment["DISPLAY"] = server_.name();
    launch(options, environment);
    before_show_ = until("shown 0");
    window_ = server_.find_window("Marrowleaf ");
    ASSERT_NE(window_, 0u);
    place_ = server_.place_of(window_);
    server_.move(root_x(place_.width / 2), root_y(place_.height / 2));
}

Lines WindowTest::until(const std::string &last) {
    auto lines = app_->take_until(last);
    EXPECT_TRUE(lines) << "never came: " << last;
    return lines.value_or(Lines{});
}
