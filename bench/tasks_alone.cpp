// SPDX-License-Identifier: MIT
// What each call about tasks costs where there are none.
#include <cstdlib>
#include <string>

#include "beside.h"
#include "kelvane.h"

namespace {

int a, b, c;

constexpr struct {
    const char *name;
    void (*call)();
} calls[] = {
    {"MultitaskingSupported", [] { MultitaskingSupported(); }},
    {"NewSubtask", [] { NewSubtask("name"); }},
    {"SwitchSubtask", [] { SwitchSubtask(1, 1); }},
    {"SubtaskFinished", [] { SubtaskFinished(1); }},
    {"SetSubtaskInfo", [] { SetSubtaskInfo(1, 1, "name", "book"); }},
    {"GetCurrentTask", [] { GetCurrentTask(); }},
    {"GetActiveTask", [] { GetActiveTask(&a, &b); }},
    {"IsTaskActive", [] { IsTaskActive(); }},
    {"GetPreviousTask", [] { GetPreviousTask(&a, &b); }},
    {"GetPreviousTaskInStack", [] { GetPreviousTaskInStack(&a, &b); }},
    {"GetTaskList", [] { GetTaskList(&a, 1); }},
    {"GetTaskInfo", [] { GetTaskInfo(1); }},
    {"FindTaskByBook", [] { FindTaskByBook("book", &a, &b); }},
    {"FindTaskByAppName", [] { FindTaskByAppName("name"); }},
    {"SetTaskParameters", [] { SetTaskParameters(1, "book", "title", nullptr, 0); }},
    {"SetActiveTask", [] { SetActiveTask(1, 1); }},
    {"GoToBackground", [] { GoToBackground(); }},
    {"CloseTask", [] { CloseTask(1, 1, 0); }},
    {"OpenTaskList", [] { OpenTaskList(); }},
    {"SendEventTo", [] { SendEventTo(1, 1, 0, 0); }},
    {"SendEventSyncTo", [] { SendEventSyncTo(1, 1, 0, 0); }},
    {"SendMessageTo", [] { SendMessageTo(1, 1, &a, sizeof a); }},
    {"SetMessageHandler", [] { SetMessageHandler(nullptr); }},
    {"SetRequestListener", [] { SetRequestListener(1, 0, nullptr); }},
    {"SendRequest", [] { SendRequest(1, &a, sizeof a, sizeof a, 10); }},
    {"SendRequestNoWait", [] { SendRequestNoWait(1, &a, sizeof a, sizeof a); }},
    {"SendRequestTo", [] { SendRequestTo(1, 1, &a, sizeof a, sizeof a, 10); }},
    {"SendRequestToNoWait", [] { SendRequestToNoWait(1, 1, &a, sizeof a, sizeof a); }},
    {"SendGlobalRequest", [] { SendGlobalRequest(1); }},
    {"GetTaskFramebuffer", [] { GetTaskFramebuffer(1); }},
    {"GetTaskFramebufferInfo", [] { GetTaskFramebufferInfo(1, &a, &b, &c); }},
    {"ReleaseTaskFramebuffer", [] { ReleaseTaskFramebuffer(nullptr); }},
    {"CopyActiveFb", [] { CopyActiveFb(); }},
    // What looks at the file system before it asks for tasks.
    {"NewTask", [] { NewTask("/bin/true", nullptr, "name", "name", nullptr, 0); }},
    {"NewTaskEx", [] { NewTaskEx("/bin/true", nullptr, "name", "name", nullptr, 0, 0); }},
};

} // namespace

int main(int argc, char **argv) {
    unsetenv("KELVANE_TASKS");
    for (const auto &entry : calls)
        benchmark::RegisterBenchmark(("task_call_alone/" + std::string(entry.name)).c_str(),
                                     [&entry](benchmark::State &state) {
                                         for (auto _ : state) entry.call();
                                     });
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
