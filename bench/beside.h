// SPDX-License-Identifier: MIT
// Measures two ways to do the same work in turns, so that both meet the same machine.
#pragma once

#include <benchmark/benchmark.h>
#include <chrono>

// Reports the first as the benchmark's manual time, and how often it fits into the second's time as
// the counter `name`.
template <class First, class Second>
void beside(benchmark::State &state, const char *name, First first, Second second) {
    using clock = std::chrono::steady_clock;
    std::chrono::duration<double> first_time{}, second_time{};
    for (auto _ : state) {
        const auto start = clock::now();
        first();
        const auto middle = clock::now();
        second();
        const auto end = clock::now();
        state.SetIterationTime(std::chrono::duration<double>(middle - start).count());
        first_time += middle - start;
        second_time += end - middle;
    }
    state.counters[name] = second_time / first_time;
}
