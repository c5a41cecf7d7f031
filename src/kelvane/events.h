/* SPDX-License-Identifier: MIT */
/**
 * @file events.h
 * The life of an application: entry, events, handlers, keys, pointer, power and exit.
 */
#ifndef KELVANE_EVENTS_H
#define KELVANE_EVENTS_H

#include "api.h"

KELVANE_BEGIN_DECLS

/**
 * The event handler of an application or of a component.
 * @param type an EVT_* code
 * @param par1,par2 what the event carries; both travel as unsigned 16-bit numbers
 * @return non-zero when handled: the library's default action for the event is then left out
 */
typedef int (*kv_handler)(int type, int par1, int par2);

/** Event codes. The comment gives par1 / par2. */
enum {
    EVT_INIT = 21,          /**< 0 / 0: the first event of the main handler */
    EVT_EXIT = 22,          /**< 0 / 0: the application ends; called directly, never queued */
    EVT_SHOW = 23,          /**< 0 / 0: the handler became current: draw everything */
    EVT_HIDE = 24,          /**< 0 / 0: the handler stops being current */
    EVT_KEYPRESS = 25,      /**< key / 0 */
    EVT_KEYRELEASE = 26,    /**< key / number of repeats seen; only after its press */
    EVT_KEYREPEAT = 28,     /**< key / repeat count from 1 */
    EVT_POINTERUP = 29,     /**< x / y */
    EVT_POINTERDOWN = 30,   /**< x / y */
    EVT_POINTERMOVE = 31,   /**< x / y: moved while pressed */
    EVT_ORIENTATION = 32,   /**< new position 0..3 / 0: the device was turned */
    EVT_POINTERLONG = 34,   /**< x / y: held for 350 ms */
    EVT_POINTERHOLD = 35,   /**< x / y */
    EVT_RESTORE = 38,       /**< 0 / 0: became current by kv_seteventhandler(): draw */
    EVT_MTSYNC = 39,        /**< touch index / count: a multi-touch frame ended, see GetTouch() */
    EVT_POINTERDRAG = 44,   /**< x / y: moved beyond the dead zone */
    EVT_FOREGROUND = 151,   /**< 0 / 0: the application came to the foreground */
    EVT_BACKGROUND = 152,   /**< 0 / 0: the application went to the background */
    EVT_SDIN = 161,         /**< 0 / 0: a memory card was put in */
    EVT_SDOUT = 162,        /**< 0 / 0: the memory card was taken out */
    EVT_AVRCP_COMMAND = 264 /**< command / value: a media remote control, see AVRCP_* */
};

/** par1 of EVT_AVRCP_COMMAND. */
enum {
    AVRCP_NEXT = 0,
    AVRCP_PREVIOUS = 1,
    AVRCP_PAUSE = 2,
    AVRCP_PLAY_PAUSE = 3,
    AVRCP_STOP = 4,
    AVRCP_PLAY = 5,
    AVRCP_SET_VOLUME = 6 /**< par2: the volume, 0 to 100 */
};

/** Key codes. */
enum {
    KEY_POWER = 1,
    KEY_AUX6 = 6,
    KEY_AUX7 = 7,
    KEY_AUX8 = 8,
    KEY_OK = 10,
    KEY_UP = 17,
    KEY_DOWN = 18,
    KEY_LEFT = 19,
    KEY_RIGHT = 20,
    KEY_MINUS = 21,
    KEY_PLUS = 22,
    KEY_MENU = 23,
    KEY_PREV = 24,
    KEY_NEXT = 25,
    KEY_HOME = 26,
    KEY_BACK = 27,
    KEY_PREV2 = 28,
    KEY_NEXT2 = 29,
    KEY_MUSIC = 30
};

/** What one step of the loop says about the next. */
typedef enum KELVANE_LOOP_E {
    KELVANE_CONTINUE = 0, /**< go on */
    KELVANE_OUT_LOOP = 1, /**< the application is exiting */
    KELVANE_RETURN = 2    /**< LeaveKelvaneMain() was called */
} KELVANE_LOOP;

/** One finger in one multi-touch frame. */
typedef struct kv_touch_s {
    int down;          /**< 1 while the finger touches */
    int x, y;          /**< where, in pixels of the screen canvas */
    int pressure;      /**< as the device says; without one 255 while down, 0 when lifted */
    int devtype;       /**< kind of the touching device as the panel reports it */
    long long time_ms; /**< boot clock of the report */
} kv_touch;

