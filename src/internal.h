// SPDX-License-Identifier: MIT
// The runtime record and the few names that every area shares. Not installed.
//
// kvstate is the only global state that areas share. It is plain data, written by the area that a
// field is about and by the lifecycle, which clears it when the screen closes. Everything runs on
// the application's thread, except that SendEvent may add to the event ring (under its mutex) and
// a signal may set `exiting`.
#pragma once

#include <csignal>
#include <cstdint>
#include <sys/types.h>

#include "kelvane/canvas.h"
#include "kelvane/events.h"
#include "kelvane/timers.h"

struct iconfig_s;
struct ifont_s;
struct ihash_s;

// One entry of the application event queue.
struct ievent {
    kv_handler hproc; // receives the event, whoever is current at delivery
    uint16_t type;
    uint16_t mod; // always 0
    uint16_t par1, par2;
    void *data; // of SendEventEx, otherwise null
};

// State of one touch slot; `captured` is the slot held by a scrolled area, 0 when free.
struct TouchSlot {
    int captured;
};

inline constexpr int event_ring_slots = 64;
inline constexpr int touch_slots = 3;

// Bits of kv_state::uiflags.
enum : int {
    UI_PLAYER_OPEN = 0x1,
    UI_MODAL_MASK = 0xE, // a modal component is open
    UI_DIALOG_OPEN = 0x4,
    UI_KEYBOARD_OPEN = 0x10,
    UI_PANEL_IGNORES_POINTER = UI_KEYBOARD_OPEN,
    UI_QUICK_NAVIGATOR = 0x20,
    UI_NO_EXIT_HOURGLASS = 0x40,
    UI_EXTERNAL = 0x200, // the library must not end the process
    UI_OPENED = 0x400
};

// Values of kv_state::exiting.
enum : int { RUNNING = 0, EXIT_REQUESTED = 1, EXIT_BY_SIGNAL = 2 };

struct kv_state {
    int isopen;
    char theme[64], lang[16], kbdlang[16];
    uint8_t pwract1, pwract2; // power key: short press, double press
    uint8_t timeformat, gsense, showclock, reserved1, keylock, demo, antialiasing, uiquery,
        canbedefaultfont, reserved2;
    pid_t pid; // the process that opened the screen
    kv_handler hproc, mainhproc;
    icanvas *framebuffer, *canvas; // the screen, and the canvas being drawn on
    int orientation;
    iconfig_s *cfg; // the global configuration

    // Owned by text.
    void *ftlibrary;
    ihash_s *fonthash;
    ifont_s *current_font;
    void *current_face;
    int current_color, current_aa;
    void *cw_cache, *kerning_cache, *glyph_cache;
    char font[128], fontb[128], fonti[128], fontbi[128];

    int keylocktm, powerofftm; // ms
    int allowkeyup;            // a press was delivered, its release may be
    int currentkey, keyrepeats;
    int initialized; // between the delivery of EVT_INIT and EVT_EXIT
    volatile std::sig_atomic_t exiting;
    int usbmode, uiflags, taskid, needupdate, poweroffenable, sleepenable;
    int64_t waketime, sleeptime, measuretime; // boot clock ms

    itimer *timers; // owned by timers
    int ntimers;
    ievent *events; // owned by the queue, under its mutex
    int evtstart, evtend;
    int keytime1, keytime2; // ms
    int msgtop, ptrx, ptry;

    char **fontlist;
    int fontcount;
    TouchSlot *tsc; // touch_slots entries
    void *current_zface;
    unsigned touchdragdeadzone; // compared with a squared distance
    int panel_position;         // 1: the status panel is at the top
    int64_t adjtime_ts;
    char locale[16];
    int audio_app_type;
};

extern kv_state kvstate;
