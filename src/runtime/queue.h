// SPDX-License-Identifier: MIT
// The application event queue: a ring of event_ring_slots entries in kvstate, guarded by one mutex
// that is held only while an entry is added or taken. Entries are added from any thread and taken
// on the application's thread. A full ring drops what is added.
#pragma once

#include "internal.h"

void queue_open();
void queue_close();
bool queue_is_empty();
// Nothing can be added; also while there is no queue.
bool queue_is_full();
// True while the ring holds entries that have not wrapped around its end.
bool queue_has_plain_run();
int queue_size();
// How many entries wait for a handler.
int queue_count(kv_handler h);
// Whether an event of this type is among them.
bool queue_holds(kv_handler h, int type);
// Moves the oldest entry to `entry`; false when there is none.
bool queue_take(ievent &entry);
// Clears kvstate while no other thread is adding an event.
void clear_runtime_record();
