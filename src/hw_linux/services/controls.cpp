// SPDX-License-Identifier: MIT
// Key lock, touch panel, orientation sensor and front light.
#include <algorithm>
#include <utility>

#include "hw.h"
#include "hw_linux/description.h"
#include "hw_linux/device.h"
#include "hw_linux/services/state.h"

using hw::services;

void hw_useraction(void) {}
void hw_set_keylock(int locked) {
    services().keys_locked = locked != 0;
}
int hw_get_keylock(void) {
    return services().keys_locked;
}
void hw_setglobalkeymask(uint32_t, uint32_t) {}
void hw_setextkbdlayout(const char *) {}

int hw_ts_active(void) {
    return hw_touchpanel_ready();
}
int hw_ts_default(void) {
    return 1;
}
int hw_touchpanel_ready(void) {
    return device_touchpanel() > 0;
}
int hw_captouch_ready(void) {
    return device_touchpanel() > 2;
}
int hw_captouch_active(void) {
    return hw_captouch_ready();
}

int hw_gsensor_ready(void) {
    return hw::described(hw::orientation_sensor) > 0;
}
int hw_read_gsensor(void) {
    return std::clamp(hw::emulated().position, 0, 3);
}
int hw_last_orientation(void) {
    return hw_read_gsensor();
}
int hw_gsensor_orientation(void) {
    return hw_read_gsensor();
}
void hw_set_gsensor(int) {}
int hw_gsensor_switch(int on) {
    return std::exchange(services().sensor_on, on != 0);
}
int hw_gsensor_get_switch(void) {
    return services().sensor_on;
}
void hw_suspend_gsensor(void) {}
void hw_resume_gsensor(void) {}
int hw_calibrate_gsensor(void) {
    return 1;
}
int hw_adjust_gsensor(int) {
    return 1;
}

int hw_get_frontlight_state(void) {
    return services().light_on;
}
void hw_set_frontlight_state(int on) {
    services().light_on = on != 0 && device_has_frontlight();
}
int hw_get_frontlight_value(void) {
    return services().light_percent;
}
void hw_set_frontlight_value(int percent) {
    if (device_has_frontlight()) services().light_percent = std::clamp(percent, 0, 100);
}
