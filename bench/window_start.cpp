// peers: x11 xtst xdamage
// SPDX-License-Identifier: MIT
// From the start of a process to its first painted frame, beside a bare GTK+ 2 program in the same
// X server. The server itself tells when the frame is there.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xdamage.h>
#include <benchmark/benchmark.h>

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

double median(std::vector<double> times) {
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

double start_once(const std::string &program, const desktop::Server &server, const Watcher &watcher,
                  const desktop::Sandbox &sandbox) {
    constexpr unsigned long background = 0x000000, frame = 0x555555;
    watcher.await_pixel(background);
    const auto start = Clock::now();
    desktop::Program app({program}, sandbox.path(""), {{"DISPLAY", server.name()}});
    watcher.await_pixel(frame);
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void start_to_first_frame(benchmark::State &state) {
    desktop::Server server(700, 900);
    desktop::Sandbox sandbox;
    Watcher watcher(server.name());
    std::vector<double> ours, theirs;
    for (auto _ : state) {
        theirs.push_back(start_once(BARE_APP, server, watcher, sandbox));
        ours.push_back(start_once(KELVANE_APP, server, watcher, sandbox));
        state.SetIterationTime(ours.back());
    }
    state.counters["median_ms"] = median(ours) * 1e3;
    state.counters["bare_gtk_median_ms"] = median(theirs) * 1e3;
    state.counters["of_bare_gtk"] = median(ours) / median(theirs);
    // What is left when other work on the machine is out of the way.
    state.counters["best_of_bare_gtk"] = std::ranges::min(ours) / std::ranges::min(theirs);
}
BENCHMARK(start_to_first_frame)->UseManualTime()->Iterations(40)->Unit(benchmark::kMillisecond);

// A device with a theme, texts and fonts beside an empty folder.
void start_on_a_full_device(benchmark::State &state) {
    desktop::Server server(700, 900);
    desktop::Sandbox empty, full;
    if (std::system(
            (KELVANE_DEVICE_TOOL " --language ru " + full.path("") + " >/dev/null").c_str()) != 0)
        return state.SkipWithError("the device folder could not be made");
    Watcher watcher(server.name());
    std::vector<double> with, without;
    for (auto _ : state) {
        without.push_back(start_once(KELVANE_APP, server, watcher, empty));
        with.push_back(start_once(KELVANE_APP, server, watcher, full));
        state.SetIterationTime(with.back());
    }
    state.counters["median_ms"] = median(with) * 1e3;
    state.counters["more_ms"] = (median(with) - median(without)) * 1e3;
}
BENCHMARK(start_on_a_full_device)->UseManualTime()->Iterations(40)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
