// SPDX-License-Identifier: MIT
// Networks to show and never to reach.
#include "hw.h"
#include "hw_linux/services/state.h"

using hw::services;

namespace {

constexpr const char *no_names[] = {nullptr};
constexpr const char *wireless_names[] = {"HomeNet", "Open network", "DLink",
                                          "WLAN123", "wifi_free",    nullptr};
constexpr const char *bluetooth_names[] = {"My BT device", "SE W810i", nullptr};

int empty_answer(char *text, int size, int result) {
    if (text && size > 0) *text = '\0';
    return result;
}

int activate(bool &radio, bool present, bool on) {
    radio = on && present;
    return present;
}

} // namespace

int hw_querynetwork(void) {
    return 0;
}
int hw_net_connect(const char *) {
    return 0;
}
int hw_net_disconnect(void) {
    return 0;
}
int hw_net_info(const char *, char *text, int size) {
    return empty_answer(text, size, 0);
}

int hw_wifi_ready(void) {
    return device_wifi();
}
int hw_wifi_activate(int on) {
    return activate(services().wifi_on, device_wifi(), on != 0);
}
int hw_wifi_active(void) {
    return services().wifi_on;
}
int hw_bt_ready(void) {
    return device_bluetooth();
}
int hw_bt_activate(int on) {
    return activate(services().bluetooth_on, device_bluetooth(), on != 0);
}
int hw_bt_active(void) {
    return services().bluetooth_on;
}

const char *const *hw_enum_btdevices(void) {
    return device_bluetooth() ? bluetooth_names : no_names;
}
const char *const *hw_enum_wireless(void) {
    return device_wifi() ? wireless_names : no_names;
}

int hw_get_network_interface_info(char *text, int size) {
    return empty_answer(text, size, 0);
}
int hw_get_net_gateway_info(char *text, int size) {
    return empty_answer(text, size, 0);
}
int hw_get_net_dns_info(char *text, int size) {
    return empty_answer(text, size, 0);
}
int hw_ussdquery(const char *, char *answer, int size) {
    return empty_answer(answer, size, -1);
}
