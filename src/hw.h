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
/** @return 1 when the framebuffer lies in memory that tasks share, see docs/tasks.md; else 0 */
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
/** Replaces the mode of every update. Ignored here. */
KELVANE_API void hw_override_update(int mode);
/** Says how the next update runs: 0 normal, 1 partial, 2 dynamic. @return the old value */
KELVANE_API int hw_switch_dynamic(int dynamic);
/** Switches the panel's power off. Ignored here. */
KELVANE_API void hw_suspend_display(void);
/** Switches the panel's power on again. Ignored here. */
KELVANE_API void hw_resume_display(void);
/** Version of the panel's controller: 0 here. */
KELVANE_API int hw_einkversion(void);
/** Returns when the panel is idle. */
KELVANE_API void hw_wait_luts_complete(void);
/** 1 while the panel still shows an update. */
KELVANE_API int hw_update_busy(void);
/** Makes what is shown the picture of the switched-off device. @return 1 when kept: 0 here */
KELVANE_API int hw_writelogo(int permanent);
/** Brings the maker's picture back. @return 1 when it was: 0 here */
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
 * Suspends the device for up to @p ms, or until input arrives. Refused while a key is held.
 * @param deep 1 allows the deepest sleep
 * @return 1 when it slept; 0 when it refuses, as the window always does
 */
KELVANE_API int hw_sleep(int ms, int deep);
/** @} */

/** @name Device description
 * What hardware the device has, from one 64-bit word: the default device's, or the key "hwconfig"
 * of "./system/config/device.cfg", or the theme's. docs/device.md has the table of its fields.
 * @{ */
/** Reads the word again, from the device file or else the default, forgetting a theme's. */
KELVANE_API void init_hwconfig(void);
/** The word in effect. */
KELVANE_API uint64_t device_hwconfig(void);
/**
 * Replaces the word by the theme's string.
 * @param text parsed by fromStringToLongLong(); null, or a text that means 0, changes nothing
 */
KELVANE_API void loadHwConfigEmulator(const char *text);
/**
 * Reads a description word. White space is skipped; a leading "0x" or "0X" selects base 16; every
 * other character multiplies by the base, but only '1' to '8', and 'b' to 'e' in either case in
 * base 16, add their value: "19" is 10 and "0xff" is 0. Overflow keeps the low 64 bits.
 * @return the number; 0 for null
 */
KELVANE_API long long fromStringToLongLong(const char *text);
/** Panel kind, 1 to 8 in the table of panels; other kinds measure like 1. */
KELVANE_API int device_display(void);
/** Panel size in pixels, held upright. */
KELVANE_API int device_display_width(void);
KELVANE_API int device_display_height(void);
/** Dots an inch. */
KELVANE_API int device_display_dpi(void);
/** How the panel is mounted, an orientation 0 to 3. */
KELVANE_API int device_display_position(void);
/** 0 none, 1 finger or pen, 2 pen only, 3 and above multi-touch. */
KELVANE_API int device_touchpanel(void);
/** 0 none, 1 direction and page keys, 2 page keys only; other kinds belong to ports. */
KELVANE_API int device_keyboard(void);
/** Number of the platform; some platforms sleep and wake by rules of their own. */
KELVANE_API int device_platform(void);
/** 1 when there is a front light. */
KELVANE_API int device_has_frontlight(void);
/** 0 none, 1 one colour, 2 with colour temperature. */
KELVANE_API int device_frontlight(void);
/** 1 when there is a mobile-network modem. */
KELVANE_API int device_gsm(void);
/** 0 none, 1 headphones, 2 headphones and speaker. */
KELVANE_API int device_audio(void);
/** 1 when there is Bluetooth. */
KELVANE_API int device_bluetooth(void);
/** 1 when there is Wi-Fi. */
KELVANE_API int device_wifi(void);
/** @} */

/** @name Keys, touch panel and orientation sensor
 * @{ */
