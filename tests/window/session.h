// SPDX-License-Identifier: MIT
// The application under test in its window on a server of its own.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "harness.h"

using Lines = std::vector<std::string>;

Lines &operator+=(Lines &lines, const Lines &more);
// The lines that tell of these events, in order.
Lines events_in(const Lines &lines, const std::vector<int> &types);

class WindowTest : public testing::Test {
  protected:
    // Starts the application with its settings and waits until it is drawn.
    void start(const Lines &options = {}, const std::string &settings = "",
               const desktop::Environment &more = {});
    // As start(), but on a server and with arguments of the test's own.
    void launch(const Lines &options, const desktop::Environment &environment);

    // Lines up to this one, which must come.
    Lines until(const std::string &last);
    // A place in the drawing area, as the pointer's place on the root window.
    int root_x(int x) const { return place_.x + x; }
    int root_y(int y) const { return place_.y + y; }

    desktop::Server server_{1500, 2000};
    desktop::Sandbox sandbox_;
    std::optional<desktop::Program> app_;
    Lines before_show_; // what the application said until it was drawn
    unsigned long window_ = 0;
    desktop::Place place_{};
};
