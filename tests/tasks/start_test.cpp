// SPDX-License-Identifier: MIT
// What can go wrong when an application is started, and what it inherits.
#include "fixture.h"

#include <fcntl.h>

namespace {

using namespace tasks_test;

class TaskStarts : public tasks_test::Test {};

// What happens to a new task before it is registered.
enum class Fate { none, fails, hangs };
Fate fate;
bool has_usage_library;

} // namespace

extern "C" {
int __real_setpgid(pid_t process, pid_t group);
int __wrap_setpgid(pid_t process, pid_t group) {
    constexpr unsigned longer_than_a_start_s = 7;
    if (fate == Fate::hangs) sleep(longer_than_a_start_s);
    if (fate == Fate::none) return __real_setpgid(process, group);
    errno = EPERM;
    return -1;
}

// The library of usage statistics is the test, where there is one.
void *__real_dlopen(const char *path, int how);
void *__wrap_dlopen(const char *path, int how) {
    const bool is_usage = path && std::strcmp(path, "/ebrmain/lib/libusage_stat.so") == 0;
    return __real_dlopen(is_usage && has_usage_library ? nullptr : path, how);
}
[[gnu::visibility("default")]] void
Stat_StartApplicationByPathEvent(int pid, const char *name, int orientation, char *const *words) {
    std::ofstream note("usage");
    note << (pid == getpid()) << name << orientation;
    for (; *words; ++words) note << '[' << *words << ']';
}

int __real_execv(const char *path, char *const *arguments);
// The starter of the system is a script of the test, where there is one.
int __wrap_execv(const char *path, char *const *arguments) {
    const bool is_starter = std::strcmp(path, "/ebrmain/bin/new_task.app") == 0;
    return __real_execv(is_starter ? "./new_task.app" : path, arguments);
}
}

TEST_F(TaskStarts, WhatCannotBeExecutedIsNoTask) {
    write_file("plain", "text");
    write_file("broken", "text");
    std::filesystem::permissions("broken", std::filesystem::perms::owner_all);
    for (const char *name : {"./none", "./plain", "/bin"})
        EXPECT_EQ(start_program(name, {}, name), -1) << name;
    for (const char *name : {"./broken", "/bin/false", TASKS_APP}) {
        testing::internal::CaptureStderr();
        const int task = start_program(name, {"fail"}, name);
        EXPECT_GT(task, 0);
        EXPECT_TRUE(until([=] { return !is_task(task); })) << name;
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_EQ(said.find("NewTask(): execv ./broken ./broken fail: ") != said.npos,
                  *name == '.');
    }
    EXPECT_EQ(task_list().size(), 1u);
}

TEST_F(TaskStarts, AChildThatDoesNotBecomeATaskIsToldOf) {
    const struct {
        Fate fate;
        const char *said;
    } cases[] = {{Fate::fails, "NewTask(): setpgrp: "},
                 {Fate::hangs, "NewTask(): timeout waiting for child answer\n"}};
    for (const auto &c : cases) {
        fate = c.fate;
        testing::internal::CaptureStderr();
        EXPECT_EQ(start_program(TASKS_APP, {}, "app"), -1);
        EXPECT_NE(testing::internal::GetCapturedStderr().find(c.said), std::string::npos) << c.said;
    }
    fate = Fate::none;
    for (int i = 2; i <= 64; ++i) ASSERT_GT(start_program("/bin/sleep", {"100"}, "crowd"), 0) << i;
    testing::internal::CaptureStderr();
    EXPECT_EQ(start_program(TASKS_APP, {}, "too many"), -1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "NewTask(): could not register task 'too many'\n");
    EXPECT_EQ(task_list().size(), 64u);
}

TEST_F(TaskStarts, AreReportedToTheLibraryOfUsageStatistics) {
    setenv("KELVANE_LOG", "4", 1);
    testing::internal::CaptureStderr();
    EXPECT_GT(start_program("/bin/true", {}, "app"), 0);
    EXPECT_TRUE(until([] { return task_list().size() == 1; }));
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Falied to dlopen usage_stat lib\n"),
              std::string::npos);
    has_usage_library = true;
    for (const char *name : {"name", ""}) {
        const char *words[] = {"true", "a b", nullptr};
        EXPECT_GT(
            NewTaskEx("/bin/true", const_cast<char *const *>(words), "app", name, nullptr, 0, 0),
            0);
        EXPECT_TRUE(until([] { return task_list().size() == 1; }));
        EXPECT_EQ(read_file("usage"), std::string("1") + (*name ? name : "app") + "0[true][a b]");
    }
    has_usage_library = false;
}

