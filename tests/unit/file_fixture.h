// SPDX-License-Identifier: MIT
// A directory of its own for each test, and a device whose clock, storage and opener the test owns.
#pragma once

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "file/hooks.h"
#include "ground/message.h"
#include "internal.h"
#include "kelvane/files.h"
#include "support/tempdir.h"

inline std::string contents(const std::string &path) {
    return std::filesystem::exists(path) ? read_file(path) : "(none)";
}

struct FakeDevice {
    long long now_ms = 1'000'000, now_s = 1'000'000;
    long long ready_at_ms = 0; // storage is ready from then on
    int pauses = 0;
    std::vector<std::string> warnings;
    std::vector<int> requests;
    std::vector<int> open_errors; // of the next opens, the last stays
    int opens = 0;
    std::string mounts;
};

inline FakeDevice device;

// Puts the error of the next open into errno; 0 when it works.
inline int next_open_error() {
    if (device.open_errors.empty()) return 0;
    const int error = device.open_errors.front();
    if (device.open_errors.size() > 1) device.open_errors.erase(device.open_errors.begin());
    return errno = error;
}

inline FILE *fake_open(const char *path, const char *mode) {
    if (std::string(path) == "/proc/mounts") {
        errno = 0; // what the table's reader leaves behind
        return fmemopen(device.mounts.data(), device.mounts.size(), mode);
    }
    ++device.opens;
    return next_open_error() ? nullptr : std::fopen(path, mode);
}

inline FILE *fake_open_plain(const char *path, const char *mode) {
    ++device.opens;
    return next_open_error() ? nullptr : file_defaults::open_plain(path, mode);
}

// A path on another file system than the current folder.
inline std::string path_elsewhere(const std::string &name) {
    struct stat here = {}, memory = {};
    const bool is_memory =
        stat(".", &here) == 0 && stat("/dev/shm", &memory) == 0 && here.st_dev == memory.st_dev;
    return (is_memory ? "/var/tmp/kelvane-" : "/dev/shm/kelvane-") + name +
           std::to_string(getpid());
}

class FileTest : public testing::Test {
  protected:
    void SetUp() override {
        const long long later = device.now_s + 1000; // past the warnings of the test before
        device = {};
        device.now_s = later;
        message_hooks.show = [](int icon, const char *title, const char *text, int ms) {
            device.warnings.push_back(std::to_string(icon) + title + " " + text + " " +
                                      std::to_string(ms));
            errno = ENOTTY; // as a message box may
        };
        file_hooks.system_request = [](int request) { device.requests.push_back(request); };
        file_hooks.storage_ready = [] { return int(device.now_ms >= device.ready_at_ms); };
        file_hooks.clock_ms = [] { return device.now_ms; };
        file_hooks.wall_seconds = [] { return device.now_s; };
        file_hooks.pause = [](long long us) {
            ++device.pauses;
            device.now_ms += us / 1000;
        };
        file_hooks.open = fake_open;
        file_hooks.open_plain = fake_open_plain;
        kvstate.waketime = 0;
    }
    void TearDown() override {
        file_hooks = {};
        message_hooks = {};
    }
    // The device has just been woken; storage comes back after `ms`.
    void wake(long long ms) {
        kvstate.waketime = device.now_ms;
        device.ready_at_ms = device.now_ms + ms;
        device.pauses = 0;
    }

    TempDir folder;
};
