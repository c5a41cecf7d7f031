// SPDX-License-Identifier: MIT
// Writes lines of a script as things happen.
#include "hw_linux/recorder.h"

#include <cstdarg>
#include <cstdio>
#include <utility>

#include "hw.h"
#include "hw_linux/output_file.h"

namespace hw {
namespace {

OutputFile file;
bool counting = false;
long long last_ms = 0;

} // namespace

bool open_recorder() {
    counting = false;
    return file.open_from("KELVANE_RECORD");
}

void close_recorder() {
    file.close();
}

void recorder_idle() {
    if (std::exchange(counting, true)) return;
    last_ms = hw_boottime_ms();
}

// What comes before the application was idle for the first time comes first in the script.
void record(const char *format, ...) {
    if (!file.stream()) return;
    const long long now_ms = hw_boottime_ms();
    if (counting && now_ms > last_ms) std::fprintf(file.stream(), "wait %lld\n", now_ms - last_ms);
    last_ms = now_ms;
    va_list args;
    va_start(args, format);
    std::vfprintf(file.stream(), format, args);
    va_end(args);
    std::fputc('\n', file.stream());
}

} // namespace hw
