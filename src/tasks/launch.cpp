// SPDX-License-Identifier: MIT
// Starts applications as tasks: the two ways, and what a child does before it becomes one.
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ground/guard.h"
#include "ground/log.h"
#include "hw.h"
#include "kelvane/tasks.h"
#include "tasks/usage.h"

namespace {

constexpr int most_tries = 100;
constexpr int pause_ms = 50; // real time: whoever started us may own the device's clock
constexpr int status_failed = 127;
constexpr size_t longest_report = 255;
constexpr std::string_view system_programs = "/ebrmain/bin/";
constexpr std::string_view user_starter = "/ebrmain/bin/start.app";
constexpr const char *privileged_starter = "/ebrmain/bin/new_task.app";

using Arguments = std::vector<char *>;

// Everything that a child needs, made before there is one.
struct Start {
    const char *path, *appname, *name;
    const ibitmap *icon;
    int flags;
    Arguments arguments; // ended by null
    std::string exec_report;
};

const char *or_empty(const char *text) {
    return text ? text : "";
}

// exec() takes no constants, though it changes nothing.
char *argument(const char *text) {
    return const_cast<char *>(text);
}

Arguments arguments_of(const char *path, char *const *argv) {
    if (!argv) return {argument(path), nullptr};
    Arguments all;
    for (; *argv; ++argv) all.push_back(*argv);
    all.push_back(nullptr);
    return all;
}

std::string exec_report(const Start &start) {
    std::string text = std::string("NewTask(): execv ") + start.path;
    for (const char *word : start.arguments)
        if (word) text.append(" ").append(word);
    text.resize(std::min(text.size(), longest_report));
    return text;
}

[[noreturn]] void fail(const char *what) {
    std::perror(what);
    _exit(status_failed);
}

// A child that is interrupted is waited for again.
pid_t wait_for(pid_t child, int *status, int options) {
    pid_t ended = 0;
    do ended = waitpid(child, status, options);
    while (ended < 0 && errno == EINTR);
    return ended;
}

// A directory can be entered, not executed.
bool is_executable(const char *path) {
    struct stat status {};
    return access(path, X_OK) == 0 && stat(path, &status) == 0 && S_ISREG(status.st_mode);
}

bool needs_privileges(std::string_view path) {
    return !path.starts_with(system_programs) || path == user_starter;
}

int launch_privileged(const Start &start) {
    const std::string flags = std::to_string(start.flags);
    Arguments all = {argument(privileged_starter), argument(start.path), argument(start.appname),
                     argument(start.name), argument(flags.c_str())};
    all.insert(all.end(), start.arguments.begin(), start.arguments.end());
    const pid_t child = fork();
    if (child < 0) return -1;
    if (child == 0) {
        execv(privileged_starter, all.data());
        fail("Failed to execv /ebrmain/bin/new_task.app");
    }
    int status = 0;
    if (wait_for(child, &status, 0) < 0) {
        std::perror("Failed to waitpid ");
        return -1;
    }
    return status >> 8 & 0xFF;
}

void keep_descriptors_back() {
    DIR *folder = opendir("/proc/self/fd");
    if (!folder) return;
    while (const dirent *entry = readdir(folder)) {
        const int descriptor = std::atoi(entry->d_name);
        if (descriptor > STDERR_FILENO) fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    }
    closedir(folder);
}

void answer(int pipe_end, int task) {
    if (write(pipe_end, &task, sizeof task) != sizeof task) _exit(status_failed);
}

// The grandchild of whoever starts a task.
[[noreturn]] void become_task(const Start &start, const std::array<int, 2> &ends) {
    close(ends[0]);
    if (setpgid(0, 0) != 0) fail("NewTask(): setpgrp");
    keep_descriptors_back();
    const int task = hw_task_register(start.appname, start.name, start.icon, start.flags);
    if (task < 0) {
        std::fprintf(stderr, "NewTask(): could not register task '%s'\n", start.appname);
        _exit(status_failed);
    }
    answer(ends[1], task);
    tasks::report_start(*start.name ? start.name : start.appname, start.arguments.data());
    execv(start.path, start.arguments.data());
    fail(start.exec_report.c_str());
}

// The child ends at once, so that the task is nobody's child here.
[[noreturn]] void fork_again(const Start &start, const std::array<int, 2> &ends) {
    const pid_t task = fork();
    if (task == 0) become_task(start, ends);
    if (task > 0) _exit(0);
    std::perror("NewTask(): fork");
    answer(ends[1], -1);
    _exit(status_failed);
}

// What comes, or that nothing can come any more, ends a pause; a signal does not.
void pause_at(int pipe_end) {
    using namespace std::chrono;
    const auto end = steady_clock::now() + milliseconds(pause_ms);
    pollfd wait = {pipe_end, POLLIN, 0};
    for (int left_ms = pause_ms; left_ms > 0;) {
        if (poll(&wait, 1, left_ms) >= 0 || errno != EINTR) return;
        left_ms = static_cast<int>(ceil<milliseconds>(end - steady_clock::now()).count());
    }
}

// The number that comes out of the pipe.
int read_answer(int pipe_end, pid_t child) {
    bool reaped = false;
    const auto reap = [&](int options) {
        reaped = reaped || wait_for(child, nullptr, options) != 0;
    };
    for (int i = 0; i < most_tries; ++i) {
        reap(WNOHANG);
        int task = -1;
        const ssize_t got = read(pipe_end, &task, sizeof task);
        if (got >= 0 || errno != EAGAIN) {
            reap(0);
            return got == sizeof task ? task : -1;
        }
        pause_at(pipe_end);
    }
    std::fputs("NewTask(): timeout waiting for child answer\n", stderr);
    reap(WNOHANG);
    return -1;
}

int launch(const Start &start) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0) {
        std::perror("NewTask(): setpgrp");
        return -1;
    }
    const pid_t child = fork();
    if (child == 0) fork_again(start, ends);
    close(ends[1]);
    int task = -1;
    if (child > 0) {
        fcntl(ends[0], F_SETFL, O_NONBLOCK);
        task = read_answer(ends[0], child);
    }
    close(ends[0]);
    return task;
}

} // namespace

int NewTask(const char *path, char *const argv[], const char *appname, const char *name,
            const ibitmap *icon, int flags) {
    return NewTaskEx(path, argv, appname, name, icon, flags, 1);
}

int NewTaskEx(const char *path, char *const argv[], const char *appname, const char *name,
              const ibitmap *icon, int flags, int checkprivileges) {
    Start start{or_empty(path), or_empty(appname), or_empty(name), icon, flags, {}, {}};
    tq_print_log2(LOG_INFO_LEVEL, "[pid:%d]NewTask('%s',app='%s',name='%s',flags=%x)\n",
                  static_cast<int>(getpid()), start.path, start.appname, start.name,
                  static_cast<unsigned>(flags));
    if (!is_executable(start.path)) {
        tq_print_log2(LOG_INFO_LEVEL, "NewTask(): file '%s' not found\n", start.path);
        return -1;
    }
    if (!MultitaskingSupported()) return -1;
    return ground::guarded(-1, [&] {
        start.arguments = arguments_of(start.path, argv);
        if (checkprivileges && needs_privileges(start.path)) return launch_privileged(start);
        start.exec_report = exec_report(start);
        return launch(start);
    });
}
