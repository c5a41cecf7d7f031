// SPDX-License-Identifier: MIT
// A line over the control socket and its answer, beside a byte over a pipe to another process and
// back: both wake a process that waits. In wall-clock time, as the wake-up is most of it.
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include "beside.h"
#include "kelvane/events.h"
#include "text_common.h"

namespace {

constexpr const char *socket_path = "control";

int ignore(int, int, int) {
    return 1;
}

template <class Work>
pid_t child(Work work) {
    const pid_t pid = fork();
    if (pid == 0) {
        work();
        _exit(0);
    }
    return pid;
}

void run_application() {
    setenv("KELVANE_DEVICE", "headless", 1);
    setenv("KELVANE_CONTROL", socket_path, 1);
    setenv("KELVANE_LOG", "0", 1);
    KelvaneMain(ignore);
}

int connect_to_application() {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strcpy(address.sun_path, socket_path);
    const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    for (int tried = 0; tried < 1000; ++tried) {
        if (connect(fd, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
            return fd;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return -1;
}

struct Pipes {
    int there[2], back[2];
    pid_t echo = 0;
    Pipes() {
        if (pipe(there) != 0 || pipe(back) != 0) return;
        echo = child([this] {
            close(there[1]);
            for (char c = 0; read(there[0], &c, 1) == 1 && write(back[1], &c, 1) == 1;) {
            }
        });
        close(there[0]);
    }
    ~Pipes() {
        close(there[1]);
        waitpid(echo, nullptr, 0);
    }
};

bool ask(int fd, const std::string &line) {
    char answer[256];
    return send(fd, line.data(), line.size(), MSG_NOSIGNAL) > 0 &&
           recv(fd, answer, sizeof answer, 0) > 0;
}

void line_and_pipe(benchmark::State &state) {
    enter_bench_folder();
    const pid_t application = child(run_application);
    const int fd = connect_to_application();
    const Pipes pipes;
    std::vector<double> ours, other;
    bool is_answered = fd >= 0;
    for (auto _ : state) {
        other.push_back(wall_seconds([&] {
            char c = 'x';
            is_answered &= write(pipes.there[1], &c, 1) == 1 && read(pipes.back[0], &c, 1) == 1;
        }));
        ours.push_back(wall_seconds([&] { is_answered &= ask(fd, "idle\n"); }));
        state.SetIterationTime(ours.back());
    }
    kill(application, SIGTERM);
    waitpid(application, nullptr, 0);
    close(fd);
    if (!is_answered) return state.SkipWithError("no answer");
    state.counters["ours_us"] = median(ours) * 1e6;
    count(state, Against::limit, median(ours), median(other));
}
BENCHMARK(line_and_pipe)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
