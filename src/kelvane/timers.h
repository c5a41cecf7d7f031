/* SPDX-License-Identifier: MIT */
/**
 * @file timers.h
 * One-shot timers that call a function from the event loop, on the application's thread.
 *
 * A timer is known by its function and context together; its name is a label for logs and for
 * ClearTimerByName(). Setting a timer that is pending replaces it. A hard timer keeps the device
 * awake until it fires; a weak one fires only when the device is awake anyway. A timer is free
 * before its function runs, so the function may set it again. Timers due in one pass of the loop
 * fire in the order of their slots, not of their times.
 */
#ifndef KELVANE_TIMERS_H
#define KELVANE_TIMERS_H

#include "api.h"

KELVANE_BEGIN_DECLS

/** Called when the timer is due, with the context it was set with. */
typedef void (*kv_timerproc)(void *context);

/** One slot of the timer table. */
typedef struct itimer_s {
    kv_timerproc tp;         /**< the function; null marks a free slot */
    int weak;                /**< 1 for a weak timer */
    long long extime;        /**< due, in ms of the boot clock; 0 when cleared */
    char name[32];           /**< at most 31 characters, zero-filled */
    void *context;           /**< given to tp */
    long long lastchecktime; /**< boot clock of the last check */
} itimer;

/**
 * Sets a timer.
 * @param name label, cut to 31 characters; null is the empty name
 * @param proc what to call; null does nothing
 * @param ms from now; a negative time is due at once
 */
KELVANE_API void SetHardTimer(const char *name, kv_timerproc proc, int ms);
/** SetHardTimer() with a context that is given to @p proc. */
KELVANE_API void SetHardTimerEx(const char *name, kv_timerproc proc, void *context, int ms);
/** SetHardTimer() for a weak timer. */
KELVANE_API void SetWeakTimer(const char *name, kv_timerproc proc, int ms);
/** SetHardTimerEx() for a weak timer. */
KELVANE_API void SetWeakTimerEx(const char *name, kv_timerproc proc, void *context, int ms);
/** The call behind the four above. */
KELVANE_API void kv_settimer(const char *name, kv_timerproc proc, int ms, int weak, void *context);

/** Clears the timer of @p proc that has no context; nothing when there is none. */
KELVANE_API void ClearTimer(kv_timerproc proc);
/** Clears the timer of @p proc with @p context; nothing when there is none. */
KELVANE_API void ClearTimerEx(kv_timerproc proc, void *context);
/** The same as ClearTimerEx(). */
KELVANE_API void kv_cleartimer(kv_timerproc proc, void *context);

/**
 * Clears the first slot that carries @p name. A slot keeps its name after its timer fired or was
 * cleared, and such a dead slot is found first: a live timer of the same name behind it stays.
 */
KELVANE_API void ClearTimerByName(const char *name);

/** When the timer of @p proc without context is due, in ms of the boot clock; 0 when not set. */
KELVANE_API long long QueryTimer(kv_timerproc proc);
/** When the timer of @p proc with @p context is due; 0 when not set. */
KELVANE_API long long QueryTimerEx(kv_timerproc proc, void *context);
/** The same as QueryTimerEx(). */
KELVANE_API long long kv_querytimer(kv_timerproc proc, void *context);

/** Runs every timer that is due now or within 1 ms. The loop calls this at each step. */
KELVANE_API void kv_process_timers(void);

/** When the first hard timer is due; 999999999 ms from now when none is pending. */
KELVANE_API long long kv_get_first_timer(void);

/** Moves a timer along with a clock that was set back, and notes @p now as its last check. */
KELVANE_API void kv_validate_timer_state(itimer *timer, long long now);

KELVANE_END_DECLS

#endif
