/* SPDX-License-Identifier: MIT */
/**
 * @file hw.h
 * The device layer: the flat set of operations through which the library reaches its device.
 *
 * Two devices stand behind it, the GTK+ 2 window and the headless device, chosen when hw_init()
 * runs. Applications rarely need this header; ports and tests do. Operations without a comment of
 * their own answer with the fixed values of the emulated device (see docs/device.md).
 */
#ifndef KELVANE_HW_H
#define KELVANE_HW_H

#include <stddef.h>
#include <stdint.h>
#include <sys/time.h>

#include "kelvane/api.h"
#include "kelvane/canvas.h"

KELVANE_BEGIN_DECLS

/** The pointer form of a raw event. It shares its first words with the common form. */
typedef struct hw_event_data_pointer_s {
    int id;       /**< touch slot */
    int x, y;     /**< panel pixels, not turned */
    int pressure; /**< 0 when the device gives none */
    int devtype;
} hw_event_data_pointer;

/** A raw device event. */
typedef struct hw_event_s {
    int type;
    union {
        struct {
            int mod, par1, par2;
        } common;
        hw_event_data_pointer pointer;
    } data;
    struct timeval time;
} hw_event;

/** @name Life
 * @{ */
/**
 * Chooses and opens the device, reads the display mode and makes the framebuffer.
 * @return 1; 0 when the device cannot be opened (no display, for the window)
 */
KELVANE_API int hw_init(void);
/** Closes the device and frees the framebuffer. */
KELVANE_API void hw_close(void);
/** Shared memory of the framebuffers; there is none here. @return 0 */
KELVANE_API int hw_init_shm(void);
/** @} */

/** @name Screen
 * @{ */
/** The framebuffer's canvas, valid until hw_close(). */
KELVANE_API icanvas *hw_getframebuffer(void);
/** Size of the framebuffer as opened, not turned. Null pointers are left out. */
KELVANE_API void hw_displaysize(int *w, int *h);
/** The panel's grey depth in bits: 4 on the default device. */
KELVANE_API int hw_depth(void);
/** The panel's grey depth in high-quality updates. */
KELVANE_API int hw_depth_hq(void);
/** Turns the framebuffer: 0 upright, 1 by 90 degrees, 2 by 270, 3 by 180. */
KELVANE_API void hw_set_fb_orientation(int orientation);
/** The orientation set last. */
KELVANE_API int hw_get_fb_orientation(void);
/**
 * Shows an area of the framebuffer: twice for the flashing modes 230 and 231, once otherwise.
 * @return 1; 0 when x or y is negative, and nothing is shown
 */
KELVANE_API int hw_update(int x, int y, int w, int h, int mode);
/** Shows the whole framebuffer twice. */
KELVANE_API int hw_fullupdate(void);
/** hw_fullupdate() in the panel's best quality. */
KELVANE_API int hw_fullupdate_hq(void);
/** Waits 100 ms and shows the whole framebuffer once. */
KELVANE_API int hw_refine16(void);
/** 1 when hw_refine16() has an effect. */
KELVANE_API int hw_capable16(void);
KELVANE_API void hw_override_update(int mode);
/** Says how the next update runs: 0 normal, 1 partial, 2 dynamic. @return the old value */
KELVANE_API int hw_switch_dynamic(int dynamic);
KELVANE_API void hw_suspend_display(void);
KELVANE_API void hw_resume_display(void);
KELVANE_API int hw_einkversion(void);
/** Returns when the panel is idle. */
KELVANE_API void hw_wait_luts_complete(void);
/** 1 while the panel still shows an update. */
KELVANE_API int hw_update_busy(void);
KELVANE_API int hw_writelogo(int permanent);
KELVANE_API int hw_restorelogo(void);
/** @} */

/** @name Input
 * @{ */
/** Takes one raw event. Lets the device work. @return 1 when @p event was filled, else 0 */
KELVANE_API int hw_nextevent(hw_event *event);
/** 1 while the key with code @p key is held. */
KELVANE_API int hw_keystate(int key);
/** The code of a key mask (1 << bit of the key table); 0 for any other mask. */
KELVANE_API int kv_key(int mask);
/** @} */

/** @name Time and pauses
 * @{ */
/** Wall clock. */
KELVANE_API void hw_gettime(struct timeval *tv);
/** Boot clock in seconds. */
KELVANE_API long long hw_boottime(void);
/** Boot clock in milliseconds. */
KELVANE_API long long hw_boottime_ms(void);
/** The same clock as hw_boottime_ms(), under its older name. */
KELVANE_API long long hw_timeinms(void);
/** Lets @p us microseconds pass, or fewer when input arrives. */
KELVANE_API void hw_pause(long long us);
/**
 * Suspends the device for up to @p ms, or until input arrives.
 * @param deep 1 allows the deepest sleep
 * @return 1 when it slept; 0 when it refuses, as the window always does
 */
KELVANE_API int hw_sleep(int ms, int deep);
/** @} */

KELVANE_END_DECLS

#endif
