// SPDX-License-Identifier: MIT
// The application that the window tests drive. It writes every call of its handler to standard
// output as "type par1 par2" and does what its arguments, words like close=27, tell it.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <sys/wait.h>
#include <unistd.h>

#include <glib.h>

#include "hw.h"
#include "kelvane.h"

namespace {

struct Options {
    int orientation = 0;
    int key_delay = 1000, key_interval = 500;
    int close = -1;   // the key that ends the application
    int external = 0; // 1: the application opens the screen, twice, and ends by itself
    int fork = 0;     // 1: a child comes and goes at the start
    int seed = -1;    // draws noise and keeps it in ./framebuffer
    int trail = 0;    // 1: every event of a person leaves a mark on the screen
    int busy = 0;     // 1: a key starts updates without end
    int letters = 0;  // 1: a keyboard without an entry hands letters on as keys
    int clean = 0;    // 1: a key cleans the panel twelve times and waits for it
    int vanish = 0;   // 1: the toolkit calls back in the middle of an update and ends everything
} options;

void say(const char *what, int number = 0) {
    std::printf("%s %d\n", what, number);
    std::fflush(stdout);
}

void draw_noise(const icanvas &canvas, unsigned seed) {
    for (int y = 0; y < canvas.height; ++y)
        for (int x = 0; x < canvas.width; ++x) {
            seed = seed * 1664525u + 1013904223u;
            canvas.addr[y * canvas.scanline + x] = static_cast<unsigned char>(seed >> 24);
        }
}

void keep_framebuffer(const icanvas &canvas) {
    std::FILE *file = std::fopen("framebuffer", "wb");
    for (int y = 0; y < canvas.height; ++y)
        std::fwrite(canvas.addr + y * canvas.scanline, 1, static_cast<size_t>(canvas.width), file);
    std::fclose(file);
}

// The child ends the way programs do, with its exit handlers.
void fork_a_child() {
    const pid_t child = fork();
    if (child == 0) std::exit(7);
    int status = 0;
    waitpid(child, &status, 0);
    say("child", WEXITSTATUS(status));
}

void start() {
    SetOrientation(options.orientation);
    if (options.fork) fork_a_child();
}

void show() {
    SetKeyboardRate(options.key_delay, options.key_interval);
    if (options.seed >= 0) {
        const icanvas &canvas = *hw_getframebuffer();
        draw_noise(canvas, static_cast<unsigned>(options.seed));
        keep_framebuffer(canvas);
    }
    FullUpdate();
    if (options.letters) OpenKeyboard(nullptr, nullptr, 0, 0, nullptr);
    say("shown");
}

void vanish() {
    g_idle_add(
        [](void *) -> gboolean {
            ClearOnExit();
            return FALSE;
        },
        nullptr);
    DynamicUpdateA2(0, 0, 50, 50);
    FullUpdate();
    SoftUpdate();
    say("vanished");
}

void clean_and_wait() {
    for (int i = 0; i < 12; ++i) FullUpdateHQ();
    say("waiting");
    WaitForUpdateComplete();
    say("waited");
}

void turn(int orientation) {
    SetOrientation(orientation);
    ClearScreen();
    FullUpdate();
}

// Only what does not hang on how fast the person or the machine is.
bool leaves_a_mark(int type) {
    return type == EVT_KEYPRESS || type == EVT_KEYRELEASE || type == EVT_POINTERDOWN ||
           type == EVT_POINTERMOVE || type == EVT_POINTERUP || type == EVT_POINTERDRAG;
}

void leave_a_mark(int type, int par1, int par2) {
    static int marks = 0;
    const int x = 20 + 23 * ++marks % (ScreenWidth() - 90);
    const int y = 10 + 31 * marks % (ScreenHeight() - 90);
    FillArea(x, y, 60, 50, (par1 * 0x010101) & 0xFFFFFF);
    DrawLine(x, y, x + type, y + par2 % 70, DGRAY);
    PartialUpdate(x, y, 60, 70);
}

int handler(int type, int par1, int par2) {
    std::printf("%d %d %d\n", type, par1, par2);
    std::fflush(stdout);
    if (type == EVT_INIT) start();
    if (type == EVT_SHOW) show();
    if (type == EVT_ORIENTATION) turn(par1);
    if (type == EVT_KEYPRESS && options.vanish) vanish();
    if (type == EVT_KEYPRESS && options.clean) clean_and_wait();
    while (type == EVT_KEYPRESS && options.busy) FullUpdate();
    if (type == EVT_EXIT && options.busy) FullUpdate();
    if (options.trail && leaves_a_mark(type)) leave_a_mark(type, par1, par2);
    if (type == EVT_KEYRELEASE && par1 == options.close) CloseApp();
    return 1;
}

int *find_option(const std::string &name) {
    if (name == "orientation") return &options.orientation;
    if (name == "delay") return &options.key_delay;
    if (name == "interval") return &options.key_interval;
    if (name == "close") return &options.close;
    if (name == "external") return &options.external;
    if (name == "fork") return &options.fork;
    if (name == "seed") return &options.seed;
    if (name == "trail") return &options.trail;
    if (name == "busy") return &options.busy;
    if (name == "letters") return &options.letters;
    if (name == "clean") return &options.clean;
    if (name == "vanish") return &options.vanish;
    return nullptr;
}

} // namespace

int main(int argc, char **argv) {
    for (int i = 1; i < argc; ++i) {
        const char *value = std::strchr(argv[i], '=');
        int *option = value
                          ? find_option(std::string(argv[i], static_cast<size_t>(value - argv[i])))
                          : nullptr;
        if (!option) return 2;
        *option = std::atoi(value + 1);
    }
    for (int round = 0; round <= options.external; ++round) {
        if (options.external) OpenScreenExt();
        KelvaneMain(handler);
    }
    return 3; // reached when the screen cannot be opened, or is the application's own
}