/** Tells the device that the user is active. */
KELVANE_API void hw_useraction(void);
/** Locks (non-zero) or unlocks the keys. Only the flag is kept here; keys keep arriving. */
KELVANE_API void hw_set_keylock(int locked);
/** 1 while the keys are locked. */
KELVANE_API int hw_get_keylock(void);
/** Names the keys that the system takes: bit n is the key with code n. Ignored here. */
KELVANE_API void hw_setglobalkeymask(uint32_t press, uint32_t longpress);
/** Language of an external keyboard, a two-letter code. Ignored here. */
KELVANE_API void hw_setextkbdlayout(const char *code);
/** 1 when there is a touch panel and it reports. */
KELVANE_API int hw_ts_active(void);
/** Goes back to the touch panel's factory calibration. @return 1 */
KELVANE_API int hw_ts_default(void);
/** 1 when there is a touch panel. */
KELVANE_API int hw_touchpanel_ready(void);
/** 1 when the touch panel is multi-touch. */
KELVANE_API int hw_captouch_ready(void);
/** 1 when the multi-touch panel reports. */
KELVANE_API int hw_captouch_active(void);
/** 1 when there is an orientation sensor. */
KELVANE_API int hw_gsensor_ready(void);
/** How the device is held, an orientation 0 to 3; 0 while the emulated position is not set. */
KELVANE_API int hw_read_gsensor(void);
/** The orientation read last; the emulated one does not age. */
KELVANE_API int hw_last_orientation(void);
/** Like hw_read_gsensor(). */
KELVANE_API int hw_gsensor_orientation(void);
/** Chooses how the sensor's answers are used, as the setting "gsense" does. Ignored here. */
KELVANE_API void hw_set_gsensor(int mode);
/** Switches the sensor on (non-zero) or off. @return the old state */
KELVANE_API int hw_gsensor_switch(int on);
/** 1 while the sensor is switched on. */
KELVANE_API int hw_gsensor_get_switch(void);
/** Switches the sensor's power off. Ignored here. */
KELVANE_API void hw_suspend_gsensor(void);
/** Switches the sensor's power on again. Ignored here. */
KELVANE_API void hw_resume_gsensor(void);
/** Takes the present position for level. @return 1 */
KELVANE_API int hw_calibrate_gsensor(void);
/** Turns the sensor's axes by @p quarter_turns. Ignored here. @return 1 */
KELVANE_API int hw_adjust_gsensor(int quarter_turns);
/** @} */

/** @name Power, cable and card
 * @{ */
/** Keeps the device from suspending for @p ms. Ignored here. */
KELVANE_API void hw_ban_suspend(int ms);
/** Wakes the device at @p time, in seconds of the wall clock; 0 clears. @return 0: no alarm here */
KELVANE_API int hw_setalarm(long long time);
/** Asks the system to power off. There is nothing to switch off here; it is logged. */
KELVANE_API void hw_say_poweroff(void);
/** hw_say_poweroff() with flags for the system. */
KELVANE_API void hw_say_poweroff_with_flags(int flags);
/** 1 when the system is going down: never here. */
KELVANE_API int hw_shutting_down(void);
/** Battery charge in percent: 20 for each of the emulated levels 0 to 5. */
KELVANE_API int hw_power(void);
/** Panel temperature in degrees Celsius: 25 here. */
KELVANE_API int hw_temperature(void);
/** 1 when settings are to be left aside: the number "safemode" of the device file is not 0. */
KELVANE_API int hw_safemode(void);
/** 1 while the battery is charged: the emulated cable is plugged. */
KELVANE_API int hw_ischarging(void);
/** Powers the USB port as a host. @return 0: no host port here */
KELVANE_API int hw_usbhostpower(int on);
/** 1 while the emulated USB cable is plugged. */
KELVANE_API int hw_isusbconnected(void);
/** 1 when the port works as a host: never here. */
KELVANE_API int hw_isusbhostconnected(void);
/** 1 when USB storage is attached to the port: never here. */
KELVANE_API int hw_isusbstorattached(void);
/** 1 when attached USB storage is mounted: never here. */
KELVANE_API int hw_isusbmounted(void);
/** 1 while the emulated memory card is in. */
KELVANE_API int hw_issdinserted(void);
/** 1 while the memory card can be used; the emulated one always mounts. */
KELVANE_API int hw_sd_mounted(void);
/** 1 when the device's own memory can be used: always here. */
KELVANE_API int hw_flash_mounted(void);
/** 1 when the storage mounts can be used; 0 for a while after a wake, on devices that sleep. */
KELVANE_API int hw_usbready(void);
/** Lends the storage to the host computer. @return 0: refused here */
KELVANE_API int hw_usblink(void);
/** @} */

/** @name Identity
 * Strings that the device file may set; the library keeps them for the life of the process.
 * @{ */
