// peers: x11 xtst
// SPDX-License-Identifier: MIT
// From a key press in the X server to the handler of an application that idles, beside a bare
// GTK+ 2 program, which waits for nothing but input. An idle loop step pauses for 20 ms.
#include <algorithm>
#include <chrono>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <X11/keysym.h>
#include <benchmark/benchmark.h>

#include "beside.h"
#include "harness.h"

namespace {

using Clock = std::chrono::steady_clock;

// One program, alone on its server.
class Typist {
  public:
    Typist(const std::string &program, const std::string &title)
        : app_({program}, sandbox_.path(""), {{"DISPLAY", server_.name()}}) {
        const auto place = server_.place_of(server_.find_window(title));
        server_.move(place.x + place.width / 2, place.y + place.height / 2);
        press(); // the first one waits until the program listens
    }

    double press() {
        const auto start = Clock::now();
        server_.key(XK_Return, true);
        app_.take_until("key");
        const std::chrono::duration<double> taken = Clock::now() - start;
        server_.key(XK_Return, false);
        return taken.count();
    }

  private:
    desktop::Server server_{700, 900};
    desktop::Sandbox sandbox_;
    desktop::Program app_;
};

void key_to_handler(benchmark::State &state) {
    Typist kelvane(KELVANE_APP, "Marrowleaf "), bare(BARE_APP, "Bare");
    std::mt19937 random(1);
    std::uniform_int_distribution rest_us(5'000, 45'000); // any moment of the idle pause
    std::vector<double> ours, theirs;
    for (auto _ : state) {
        std::this_thread::sleep_for(std::chrono::microseconds(rest_us(random)));
        theirs.push_back(bare.press());
        ours.push_back(kelvane.press());
        state.SetIterationTime(ours.back());
    }
    state.SetLabel("the limit waits for nothing but input");
    state.counters["ours_us"] = median(ours) * 1e6;
    count(state, Against::limit, median(ours), median(theirs));
}
BENCHMARK(key_to_handler)->UseManualTime()->Iterations(200)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
