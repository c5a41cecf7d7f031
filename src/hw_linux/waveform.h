// SPDX-License-Identifier: MIT
// What an update of each mode does to a panel of e-paper: the one table of durations, greys,
// flashes and ghosts. The durations are those that makers of panels publish, at 85 frames a second.
#pragma once

#include "kelvane/updates.h"

namespace hw {

enum class UpdateKind { full, full_hq, partial, refine };

// As traces have it.
constexpr const char *name_of(UpdateKind kind) {
    switch (kind) {
    case UpdateKind::full:
        return "full";
    case UpdateKind::full_hq:
        return "full_hq";
    case UpdateKind::partial:
        return "partial";
    case UpdateKind::refine:
        return "refine";
    }
    return "";
}

struct Waveform {
    UpdateKind kind;
    int mode;
    int ms;              // from its first frame to its last
    int levels;          // greys that it can show
    int flashes;         // times that its area goes black and white; a flash clears the residue
    int residue_percent; // of the way from the former grey to the new one, that is not gone
};

inline constexpr int panel_frames_a_second = 85;
inline constexpr int panel_levels = 16;

// What is left of an older residue, where a pixel changes without a flash.
inline constexpr int older_residue_percent = 75;

// The first row of a kind serves modes that have none.
inline constexpr Waveform waveforms[] = {
    // kind, mode, ms, levels, flashes, residue
    {UpdateKind::full, UPDATE_GREY, 450, 16, 1, 0},
    {UpdateKind::full_hq, UPDATE_GREY, 2000, 16, 4, 0},
    {UpdateKind::refine, UPDATE_GREY, 450, 16, 0, 2},
    {UpdateKind::partial, UPDATE_GREY, 450, 16, 0, 4},
    {UpdateKind::partial, UPDATE_PARTIAL_GREY, 450, 16, 0, 4},
    {UpdateKind::partial, UPDATE_PARTIAL_HQ, 450, 16, 0, 2},
    {UpdateKind::partial, UPDATE_PARTIAL_BLACK, 450, 16, 0, 2},
    {UpdateKind::partial, UPDATE_DU4, 290, 4, 0, 5},
    {UpdateKind::partial, UPDATE_BW, 260, 2, 0, 6},
    {UpdateKind::partial, UPDATE_A2, 120, 2, 0, 8},
    {UpdateKind::partial, UPDATE_A2_ENTER, 260, 2, 1, 0},
    {UpdateKind::partial, UPDATE_A2_EXIT, 450, 16, 1, 0},
};

constexpr const Waveform &waveform_of(UpdateKind kind, int mode) {
    const Waveform *first = nullptr;
    for (const Waveform &row : waveforms) {
        if (row.kind != kind) continue;
        if (row.mode == mode) return row;
        if (!first) first = &row;
    }
    return *first;
}

} // namespace hw
