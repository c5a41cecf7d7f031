// SPDX-License-Identifier: MIT
// From the settings to the runtime record.
#include <cstdio>
#include <cstring>
#include <string>

#include "ground/fold.h"
#include "hw.h"
#include "internal.h"
#include "kelvane/config.h"
#include "lifecycle/lifecycle.h"
#include "runtime/wake.h"
#include "text/text.h"

namespace {

constexpr int minute_ms = 60000;
constexpr int strong_antialiasing = 2;
constexpr int strong_text = 15;
constexpr size_t longest_layout_list = 14;

template <size_t N>
void copy_text(char (&to)[N], const char *from) {
    std::snprintf(to, N, "%s", from);
}

// "EN", "EN: English" and "EN English" name a layout; anything else does not.
bool is_layout(const char *text) {
    return ground::is_letter(text[0]) && ground::is_letter(text[1]) &&
           (text[2] == ':' || text[2] == ' ' || text[2] == '\0');
}

std::string configured_layouts(const char *otherwise) {
    std::string layouts;
    for (const char *key : {"kbdlayout.1", "kbdlayout.2", "kbdlayout.3"}) {
        const char *layout = ReadString(kvstate.cfg, key, "");
        if (is_layout(layout)) {
            if (!layouts.empty()) layouts += '-';
            layouts.append(layout, 2);
        } else if (layouts.empty()) {
            return otherwise;
        }
    }
    return layouts;
}

int key_lock_ms(int setting) {
    switch (setting) {
    case 1:
        return 5 * minute_ms + 15000;
    case 2:
        return 10 * minute_ms + 15000;
    default:
        return never_ms;
    }
}

int power_off_ms(int setting) {
    switch (setting) {
    case 0:
        return never_ms;
    case 1:
        return 10 * minute_ms;
    case 2:
        return 20 * minute_ms;
    case 3:
        return 30 * minute_ms;
    default:
        return 60 * minute_ms;
    }
}

void load_appearance(bool safe, const char *language, const char *keyboard) {
    // A safe start takes nothing from the settings that could be the reason for the trouble.
    iconfig *cfg = safe ? nullptr : kvstate.cfg;
    const int antialiasing = ReadInt(cfg, "antialiasing", 1);
    kvstate.antialiasing = static_cast<uint8_t>(antialiasing);
    copy_text(kvstate.theme, ReadString(cfg, "theme", "default"));
    copy_text(kvstate.font, ReadString(cfg, "font", text::regular_font));
    copy_text(kvstate.fontb, ReadString(cfg, "font.b", text::bold_font));
    copy_text(kvstate.fonti, ReadString(cfg, "font.i", text::italic_font));
    copy_text(kvstate.fontbi, ReadString(cfg, "font.bi", text::bold_italic_font));
    copy_text(kvstate.lang, ReadString(cfg, "language", language));
    const std::string layouts = safe ? keyboard : configured_layouts(keyboard);
    copy_text(kvstate.kbdlang, layouts.substr(0, longest_layout_list).c_str());
    kvstate.usbmode = safe ? 0 : ReadInt(cfg, "usbmode", 2);
    kvstate.showclock = static_cast<uint8_t>(ReadInt(cfg, "showclock", 0));
    if (antialiasing == strong_antialiasing) SetTextStrength(strong_text);
}

} // namespace

void load_settings() {
    const std::string language = cfg_read_string("language", "en");
    const std::string keyboard = cfg_read_string("keyboard", "EN-RU-UK");
    iconfig *cfg = kvstate.cfg = OpenConfig("./system/config/global.cfg", nullptr);
    load_appearance(hw_safemode(), language.c_str(), keyboard.c_str());
    const int keylock = ReadInt(cfg, "keylock", 0);
    kvstate.keylock = static_cast<uint8_t>(keylock);
    kvstate.keylocktm = key_lock_ms(keylock);
    kvstate.powerofftm = power_off_ms(ReadInt(cfg, "poweroff", 0));
    kvstate.pwract1 = static_cast<uint8_t>(ReadInt(cfg, "pwract.1", 0));
    kvstate.pwract2 = static_cast<uint8_t>(ReadInt(cfg, "pwract.2", 31));
    kvstate.timeformat = static_cast<uint8_t>(ReadInt(cfg, "timeformat", 0));
}
