// SPDX-License-Identifier: MIT
// kelvane-test with twenty scripts of an application, beside the application alone with each of
// them, one after the other, divided by the cores. In wall-clock time, as what waits counts as
// well; where other programs have the cores, only the processor time tells.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "beside.h"
#include "text_common.h"

namespace {

namespace fs = std::filesystem;

constexpr int scripts = 20;

struct Session {
    const char *name, *application;
};
constexpr Session sessions[] = {
    {"hello", KELVANE_EXAMPLES "/hello"},
    {"gallery-demo", KELVANE_EXAMPLES "/gallery"},
};

bool runs(const std::string &command) {
    return std::system((command + " >/dev/null 2>&1").c_str()) == 0;
}

// Copies of a script of the examples, with what is expected of it.
bool make_folder(const std::string &script) {
    fs::remove_all("scripts");
    const std::string examples = KELVANE_SOURCE "/tests/examples/";
    for (int i = 0; i < scripts; ++i) {
        const std::string name = std::to_string(i);
        fs::create_directories("scripts/expected/" + name);
        for (const auto &picture : fs::directory_iterator(examples + "expected/" + script))
            fs::copy(picture, "scripts/expected/" + name);
        if (!runs("sed '/^# file:/d;w scripts/" + name + ".script' " + examples + script +
                  ".script"))
            return false;
    }
    return true;
}

bool run_alone(const std::string &application) {
    bool all_ran = true;
    for (int i = 0; i < scripts; ++i)
        all_ran &= runs("cd device && KELVANE_DEVICE=headless KELVANE_SCRIPT=../scripts/" +
                        std::to_string(i) + ".script KELVANE_TRACE=trace exec " + application);
    return all_ran;
}

struct Times {
    std::vector<double> wall, processor;

    template <class Work>
    void add(Work work) {
        const double before = children_seconds();
        wall.push_back(wall_seconds(work));
        processor.push_back(children_seconds() - before);
    }
};

void test_and_bare_runs(benchmark::State &state) {
    enter_bench_folder();
    const auto &[name, application] = sessions[state.range(0)];
    state.SetLabel(name);
    if (!make_folder(name) || !runs(KELVANE_DEVICE_TOOL " device"))
        return state.SkipWithError("no scripts");
    const std::string test = KELVANE_TEST_TOOL " scripts " + std::string(application);
    const double cores = std::max(std::thread::hardware_concurrency(), 1U);
    Times ours, other;
    bool all_ran = true;
    for (auto _ : state) {
        other.add([&] { all_ran &= run_alone(application); });
        ours.add([&] { all_ran &= runs(test); });
        state.SetIterationTime(ours.wall.back());
    }
    if (!all_ran) return state.SkipWithError("a run failed");
    count(state, Against::limit, median(ours.wall), median(other.wall) / cores);
    state.counters["processor_over_alone"] = median(ours.processor) / median(other.processor);
}
BENCHMARK(test_and_bare_runs)
    ->ArgName("session")
    ->DenseRange(0, 1)
    ->UseManualTime()
    ->Iterations(5)
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
