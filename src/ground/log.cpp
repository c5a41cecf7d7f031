// SPDX-License-Identifier: MIT
// Formats messages and writes them to standard error.
#include "ground/log.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

#include "ground/number.h"

namespace {

int log_level() {
    static const int level = [] {
        const char *text = std::getenv("KELVANE_LOG");
        return text ? ground::parse_int(text, nullptr, 10) : 3;
    }();
    return level;
}

} // namespace

void kv_warn(const char *function, const char *format, ...) {
    std::fprintf(stderr, "[%i : %s] (%s)", static_cast<int>(getpid()),
                 program_invocation_short_name, function);
    va_list args;
    va_start(args, format);
    std::vfprintf(stderr, format, args);
    va_end(args);
}

void tq_print_log2(int level, const char *format, ...) {
    if (level > log_level()) return;
    va_list args;
    va_start(args, format);
    std::vfprintf(stderr, format, args);
    va_end(args);
}
