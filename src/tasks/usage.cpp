// SPDX-License-Identifier: MIT
// Opens the library of usage statistics when it is there, and tells it of a start.
#include "tasks/usage.h"

#include <dlfcn.h>
#include <unistd.h>

#include "ground/log.h"
#include "kelvane/events.h"

namespace {

constexpr const char *library_path = "/ebrmain/lib/libusage_stat.so";

using ReportStart = void (*)(int pid, const char *name, int orientation, char *const *arguments);

ReportStart load() {
    void *library = dlopen(library_path, RTLD_NOW);
    if (!library) {
        tq_print_log2(LOG_INFO_LEVEL, "Falied to dlopen usage_stat lib\n");
        return nullptr;
    }
    return reinterpret_cast<ReportStart>(dlsym(library, "Stat_StartApplicationByPathEvent"));
}

} // namespace

void tasks::report_start(const char *name, char *const *arguments) {
    static const ReportStart report = load();
    if (report) report(getpid(), name, GetOrientation(), arguments);
}
