// SPDX-License-Identifier: MIT
// What the device layer runs on. The two devices are records of functions;
// everything above them (framebuffer, input ring, key table, panel painting, script, trace) is
// shared.
#pragma once

#include <cstdint>

#include "hw.h"
#include "hw_seam.h"

namespace hw {

// The pixels that a person sees: RGBA bytes, alpha always 255.
struct PixelBuffer {
    uint8_t *data = nullptr;
    int width = 0, height = 0;
    int stride = 0; // bytes from one row to the next
};

struct WindowSpec {
    int width, height; // of the drawing area and its pixel buffer
    const char *title;
};

// What differs between devices. Every function runs on the application's thread.
struct DeviceOps {
    const char *name;
    bool is_watched; // a person sees the pixels all the time
    bool (*open)(const WindowSpec &spec);
    void (*close)();
    PixelBuffer (*pixels)();              // stays valid until close
    void (*present)();                    // redraw the whole drawing area from the pixel buffer
    void (*pump)();                       // handle what is pending; input goes to push_input
    int64_t (*clock_us)();                // boot clock
    void (*pause)(int64_t us);            // all of it
    void (*idle)(int64_t us);             // like pause, but input ends it
    bool (*sleep)(int64_t us, bool deep); // false: refused
    void (*spend)(int64_t us);            // work that costs time on an emulated clock
    void (*set_visible)(bool visible);    // whether a person sees it; so it opens
};

extern const DeviceOps window_device;
extern const DeviceOps headless_device;

// The device in use; null before hw_init and after hw_close.
const DeviceOps *device();

// Puts a raw event into the input ring of 64 slots; says so on standard error when it is full.
void push_input(int type, int mod, int par1, int par2);
// A key of the key table went down or up, as a person sees the keys who holds the device the way
// it was opened; only a change becomes an event.
void set_key_bit(int bit, bool down);
// The pointer in drawing-area pixels, as a raw event type: 30 down, 31 move, 29 up. Scales to
// framebuffer pixels and queues the events; a move counts only between down and up. What moves or
// is lifted outside the framebuffer does so at its edge.
void pointer_input(int type, int x, int y);
// Runs a command of the window's menu, see menu.h.
void run_command(int command);
// The window is being closed by the user. Does not return: the process ends with status 0.
[[noreturn]] void window_closed();
// Ends the process at once, after the application's exit actions.
[[noreturn]] void end_process(int status);

// State of the emulated device that the menu changes.
struct EmulatedState {
    int battery = 5; // 0 to 5
    bool card_inserted = true;
    bool charging = false;
    int position = -1;     // how the device is held, fixed when it is opened; -1 when not set
    int update_answer = 1; // of hw_update; a panel may answer with flags
};
EmulatedState &emulated();

} // namespace hw
