// peers: glib-2.0
// SPDX-License-Identifier: MIT
// Events from SendEvent to their handler on the application's thread, beside the least that threads
// need to hand them over, and GLib's main loop.
#include <benchmark/benchmark.h>
#include <cstdlib>
#include <deque>
#include <glib.h>
#include <mutex>

#include "beside.h"
#include "kelvane/events.h"
#include "runtime/delivery.h"

namespace {

constexpr int burst = 32;
long delivered;

int count_events(int, int, int) {
    delivered++;
    return 1;
}

bool open_device() {
    setenv("KELVANE_DEVICE", "headless", 0);
    return OpenScreenExt() == 1;
}

void send_and_deliver() {
    for (int i = 0; i < burst; i++) SendEvent(count_events, EVT_KEYPRESS, KEY_OK, 0);
    handle_pending_events();
}

// A queue under a mutex, and one call an event.
struct BareQueue {
    struct Event {
        kv_handler handler;
        int type, par1, par2;
    };
    std::mutex mutex;
    std::deque<Event> events;

    void send(const Event &event) {
        const std::lock_guard lock(mutex);
        events.push_back(event);
    }
    bool deliver() {
        std::unique_lock lock(mutex);
        if (events.empty()) return false;
        const Event event = events.front();
        events.pop_front();
        lock.unlock();
        event.handler(event.type, event.par1, event.par2);
        return true;
    }
};

gboolean count_idle(gpointer) {
    delivered++;
    return G_SOURCE_REMOVE;
}

void events_and_queue(benchmark::State &state) {
    static const bool open = open_device();
    if (!open) return state.SkipWithError("no device");
    BareQueue queue;
    state.SetLabel("the limit tells nobody and keeps no timers");
    beside(state, Against::limit, send_and_deliver, [&] {
        for (int i = 0; i < burst; i++) queue.send({count_events, EVT_KEYPRESS, KEY_OK, 0});
        while (queue.deliver()) {
        }
    });
}
BENCHMARK(events_and_queue)->UseManualTime();

void events_and_glib(benchmark::State &state) {
    static const bool open = open_device();
    if (!open) return state.SkipWithError("no device");
    state.SetLabel("the peer polls its file descriptors");
    beside(state, Against::peer, send_and_deliver, [] {
        for (int i = 0; i < burst; i++) g_idle_add(count_idle, nullptr);
        while (g_main_context_iteration(nullptr, FALSE)) {
        }
    });
}
BENCHMARK(events_and_glib)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
