// SPDX-License-Identifier: MIT
// The ring of events and the mutex that guards it.
#include "runtime/queue.h"

#include <mutex>
#include <new>

#include <pthread.h>

namespace {

std::mutex message_mutex;

// A child of fork() gets the mutex as it is, and of all threads only the one that forked, which
// could wait for ever for one that is not there. So no other thread has it while a child is made.
const int fork_handlers = pthread_atfork(
    [] { message_mutex.lock(); }, [] { message_mutex.unlock(); }, [] { message_mutex.unlock(); });

int next_slot(int slot) {
    return (slot + 1) % event_ring_slots;
}

} // namespace

void queue_open() {
    const std::lock_guard lock(message_mutex);
    delete[] kvstate.events;
    kvstate.events = new (std::nothrow) ievent[event_ring_slots]{};
    kvstate.evtstart = kvstate.evtend = 0;
}

void queue_close() {
    const std::lock_guard lock(message_mutex);
    delete[] kvstate.events;
    kvstate.events = nullptr;
    kvstate.evtstart = kvstate.evtend = 0;
}

void clear_runtime_record() {
    const std::lock_guard lock(message_mutex);
    kvstate = {};
}

bool queue_is_empty() {
    const std::lock_guard lock(message_mutex);
    return kvstate.evtstart == kvstate.evtend;
}

bool queue_is_full() {
    const std::lock_guard lock(message_mutex);
    return !kvstate.events || next_slot(kvstate.evtend) == kvstate.evtstart;
}

bool queue_has_plain_run() {
    const std::lock_guard lock(message_mutex);
    return kvstate.evtstart < kvstate.evtend;
}

int queue_size() {
    const std::lock_guard lock(message_mutex);
    return (kvstate.evtend - kvstate.evtstart + event_ring_slots) % event_ring_slots;
}

int queue_count(kv_handler h) {
    const std::lock_guard lock(message_mutex);
    int count = 0;
    for (int slot = kvstate.evtstart; slot != kvstate.evtend; slot = next_slot(slot))
        if (kvstate.events[slot].hproc == h) ++count;
    return count;
}

bool queue_holds(kv_handler h, int type) {
    const std::lock_guard lock(message_mutex);
    for (int slot = kvstate.evtstart; slot != kvstate.evtend; slot = next_slot(slot))
        if (kvstate.events[slot].hproc == h && kvstate.events[slot].type == type) return true;
    return false;
}

bool queue_take(ievent &entry) {
    const std::lock_guard lock(message_mutex);
    if (kvstate.evtstart == kvstate.evtend) return false;
    entry = kvstate.events[kvstate.evtstart];
    kvstate.evtstart = next_slot(kvstate.evtstart);
    return true;
}

void kv_enqueue_ex(kv_handler h, int type, int par1, int par2, void *data) {
    const std::lock_guard lock(message_mutex);
    const int after = next_slot(kvstate.evtend);
    if (!kvstate.events || after == kvstate.evtstart) return;
    kvstate.events[kvstate.evtend] = {h,
                                      static_cast<uint16_t>(type),
                                      0,
                                      static_cast<uint16_t>(par1),
                                      static_cast<uint16_t>(par2),
                                      data};
    kvstate.evtend = after;
}

void kv_enqueue(kv_handler h, int type, int par1, int par2) {
    kv_enqueue_ex(h, type, par1, par2, nullptr);
}

void SendEvent(kv_handler h, int type, int par1, int par2) {
    if (h) kv_enqueue_ex(h, type, par1, par2, nullptr);
}

void SendEventEx(kv_handler h, int type, int par1, int par2, void *data) {
    if (h) kv_enqueue_ex(h, type, par1, par2, data);
}
