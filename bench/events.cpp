// SPDX-License-Identifier: MIT
// The cost of one event from SendEvent to its handler, on the application's thread.
#include <benchmark/benchmark.h>
#include <cstdlib>

#include "kelvane/events.h"
#include "runtime/delivery.h"

namespace {

long delivered;

int count_events(int, int, int) {
    delivered++;
    return 1;
}

bool open_device() {
    setenv("KELVANE_DEVICE", "headless", 0);
    return OpenScreenExt() == 1;
}

void queue_and_deliver(benchmark::State &state) {
    static const bool open = open_device();
    if (!open) {
        state.SkipWithError("no device");
        return;
    }
    const long burst = state.range(0);
    for (auto _ : state) {
        for (long i = 0; i < burst; i++) SendEvent(count_events, EVT_KEYPRESS, KEY_OK, 0);
        handle_pending_events();
    }
    state.counters["ns_per_event"] = benchmark::Counter(
        static_cast<double>(burst) * static_cast<double>(state.iterations()) * 1e-9,
        benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(queue_and_deliver)->Arg(1)->Arg(32);

} // namespace

BENCHMARK_MAIN();
