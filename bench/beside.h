// SPDX-License-Identifier: MIT
// Measures two ways to do the same work in turns, so that both meet the same machine.
#pragma once

#include <benchmark/benchmark.h>
#include <ctime>

// The processor time of this thread in seconds: other programs on the machine do not count.
inline double thread_seconds() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

// Reports the first as the benchmark's manual time, and how often it fits into the second's time as
// the counter `name`.
template <class First, class Second>
void beside(benchmark::State &state, const char *name, First first, Second second) {
    double first_time = 0, second_time = 0;
    for (auto _ : state) {
        const double start = thread_seconds();
        first();
        const double middle = thread_seconds();
        second();
        const double end = thread_seconds();
        state.SetIterationTime(middle - start);
        first_time += middle - start;
        second_time += end - middle;
    }
    state.counters[name] = second_time / first_time;
}