/** Key "serial". */
KELVANE_API const char *hw_serialnumber(void);
/** Key "waveform"; empty by default. */
KELVANE_API const char *hw_waveform_filename(void);
/** Key "model". */
KELVANE_API const char *hw_getmodel(void);
/** The modem's number, key "imei"; empty by default. */
KELVANE_API const char *hw_get3gimei(void);
/** Bluetooth address, key "btmac". */
KELVANE_API const char *hw_getbtmac(void);
/** Name of the platform, key "platform". */
KELVANE_API const char *hw_getplatform(void);
/** Network address, key "mac". */
KELVANE_API const char *hw_getmac(void);
/** Key "device_id"; the serial number by default. */
KELVANE_API const char *hw_get_device_id(void);
/** Key "card_serial"; empty while no card is in. */
KELVANE_API const char *hw_external_card_serial_number(void);
/** The owner's password: empty, there is none here. */
KELVANE_API const char *hw_password(void);
/** The protection key: empty, there is none here. */
KELVANE_API const char *hw_pkey(void);
/** Registers an application for protected content. @return 0: no registration here */
KELVANE_API int hw_registerapp(const char *appname);
/** @} */

/** @name Requests to the system monitor
 * There is no monitor here; only the requests 260 and 261 do something.
 * @{ */
/**
 * Sends a request; the reply replaces the data in @p buffer.
 *
 * Request 260 enciphers: the @p in bytes move up by 12 and "(encrypted):" is written in front.
 * Request 261 deciphers: the @p in bytes behind the first 12 move back down, or as many as the
 * buffer has. No real cipher is at work. Arguments after @p out (flags, a timeout) are for devices
 * with a monitor.
 *
 * @param buffer holds at least max(@p in, @p out) bytes
 * @param in bytes of data @param out bytes that the reply may have
 * @return bytes moved and written for 260, bytes moved for 261; 0 for every other request; 0 with
 * the buffer unchanged when the buffer is null, @p in is negative or the reply does not fit
 */
KELVANE_API int hw_ipcrequest(int cmd, int param, void *buffer, int in, int out, ...);
/** hw_ipcrequest() for secrets, which a monitor would keep out of its log. */
KELVANE_API int hw_ipcrequest_secure(int cmd, int param, void *buffer, int in, int out, ...);
/** Takes a request sent to this process. @return its size: 0, none arrives here */
KELVANE_API int hw_ipcread(void *buffer, int size);
/** Answers the request taken last. @return bytes sent: 0 here */
KELVANE_API int hw_ipcreply(const void *buffer, int size);
/** Has the system show a message. @return 0: not shown here */
KELVANE_API int hw_winmessage(int icon, const char *title, const char *text, int timeout_ms);
/** Forgets a pending question of the system's user interface. */
KELVANE_API void hw_uiclear(void);
/** The pending question's number: 0, there is none here. */
KELVANE_API int hw_uiquery(void);
/** Answers the pending question. */
KELVANE_API void hw_uiresponse(int answer);
/** @} */

/** @name Tasks
 * Several applications side by side on one device: docs/tasks.md tells how. Without a task manager
 * nothing is changed and the answer is the one in brackets. Texts that are null count as empty;
 * numbers that a call hands out through a null pointer are left out.
 * @{ */
struct ibitmap_s;
struct itaskinfo_s;
/** @return 1 with a task manager. It is looked for once in the life of a process [0] */
KELVANE_API int hw_task_supported(void);
/** Makes this process a task when it is none yet: its message queue is open from then on. */
KELVANE_API void hw_task_initmqueue(void);
/** Hands on what has arrived, see hw_seam.h. @return messages handled [0] */
KELVANE_API int hw_task_checkmessages(void);
/** @return this task's number; -1 when this process is no task [-1] */
KELVANE_API int hw_task_current(void);
/**
 * Makes this process a task, as which the program that it executes goes on. Scripts, traces and the
 * like that the environment names belong to one process: they are not handed on.
 * @return its number, from 1; -1 on failure [-1]
 */
KELVANE_API int hw_task_register(const char *appname, const char *name,
                                 const struct ibitmap_s *icon, int flags);
/** @return the number of a new subtask of this task; -1 on failure [-1] */
KELVANE_API int hw_task_newsubtask(const char *name);
/** Fills @p list with up to @p size task numbers, the one used last first. @return tasks [0] */
KELVANE_API int hw_task_list(int *list, int size);
/** What is known about a task, until the next call. @return null for an unknown task [null] */
KELVANE_API const struct itaskinfo_s *hw_task_info(int task);
/** @return 1 when a task has the book open, else 0 and both numbers are -1 [0] */
KELVANE_API int hw_task_findbybook(const char *book, int *task, int *subtask);
/** @return the number of a task with this application name; -1 without one [-1] */
KELVANE_API int hw_task_findbyappname(const char *appname);
/** @return 1 when set [0] */
KELVANE_API int hw_task_setparameters(int task, const char *book, const char *title,
                                      const struct ibitmap_s *icon, unsigned flags);
