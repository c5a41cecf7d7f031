// SPDX-License-Identifier: MIT
// The headless device on which components are opened: a screen of 1404 x 1872 pixels.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "internal.h"
#include "kelvane/canvas.h"
#include "runtime/queue.h"
#include "text_common.h"

// Opens it in the folder of the benchmarks, for an application that does nothing.
inline bool open_bench_screen() {
    setenv("KELVANE_DEVICE", "headless", 0);
    setenv("KELVANE_LOG", "0", 1);
    enter_bench_folder();
    std::filesystem::create_directories("system/config");
    std::ofstream("system/config/global.cfg") << "emu_resmode=11\n";
    if (OpenScreenExt() != 1 || ScreenHeight() != 1872) return false;
    PrepareForLoop([](int, int, int) { return 1; });
    return true;
}

// Drops what the runtime would deliver.
inline void take_events() {
    ievent event;
    while (queue_take(event)) {
    }
}
