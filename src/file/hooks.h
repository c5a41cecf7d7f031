// SPDX-License-Identifier: MIT
// What the file layer needs from the layers above it. They install their functions when they open
// and put the defaults back when they close (`file_hooks = {}`).
#pragma once

#include <cstdio>

// The functions that stand in until something better is installed.
namespace file_defaults {
void system_request(int request);
const char *translate(const char *key);
int storage_ready();
long long clock_ms();
long long wall_seconds();
void pause(long long us);
std::FILE *open_plain(const char *path, const char *mode);
} // namespace file_defaults

struct FileHooks {
    // Sends a request without data to the system. Default: nothing.
    void (*system_request)(int request) = file_defaults::system_request;
    // Translates a key. Default: the key itself.
    const char *(*translate)(const char *key) = file_defaults::translate;
    // 1 when the storage mounts can be used. Default: always.
    int (*storage_ready)() = file_defaults::storage_ready;
    // The clock of kvstate.waketime. Default: the boot clock.
    long long (*clock_ms)() = file_defaults::clock_ms;
    // The clock that spaces the warnings, in seconds. Default: the wall clock.
    long long (*wall_seconds)() = file_defaults::wall_seconds;
    // Lets time pass, in µs. Default: sleeps.
    void (*pause)(long long us) = file_defaults::pause;
    // Opens a stream as fopen() does. Default: fopen().
    std::FILE *(*open)(const char *path, const char *mode) = std::fopen;
    // Opens a plain file in a mode of fopen(), and nothing else. Default: never waits.
    std::FILE *(*open_plain)(const char *path, const char *mode) = file_defaults::open_plain;
};

extern FileHooks file_hooks;

inline constexpr int REQUEST_CHECK_FILE_SYSTEM = 263;