/** @return the subtask's name, until the next call; null without one [null] */
KELVANE_API const char *hw_task_subtaskname(int task, int subtask);
/** Makes a subtask the one that its task shows. @return 1 when switched [0] */
KELVANE_API int hw_task_switchsubtask(int task, int subtask);
/** Forgets a subtask of this task. @return 1 when ended [0] */
KELVANE_API int hw_task_subtaskfinished(int subtask);
/** The task whose framebuffer is shown. @return 1 when there is one, else 0 and both are -1 [0] */
KELVANE_API int hw_task_active(int *task, int *subtask);
/** Makes a task the active one. @param subtask below 0: the one shown last. @return 1 [0] */
KELVANE_API int hw_task_foreground(int task, int subtask);
/**
 * Makes the task below this one the active one.
 * @return 1; 0 when there is none, or this one is not the active one [0]
 */
KELVANE_API int hw_task_background(void);
/**
 * Asks a task to end, or forgets a subtask while its task has others.
 * @param subtask below 0: the task itself
 * @param force not 0: the task is ended without being asked
 * @return 1 when the task was told [0]
 */
KELVANE_API int hw_task_close(int task, int subtask, int force);
/** @return 0 when sent: -1 [-1] */
KELVANE_API int hw_task_sendevent(int task, int type, int par1, int par2);
/** Sends an event and waits until it was handled. @return 0 when handled: -1 [-1] */
KELVANE_API int hw_task_sendevent_sync(int task, int type, int par1, int par2);
/** @param size bytes, at most 65536. @return 0 when sent: -1 [-1] */
KELVANE_API int hw_task_message(int task, int request, const void *data, int size);
/**
 * Sends a request; the answer replaces @p data.
 * @param task 0 is the system: the task that listens for the request
 * @param data holds at least max(@p size, @p outsize) bytes
 * @param size,outsize bytes of the request and of its answer, at most 65536 each
 * @param timeout in milliseconds of the wall clock; 0 and less stand for 10 s
 * @param nowait 1 returns without an answer
 * @return what the listener answered, 1 without waiting; -1 when there is nobody to answer, it ends
 *         or the time is over [0]
 */
KELVANE_API int hw_task_sendrequest(int task, int request, void *data, int size, int outsize,
                                    int timeout, int nowait);
/** @param flags 4: no longer. @return 0 when this task now receives the request: -1 [-1] */
KELVANE_API int hw_task_setrequestlistener(int request, int flags);
/** @return 1 while a request is being answered [0] */
KELVANE_API int hw_task_inrequest(void);
/** @return 1 when set [0] */
KELVANE_API int hw_task_setsubtaskinfo(int task, int subtask, const char *name, const char *book);
/** The task that was active before. @return 1 when there is one, else 0 and both are -1 [0] */
KELVANE_API int hw_task_previous(int *task, int *subtask);
/** The task that was active before this one. @return 1 when there is one, else as above [0] */
KELVANE_API int hw_task_previous_instack(int *task, int *subtask);
/**
 * A task's framebuffer, which goes on to show what that task draws, to be given back by
 * hw_releasetaskfb(). What is drawn into it stays here. @return null when it has none [null]
 */
KELVANE_API icanvas *hw_gettaskfb(int task);
/** Size and depth of a task's framebuffer. @return 1; 0 and zeros when it has none [0] */
KELVANE_API int hw_gettaskfbinfo(int task, int *w, int *h, int *depth);
/** Gives back what hw_gettaskfb() answered; anything else is ignored. */
KELVANE_API void hw_releasetaskfb(icanvas *canvas);
/**
 * Copies the active task's framebuffer, and how it is turned, into this task's.
 * @return 1 when copied; 0 when it is this task's own, or of another size [0]
 */
KELVANE_API int hw_copyactivefb(void);
/** Tells the task manager how this task's framebuffer is turned. */
KELVANE_API void hw_update_fb_orientation(int orientation);
/** @} */

/** @name Media player
 * Keeps state; no sound is made.
 * @{ */