/** @name Entry
 * @{ */

/**
 * Runs an application: opens the screen, queues EVT_INIT and EVT_SHOW to @p h and runs the loop.
 * When the application ends (CloseApp(), the window, a signal) the process ends with status 0
 * inside this call; it returns only after LeaveKelvaneMain(), after OpenScreenExt(), or when the
 * screen cannot be opened, which is said on standard error.
 * @param h the main handler; null runs the loop without one
 */
KELVANE_API void KelvaneMain(kv_handler h);

/** Opens the screen. @return 1, also when it is open already; 0 when there is no device */
KELVANE_API int OpenScreen(void);

/**
 * Like OpenScreen(), but the application ends the process, not the library. Only when the user
 * closes the device window does the process end at once, with status 0, after EVT_EXIT.
 */
KELVANE_API int OpenScreenExt(void);

/**
 * For programs with a loop of their own: keeps @p flags for the task registration and opens the
 * screen like OpenScreenExt().
 */
KELVANE_API void InitKelvane(int flags);

/** Everything KelvaneMain() does before its loop. Continue with ProcessEventLoop(). */
KELVANE_API void PrepareForLoop(kv_handler h);

/**
 * One step of the loop for applications that own it: delivers what is queued, runs due timers and
 * takes one event from the device; with nothing to do it pauses for up to 20 ms,
 * or for longer on a device that sleeps.
 * @return whether to go on; call ClearOnExit() after KELVANE_OUT_LOOP
 */
KELVANE_API KELVANE_LOOP ProcessEventLoop(void);

/**
 * Delivers what is queued and takes at most one event from the device. Never pauses, runs no timers
 * and hears nothing of other tasks, so a long computation may call it to stay responsive.
 * @return whether to go on
 */
KELVANE_API KELVANE_LOOP ProcessEventLoopQuick(void);

/** The same as ProcessEventLoop(). */
KELVANE_API KELVANE_LOOP kv_process_event_loop(void);

/** The same as ProcessEventLoopQuick(). */
KELVANE_API KELVANE_LOOP kv_process_event_loop_quick(void);

/**
 * Everything KelvaneMain() does after its loop: hides the handler unless a signal ended the loop,
 * sends EVT_EXIT to the main handler and closes the device. Unless the screen was opened with
 * OpenScreenExt() or InitKelvane(), the process ends here with status 0.
 */
KELVANE_API void ClearOnExit(void);

/**
 * Makes the next step of the loop send EVT_HIDE to the current handler, unless a signal came, and
 * KelvaneMain() return. The screen stays open and the handlers stay: KelvaneMain() may be called
 * again, which queues EVT_INIT and EVT_SHOW anew; EVT_EXIT comes with ClearOnExit() or the end of
 * the process. Starting a loop forgets an earlier call.
 */
KELVANE_API void LeaveKelvaneMain(void);

/** No hourglass is shown when the application ends. */
KELVANE_API void DisableExitHourglass(void);

/** Asks the application to end; the loop notices after the current handler returns. */
KELVANE_API void CloseApp(void);
/** @} */

/** @name Handlers
 * @{ */

/**
 * Makes @p h the current handler: EVT_HIDE is queued to the old one and EVT_SHOW to @p h. A key
 * that is held gives no release to the new handler, and the key rate returns to its default.
 * @param h null leaves no handler
 * @return the old handler
 */
KELVANE_API kv_handler SetEventHandler(kv_handler h);

/** The same as kv_seteventhandler(). */
KELVANE_API kv_handler SetEventHandlerEx(kv_handler h);

/**
 * Makes @p h current the way modal components do: the old handler hears nothing, and EVT_RESTORE
 * is queued to @p h, the first time as well as when it is put back. @return the old handler, to be
 * given to kv_restoreeventhandler()
 */
KELVANE_API kv_handler kv_seteventhandler(kv_handler h);

/**
 * kv_seteventhandler(@p h) and then the key rate (@p t1, @p t2) when both exceed 99 ms, otherwise
 * the default of 1000 and 500 ms.
 */
KELVANE_API void kv_restoreeventhandler(kv_handler h, int t1, int t2);

/** The current handler, or null. */
KELVANE_API kv_handler GetEventHandler(void);
/** @} */

/** @name Events
 * @{ */

