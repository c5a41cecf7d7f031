// SPDX-License-Identifier: MIT
// The loop: one step at a time.
#pragma once

// Forgets how an earlier loop ended, and when the device was used last.
void reset_loop();
// Somebody is using the device at this moment.
void note_activity();
// The handler is hidden by the end of its loop, unless a signal ended it.
void hide_current_handler();
