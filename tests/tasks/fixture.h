// SPDX-License-Identifier: MIT
// The test's own process as a task, beside applications that it starts. Time is real.
#pragma once

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <csignal>
#include <gtest/gtest.h>
#include <unistd.h>

#include "kelvane.h"
#include "protocol.h"
#include "support/tempdir.h"

namespace tasks_test {

inline std::vector<int> events; // what the handler of the test heard
inline int messages, disorder;  // numbered ones

inline int handler(int type, int, int) {
    events.push_back(type);
    return 0;
}

inline int take_message(int, void *data, int, int) {
    int number = 0;
    std::memcpy(&number, data, sizeof number);
    disorder += number != messages++;
    return 0;
}

inline int count_of(int event) {
    return static_cast<int>(std::count(events.begin(), events.end(), event));
}

// Runs the loop until this holds, for twenty seconds at most.
inline bool until(const std::function<bool()> &holds) {
    using namespace std::chrono;
    const auto end = steady_clock::now() + seconds(20);
    while (steady_clock::now() < end) {
        if (holds()) return true;
        if (ProcessEventLoop() != KELVANE_CONTINUE) return false;
    }
    return holds();
}

// The same where this process has no loop to run.
inline bool soon(const std::function<bool()> &holds) {
    for (int i = 0; i < 2000 && !holds(); ++i) usleep(10'000);
    return holds();
}

inline std::vector<int> task_list() {
    std::vector<int> list(64);
    list.resize(static_cast<size_t>(GetTaskList(list.data(), 64)));
    return list;
}

inline bool is_task(int task) {
    return GetTaskInfo(task) != nullptr;
}

inline int active() {
    int task = 0;
    GetActiveTask(&task, nullptr);
    return task;
}

inline int ask(int task, int request, int number) {
    return SendRequestTo(task, request, &number, sizeof number, sizeof number, 5000);
}

inline protocol::Report report(int task) {
    protocol::Report heard;
    SendRequestTo(task, protocol::report, &heard, 0, sizeof heard, 5000);
    return heard;
}

inline int start_program(const char *path, std::vector<const char *> words, const char *appname,
                         int flags = 0) {
    words.insert(words.begin(), path);
    words.push_back(nullptr);
    return NewTaskEx(path, const_cast<char *const *>(words.data()), appname, "name", nullptr, flags,
                     0);
}

// An application that answers by now; its first picture is drawn.
inline int start(const char *appname = "app", int flags = 0) {
    const int task = start_program(TASKS_APP, {}, appname, flags);
    EXPECT_GT(task, 0);
    EXPECT_TRUE(until([=] { return ask(task, protocol::reverse, 0) == 4; })) << appname;
    EXPECT_TRUE(until([=] { return active() == task; })) << appname;
    return task;
}

inline std::filesystem::path place() {
    return std::getenv("KELVANE_TASKS");
}

// The process that has the directory open and is no task.
inline pid_t manager() {
    for (const auto &process : std::filesystem::directory_iterator("/proc")) {
        std::ifstream comm(process.path() / "comm");
        std::string name;
        if (!std::getline(comm, name) || name != "kelvane-tasks") continue;
        std::error_code gone;
        for (const auto &fd : std::filesystem::directory_iterator(process.path() / "fd", gone))
            if (std::filesystem::read_symlink(fd.path(), gone) == place())
                return std::stoi(process.path().filename());
    }
    return 0;
}

// Everything of this process is set for a test, and nothing opened.
struct Folder {
    TempDir dir;
    Folder() {
        setenv("KELVANE_DEVICE", "headless", 1);
        setenv("KELVANE_TASKS", (dir.path() / "tasks").c_str(), 1);
    }
};

inline void open_screen() {
    OpenScreenExt();
    PrepareForLoop(handler);
    SetMessageHandler(take_message);
    until([] { return count_of(EVT_SHOW) > 0; });
    events.clear();
}

// Runs the loop until it ends, for so many pauses at most.
inline bool loop_ends() {
    for (int i = 0; i < 1000; ++i)
        if (ProcessEventLoop() != KELVANE_CONTINUE) return true;
    return false;
}

class Test : public testing::Test {
  protected:
    Test() { open_screen(); }
    ~Test() override {
        for (const int task : task_list())
            if (task != GetCurrentTask()) CloseTask(task, -1, 1);
        EXPECT_TRUE(until([] { return task_list().size() == 1; }));
        ClearOnExit();
    }
    Folder folder_;
};

} // namespace tasks_test
