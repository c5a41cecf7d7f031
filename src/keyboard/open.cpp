// SPDX-License-Identifier: MIT
// Opens and closes keyboards: what they cover, who gets the input back and who gets the text.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "chrome/panel.h"
#include "dialogs/stack.h"
#include "ground/guard.h"
#include "hw.h"
#include "hw_seam.h"
#include "internal.h"
#include "kelvane/canvas.h"
#include "kelvane/frames.h"
#include "kelvane/keyboard.h"
#include "kelvane/theme.h"
#include "kelvane/updates.h"
#include "keyboard/commands.h"
#include "keyboard/draw.h"
#include "keyboard/handlers.h"
#include "keyboard/load.h"
#include "raster/screen_scope.h"
#include "runtime/queue.h"

namespace keyboard {
namespace {

constexpr int first_repeat_ms = 500, next_repeat_ms = 500;
constexpr int64_t rest_before_close_us = 50'000;
constexpr int dimmed_percent = 50, hatch_step = 3;

std::unique_ptr<Board> open_board;
int last_flags = 0;

// One program updates the screen so often that waiting for it would take long.
void wait_for_update() {
    if (std::strcmp(program_invocation_short_name, "browser.app") != 0) WaitForUpdateComplete();
}

bool dims_panel() {
    return GetThemeInt("keyboard.transparent.screen", 0) != 0;
}

// The rows that are kept and dimmed.
int kept_h() {
    return dims_panel() ? ScreenHeight() : ScreenHeight() - PanelHeight();
}

irect kept_area(const Board &b) {
    return b.saves_whole_screen ? irect{0, 0, ScreenWidth(), kept_h(), 0} : b.place.whole;
}

// A hatch that the keyboard would cover at once is left out.
void dim(const Board &b) {
    const raster::ScreenScope screen;
    if (dims_panel())
        Transparent(0, 0, ScreenWidth(), kept_h(), dimmed_percent);
    else
        DrawDiagonalHatch(0, 0, ScreenWidth(), b.place.whole.y, hatch_step, BLACK);
}

void log_opening(const Request &r) {
    const bool is_secret = (r.flags & KBD_PASSWORD) != 0;
    std::fprintf(stderr, "OpenKeyboard('%s', '%s', %d, F=%x)\n", r.title ? r.title : "",
                 r.buffer && !is_secret ? r.buffer : "", r.maxlen, static_cast<unsigned>(r.flags));
}

void show(std::unique_ptr<Board> made) {
    open_board = std::move(made);
    Board &b = *open_board;
    dialogs::count_component(1);
    last_flags = b.flags;
    b.unheard = queue_count(keyboard_handler);
    // Its page is going to cover the keyboard, which hears EVT_RESTORE after that.
    b.is_stale = queue_holds(GetEventHandler(), EVT_SHOW);
    b.message_top = std::exchange(kvstate.msgtop, std::min(kvstate.msgtop, b.place.whole.y));
    b.saves_whole_screen = b.buffer && !(b.flags & KBD_NOHATCH);
    b.taken.under.save(kept_area(b), b.place.whole);
    if (b.saves_whole_screen) dim(b);
    b.taken.take_input(keyboard_handler, UI_KEYBOARD_OPEN, CloseKeyboard);
    draw_board(b);
    draw_entry(b);
    if (!(b.flags & KBD_NOUPDATE_AFTER_OPEN)) {
        WaitForUpdateComplete();
        SoftUpdate();
    }
    SetKeyboardRate(first_repeat_ms, next_repeat_ms);
    if (b.way == Way::finger) start_idle_timer();
    hw_setextkbdlayout(b.language().code.c_str());
}

void open(const Request &r, Layouts layouts, const Listener &listener) {
    wait_for_update();
    show(std::make_unique<Board>(r, std::move(layouts), listener));
}

// Whoever heard that the keyboard before is closed may have closed the screen, or opened a
// keyboard: that one stays, and the new one counts as closed.
template <class MakeLayouts>
void open_above(const Request &r, const Listener &listener, MakeLayouts make_layouts) {
    if (!kvstate.framebuffer) return;
    log_opening(r);
    CloseKeyboard();
    if (!kvstate.framebuffer) return;
    if (open_board) return listener.tell(nullptr);
    ground::guarded([&] { open(r, make_layouts(), listener); });
    if (!open_board) listener.tell(nullptr); // memory ran out
}

// False when the picture of what lay beneath is gone.
bool put_screen_back(Board &b) {
    b.under_hint.restore();
    if (!b.saves_whole_screen) {
        const raster::ScreenScope screen;
        FillAreaRect(&b.place.whole, WHITE);
    }
    return b.taken.under.restore();
}

bool sends_state(const Board &b, End how) {
    return how != End::call && (how == End::next || (b.flags & KBD_SENDKEYBOARDSTATEEVENTS));
}

void give_back(Board &b, End how) {
    const kv_handler previous = b.taken.previous();
    const bool is_restored = put_screen_back(b);
    const bool is_updated = !(b.flags & KBD_NOUPDATE_AFTER_CLOSE);
    if (b.saves_whole_screen && is_updated) FullUpdate();
    b.taken.give_input_back();
    const bool shows = b.saves_whole_screen && !(b.flags & KBD_NO_SHOW);
    if (shows || !is_restored) SendEvent(previous, EVT_SHOW, 0, 0);
    if (!sends_state(b, how)) return;
    SendEvent(previous, EVT_KEYPRESS, KEY_KEYBOARD, 0);
    SendEvent(previous, EVT_KEYRELEASE, KEY_KEYBOARD, 0);
}

} // namespace

Board *board() {
    return open_board.get();
}

void close(End how) {
    if (open_board) open_board->taken.close_above();
    const std::unique_ptr<Board> closed = std::move(open_board);
    if (!closed) return;
    stop_timers();
    stop_pointer_timers();
    const bool is_updated = !(closed->flags & KBD_NOUPDATE_AFTER_CLOSE);
    if (is_updated) {
        wait_for_update();
        hw::pass_time(rest_before_close_us);
    }
    dialogs::count_component(-1);
    kvstate.msgtop = closed->message_top;
    give_back(*closed, how);
    const bool has_text = how == End::enter || how == End::next;
    closed->listener.tell(has_text ? closed->buffer : nullptr);
    if (how != End::call && is_updated) SoftUpdate();
}

void reset() {
    open_board.reset();
    last_flags = 0;
    reset_layouts();
}

} // namespace keyboard

