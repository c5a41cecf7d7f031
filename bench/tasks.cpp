// SPDX-License-Identifier: MIT
// Tasks of one device beside the least that two processes can do: a byte over a socket with the
// same wake-up, and the copy of a frame. The first two rows are times of the wall clock, there and
// back.
#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include <poll.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "beside.h"
#include "hw.h"
#include "kelvane.h"
#include "text_common.h"

namespace {

constexpr int echo_event = 500, echo_request = 1;
constexpr int bursts = 20;

int echo_to = -1; // who events go back to
int left_to_echo; // of events, which go there and back by turns; at the end the time is taken
double echoed_at;
int shown;

double wall_seconds() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration<double>(now).count();
}

int handler(int type, int par1, int) {
    shown += type == 95;
    if (type != echo_event) return 0;
    if (left_to_echo-- != 0)
        SendEventTo(echo_to, echo_event, par1, 0);
    else
        echoed_at = wall_seconds();
    return 1;
}

bool open_screen() {
    if (OpenScreenExt() != 1) return false;
    PrepareForLoop(handler);
    for (int i = 0; i < 5; ++i) ProcessEventLoopQuick();
    return true;
}

// The other task.
int serve() {
    open_screen();
    echo_to = 1;
    left_to_echo = -1; // without end
    SetRequestListener(echo_request, 0, [](int, void *, int size, int) { return size; });
    while (ProcessEventLoop() == KELVANE_CONTINUE) {
    }
    return 0;
}

std::string own_path() {
    std::array<char, 4096> path{};
    const ssize_t size = readlink("/proc/self/exe", path.data(), path.size() - 1);
    return {path.data(), size > 0 ? static_cast<size_t>(size) : 0};
}

int ask_other() {
    int data = 0;
    return SendRequest(echo_request, &data, sizeof data, sizeof data, 1000);
}

// The number of the other task, which is started once; -1 when it cannot be.
int other_task() {
    static const int task = [] {
        setenv("KELVANE_DEVICE", "headless", 1);
        enter_bench_folder();
        std::filesystem::create_directories("system/config");
        std::ofstream("system/config/global.cfg") << "emu_resmode=11\n";
        setenv("KELVANE_TASKS", "tasks", 1);
        if (!open_screen()) return -1;
        const std::string path = own_path();
        std::array<char *, 3> words = {const_cast<char *>(path.c_str()),
                                       const_cast<char *>("--serve"), nullptr};
        const int started = NewTaskEx(path.c_str(), words.data(), "other", "other", nullptr, 0, 0);
        for (int i = 0; i < 500 && ask_other() != sizeof(int); ++i) ProcessEventLoop();
        return started;
    }();
    return task;
}

// A process that sends each byte back, as a loop does that waits for something to happen.
class Echo {
  public:
    Echo() {
        std::array<int, 2> ends{};
        if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()) != 0) return;
        child_ = fork();
        if (child_ == 0) {
            char byte = 0;
            close(ends[0]);
            while (wait_and_read(ends[1], byte) && write(ends[1], &byte, 1) == 1) {
            }
            _exit(0);
        }
        close(ends[1]);
        end_ = ends[0];
    }
    ~Echo() {
        close(end_);
        waitpid(child_, nullptr, 0);
    }
    Echo(const Echo &) = delete;
    Echo &operator=(const Echo &) = delete;

    void there_and_back() const {
        char byte = 1;
        if (write(end_, &byte, 1) == 1) wait_and_read(end_, byte);
    }

  private:
    static bool wait_and_read(int end, char &byte) {
        pollfd news = {end, POLLIN, 0};
        poll(&news, 1, -1);
        return read(end, &byte, 1) == 1;
    }
    pid_t child_ = -1;
    int end_ = -1;
};

// `ours` takes as long as it says, for so many times there and back.
template <class Ours>
void beside_a_byte(benchmark::State &state, Ours ours) {
    if (other_task() < 0) return state.SkipWithError("no task");
    const Echo echo;
    std::vector<double> our_times, byte_times;
    for (auto _ : state) {
        const double before = wall_seconds();
        for (int i = 0; i < bursts; ++i) echo.there_and_back();
        byte_times.push_back((wall_seconds() - before) / bursts);
        our_times.push_back(ours() / bursts);
        state.SetIterationTime(our_times.back() * bursts);
    }
    state.counters["ours_us"] = median(our_times) * 1e6;
    count(state, Against::limit, median(our_times), median(byte_times));
}

double echo_events() {
    echo_to = other_task();
    left_to_echo = bursts - 1;
    const double before = wall_seconds();
    SendEventTo(echo_to, echo_event, 1, 0);
    while (left_to_echo >= 0) ProcessEventLoop();
    return echoed_at - before;
}

double exchange_requests() {
    const double before = wall_seconds();
    for (int i = 0; i < bursts; ++i) {
        int data = 0;
        SendRequestTo(other_task(), echo_request, &data, sizeof data, sizeof data, 1000);
    }
    return wall_seconds() - before;
}

void task_event_and_byte(benchmark::State &state) {
    beside_a_byte(state, echo_events);
}
BENCHMARK(task_event_and_byte)->UseManualTime();

void task_request_and_byte(benchmark::State &state) {
    beside_a_byte(state, exchange_requests);
}
BENCHMARK(task_request_and_byte)->UseManualTime();

// The processor's time from the wish to the picture, which a window has in four bytes a pixel; the
// limit is the copy of the frame, one byte a pixel.
void task_switch_and_memcpy(benchmark::State &state) {
    if (other_task() < 0) return state.SkipWithError("no task");
    const auto bytes = static_cast<size_t>(ScreenWidth() * ScreenHeight());
    std::vector<uint8_t> from(bytes, 1), to(bytes);
    Turns turns(state, Against::limit);
    for (auto _ : state) {
        SetActiveTask(other_task(), -1);
        for (int i = 0; i < 3; ++i) ProcessEventLoop();
        turns.other([&] { std::memcpy(to.data(), from.data(), bytes); });
        turns.ours([] {
            const int before = shown;
            SetActiveTask(GetCurrentTask(), -1);
            while (shown == before) ProcessEventLoop();
        });
    }
}
BENCHMARK(task_switch_and_memcpy)->UseManualTime();

} // namespace

int main(int argc, char **argv) {
    if (argc == 2 && std::strcmp(argv[1], "--serve") == 0) return serve();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    if (other_task() > 0) CloseTask(other_task(), -1, 1);
}
