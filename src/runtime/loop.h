// SPDX-License-Identifier: MIT
// The loop: one step at a time.
#pragma once

// Forgets how an earlier loop ended.
void loop_start();
// The handler is hidden by the end of its loop, unless a signal ended it.
void hide_current_handler();
