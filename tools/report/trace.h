// SPDX-License-Identifier: MIT
// Traces, as the library writes them: a line of JSON an update, of one session a file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "hw_linux/waveform.h"

namespace report {

struct Area {
    int64_t x, y, w, h;
    int64_t pixels() const { return w * h; }
};

struct Update {
    int64_t seq, time_ms;
    std::string call; // letters, digits and spaces; empty when the device was called directly
    hw::UpdateKind kind;
    int mode;
    Area area, changed;
    int64_t changed_pixels, greys;
    int64_t wait_ms, panel_ms;

    const hw::Waveform &waveform() const { return hw::waveform_of(kind, mode); }
    bool flashes() const { return waveform().flashes > 0; }
    int64_t start_ms() const { return time_ms + wait_ms; }
};

struct Trace {
    std::vector<Update> updates; // in the order of their numbers and their times
    std::string mistake;         // what is wrong with the first line that is none, after its number
};

// Takes any bytes.
Trace parse_trace(std::string_view text);

} // namespace report
