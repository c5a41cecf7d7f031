// SPDX-License-Identifier: MIT
// What the library asks of its device beyond the operations of hw.h, which applications may call.
// A port implements both headers; nothing above the device layer includes more of it.
#pragma once

#include <cstdint>
#include <cstdlib>

namespace hw {

// Between hw_init() and hw_close().
bool is_open();

// Boot clock in microseconds.
int64_t boot_time_us();
// Lets all of this time pass; nothing while no device is open.
void pass_time(int64_t us);
// Work that costs time on a clock that is emulated; nothing elsewhere.
void spend_time(int64_t us);
// Lets an open device handle what is pending.
void let_work();

// A clock that stands still until somebody says that time passes: nothing is to be waited for.
bool is_time_stopped();

// From panel pixels, as raw pointer events carry them, to the pixel of the framebuffer that is
// painted there. False, and nothing is changed, outside the framebuffer.
bool panel_to_canvas(int &x, int &y);

// The type of a raw event for a character that was typed on a keyboard of letters, which par1 is;
// 8 is Backspace. It is for an entry that is open, and for nobody else.
inline constexpr int typed_character = 0x4B43;

// Names the call that the next update comes from, for the trace. Kept by pointer.
void set_update_cause(const char *cause);

// What the device asks of the floors above, which install their functions.
struct Hooks {
    // Queues an event for the main handler, if there is one.
    void (*post_to_main)(int type, int par1, int par2) = [](int, int, int) {};
    // The loop ends after its present step.
    void (*end_loop)() = [] {};
    // Runs the exit actions of the application and ends the process at once.
    void (*exit)(int status) = [](int status) { std::_Exit(status); };
    // Events wait for a handler.
    bool (*has_events)() = [] { return false; };
    // Opens a language or a theme as the settings would, and has everything drawn anew. False when
    // there is none of that name.
    bool (*change_language)(const char *code) = [](const char *) { return false; };
    bool (*change_theme)(const char *name) = [](const char *) { return false; };
    // Rows of the status panel.
    int (*panel_height)() = [] { return 0; };

    // What other tasks send to this one. An event is kept as long as this answers false.
    bool (*task_event)(int type, int par1, int par2) = [](int, int, int) { return true; };
    // Returns when the event was handled.
    void (*task_event_at_once)(int type, int par1, int par2) = [](int, int, int) {};
    int (*task_request)(int request, void *data, int size, int sender) = [](int, void *, int, int) {
        return -1;
    };
    void (*task_message)(int request, void *data, int size, int sender) = [](int, void *, int,
                                                                             int) {};
    // This task became the active one, or is no longer.
    void (*foreground)() = [] {};
    void (*background)() = [] {};
};
extern Hooks hooks;

} // namespace hw
