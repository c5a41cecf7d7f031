// SPDX-License-Identifier: MIT
// The task operations of a device without a task manager.
#include "hw.h"

namespace {

template <class... Numbers>
int none(int absent, Numbers *...numbers) {
    ((numbers ? void(*numbers = absent) : void()), ...);
    return 0;
}

} // namespace

int hw_task_supported(void) {
    return 0;
}
void hw_task_initmqueue(void) {}
int hw_task_checkmessages(void) {
    return 0;
}
int hw_task_current(void) {
    return -1;
}
int hw_task_register(const char *, const char *, const ibitmap_s *, int) {
    return -1;
}
int hw_task_newsubtask(const char *) {
    return -1;
}
int hw_task_list(int *, int) {
    return 0;
}
const itaskinfo_s *hw_task_info(int) {
    return nullptr;
}
int hw_task_findbybook(const char *, int *task, int *subtask) {
    return none(-1, task, subtask);
}
int hw_task_findbyappname(const char *) {
    return -1;
}
int hw_task_setparameters(int, const char *, const char *, const ibitmap_s *, unsigned) {
    return 0;
}
const char *hw_task_subtaskname(int, int) {
    return nullptr;
}
int hw_task_switchsubtask(int, int) {
    return 0;
}
int hw_task_subtaskfinished(int) {
    return 0;
}
int hw_task_active(int *task, int *subtask) {
    return none(-1, task, subtask);
}
int hw_task_foreground(int, int) {
    return 0;
}
int hw_task_background(void) {
    return 0;
}
int hw_task_close(int, int, int) {
    return 0;
}
int hw_task_sendevent(int, int, int, int) {
    return -1;
}
int hw_task_sendevent_sync(int, int, int, int) {
    return -1;
}
int hw_task_message(int, int, const void *, int) {
    return -1;
}
int hw_task_sendrequest(int, int, void *, int, int, int, int) {
    return 0;
}
int hw_task_setrequestlistener(int, int) {
    return -1;
}
int hw_task_inrequest(void) {
    return 0;
}
int hw_task_setsubtaskinfo(int, int, const char *, const char *) {
    return 0;
}
int hw_task_previous(int *task, int *subtask) {
    return none(-1, task, subtask);
}
int hw_task_previous_instack(int *task, int *subtask) {
    return none(-1, task, subtask);
}

icanvas *hw_gettaskfb(int) {
    return nullptr;
}
int hw_gettaskfbinfo(int, int *w, int *h, int *depth) {
    return none(0, w, h, depth);
}
void hw_releasetaskfb(icanvas *) {}
int hw_copyactivefb(void) {
    return 0;
}
void hw_update_fb_orientation(int) {}
