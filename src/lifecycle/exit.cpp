// SPDX-License-Identifier: MIT
#include <array>
#include <csignal>
#include <cstdio>
#include <unistd.h>

#include "ground/log.h"
#include "hw.h"
#include "internal.h"
#include "lifecycle/lifecycle.h"
#include "runtime/loop.h"
#include "runtime/screens.h"

namespace {

constexpr const char *current_file = "./system/tmp/.current";
constexpr std::array ending_signals = {SIGHUP, SIGQUIT, SIGINT, SIGTERM};
std::array<struct sigaction, ending_signals.size()> previous_actions;

void note_signal(int) {
    kvstate.exiting = EXIT_BY_SIGNAL;
}

void exit_actions() {
    kvstate.sleepenable = 0;
    if (kvstate.initialized) {
        kvstate.initialized = 0;
        if (!(kvstate.uiflags & UI_NO_EXIT_HOURGLASS)) screens.hourglass();
        if (kvstate.mainhproc) kvstate.mainhproc(EVT_EXIT, 0, 0);
    }
    unlink(current_file);
}

} // namespace

void install_signal_handlers() {
    struct sigaction action {};
    action.sa_handler = note_signal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    for (size_t i = 0; i < ending_signals.size(); i++)
        sigaction(ending_signals[i], &action, &previous_actions[i]);
}

void restore_signal_handlers() {
    for (size_t i = 0; i < ending_signals.size(); i++)
        sigaction(ending_signals[i], &previous_actions[i], nullptr);
}

void kv_exit_handler() {
    if (!kvstate.isopen || getpid() != kvstate.pid) return;
    exit_actions();
    if (kvstate.uiflags & UI_EXTERNAL) {
        close_screen();
        return;
    }
    hw_close();
    std::fflush(nullptr);
    _exit(0);
}

void CloseApp() {
    tq_print_log2(LOG_INFO_LEVEL, "[pid:%d]CloseApp()\n", static_cast<int>(getpid()));
    kvstate.exiting = EXIT_REQUESTED;
}

void ClearOnExit() {
    if (!kvstate.isopen) return;
    hide_current_handler();
    kv_exit_handler();
}

void DisableExitHourglass() {
    kvstate.uiflags |= UI_NO_EXIT_HOURGLASS;
}
