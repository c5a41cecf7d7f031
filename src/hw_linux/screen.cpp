// SPDX-License-Identifier: MIT
// Life of the device and its framebuffer.
#include "hw_linux/screen.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "ground/guard.h"
#include "hw.h"
#include "hw_linux/control.h"
#include "hw_linux/input.h"
#include "hw_linux/player.h"
#include "hw_linux/recorder.h"
#include "hw_linux/services/state.h"
#include "hw_linux/settings.h"
#include "hw_linux/shown.h"
#include "hw_linux/tasks/session.h"
#include "hw_linux/trace.h"
#include "internal.h"

namespace hw {

Hooks hooks;

namespace {

constexpr int spare_rows = 16;
constexpr uint8_t white = 255;

struct Screen {
    const DeviceOps *device = nullptr;
    std::shared_ptr<uint8_t[]> memory;
    icanvas canvas{};
    int width = 0, height = 0; // as opened
    Zoom zoom = Zoom::full;
    int orientation = 0;
    int closing = 0;
};

Screen screen;
EmulatedState state;

const DeviceOps *choose_device() {
    const char *name = std::getenv("KELVANE_DEVICE");
    if (!name || !*name) return &window_device;
    for (const DeviceOps *ops : {&window_device, &headless_device})
        if (std::strcmp(name, ops->name) == 0) return ops;
    std::fprintf(stderr, "KELVANE_DEVICE=%s: no such device (window or headless)\n", name);
    return nullptr;
}

const char *title_suffix(Zoom zoom) {
    switch (zoom) {
    case Zoom::full:
        return "";
    case Zoom::half:
        return "(compressed view 1/2)";
    case Zoom::two_thirds:
        return "(compressed view 2/3) ";
    }
    return "";
}

bool open_device(const DeviceOps *ops) {
    char title[64];
    std::snprintf(title, sizeof title, "Marrowleaf %dx%d%s", screen.width, screen.height,
                  title_suffix(screen.zoom));
    return ops->open({to_drawing_area(screen.zoom, screen.width),
                      to_drawing_area(screen.zoom, screen.height), title});
}

void take_size() {
    const int display_mode = get_display_mode();
    const DisplayMode mode = resmode_list[display_mode];
    state.position = get_orientation();
    const bool landscape = state.position == 1 || state.position == 2;
    screen.width = landscape ? mode.height : mode.width;
    screen.height = landscape ? mode.width : mode.height;
    screen.zoom = zoom_of(display_mode);
    screen.orientation = std::max(state.position, 0); // upright as the device is held
}

bool make_framebuffer() {
    const size_t size = static_cast<size_t>(screen.width) * (screen.height + spare_rows);
    screen.memory = tasks::make_framebuffer(size);
    if (!screen.memory) return false;
    std::memset(screen.memory.get(), white, size);
    return true;
}

// Orientations 0, 1, 2, 3 as quarter turns, and back: the table is its own inverse.
constexpr int quarter_turns[4] = {0, 1, 3, 2};

// The canvas is upright in the window when its orientation is the position the device is held in.
int turn_of(int orientation) {
    return quarter_turns[(quarter_turns[orientation] - held_quarter_turns()) & 3];
}

void lay_canvas() {
    const int turn = turn_of(screen.orientation);
    const bool sideways = turn == 1 || turn == 2;
    icanvas &c = screen.canvas;
    c.width = sideways ? screen.height : screen.width;
    c.height = sideways ? screen.width : screen.height;
    c.scanline = c.width;
    c.depth = 8;
    c.clipx1 = c.clipy1 = 0;
    c.clipx2 = c.width - 1;
    c.clipy2 = c.height - 1;
    c.addr = screen.memory.get();
    tasks::tell_geometry(c, screen.orientation);
}

// A turned picture leaves the first row or column free, where nothing of the former one is to stay.
void clear_free_edges(const PixelBuffer &pixels) {
    std::memset(pixels.data, white, static_cast<size_t>(pixels.width) * 4);
    for (int y = 0; y < pixels.height; ++y)
        std::memset(pixels.data + int64_t{y} * pixels.stride, white, 4);
}

// The device is opened last of all that can fail before anything is shown, except for the files
// that need its clock.
bool open_screen() {
    screen = {};
    state = {};
    init_hwconfig();
    const DeviceOps *ops = choose_device();
    if (!ops || !open_player()) return false;
    take_size();
    reset_input();
    if (!make_framebuffer() || !open_device(ops)) return false;
    screen.device = ops;
    lay_canvas();
    tasks::open_framebuffer();
    return open_trace() && open_recorder() && open_shown() && open_control();
}

} // namespace

const DeviceOps *device() {
    return screen.device;
}

bool is_open() {
    return screen.device != nullptr;
}

void let_work() {
    play_panel();
    check_unrest();
    if (screen.device) screen.device->pump();
}

EmulatedState &emulated() {
    return state;
}

icanvas *framebuffer() {
    return screen.device ? &screen.canvas : nullptr;
}

PanelView panel_view() {
    return panel_view(screen.orientation);
}

PanelView panel_view(int orientation) {
    const bool panel_on_top = kvstate.panel_position == 1;
    return {screen.zoom, turn_of(orientation), panel_on_top ? hooks.panel_height() : 0};
}

void move_onto_canvas(int &x, int &y) {
    if (!screen.device) return;
    const icanvas &c = screen.canvas;
    Point pixel = from_panel(panel_view(), c, {x, y});
    pixel.x = std::clamp<int64_t>(pixel.x, 0, c.width - 1);
    pixel.y = std::clamp<int64_t>(pixel.y, 0, c.height - 1);
    const Point place = to_panel(panel_view(), c, pixel);
    x = static_cast<int>(place.x);
    y = static_cast<int>(place.y);
}

int held_quarter_turns() {
    const bool held = state.position >= 0 && state.position <= 3;
    return held ? quarter_turns[state.position] : 0;
}

int &closing() {
    return screen.closing;
}

bool panel_to_canvas(int &x, int &y) {
    if (!screen.device) return false;
    const icanvas &c = screen.canvas;
    const Point pixel = from_panel(panel_view(), c, {x, y});
    if (pixel.x < 0 || pixel.y < 0 || pixel.x >= c.width || pixel.y >= c.height) return false;
    x = static_cast<int>(pixel.x);
    y = static_cast<int>(pixel.y);
    return true;
}

void window_closed() {
    record("close");
    end_process(0);
}

void end_process(int status) {
    screen.closing = 1;
    hooks.exit(status);
    std::_Exit(status);
}

} // namespace hw

using namespace hw;

int hw_init() {
    if (screen.device) return 1;
    const bool opened = ground::guarded_or(open_screen, [] {
        std::fputs("out of memory\n", stderr);
        return false;
    });
    if (!opened) hw_close();
    return opened;
}

void hw_close() {
    close_control();
    close_shown();
    close_trace();
    close_recorder();
    close_player();
    reset_services();
    tasks::close_framebuffer();
    if (screen.device) screen.device->close();
    const int was_closing = screen.closing;
    screen = {};
    screen.closing = was_closing;
}

int hw_init_shm() {
    return tasks::is_supported();
}

icanvas *hw_getframebuffer() {
    return framebuffer();
}

void hw_displaysize(int *w, int *h) {
    if (w) *w = screen.width;
    if (h) *h = screen.height;
}

void hw_set_fb_orientation(int orientation) {
    if (!screen.device || orientation < 0 || orientation > 3) return;
    const int before = panel_view().turn;
    if (turn_of(orientation) != before) prepare_turn();
    screen.orientation = orientation;
    lay_canvas();
    turn_shown(before, panel_view().turn);
    clear_free_edges(screen.device->pixels());
}

int hw_get_fb_orientation() {
    return screen.orientation;
}
