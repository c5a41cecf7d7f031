// SPDX-License-Identifier: MIT
// What calls about tasks cost where there are none.
#include <cstdlib>

#include "beside.h"
#include "kelvane.h"

namespace {

template <class Call>
void task_call_alone(benchmark::State &state, Call call) {
    unsetenv("KELVANE_TASKS");
    for (auto _ : state) benchmark::DoNotOptimize(call());
}
BENCHMARK_CAPTURE(task_call_alone, is_active, IsTaskActive);
BENCHMARK_CAPTURE(task_call_alone, event, [] { return SendEventTo(1, 1, 0, 0); });
BENCHMARK_CAPTURE(task_call_alone, request, [] { return SendRequest(1, nullptr, 0, 0, 10); });
BENCHMARK_CAPTURE(task_call_alone, info, [] { return GetTaskInfo(1); });
BENCHMARK_CAPTURE(task_call_alone, framebuffer, [] { return GetTaskFramebuffer(1); });

} // namespace

BENCHMARK_MAIN();
