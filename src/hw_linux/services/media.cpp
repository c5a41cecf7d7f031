// SPDX-License-Identifier: MIT
// A player that keeps its state and makes no sound.
#include <algorithm>

#include "ground/guard.h"
#include "hw.h"
#include "hw_linux/services/state.h"

using hw::services;

int hw_mp_load(const char *path) {
    if (!path || !*path) return 0;
    return ground::guarded(0, [&] {
        services().track = path;
        hw_mp_stop();
        return 1;
    });
}

int hw_mp_play(void) {
    if (services().track.empty()) return 0;
    services().player_state = HW_MP_PLAYING;
    return 1;
}

void hw_mp_pause(void) {
    if (hw_is_player_playing()) services().player_state = HW_MP_PAUSED;
}

void hw_mp_stop(void) {
    services().player_state = HW_MP_STOPPED;
}
int hw_mp_state(void) {
    return services().player_state;
}
int hw_mp_position(void) {
    return 0;
}
int hw_mp_volume(void) {
    return services().volume_percent;
}
void hw_mp_setvolume(int percent) {
    services().volume_percent = std::clamp(percent, 0, 100);
}

int hw_is_player_playing(void) {
    return hw_mp_state() == HW_MP_PLAYING;
}
int hw_is_audio_book_playing(void) {
    return 0;
}
int hw_is_browser_playing(void) {
    return 0;
}
int hw_isttsplaying(void) {
    return 0;
}
