// SPDX-License-Identifier: MIT
// An open headless device, and an application that allocates nothing.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <numeric>

#include "support/fonts.h"
#include "support/headless.h"

namespace failures {

inline int ignore(int, int, int) {
    return 0;
}

inline bool open_device(kv_handler handler) {
    if (!OpenScreenExt()) return false;
    hw::set_horizon(hw::device()->clock_us());
    PrepareForLoop(handler);
    headless::detail::settle();
    return true;
}
inline void close_device() {
    ClearOnExit();
    hw::set_horizon(hw::no_horizon);
}

// A number that tells one screen from another.
inline uint64_t picture() {
    const icanvas &c = *kvstate.framebuffer;
    return std::accumulate(c.addr, c.addr + c.scanline * c.height, uint64_t{0},
                           [](uint64_t sum, uint8_t byte) { return sum * 31 + byte; });
}

// A working directory with the fonts of a device, which will be headless.
struct Folder {
    TempDir dir;
    Folder() {
        fonts::link_all();
        setenv("KELVANE_DEVICE", "headless", 1);
    }
};

class Device {
  public:
    Device() {
        if (!open_device(ignore)) std::abort();
    }
    ~Device() { close_device(); }
    Device(const Device &) = delete;
    Device &operator=(const Device &) = delete;

  private:
    Folder folder_;
};

} // namespace failures
