/* SPDX-License-Identifier: MIT */
/**
 * @file gestures.h
 * What a hand means: taps, double taps, swipes, pinches and long presses, told from the events of a
 * handler. An addition; a handler that does without sees its events as ever.
 *
 *     static kv_gestures hand;
 *     static int handler(int type, int par1, int par2) {
 *         switch (RecogniseGesture(&hand, type, par1, par2)) {
 *         case GESTURE_SWIPE_LEFT: next_page(); return 1;
 *         case GESTURE_TAP: tapped(hand.x, hand.y); return 1;
 *         }
 *         ...
 */
#ifndef KELVANE_GESTURES_H
#define KELVANE_GESTURES_H

#include "api.h"

KELVANE_BEGIN_DECLS

/** What RecogniseGesture() answers. */
enum {
    GESTURE_NONE = 0,       /**< nothing yet, or nothing that has a name */
    GESTURE_TAP = 1,        /**< also the first tap of two: it does not wait for a second one */
    GESTURE_DOUBLE_TAP = 2, /**< in place of the second tap at one place */
    GESTURE_LONG_PRESS = 3, /**< while the finger is still down; no tap follows */
    GESTURE_SWIPE_LEFT = 4, /**< the finger moved to the left and was lifted; ... */
    GESTURE_SWIPE_RIGHT = 5,
    GESTURE_SWIPE_UP = 6,
    GESTURE_SWIPE_DOWN = 7,
    GESTURE_PINCH_IN = 8, /**< two fingers moved towards each other, and one was lifted */
    GESTURE_PINCH_OUT = 9 /**< two fingers moved apart */
};

/** A hand: all zeroes at the beginning. Thresholds may be set at any time; 0 stands for the usual.
 */
typedef struct kv_gestures_s {
    int tap_mm;        /**< how far the finger of a tap may be from where it came down: 3 */
    int swipe_mm;      /**< how far that of a swipe does at least: 10 */
    int double_tap_mm; /**< how far two taps may be from each other: 8 */
    int double_tap_ms; /**< how long the second finger may take to come down: 500 */
    int pinch_mm;      /**< by how much the distance of two fingers changes at least: 8 */

    /* What the last gesture was. */
    int x, y;   /**< where the finger came down; of a pinch the middle between the fingers then */
    int dx, dy; /**< how far it moved until it was lifted */
    int scale;  /**< of a pinch: the distance at the end in percent of that at the beginning */

    /* The recogniser's own. */
    int state;
    int distance, last_distance, fingers;
    int tap_x, tap_y;
    long long tap_time_ms;
} kv_gestures;

/**
 * Takes the next event of a handler; all of them may be given, others than those of fingers are
 * passed over. A handler that becomes current, or is shown anew, starts with no finger down; a tap
 * that made it show itself anew may still be the first of two.
 *
 * Distances are those of the panel: millimetres at its dots an inch. A swipe is at least twice as
 * long in its direction as across. Pinches need a panel with several touches
 * (device_touchpanel() above 2); while two fingers are down nothing else is recognised. Of three
 * fingers the first two count: when others are the first two, that is another pinch.
 * @param hand keeps what is between two events; null answers #GESTURE_NONE
 * @return a GESTURE_ code; what it says more is in @p hand
 */
KELVANE_API int RecogniseGesture(kv_gestures *hand, int type, int par1, int par2);

KELVANE_END_DECLS

#endif
