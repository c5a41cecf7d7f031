// SPDX-License-Identifier: MIT
// Work in a process of its own, whose limits and rights may be changed for good.
#pragma once

#include <csignal>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

// What the work returns, of 0 to 255; -1 when a signal ended it.
inline int in_child(const std::function<int()> &work) {
    const pid_t child = fork();
    if (child == 0) _exit(work());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// No file grows beyond so many bytes from now on: it fails as on a full disk.
inline void fill_disk(size_t size) {
    signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{size, size};
    setrlimit(RLIMIT_FSIZE, &limit);
}
