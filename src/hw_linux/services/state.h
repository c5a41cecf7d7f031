// SPDX-License-Identifier: MIT
// What the emulated services remember. Application thread only.
#pragma once

#include <cstdint>
#include <string>

namespace hw {

struct ServiceState {
    bool keys_locked = false;
    bool sensor_on = true;
    bool storage_ready = true;
    int64_t clock_ahead_us = 0; // of the boot clock: what time it is for the device
    bool clock_is_set = false;  // else it is the time of the wall clock
    bool wifi_on = false, bluetooth_on = false;
    bool light_on = false;
    int light_percent = 50;
    std::string track;    // empty: none is loaded
    int player_state = 0; // HW_MP_*
    int volume_percent = 50;
};
ServiceState &services();

// Back to the state of a device that was just switched on.
void reset_services();

// Whether hw_usbready() answers 1; file access to the storage mounts waits for it after a wake.
void set_storage_ready(bool ready);

} // namespace hw
