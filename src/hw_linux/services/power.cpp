// SPDX-License-Identifier: MIT
// Battery, cable, card and the device's end. The window's menu changes what these report.
#include <algorithm>
#include <atomic>

#include "ground/log.h"
#include "hw.h"
#include "hw_linux/device.h"
#include "hw_linux/services/state.h"
#include "kelvane/config.h"

void hw_ban_suspend(int) {}
int hw_setalarm(long long) {
    return 0;
}
void hw_say_poweroff(void) {
    hw_say_poweroff_with_flags(0);
}
void hw_say_poweroff_with_flags(int flags) {
    tq_print_log2(LOG_INFO_LEVEL, "Power off, flags=%i\n", flags);
}
int hw_shutting_down(void) {
    return 0;
}
int hw_power(void) {
    return std::clamp(hw::emulated().battery, 0, 5) * 20;
}
int hw_temperature(void) {
    return 25;
}
int hw_safemode(void) {
    return cfg_read_int("safemode", 0) != 0;
}
int hw_ischarging(void) {
    return hw::emulated().charging;
}

int hw_usbhostpower(int) {
    return 0;
}
int hw_isusbconnected(void) {
    return hw::emulated().charging;
}
int hw_isusbhostconnected(void) {
    return 0;
}
int hw_isusbstorattached(void) {
    return 0;
}
int hw_isusbmounted(void) {
    return 0;
}
int hw_issdinserted(void) {
    return hw::emulated().card_inserted;
}
int hw_sd_mounted(void) {
    return hw_issdinserted();
}
int hw_flash_mounted(void) {
    return 1;
}
int hw_usbready(void) {
    return std::atomic_ref(hw::services().storage_ready); // on any thread
}
int hw_usblink(void) {
    return 0;
}
