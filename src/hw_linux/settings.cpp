// SPDX-License-Identifier: MIT
// What the emulated device keeps in the global configuration.
#include "hw_linux/settings.h"

#include "hw_linux/display_mode.h"
#include "kelvane/config.h"

namespace hw {
namespace {

constexpr const char *settings_file = "./system/config/global.cfg";

int read_setting(const char *name, int fallback) {
    iconfig *config = OpenConfig(settings_file, nullptr);
    const int value = ReadInt(config, name, fallback);
    CloseConfigNoSave(config);
    return value;
}

} // namespace

int get_orientation() {
    const int stored = read_setting("orientation", 0);
    return stored >= 1 && stored <= 4 ? stored - 1 : -1;
}

int get_display_mode() {
    const int mode = read_setting("emu_resmode", -1);
    return mode < 0 || mode >= display_modes ? 0 : mode;
}

void store_setting(const char *name, int value) {
    iconfig *config = OpenConfig(settings_file, nullptr);
    WriteInt(config, name, value);
    CloseConfig(config);
}

} // namespace hw
