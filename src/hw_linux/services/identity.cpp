// SPDX-License-Identifier: MIT
// Who the device is. Every answer may be set in the device file.
#include "hw.h"
#include "kelvane/config.h"

const char *hw_serialnumber(void) {
    return cfg_read_string("serial", "EMULATOR0000001");
}
const char *hw_waveform_filename(void) {
    return cfg_read_string("waveform", "");
}
const char *hw_getmodel(void) {
    return cfg_read_string("model", "Emulator");
}
const char *hw_get3gimei(void) {
    return cfg_read_string("imei", "");
}
const char *hw_getbtmac(void) {
    return cfg_read_string("btmac", "02:00:00:00:00:02");
}
const char *hw_getplatform(void) {
    return cfg_read_string("platform", "desktop");
}
const char *hw_getmac(void) {
    return cfg_read_string("mac", "02:00:00:00:00:01");
}
const char *hw_get_device_id(void) {
    return cfg_read_string("device_id", hw_serialnumber());
}
const char *hw_external_card_serial_number(void) {
    return hw_issdinserted() ? cfg_read_string("card_serial", "CARD0001") : "";
}
const char *hw_password(void) {
    return "";
}
const char *hw_pkey(void) {
    return "";
}
int hw_registerapp(const char *) {
    return 0;
}
