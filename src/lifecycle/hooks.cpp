// SPDX-License-Identifier: MIT
// Connects the floors while the screen is open.
#include "lifecycle/hooks.h"

#include <cstring>
#include <thread>

#include "config/hooks.h"
#include "file/hooks.h"
#include "ground/message.h"
#include "hourglass/hourglass.h"
#include "hw.h"
#include "hw_seam.h"
#include "internal.h"
#include "kelvane/dialogs.h"
#include "kelvane/languages.h"
#include "kelvane/panel.h"
#include "kelvane/theme.h"
#include "kelvane/updates.h"
#include "keylock/keylock.h"
#include "lifecycle/lifecycle.h"
#include "lists/capture.h"
#include "panel/panel.h"
#include "runtime/queue.h"
#include "runtime/screens.h"
#include "runtime/tasks.h"
#include "tasks/messages.h"
#include "text/text.h"

namespace {

void post_to_main(int type, int par1, int par2) {
    SendEvent(kvstate.mainhproc, type, par1, par2);
}

void end_loop() {
    kvstate.exiting = EXIT_REQUESTED;
}

bool is_among(char **names, const char *name) {
    for (; names && *names; ++names)
        if (std::strcmp(*names, name) == 0) return true;
    return false;
}

bool change_language(const char *code) {
    if (std::strlen(code) >= sizeof kvstate.lang || !is_among(EnumLanguages(), code)) return false;
    std::strcpy(kvstate.lang, code);
    LoadLanguage(code);
    Repaint();
    return true;
}

bool change_theme(const char *name) {
    if (std::strlen(name) >= sizeof kvstate.theme || !is_among(EnumThemes(), name)) return false;
    std::strcpy(kvstate.theme, name);
    OpenTheme(name);
    kvstate.panel_position = GetThemeInt("panel_position", 0);
    Repaint();
    return true;
}

void send_system_request(int request) {
    kv_ipc_request(request, 0, nullptr, 0, 0);
}

std::thread::id loop_thread; // of whoever opened the screen

// Only the thread of the loop moves the device's clock; another one waits for it.
void pass_time(long long us) {
    if (std::this_thread::get_id() == loop_thread) return hw::pass_time(us);
    file_defaults::pause(us);
}

// Settings keep secrets whether or not a screen is open: this one stands for as long as the
// process.
[[maybe_unused]] const auto service = config::hooks.service = kv_ipc_request;

} // namespace

void install_hooks() {
    loop_thread = std::this_thread::get_id();
    hw::hooks = {.post_to_main = post_to_main,
                 .end_loop = end_loop,
                 .exit = end_process,
                 .has_events = [] { return !queue_is_empty(); },
                 .change_language = change_language,
                 .change_theme = change_theme,
                 .panel_height = PanelHeight,
                 .task_event = task_take_event,
                 .task_event_at_once = task_take_event_at_once,
                 .task_request = tasks::answer_request,
                 .task_message = tasks::take_message,
                 .foreground = task_came_to_foreground,
                 .background = task_went_to_background};
    file_hooks.system_request = send_system_request;
    file_hooks.translate = GetLangText;
    file_hooks.storage_ready = hw_usbready;
    file_hooks.clock_ms = hw_timeinms;
    file_hooks.pause = pass_time;
    text::hooks.is_rtl = IsRTL;
    message_hooks.show = Message;
    screens.hourglass = hourglass::show_at_exit;
    screens.panel_pointer = panel::pointer;
    screens.refresh_panel = panel::refresh;
    screens.draw_panel = panel::draw_for_update;
    screens.show_keylock_icon = keylock::show_icon;
    screens.restore_under_icon = keylock::restore_under_icon;
    screens.scroll_area_pointer = lists::keep_capture;
}

void remove_hooks() {
    hw::hooks = {};
    file_hooks = {};
    text::hooks = {};
    message_hooks = {};
    screens_reset();
}
