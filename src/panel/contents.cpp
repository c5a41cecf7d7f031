// SPDX-License-Identifier: MIT
// Asks the device for the time, the battery and the network.
#include "panel/contents.h"

#include <algorithm>
#include <ctime>
#include <string_view>
#include <sys/time.h>

#include "ground/guard.h"
#include "hw.h"
#include "internal.h"
#include "kelvane/config.h"
#include "kelvane/panel.h"
#include "lang/clock.h"

namespace panel {
namespace {

constexpr int minute_ms = 60000;
constexpr int percent_of_level = 20;
constexpr size_t longest_text = 1000; // more than any screen shows

struct Set {
    std::string text;
    int page = 0, pages = 0;
};
Set set;

// Whoever switches a panel on expects a clock unless the settings take it away, so it is there by
// default, unlike kvstate.showclock. A safe start leaves settings aside.
bool shows_clock() {
    return hw_safemode() || ReadInt(kvstate.cfg, "showclock", 1) != 0;
}

std::string clock_text() {
    if (!shows_clock()) return {};
    timeval now{};
    hw_gettime(&now);
    tm parts{};
    if (!localtime_r(&now.tv_sec, &parts)) return {};
    return lang::time_text(parts.tm_hour, parts.tm_min);
}

std::string pages_text() {
    if (set.pages < 1) return {};
    return std::to_string(set.page) + " / " + std::to_string(set.pages);
}

Network network() {
    if (!hw_wifi_active()) return Network::off;
    return hw_querynetwork() != 0 ? Network::connected : Network::missing;
}

} // namespace

Contents read_contents() {
    const int percent = std::clamp(hw_power(), 0, 100);
    return {.clock = clock_text(),
            .text = set.text,
            .pages = pages_text(),
            .percent = std::to_string(percent) + "%",
            .battery_level = percent / percent_of_level,
            .is_charging = hw_ischarging() != 0,
            .is_locked = hw_get_keylock() != 0,
            .network = network()};
}

int next_minute_ms() {
    timeval now{};
    hw_gettime(&now);
    return minute_ms - static_cast<int>(now.tv_sec % 60 * 1000 + now.tv_usec / 1000);
}

void reset_contents() {
    set = {};
}

} // namespace panel

void SetPanelText(const char *text) {
    const std::string_view wanted = text ? text : "";
    ground::guarded([&] { panel::set.text = wanted.substr(0, panel::longest_text); });
}

void SetPanelPages(int page, int pages) {
    panel::set.page = page;
    panel::set.pages = pages;
}
