// SPDX-License-Identifier: MIT
// From the queue to the handlers, and what happens to events that nobody handles.
#pragma once

struct ievent;

// Delivers queued events for at most 50 ms; what is left waits for the next step.
void handle_pending_events();
// Delivers what is queued by now, however long that takes.
void deliver_queued_events();

// Calls an event's handler, and acts when it did not.
void deliver_event(const ievent &event);
// The library's own action for a delivered event; `handled` is what its handler answered.
void default_action(const ievent &event, int handled);
