// SPDX-License-Identifier: MIT
// The one way in which the benchmarks compare: our work and another's in turns in one loop, so that
// both meet the same machine, each side's median in the thread's processor time, so that other
// programs do not count, and one of two counters. All peers that are built here have our flags;
// what a library does beyond our work, or less, is said in the row's label.
#pragma once

#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstddef>
#include <ctime>
#include <sys/resource.h>
#include <vector>

inline double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

enum class Against {
    limit, // the least work that cannot be avoided: cost_over_limit, ours divided by it
    peer,  // who else does this work: times_faster, the peer's time divided by ours
};

// For other quantities than time as well.
inline void count(benchmark::State &state, Against against, double ours, double other) {
    if (against == Against::limit)
        state.counters["cost_over_limit"] = ours / other;
    else
        state.counters["times_faster"] = other / ours;
}

// The processor time of this thread in seconds.
inline double thread_seconds() {
    timespec t;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9;
}

// The processor time of the programs that have ended.
inline double children_seconds() {
    rusage used{};
    getrusage(RUSAGE_CHILDREN, &used);
    const auto seconds = [](timeval t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

// For work of other processes, and waiting.
template <class Work>
double wall_seconds(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

template <class Work>
double seconds(Work &work, int times) {
    const double start = thread_seconds();
    for (int i = 0; i < times; ++i) {
        work();
        benchmark::ClobberMemory();
    }
    return (thread_seconds() - start) / times;
}

// The times of both sides; reports them when it goes.
class Turns {
  public:
    Turns(benchmark::State &state, Against against) : state_(state), against_(against) {}
    Turns(const Turns &) = delete;
    Turns &operator=(const Turns &) = delete;
    ~Turns() {
        if (ours_.empty()) return;
        state_.counters["ours_us"] = median(ours_) * 1e6;
        count(state_, against_, median(ours_), median(other_));
    }

    template <class Work>
    void ours(Work work, int times = 1) {
        ours_.push_back(seconds(work, times));
        state_.SetIterationTime(ours_.back() * times);
    }
    template <class Work>
    void other(Work work, int times = 1) {
        other_.push_back(seconds(work, times));
    }

  private:
    benchmark::State &state_;
    Against against_;
    std::vector<double> ours_, other_;
};

// How often work has to be done for reading the clock not to count.
template <class Work>
int enough_times(Work &work) {
    constexpr double long_enough = 100e-6;
    int times = 1;
    while (times < 1 << 20 && seconds(work, times) * times < long_enough) times *= 2;
    return times;
}

template <class Ours, class Other>
void beside(benchmark::State &state, Against against, Ours ours, Other other) {
    const int times = enough_times(ours);
    Turns turns(state, against);
    for (auto _ : state) {
        turns.other(other, times);
        turns.ours(ours, times);
    }
}
