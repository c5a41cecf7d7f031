// SPDX-License-Identifier: MIT
// The status panel, the hourglass, and the editor of settings.
#include "failures/device.h"
#include "failures/sessions.h"
#include "hw_linux/clock.h"
#include "kelvane/config_editor.h"
#include "kelvane/hourglass.h"
#include "kelvane/panel.h"
#include "kelvane/updates.h"

namespace failures {
namespace {

constexpr int64_t fixed_time_s = 1742547059; // a second before a full minute

class SettingsScreen : public Session {
  public:
    SettingsScreen() { expected_ = play(); }

    // The settings are the same after each session, when all of it was played.
    bool run() override { return play() == expected_ && told == 3; }

  private:
    static void hear(const iconfigedit *, void *) { ++told; }

    static uint64_t play_panel() {
        SetPanelMode(PANEL_ON);
        SetPanelText("A title that is longer than what a string keeps in itself");
        SetPanelPages(3, 340);
        FullUpdate();
        uint64_t seen = picture();
        ShowHourglass();
        seen = seen * 31 + picture();
        HideHourglass();
        headless::advance(2000);
        return seen * 31 + picture();
    }

    static uint64_t play_editor() {
        static const char *sizes[] = {"Small", "Large", nullptr};
        static iconfigedit rows[] = {
            {CONFIG_SWITCH, nullptr, "Swipes", "A hint", "swipes", "1", nullptr, nullptr, nullptr},
            {CONFIG_CHOICE, nullptr, "Size", nullptr, "size", "Small", sizes, nullptr, nullptr},
            {}};
        iconfig *config = OpenConfig("./settings.cfg", rows);
        if (!config) return 0;
        WriteString(config, "swipes", "1");
        WriteString(config, "size", "Small");
        OpenConfigEditor("Settings", config, rows, hear, nullptr);
        uint64_t seen = picture();
        for (const int key : {KEY_OK, KEY_DOWN, KEY_OK, KEY_DOWN, KEY_OK}) headless::press(key);
        seen = seen * 31 + picture();
        headless::press(KEY_BACK);
        CloseConfigEditor();
        CloseConfigNoSave(config);
        return seen * 31 + picture();
    }

    static uint64_t play() {
        told = 0;
        if (!open_device(ignore)) return 0;
        hw::set_wall_clock(fixed_time_s);
        ClearScreen();
        const uint64_t seen = play_panel() * 31 + play_editor();
        close_device();
        return seen;
    }

    static inline int told;
    Folder folder_;
    uint64_t expected_;
};

constexpr Area areas_here[] = {{"SettingsScreen", make<SettingsScreen>}};

} // namespace

constinit const std::span<const Area> settings_areas = areas_here;

} // namespace failures
