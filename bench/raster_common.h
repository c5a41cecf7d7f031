// SPDX-License-Identifier: MIT
// Our work and a peer's in turns in one loop, so that both see the same machine.
#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "kelvane/canvas.h"

// A grey canvas that is current while it lives.
struct BenchCanvas : icanvas {
    std::vector<uint8_t> memory;
    BenchCanvas(int w, int h)
        : icanvas{w, h, w, 8, 0, w - 1, 0, h - 1, nullptr},
          memory(static_cast<size_t>(w) * static_cast<size_t>(h), 0x40) {
        addr = memory.data();
        SetCanvas(this);
    }
    BenchCanvas(const BenchCanvas &) = delete;
    ~BenchCanvas() { SetCanvas(nullptr); }
};

template <class Work>
double seconds(Work &work, int batch) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < batch; ++i) {
        work();
        benchmark::ClobberMemory();
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / batch;
}

inline double median(std::vector<double> &values) {
    const auto middle = values.begin() + static_cast<ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

// Which way round the ratio of the medians is read.
enum class Ratio { COST_OVER_PEER, TIMES_FASTER };

template <class Ours, class Peer>
void side_by_side(benchmark::State &state, Ratio ratio, int batch, Ours ours, Peer peer) {
    std::vector<double> our_times, peer_times;
    for (auto _ : state) {
        peer_times.push_back(seconds(peer, batch));
        our_times.push_back(seconds(ours, batch));
    }
    const double ours_s = median(our_times), cost = ours_s / median(peer_times);
    state.counters["ours_us"] = ours_s * 1e6;
    const bool as_cost = ratio == Ratio::COST_OVER_PEER;
    state.counters[as_cost ? "cost_over_peer" : "times_faster"] = as_cost ? cost : 1 / cost;
}
