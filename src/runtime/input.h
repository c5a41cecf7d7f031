// SPDX-License-Identifier: MIT
// From raw device events to application events.
#pragma once

struct hw_event_s;

// Translates one raw event and queues what comes of it.
void translate_event(const hw_event_s &event);

// Keys.
void key_input(int type, int raw_key);
void stop_key_repeat();

// Pointer and multi-touch.
void pointer_event(const hw_event_s &event);
void pointer_hold_event(const hw_event_s &event);
void touch_sync(int count);
void pointer_reset();
