// SPDX-License-Identifier: MIT
// Starts the manager as a process of its own and runs it until nobody needs it.
#include "hw_linux/tasks/serve.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <initializer_list>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "ground/guard.h"
#include "hw_linux/tasks/manager.h"

namespace hw::tasks {
namespace {

void close_range_of(int first, int last) {
    if (first <= last) close_range(static_cast<unsigned>(first), static_cast<unsigned>(last), 0);
}

// Nothing of the application that the manager comes from stays open.
void keep_only(int one, int other) {
    const auto [low, high] = std::minmax(one, other);
    const int nowhere = ::open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (standard == low || standard == high) continue;
        if (nowhere < 0)
            close(standard);
        else
            dup2(nowhere, standard);
    }
    close_range_of(STDERR_FILENO + 1, low - 1);
    close_range_of(low + 1, high - 1);
    close_range(static_cast<unsigned>(std::max(high, 2)) + 1, ~0U, 0);
}

// The manager waits for more than an application may have been let open.
void allow_descriptors() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}

void forget_signals() {
    for (int number = 1; number < NSIG; ++number) signal(number, SIG_DFL);
    signal(SIGPIPE, SIG_IGN);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

bool somebody_waits(const Descriptor &door) {
    pollfd waiting = {door.get(), POLLIN, 0};
    return poll(&waiting, 1, 0) > 0;
}

// Under the lock nobody connects; whoever waits for it starts the next manager.
bool leave(const Place &place, const Descriptor &door) {
    const Descriptor lock = place.try_lock();
    if (!lock) return errno != EWOULDBLOCK; // no lock can be had: the directory is gone
    if (somebody_waits(door)) return false;
    place.clear();
    return true;
}

[[noreturn]] void serve(const Place &place, const Descriptor &door) {
    SharedTable table = SharedTable::make();
    if (!table) _exit(1);
    Manager manager(std::move(table), place);
    for (;;) {
        manager.step(door);
        if (!manager.is_needed() && leave(place, door)) _exit(0);
    }
}

// The child ends at once, so that the manager is nobody's child.
[[noreturn]] void become_manager(const Place &place, const Descriptor &door) {
    if (fork() != 0) _exit(0);
    setsid();
    keep_only(place.descriptor(), door.get());
    forget_signals();
    allow_descriptors();
    prctl(PR_SET_NAME, "kelvane-tasks");
    if (chdir("/") != 0) _exit(1);
    ground::guarded([&] { serve(place, door); });
    _exit(1);
}

bool start_manager(const Place &place) {
    const Descriptor door = place.listen();
    const pid_t child = door ? fork() : -1;
    if (child == 0) become_manager(place, door);
    if (child < 0) return false;
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return true;
}

} // namespace

Descriptor connect_to_manager(const Place &place) {
    const Descriptor lock = place.lock();
    if (!lock) return {};
    Descriptor link = place.connect();
    if (link) return link;
    const bool nobody_serves = errno == ECONNREFUSED || errno == ENOENT;
    if (!nobody_serves || !start_manager(place)) return {};
    return place.connect();
}

} // namespace hw::tasks
