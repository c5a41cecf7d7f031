// SPDX-License-Identifier: MIT
#include "file/warning.h"

#include <cerrno>
#include <cstring>
#include <mntent.h>

#include "file/hooks.h"

namespace {

constexpr int warning_icon = 4;
constexpr int warning_ms = 10000;
constexpr int warning_spacing_s = 15;

class errno_keeper {
  public:
    errno_keeper() = default;
    errno_keeper(const errno_keeper &) = delete;
    errno_keeper &operator=(const errno_keeper &) = delete;
    ~errno_keeper() { errno = kept; }

  private:
    int kept = errno;
};

void warn(const char *text) {
    file_hooks.message(warning_icon, "@Error", text, warning_ms);
}

} // namespace

// The time is noted before the warning is shown: a message box that itself meets the damaged file
// system must not warn again.
bool warning_spacing::claim() {
    const long long now = file_hooks.wall_seconds();
    if (now - last_s <= warning_spacing_s) return false;
    last_s = now;
    return true;
}

void warn_needs_check(warning_spacing &spacing) {
    const errno_keeper keeper;
    if (spacing.claim()) warn("@FS_need_check");
    file_hooks.system_request(REQUEST_CHECK_FILE_SYSTEM);
}

void warn_failing_device(warning_spacing &spacing, const char *path, int error) {
    const errno_keeper keeper;
    if (!spacing.claim()) return;
    device_name device{};
    if (std::FILE *mounts = file_hooks.open("/proc/mounts", "r")) {
        device = failing_device(mounts, path);
        std::fclose(mounts);
    }
    char text[256];
    std::snprintf(text, sizeof text, "%s at %s", std::strerror(error), device.text);
    warn(text);
}

device_name failing_device(std::FILE *mounts, const char *path) {
    device_name device{};
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
