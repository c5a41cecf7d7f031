// SPDX-License-Identifier: MIT
// The emulated device's description, which stands in for hardware detection.
#include "hw_linux/description.h"

#include <algorithm>
#include <iterator>

#include "hw.h"
#include "kelvane/config.h"

namespace {

struct Panel {
    int kind, width, height, dpi;
};

// The first also serves kinds that are not listed. No digit of a description word gives 9 or 10.
constexpr Panel panels[] = {{1, 600, 800, 167},   {2, 758, 1024, 212},  {3, 1072, 1448, 300},
                            {4, 480, 800, 187},   {5, 768, 1024, 213},  {6, 828, 1200, 150},
                            {7, 1200, 1600, 206}, {8, 1404, 1872, 300}, {11, 1404, 1872, 227}};

uint64_t word = hw::default_description;

const Panel &panel() {
    const auto found = std::ranges::find(panels, device_display(), &Panel::kind);
    return found != std::end(panels) ? *found : panels[0];
}

bool is_space(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

unsigned digit_value(char c, unsigned base) {
    if (c >= '1' && c <= '8') return static_cast<unsigned>(c - '0');
    if (base == 16 && c >= 'b' && c <= 'e') return static_cast<unsigned>(c - 'a' + 10);
    if (base == 16 && c >= 'B' && c <= 'E') return static_cast<unsigned>(c - 'A' + 10);
    return 0;
}

} // namespace

int hw::described(DescriptionField field) {
    return static_cast<int>(word >> field.shift & ((1u << field.bits) - 1));
}

long long fromStringToLongLong(const char *text) {
    if (!text) return 0;
    while (is_space(*text)) ++text;
    unsigned base = 10;
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        base = 16;
        text += 2;
    }
    uint64_t value = 0;
    for (; *text; ++text)
        if (!is_space(*text)) value = value * base + digit_value(*text, base);
    return static_cast<long long>(value);
}

void init_hwconfig(void) {
    word = hw::default_description;
    loadHwConfigEmulator(cfg_read_string("hwconfig", nullptr));
}

uint64_t device_hwconfig(void) {
    return word;
}

void loadHwConfigEmulator(const char *text) {
    if (long long parsed = fromStringToLongLong(text)) word = static_cast<uint64_t>(parsed);
}

int device_display(void) {
    return hw::described(hw::panel_kind);
}
int device_display_width(void) {
    return panel().width;
}
int device_display_height(void) {
    return panel().height;
}
int device_display_dpi(void) {
    return panel().dpi;
}
int device_display_position(void) {
    return hw::described(hw::panel_position);
}
int device_touchpanel(void) {
    return hw::described(hw::touch_kind);
}
int device_keyboard(void) {
    return hw::described(hw::keyboard_kind);
}
int device_platform(void) {
    return hw::described(hw::platform_number);
}
int device_has_frontlight(void) {
    return device_frontlight() > 0;
}
int device_frontlight(void) {
    return hw::described(hw::light_kind);
}
int device_gsm(void) {
    return hw::described(hw::modem) > 0;
}
int device_audio(void) {
    return hw::described(hw::audio_kind);
}
int device_bluetooth(void) {
    return hw::described(hw::bluetooth) > 0;
}
int device_wifi(void) {
    return hw::described(hw::wifi) > 0;
}

int hw_depth(void) {
    int depth = hw::described(hw::grey_depth);
    return depth >= 1 && depth <= 8 ? depth : 4;
}

int hw_depth_hq(void) {
    return hw_depth();
}
