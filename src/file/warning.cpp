// SPDX-License-Identifier: MIT
// Spaces warnings and finds the name of the device that failed.
#include "file/warning.h"

#include <cerrno>
#include <cstring>
#include <mntent.h>

#include "file/hooks.h"
#include "ground/message.h"

namespace {

constexpr int warning_icon = 4;
constexpr int warning_ms = 10000;
constexpr int warning_spacing_s = 15;

class ErrnoKeeper {
  public:
    ErrnoKeeper() = default;
    ErrnoKeeper(const ErrnoKeeper &) = delete;
    ErrnoKeeper &operator=(const ErrnoKeeper &) = delete;
    ~ErrnoKeeper() { errno = kept; }

  private:
    int kept = errno;
};

void warn(const char *text) {
    message_hooks.show(warning_icon, "@Error", text, warning_ms);
}

} // namespace

// The time is noted before the warning is shown: a message box that itself meets the damaged file
// system must not warn again.
bool WarningSpacing::claim() {
    const long long now = file_hooks.wall_seconds();
    if (now - last_s <= warning_spacing_s) return false;
    last_s = now;
    return true;
}

void warn_needs_check(WarningSpacing &spacing) {
    const ErrnoKeeper keeper;
    if (spacing.claim()) warn("@FS_need_check");
    file_hooks.system_request(REQUEST_CHECK_FILE_SYSTEM);
}

void warn_failing_device(WarningSpacing &spacing, const char *path, int error) {
    const ErrnoKeeper keeper;
    if (!spacing.claim()) return;
    DeviceName device{};
    if (std::FILE *mounts = file_hooks.open("/proc/mounts", "r")) {
        device = failing_device(mounts, path);
        std::fclose(mounts);
    }
    char text[256];
    std::snprintf(text, sizeof text, "%s at %s", std::strerror(error), device.text);
    warn(text);
}

DeviceName failing_device(std::FILE *mounts, const char *path) {
    DeviceName device{};
    std::size_t best = 1; // of "/"
    mntent entry;
    char line[4096];
    while (getmntent_r(mounts, &entry, line, sizeof line)) {
        const std::size_t length = std::strlen(entry.mnt_dir);
        if (length <= best) continue;
        std::snprintf(device.text, sizeof device.text, "%s", entry.mnt_fsname);
        if (std::strncmp(path, entry.mnt_dir, length) == 0) best = length;
    }
    return device;
}
