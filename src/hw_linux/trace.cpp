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

const char *name_of(UpdateKind kind) {
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
                 "\"w\":%d,\"h\":%d,\"mode\":%d,\"dynamic\":%d}\n",
                 u.seq, u.time_ms - start_ms, name_of(u.kind), u.call, u.x, u.y, u.w, u.h, u.mode,
                 u.dynamic);
}

void save_frame(int seq) {
    char file[PATH_MAX];
    std::snprintf(file, sizeof file, "%s/%06d.png", frames_dir.c_str(), seq);
    if (!save_picture(file, "KELVANE_FRAMES")) end_process(1);
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

void trace_update(UpdateRecord update) {
    update.seq = ++last_seq;
    if (trace.stream()) write_line(update);
    if (!frames_dir.empty()) save_frame(update.seq);
    if (observer_call) observer_call(update);
}

int updates_traced() {
    return last_seq;
}

void observe_updates(void (*observer)(const UpdateRecord &)) {
    observer_call = observer;
}

} // namespace hw
