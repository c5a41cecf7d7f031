// peers: x11 xtst xdamage
// SPDX-License-Identifier: MIT
// From the start of a process to its first painted frame, beside a bare GTK+ 2 program in the same
// X server. The server itself tells when the frame is there. Processes are timed by the clock.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xdamage.h>
#include <benchmark/benchmark.h>

#include "beside.h"
#include "harness.h"

namespace {

using Clock = std::chrono::steady_clock;

// Looks at one pixel in the middle of where the windows appear, whenever something was painted.
class Watcher {
  public:
    explicit Watcher(const std::string &display)
        : display_(XOpenDisplay(display.c_str())), root_(DefaultRootWindow(display_)) {
        int error;
        XDamageQueryExtension(display_, &first_event_, &error);
        damage_ = XDamageCreate(display_, root_, XDamageReportNonEmpty);
        XSync(display_, False);
    }
    ~Watcher() { XCloseDisplay(display_); }
    Watcher(const Watcher &) = delete;
    Watcher &operator=(const Watcher &) = delete;

    void await_pixel(unsigned long colour) const {
        while (pixel() != colour) {
            XEvent event;
            do XNextEvent(display_, &event);
            while (event.type != first_event_ + XDamageNotify);
            XDamageSubtract(display_, damage_, None, None);
        }
    }

  private:
    unsigned long pixel() const {
        XImage *image = XGetImage(display_, root_, 300, 400, 1, 1, AllPlanes, ZPixmap);
        const unsigned long colour = XGetPixel(image, 0, 0) & 0xFFFFFF;
        XDestroyImage(image);
        return colour;
    }

    Display *display_;
    Window root_;
    Damage damage_ = 0;
    int first_event_ = 0;
};

struct Start {
    std::string program;
    desktop::Sandbox folder;
    std::vector<double> seconds;
};

void start_once(Start &start, const desktop::Server &server, const Watcher &watcher) {
    constexpr unsigned long background = 0x000000, frame = 0x555555;
    watcher.await_pixel(background);
    const auto begin = Clock::now();
    desktop::Program app({start.program}, start.folder.path(""), {{"DISPLAY", server.name()}});
    watcher.await_pixel(frame);
    start.seconds.push_back(std::chrono::duration<double>(Clock::now() - begin).count());
}

// Starts the two in turns; the second one's time counts.
void start_both(benchmark::State &state, Start &first, Start &second) {
    const desktop::Server server(700, 900);
    const Watcher watcher(server.name());
    for (auto _ : state) {
        start_once(first, server, watcher);
        start_once(second, server, watcher);
        state.SetIterationTime(second.seconds.back());
    }
    state.counters["ours_us"] = median(second.seconds) * 1e6;
    count(state, Against::limit, median(second.seconds), median(first.seconds));
}

void start_to_first_frame(benchmark::State &state) {
    Start bare{BARE_APP, {}, {}}, ours{KELVANE_APP, {}, {}};
    state.SetLabel("the limit has the server fill one colour; ours sends it every pixel");
    start_both(state, bare, ours);
    // What is left when other work on the machine is out of the way.
    state.counters["best_over_best"] =
        std::ranges::min(ours.seconds) / std::ranges::min(bare.seconds);
}
BENCHMARK(start_to_first_frame)->UseManualTime()->Iterations(40)->Unit(benchmark::kMillisecond);

// A device with a theme, texts and fonts beside an empty folder.
void start_on_a_full_device(benchmark::State &state) {
    Start empty{KELVANE_APP, {}, {}}, full{KELVANE_APP, {}, {}};
    const std::string make = KELVANE_DEVICE_TOOL " --language ru " + full.folder.path("");
    if (std::system((make + " >/dev/null").c_str()) != 0)
        return state.SkipWithError("the device folder could not be made");
    state.SetLabel("the limit is our own start in an empty folder");
    start_both(state, empty, full);
    state.counters["more_ms"] = (median(full.seconds) - median(empty.seconds)) * 1e3;
}
BENCHMARK(start_on_a_full_device)->UseManualTime()->Iterations(40)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
