// SPDX-License-Identifier: MIT
// Tells gestures from the events of fingers. Times are those at which events are taken, which may
// be late while a page is drawn: so a long press is what the runtime says, and nothing else is
// timed but two taps.
#include "kelvane/gestures.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "ground/number.h"
#include "hw.h"
#include "kelvane/events.h"

namespace {

constexpr int usual_tap_mm = 3, usual_swipe_mm = 10, usual_double_tap_mm = 8, usual_pinch_mm = 8;
constexpr int usual_double_tap_ms = 500;

// Where a hand is: values of kv_gestures::state.
enum State {
    UP = 0,
    DOWN = 1,  // one finger, which may become anything
    SPENT = 2, // it had its gesture, or is none; until it is lifted
    PINCHING = 3,
    MOVED = 4 // one finger, which was too far away for a tap
};

int usual_or(int given, int usual) {
    return given > 0 ? given : usual;
}

int distance(int to, int from) {
    return ground::saturated(int64_t{to} - from);
}

// Millimetres in pixels of the panel.
int64_t pixels(int mm) {
    constexpr int tenth_mm_per_inch = 254, most_mm = 10000;
    return int64_t{std::min(mm, most_mm)} * 10 * std::max(device_display_dpi(), 1) /
           tenth_mm_per_inch;
}

int64_t square(int64_t n) {
    return n * n;
}

bool is_within(int64_t dx, int64_t dy, int mm) {
    const int64_t most = pixels(mm);
    return std::max(std::abs(dx), std::abs(dy)) <= most && square(dx) + square(dy) <= square(most);
}

bool is_near_start(const kv_gestures &hand, int x, int y) {
    return is_within(distance(x, hand.x), distance(y, hand.y), usual_or(hand.tap_mm, usual_tap_mm));
}

int put_down(kv_gestures &hand, int x, int y) {
    const int64_t pause_ms = hw_boottime_ms() - hand.tap_time_ms;
    if (pause_ms > usual_or(hand.double_tap_ms, usual_double_tap_ms)) hand.tap_time_ms = 0;
    hand.state = DOWN;
    hand.x = x;
    hand.y = y;
    hand.dx = hand.dy = 0;
    return GESTURE_NONE;
}

int move(kv_gestures &hand, int x, int y) {
    if (hand.state == DOWN && !is_near_start(hand, x, y)) hand.state = MOVED;
    return GESTURE_NONE;
}

int press_long(kv_gestures &hand, int x, int y) {
    if (hand.state != DOWN) return GESTURE_NONE;
    hand.state = SPENT;
    return is_near_start(hand, x, y) ? GESTURE_LONG_PRESS : GESTURE_NONE;
}

// The second of two taps counts as none: a third one begins anew.
int tap(kv_gestures &hand) {
    const bool is_second = hand.tap_time_ms != 0 &&
                           is_within(distance(hand.x, hand.tap_x), distance(hand.y, hand.tap_y),
                                     usual_or(hand.double_tap_mm, usual_double_tap_mm));
    hand.tap_time_ms = is_second ? 0 : hw_boottime_ms();
    hand.tap_x = hand.x;
    hand.tap_y = hand.y;
    return is_second ? GESTURE_DOUBLE_TAP : GESTURE_TAP;
}

int swipe(const kv_gestures &hand) {
    const int64_t across = std::abs(int64_t{hand.dx}), down = std::abs(int64_t{hand.dy});
    const int64_t least = pixels(usual_or(hand.swipe_mm, usual_swipe_mm));
    if (across >= least && across >= 2 * down)
        return hand.dx < 0 ? GESTURE_SWIPE_LEFT : GESTURE_SWIPE_RIGHT;
    if (down >= least && down >= 2 * across)
        return hand.dy < 0 ? GESTURE_SWIPE_UP : GESTURE_SWIPE_DOWN;
    return GESTURE_NONE;
}

int end_pinch(kv_gestures &hand) {
    hand.state = SPENT;
    const int by = hand.last_distance - hand.distance;
    if (std::abs(by) < pixels(usual_or(hand.pinch_mm, usual_pinch_mm))) return GESTURE_NONE;
    hand.scale = static_cast<int>(int64_t{hand.last_distance} * 100 / std::max(hand.distance, 1));
    return by < 0 ? GESTURE_PINCH_IN : GESTURE_PINCH_OUT;
}

int lift(kv_gestures &hand, int x, int y) {
    if (hand.state == PINCHING) {
        const int pinch = end_pinch(hand);
        hand.state = UP;
        return pinch;
    }
    move(hand, x, y);
    const int was = std::exchange(hand.state, UP);
    if (was != DOWN && was != MOVED) return GESTURE_NONE;
    hand.dx = distance(x, hand.x);
    hand.dy = distance(y, hand.y);
    if (was == DOWN) return tap(hand);
    hand.tap_time_ms = 0;
    return swipe(hand);
}

// The first two fingers that touch in a frame; null where there are less.
struct Fingers {
    const kv_touch *first = nullptr, *second = nullptr;
    int slots = 0; // a number for which two they are

    void add(const kv_touch &touch, int slot) {
        (first ? second : first) = &touch;
        slots = slots * 256 + slot;
    }
};

Fingers two_fingers(int frame) {
    Fingers fingers;
    for (int slot = 0; !fingers.second; ++slot) {
        const kv_touch *touch = GetTouch(frame, slot);
        if (!touch) break;
        if (touch->down != 0) fingers.add(*touch, slot);
    }
    return fingers;
}

// Two others than before are another pinch.
int touch_frame(kv_gestures &hand, int frame) {
    const Fingers fingers = two_fingers(frame);
    const bool is_same = fingers.second && fingers.slots == hand.fingers;
    if (hand.state == PINCHING && !is_same) return end_pinch(hand);
    if (!fingers.second) return GESTURE_NONE;
    const kv_touch &first = *fingers.first, &second = *fingers.second;
    hand.last_distance =
        static_cast<int>(std::lround(std::hypot(first.x - second.x, first.y - second.y)));
    if (hand.state == PINCHING) return GESTURE_NONE;
    hand.state = PINCHING;
    hand.fingers = fingers.slots;
    hand.distance = hand.last_distance;
    hand.x = (first.x + second.x) / 2;
    hand.y = (first.y + second.y) / 2;
    hand.tap_time_ms = 0;
    return GESTURE_NONE;
}

int let_go(kv_gestures &hand) {
    hand.state = UP;
    return GESTURE_NONE;
}

int forget(kv_gestures &hand) {
    hand.tap_time_ms = 0;
    return let_go(hand);
}

} // namespace

int RecogniseGesture(kv_gestures *hand, int type, int par1, int par2) {
    if (!hand) return GESTURE_NONE;
    switch (type) {
    case EVT_POINTERDOWN:
        return put_down(*hand, par1, par2);
    case EVT_POINTERMOVE:
    case EVT_POINTERDRAG:
        return move(*hand, par1, par2);
    case EVT_POINTERLONG:
        return press_long(*hand, par1, par2);
    case EVT_POINTERUP:
        return lift(*hand, par1, par2);
    case EVT_MTSYNC:
        return touch_frame(*hand, par1);
    case EVT_SHOW: // perhaps by a tap, which may be the first of two
        return let_go(*hand);
    case EVT_HIDE:
    case EVT_RESTORE:
        return forget(*hand);
    default:
        return GESTURE_NONE;
    }
}
