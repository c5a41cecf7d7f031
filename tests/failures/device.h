// SPDX-License-Identifier: MIT
// An open headless device, and an application that allocates nothing.
#pragma once

#include <cstdlib>

#include "support/fonts.h"
#include "support/headless.h"

namespace failures {

inline int ignore(int, int, int) {
    return 0;
}

class Device {
  public:
    Device() {
        fonts::link_all();
        setenv("KELVANE_DEVICE", "headless", 1);
        if (!OpenScreenExt()) std::abort();
        hw::set_horizon(hw::device()->clock_us());
        PrepareForLoop(ignore);
        headless::detail::settle();
    }
    ~Device() {
        ClearOnExit();
        hw::set_horizon(hw::no_horizon);
    }
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;

  private:
    TempDir dir_;
};

} // namespace failures