enum { HW_MP_STOPPED = 0, HW_MP_PLAYING = 1, HW_MP_PAUSED = 2 };
/** Names the track, and stops. @return 1; 0 for a null or empty name, and nothing changes */
KELVANE_API int hw_mp_load(const char *path);
/** Plays the track or goes on with it. @return 1; 0 without a track */
KELVANE_API int hw_mp_play(void);
/** Pauses what is playing. */
KELVANE_API void hw_mp_pause(void);
/** Stops; the track stays. */
KELVANE_API void hw_mp_stop(void);
/** HW_MP_STOPPED, HW_MP_PLAYING or HW_MP_PAUSED. */
KELVANE_API int hw_mp_state(void);
/** Position in the track in milliseconds: 0, the emulated track does not advance. */
KELVANE_API int hw_mp_position(void);
/** Volume, 0 to 100. */
KELVANE_API int hw_mp_volume(void);
/** Sets the volume, brought into 0 to 100. */
KELVANE_API void hw_mp_setvolume(int percent);
/** 1 while the player plays. */
KELVANE_API int hw_is_player_playing(void);
/** 1 while an audio book plays: never here, nor do the browser or text-to-speech. */
KELVANE_API int hw_is_audio_book_playing(void);
KELVANE_API int hw_is_browser_playing(void);
KELVANE_API int hw_isttsplaying(void);
/** @} */

/** @name Networks
 * A few names to show; no connection is ever made.
 * @{ */
/** State of the connection: 0, none here. */
KELVANE_API int hw_querynetwork(void);
/** Connects to a network by name. @return 1 when connected: 0 here */
KELVANE_API int hw_net_connect(const char *name);
/** @return 1 when a connection was ended: 0 here */
KELVANE_API int hw_net_disconnect(void);
/** Describes a network in at most @p size bytes, NUL included. @return 0, and an empty text here */
KELVANE_API int hw_net_info(const char *name, char *text, int size);
/** 1 when there is Wi-Fi. */
KELVANE_API int hw_wifi_ready(void);
/** Switches the Wi-Fi radio on (non-zero) or off. @return 1; 0 without Wi-Fi */
KELVANE_API int hw_wifi_activate(int on);
/** 1 while the Wi-Fi radio is on. */
KELVANE_API int hw_wifi_active(void);
/** 1 when there is Bluetooth. */
KELVANE_API int hw_bt_ready(void);
/** Switches the Bluetooth radio on (non-zero) or off. @return 1; 0 without Bluetooth */
KELVANE_API int hw_bt_activate(int on);
/** 1 while the Bluetooth radio is on. */
KELVANE_API int hw_bt_active(void);
/** Names of the Bluetooth devices around, ending with null; none without Bluetooth. */
KELVANE_API const char *const *hw_enum_btdevices(void);
/** Names of the wireless networks around, ending with null; none without Wi-Fi. */
KELVANE_API const char *const *hw_enum_wireless(void);
/** Like hw_net_info(), for the network interface, the gateway and the name servers. */
KELVANE_API int hw_get_network_interface_info(char *text, int size);
KELVANE_API int hw_get_net_gateway_info(char *text, int size);
KELVANE_API int hw_get_net_dns_info(char *text, int size);
/** Asks the mobile network. @return -1, and an empty answer: no modem here */
KELVANE_API int hw_ussdquery(const char *code, char *answer, int size);
/** @} */

/** @name Front light
 * Kept in memory. Without a front light the setters do nothing and the state is 0.
 * @{ */
/** 1 while the light is on. */
KELVANE_API int hw_get_frontlight_state(void);
/** Switches the light on (non-zero) or off. */
KELVANE_API void hw_set_frontlight_state(int on);
/** Brightness, 0 to 100; kept while the light is off. */
KELVANE_API int hw_get_frontlight_value(void);
/** Sets the brightness, brought into 0 to 100. */
KELVANE_API void hw_set_frontlight_value(int percent);
/** @} */

/** @name Small files of the system
 * @{ */
/**
 * Reads the beginning of a file.
 * @param buffer receives at most @p size - 1 bytes and a NUL; untouched on failure
 * @return bytes read; -1 when it is no plain file or cannot be read, an argument is null or @p size
 *         below 1
 */
KELVANE_API int hw_read_file(const char *path, char *buffer, int size);
/** Replaces a plain file's content by @p text. @return 1; 0 on failure or for a null argument */
KELVANE_API int hw_write_file(const char *path, const char *text);
/** @} */

KELVANE_END_DECLS

#endif
