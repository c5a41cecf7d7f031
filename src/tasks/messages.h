// SPDX-License-Identifier: MIT
// Who hears what other tasks send to this one.
#pragma once

namespace tasks {

// What the listener of a request answers; -1 without one.
int answer_request(int request, void *data, int size, int sender);
// Hands a message to the message handler, if there is one.
void take_message(int request, void *data, int size, int sender);
// Forgets every listener and the handler.
void reset();

} // namespace tasks
