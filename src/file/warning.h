// SPDX-License-Identifier: MIT
// Warnings about damaged file systems, at most one in 15 seconds for each kind.
#pragma once

#include <atomic>
#include <cstdio>

class WarningSpacing {
  public:
    // True when a warning may be given now, which it then must be.
    bool claim();

  private:
    std::atomic<long long> last_s = 0;
};

// Tells the user that the file system needs a check, if `spacing` allows, and asks the system for
// one in any case. Keeps errno.
void warn_needs_check(WarningSpacing &spacing);

// Tells the user which device failed with `error`, if `spacing` allows. Keeps errno.
void warn_failing_device(WarningSpacing &spacing, const char *path, int error);

// A mounted device's name of at most 31 bytes, found in a table in the format of /proc/mounts.
struct DeviceName {
    char text[32];
};

// The device named for a failure of `path`. The mount with the longest prefix of the path wins, but
// every mount point longer than the best one so far gives its device's name, prefix or not: the
// last of those is named. Empty when there is none.
DeviceName failing_device(std::FILE *mounts, const char *path);
