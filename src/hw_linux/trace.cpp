// SPDX-License-Identifier: MIT
// Writes each update as a line and, when asked to, as a picture.
#include "hw_linux/trace.h"

#include <cinttypes>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "hw.h"
#include "hw_linux/device.h"
#include "hw_linux/output_file.h"
#include "hw_linux/picture.h"

namespace hw {
namespace {

OutputFile trace;
std::string frames_dir;
int last_seq = 0;
int64_t start_ms = 0;
void (*observer_call)(const UpdateRecord &) = nullptr;

bool open_frames() {
    const char *dir = std::getenv("KELVANE_FRAMES");
    frames_dir = dir ? dir : "";
    if (frames_dir.empty()) return true;
    std::error_code error;
    std::filesystem::create_directories(frames_dir, error);
    if (error) std::fprintf(stderr, "KELVANE_FRAMES=%s: %s\n", dir, error.message().c_str());
    return !error;
}

void write_line(const UpdateRecord &u) {
    std::fprintf(trace.stream(),
                 "{\"seq\":%d,\"time_ms\":%" PRId64
                 ",\"kind\":\"%s\",\"call\":\"%s\",\"x\":%d,\"y\":%d,"
                 "\"w\":%d,\"h\":%d,\"mode\":%d,\"dynamic\":%d,"
                 "\"changed\":%d,\"changed_x\":%d,\"changed_y\":%d,"
                 "\"changed_w\":%d,\"changed_h\":%d,\"greys\":%d,"
                 "\"wait_ms\":%" PRId64 ",\"panel_ms\":%d",
                 u.seq, u.time_ms - start_ms, name_of(u.kind), u.call, u.x, u.y, u.w, u.h, u.mode,
                 u.dynamic, u.changed, u.changed_area.x, u.changed_area.y, u.changed_area.w,
                 u.changed_area.h, u.greys, u.wait_ms, u.panel_ms);
    if (u.residue >= 0)
        std::fprintf(trace.stream(), ",\"residue\":%d.%02d", u.residue / 100, u.residue % 100);
    std::fputs("}\n", trace.stream());
}

} // namespace

bool open_trace() {
    last_seq = 0;
    start_ms = hw_boottime_ms();
    return trace.open_from("KELVANE_TRACE") && open_frames();
}

void close_trace() {
    trace.close();
    frames_dir.clear();
}

bool is_traced() {
    return trace.stream() != nullptr;
}

int number_update() {
    return ++last_seq;
}

void trace_update(const UpdateRecord &update) {
    if (trace.stream()) write_line(update);
    if (observer_call) observer_call(update);
}

int updates_traced() {
    return last_seq;
}

// A picture that cannot be written is the last one.
void save_frame(int seq) {
    if (frames_dir.empty()) return;
    char file[PATH_MAX];
    std::snprintf(file, sizeof file, "%s/%06d.png", frames_dir.c_str(), seq);
    if (save_picture(file, "KELVANE_FRAMES")) return;
    frames_dir.clear();
    end_process(1);
}

void observe_updates(void (*observer)(const UpdateRecord &)) {
    observer_call = observer;
}

} // namespace hw
