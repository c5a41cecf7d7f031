// SPDX-License-Identifier: MIT
// The ways out: signals, CloseApp() and the end of the process.
#include <array>
#include <csignal>
#include <cstdio>
#include <unistd.h>
#include <utility>

#include "ground/log.h"
#include "internal.h"
#include "lifecycle/lifecycle.h"
#include "runtime/interface_flags.h"
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
        if (!has_interface_flag(UI_NO_EXIT_HOURGLASS)) screens.hourglass();
        if (kvstate.mainhproc) kvstate.mainhproc(EVT_EXIT, 0, 0);
    }
    unlink(current_file);
}

bool owns_screen() {
    return kvstate.isopen && getpid() == kvstate.pid;
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

void leave_application() {
    if (!owns_screen()) return;
    exit_actions();
    if (kvstate.isopen) close_screen(); // the handler of EVT_EXIT may have done so
}

// Any other stream may be in use by a thread that waits for its input, for ever.
void end_process(int status) {
    leave_application();
    std::fflush(stdout);
    std::fflush(stderr);
    _exit(status);
}

void CloseApp() {
    tq_print_log2(LOG_INFO_LEVEL, "[pid:%d]CloseApp()\n", static_cast<int>(getpid()));
    kvstate.exiting = EXIT_REQUESTED;
}

void ClearOnExit() {
    static bool ending; // a handler may end the application once more while it is being ended
    if (!kvstate.isopen) return;
    const bool ends_process = owns_screen() && !has_interface_flag(UI_EXTERNAL);
    const bool outermost = !std::exchange(ending, true);
    if (outermost) hide_current_handler();
    if (ends_process) end_process(0);
    leave_application();
    if (outermost) ending = false;
}

void DisableExitHourglass() {
    set_interface_flags(UI_NO_EXIT_HOURGLASS);
}
