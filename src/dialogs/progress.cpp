// SPDX-License-Identifier: MIT
// Progress bars, which can be cancelled while the application is too busy to run its loop.
#include <algorithm>
#include <utility>

#include "dialogs/draw.h"
#include "dialogs/input.h"
#include "dialogs/stack.h"
#include "ground/guard.h"
#include "internal.h"
#include "kelvane/languages.h"
#include "kelvane/updates.h"
#include "modal/input.h"

namespace dialogs {
namespace {

constexpr int cancel_button = 1;

bool is_cancel(const OpenBox &bar, int type, int par1, int par2) {
    if (type == EVT_KEYRELEASE) return par1 == KEY_BACK || par1 == KEY_OK;
    return type == EVT_POINTERUP && is_inside(bar.layout.buttons[0], par1, par2);
}

void cancel(OpenBox &bar) {
    draw_hatched_button(bar, cancel_button);
    const kv_dialoghandler proc = bar.listener.proc;
    close_top(Close::forced);
    proc(cancel_button);
}

// Swallows everything.
int progress_handler(int type, int par1, int par2) {
    OpenBox *bar = top(Kind::progress);
    if (bar && bar->listener.proc && is_cancel(*bar, type, par1, par2)) cancel(*bar);
    return 1;
}

void open_bar(int flags, const char *text, int percent, kv_dialoghandler proc) {
    if (!kvstate.isopen) return;
    OpenBox bar = make_box(Kind::progress, flags, text, {proc != nullptr, false, false});
    bar.listener.proc = proc;
    if (proc) bar.labels[0] = GetLangText("@Cancel");
    bar.percent = percent;
    bar.selected = cancel_button;
    open(std::move(bar), progress_handler);
}

// The bar that has the input; null when there is none.
OpenBox *current_bar() {
    return GetEventHandler() == progress_handler ? top(Kind::progress) : nullptr;
}

// Hands what waits in the device to the bar. False when it closed the bar.
bool hear_input(unsigned id) {
    RawEvent event;
    while (take_raw_event(event)) {
        if (event.type != 0) progress_handler(event.type, event.par1, event.par2);
        if (!find(id)) return false;
    }
    return true;
}

bool change(OpenBox &bar, const char *text, int percent) {
    const char *translated = text ? GetLangText(text) : nullptr;
    const bool new_text = translated && bar.text != translated;
    if (!new_text && bar.percent == percent) return false;
    if (new_text) bar.text = translated;
    bar.percent = percent;
    return true;
}

int update_bar(const char *text, int percent) {
    OpenBox *bar = current_bar();
    if (!bar || !hear_input(bar->id)) return 1;
    if (!change(*bar, text, percent)) return 0;
    PartialUpdate(0, 0, ScreenWidth(), ScreenHeight());
    redraw(*bar, Show::news);
    return 0;
}

} // namespace
} // namespace dialogs

void OpenProgressbar(int icon, const char *, const char *text, int percent, kv_dialoghandler proc) {
    ground::guarded([&] { dialogs::open_bar(icon, text, percent, proc); });
}

int UpdateProgressbar(const char *text, int percent) {
    const int shown = std::clamp(percent, 0, 100);
    return ground::guarded(0, [&] { return dialogs::update_bar(text, shown); });
}