/**
 * Queues an event. May be called from any thread. The queue holds 63 events; one more is dropped.
 * @param h who gets it, whatever handler is current at delivery; null does nothing
 * @param type,par1,par2 cut to unsigned 16-bit numbers
 */
KELVANE_API void SendEvent(kv_handler h, int type, int par1, int par2);

/** SendEvent() with a pointer that GetCurrentEventExData() gives back during delivery. */
KELVANE_API void SendEventEx(kv_handler h, int type, int par1, int par2, void *data);

/**
 * SendEvent() that also queues for a null handler: nobody is called then, and the library's
 * default action for the event runs.
 */
KELVANE_API void kv_enqueue(kv_handler h, int type, int par1, int par2);

/** kv_enqueue() with a pointer, as SendEventEx() has it. */
KELVANE_API void kv_enqueue_ex(kv_handler h, int type, int par1, int par2, void *data);

/** The pointer of the event being delivered; null outside delivery and for plain events. */
KELVANE_API void *GetCurrentEventExData(void);

/** Drops the device events that are waiting; queued application events stay. */
KELVANE_API void FlushEvents(void);

/**
 * Whether something is waiting. While the queue holds events in plain order the answer is 1 at
 * once; otherwise the device is asked, and an event it had is taken into the queue.
 */
KELVANE_API int IsAnyEvents(void);

/** The name of an event code, such as "EVT_KEYPRESS"; "EVT_UNKNOWN" for any other number. */
KELVANE_API const char *evt2str(int code);
/** @} */

/** @name Keys and pointer
 * @{ */

/** Milliseconds before the first key repeat (@p t1) and between repeats (@p t2). */
KELVANE_API void SetKeyboardRate(int t1, int t2);

/** The code that the device key @p key means in the present orientation. */
KELVANE_API int kv_transform_key(int key);

/** Queues EVT_POINTERLONG at the place where the pointer last went down or was dragged to. */
KELVANE_API void GenerateLongPress(void);

/**
 * One finger of a multi-touch frame.
 * @param index par1 of EVT_MTSYNC; the last 16 frames are kept
 * @param slot the finger, 0 to 2
 * @return the library's record, valid until 16 more frames came; null when there is none
 */
KELVANE_API const kv_touch *GetTouch(int index, int slot);
/** @} */

/** @name Screen
 * @{ */

/** Width of the screen in pixels in the present orientation; 0 before the screen is open. */
KELVANE_API int ScreenWidth(void);

/** Height of the screen in pixels in the present orientation; 0 before the screen is open. */
KELVANE_API int ScreenHeight(void);

/** How the screen is turned: 0 upright, 1 by 90 degrees, 2 by 270, 3 by 180. */
KELVANE_API int GetOrientation(void);

/**
 * Turns the screen. The screen canvas swaps its sides where needed and its clip is opened; what
 * was drawn is not turned, so draw everything anew.
 * @param orientation 0 to 3; anything else is ignored
 */
KELVANE_API void SetOrientation(int orientation);
/** @} */

/** @name Power
 * @{ */

/** Whether the device switches itself off after the time set in the settings. */
KELVANE_API void SetAutoPowerOff(int enable);

/** Asks the device to switch off. */
KELVANE_API void PowerOff(void);
/** @} */

/** @name Foreground, background and the system monitor
 * @{ */

/** Brings the runtime back to work after the application came to the foreground. */
KELVANE_API void kv_foreground_event(void);

/** Stops the inactivity timers while the application is in the background. */
KELVANE_API void kv_background_event(void);

/**
 * Sends a request to the system monitor.
 * @param cmd,param the request and its number parameter
 * @param data sent, and overwritten by the answer; may be null when both sizes are 0
 * @param insize,outsize bytes sent, and room for the answer
 * @return the monitor's answer; 0 for requests that this build does not serve
 */
KELVANE_API int kv_ipc_request(int cmd, int param, unsigned char *data, int insize, int outsize);

/** kv_ipc_request() that waits for at most @p timeout_ms. */
KELVANE_API int kv_ipc_request_with_timeout(int cmd, int param, unsigned char *data, int insize,
                                            int outsize, int timeout_ms);

/** kv_ipc_request() over the protected channel. */
KELVANE_API int kv_ipc_request_secure(int cmd, int param, unsigned char *data, int insize,
                                      int outsize);

/** Tells the monitor that this application has started. */
KELVANE_API void SignalTaskStarted(void);
/** @} */

KELVANE_END_DECLS

#endif