TEST(TaskStartsElsewhere, ARelativeDirectoryIsTheSameOne) {
    const Folder folder;
    setenv("KELVANE_TASKS", "tasks", 1);
    open_screen();
    std::filesystem::create_directory("other");
    std::filesystem::current_path("other");
    CloseTask(start(), -1, 1);
    EXPECT_FALSE(std::filesystem::exists("tasks"));
    ClearOnExit();
}

TEST_F(TaskStarts, ArgumentsArriveAsTheyAre) {
    const int task =
        start_program(TASKS_APP, {"two words", "", "\u0441\u043B\u043E\u0432\u043E"}, "app");
    ASSERT_TRUE(until([=] { return ask(task, protocol::reverse, 0) == 4; }));
    const std::string expected = std::string(TASKS_APP) + '\0' + "two words" + '\0' + '\0' +
                                 "\u0441\u043B\u043E\u0432\u043E" + '\0';
    std::string words(4096, '\0');
    const int size = SendRequestTo(task, protocol::words, words.data(), 0, 4096, 2000);
    words.resize(static_cast<size_t>(std::max(size, 0)));
    EXPECT_EQ(words, expected);
    const int alone = NewTaskEx(TASKS_APP, nullptr, "alone", nullptr, nullptr, 0, 0);
    ASSERT_TRUE(until([=] { return ask(alone, protocol::reverse, 0) == 4; }));
    EXPECT_EQ(SendRequestTo(alone, protocol::words, words.data(), 0, 4096, 2000),
              static_cast<int>(std::strlen(TASKS_APP)) + 1);
}

TEST_F(TaskStarts, OnlyTheStandardDescriptorsAreInherited) {
    const int open_here = open(".", O_RDONLY); // without close-on-exec
    const int high = dup2(open_here, 200);
    const int task = start();
    EXPECT_EQ(ask(task, protocol::is_open, high), 0);
    EXPECT_EQ(ask(task, protocol::is_open, 1), 1);
    EXPECT_EQ(fcntl(high, F_GETFD), 0) << "here it stays as it was";
    EXPECT_NE(getpgid(GetTaskInfo(task)->pid), getpgid(0)) << "a process group of its own";
    close(open_here);
    close(high);
}

TEST_F(TaskStarts, WhoPlaysTheDeviceAndWritesItDownIsNotInherited) {
    const char *const own[] = {"KELVANE_SCRIPT", "KELVANE_MONKEY", "KELVANE_CONTROL",
                               "KELVANE_TRACE",  "KELVANE_FRAMES", "KELVANE_FILM",
                               "KELVANE_RECORD"};
    for (const char *name : own) setenv(name, "none", 1);
    const int task = start();
    for (const char *name : own) unsetenv(name);
    const auto is_set = [=](std::string name) {
        return SendRequestTo(task, protocol::is_set, name.data(), static_cast<int>(name.size()) + 1,
                             0, 5000);
    };
    for (const char *name : own) EXPECT_EQ(is_set(name), 0) << name;
    EXPECT_EQ(is_set("KELVANE_TASKS"), 1);
}

// Between its registration and its first step a program hears nothing yet.
TEST_F(TaskStarts, WhatIsSentToATaskAtOnceIsNotLost) {
    for (int round = 0; round < 5; ++round) {
        const int task = start_program(TASKS_APP, {}, "app");
        constexpr int count = 20;
        int sent = 0;
        for (int i = 0; i < count; ++i) sent += SendEventTo(task, protocol::numbered_event, i, 0);
        EXPECT_EQ(sent, count);
        EXPECT_EQ(ask(task, protocol::reverse, 0), 4) << "nor a request";
        EXPECT_TRUE(until([=] { return report(task).events == count; })) << report(task).events;
        EXPECT_EQ(report(task).disorder, 0);
    }
}

TEST_F(TaskStarts, OthersThanTheSystemsGoThroughItsStarter) {
    write_file("new_task.app", "#!/bin/sh\nprintf '[%s]' \"$@\" >arguments\nexit 255\n");
    std::filesystem::permissions("new_task.app", std::filesystem::perms::owner_all);
    const char *words[] = {"a", "b c", nullptr};
    EXPECT_EQ(NewTask("/bin/true", const_cast<char *const *>(words), "app", nullptr, nullptr, 18),
              255);
    EXPECT_EQ(read_file("arguments"), "[/bin/true][app][][18][a][b c]");
    std::filesystem::remove("new_task.app");
    testing::internal::CaptureStderr();
    EXPECT_EQ(NewTask("/bin/true", nullptr, "app", "name", nullptr, 0), 127);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("Failed to execv /ebrmain/bin/"),
              std::string::npos);
}