using namespace keyboard;

void OpenKeyboard(const char *title, char *buffer, int maxlen, int flags,
                  void (*proc)(char *text)) {
    open_above({title, buffer, maxlen, flags}, {.proc = proc}, [=] { return layouts_for(flags); });
}

void OpenKeyboardEx(const char *title, char *buffer, int maxlen, int flags,
                    void (*proc)(char *text, void *data), void *data) {
    open_above({title, buffer, maxlen, flags}, {.proc_ex = proc, .data = data},
               [=] { return layouts_for(flags); });
}

void OpenCustomKeyboard(const char *name, const char *title, char *buffer, int maxlen, int flags,
                        void (*proc)(char *text)) {
    open_above({title, buffer, maxlen, flags}, {.proc = proc}, [=]() -> Layouts {
        Layouts layouts = layouts_of_file(name ? name : "");
        const bool gives_way = !(flags & KBD_KEEP_LAYOUT) && way_of_device() == Way::finger;
        return gives_way && !layouts.has_touch() ? user_layouts() : layouts;
    });
}

void CloseKeyboard() {
    close(End::call);
}

void GetKeyboardRect(irect *rect) {
    if (!rect) return;
    if (open_board) {
        *rect = open_board->place.whole;
        return;
    }
    GetKeyboardRectWithParams(rect, nullptr, "", 0);
}

void GetKeyboardRectWithParams(irect *rect, const char *title, const char *buffer, int flags) {
    if (!rect) return;
    *rect = ground::guarded(irect{}, [&] {
        if (!kvstate.framebuffer) return irect{};
        char text[1] = "";
        const Request request{title, buffer ? text : nullptr, 0, flags};
        return place_for(request, layouts_for(flags)).whole;
    });
}

int GetKeyboardFlags() {
    return last_flags;
}

int IsKeyboardOpened() {
    return open_board ? 1 : 0;
}
