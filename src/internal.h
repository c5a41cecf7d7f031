// SPDX-License-Identifier: MIT
// The runtime record and the few names that every area shares. Not installed.
//
// kvstate is the only global state that areas share. It is plain data. The queue clears all of it
// when the screen closes; apart from that each field is written by the areas that its comment
// names. Everything runs on the application's thread, except that SendEvent may add to the event
// ring (under its mutex) and a signal may set `exiting`.
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
    int isopen; // lifecycle

    // lifecycle, from the settings
    char theme[64], lang[16], kbdlang[16];
    uint8_t pwract1, pwract2; // power key: short press, double press
    uint8_t timeformat;
    uint8_t gsense; // lifecycle, from the device
    uint8_t showclock, reserved1, keylock;
    uint8_t demo; // nobody
    uint8_t antialiasing;
    uint8_t uiquery;                     // runtime
    uint8_t canbedefaultfont, reserved2; // nobody

    pid_t pid;            // lifecycle: the process that opened the screen
    kv_handler hproc;     // runtime; lifecycle at a start
    kv_handler mainhproc; // lifecycle
    icanvas *framebuffer; // lifecycle: the screen. Drawing on it changes its clip
    icanvas *canvas;      // raster: the canvas being drawn on; lifecycle at a start
    int orientation;      // runtime
    iconfig_s *cfg;       // lifecycle: the global configuration

    // text
    void *ftlibrary;
    ihash_s *fonthash;
    ifont_s *current_font;
    void *current_face;
    int current_color, current_aa;
    void *cw_cache, *kerning_cache, *glyph_cache;
    char font[128], fontb[128], fonti[128], fontbi[128]; // lifecycle, from the settings

    int keylocktm, powerofftm;  // ms; lifecycle, from the settings
    int allowkeyup;             // runtime; lifecycle at a start. A press was delivered, its release
                                // may be
    int currentkey, keyrepeats; // runtime
    int initialized;            // runtime when EVT_INIT is delivered; lifecycle clears it
    volatile std::sig_atomic_t exiting; // lifecycle
    int usbmode;                        // lifecycle, from the settings
    int uiflags;                        // runtime, through interface_flags.h
    int taskid;                         // runtime; -1 when this process is no task
    int needupdate;                     // runtime
    int poweroffenable, sleepenable;    // runtime; lifecycle at a start and at the end
    int64_t waketime;                   // runtime; boot clock ms, as the next two
    int64_t sleeptime;                  // runtime; lifecycle at a start
    int64_t measuretime;                // nobody

    // runtime
    itimer *timers;
    int ntimers;
    ievent *events; // under the mutex of the queue
    int evtstart, evtend;
    int keytime1, keytime2; // ms, through handlers.h
    int msgtop;             // lifecycle; keyboard while one is open
    int ptrx, ptry;

    char **fontlist; // text
    int fontcount;
    TouchSlot *tsc;             // touch_slots entries: runtime; lifecycle makes them
    void *current_zface;        // text
    unsigned touchdragdeadzone; // lifecycle; compared with a squared distance
    int panel_position;         // lifecycle, from the theme. 1: the status panel is at the top
    int64_t adjtime_ts;         // nobody
    char locale[16];            // lang
    int audio_app_type;         // nobody
};

extern kv_state kvstate;
