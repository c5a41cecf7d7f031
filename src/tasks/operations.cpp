// SPDX-License-Identifier: MIT
// Tasks, subtasks and framebuffers: what the device answers, where it has a task manager.
#include <initializer_list>

#include <unistd.h>

#include "ground/log.h"
#include "hw.h"
#include "kelvane/tasks.h"

namespace {

// Numbers that are handed out only with the answer 1, and are 0 before.
struct Place {
    int *task, *subtask;

    Place(int *task_out, int *subtask_out) : task(task_out), subtask(subtask_out) { set(0, 0); }

    template <class Find>
    int look(Find find) const {
        int found_task = 0, found_subtask = 0;
        if (!MultitaskingSupported() || !find(&found_task, &found_subtask)) return 0;
        set(found_task, found_subtask);
        return 1;
    }

  private:
    void set(int task_number, int subtask_number) const {
        if (task) *task = task_number;
        if (subtask) *subtask = subtask_number;
    }
};

bool is_empty(const char *text) {
    return !text || !*text;
}

} // namespace

int GetCurrentTask() {
    return MultitaskingSupported() ? hw_task_current() : -1;
}

void GetActiveTask(int *task, int *subtask) {
    if (task) *task = -1;
    if (subtask) *subtask = -1;
    if (MultitaskingSupported()) hw_task_active(task, subtask);
}

int IsTaskActive() {
    if (!MultitaskingSupported()) return 1;
    int active = -1;
    return hw_task_active(&active, nullptr) && active == hw_task_current();
}

int GetPreviousTask(int *task, int *subtask) {
    return Place(task, subtask).look(hw_task_previous);
}

int GetPreviousTaskInStack(int *task, int *subtask) {
    return Place(task, subtask).look(hw_task_previous_instack);
}

int GetTaskList(int *list, int size) {
    return MultitaskingSupported() ? hw_task_list(list, size) : 0;
}

const itaskinfo *GetTaskInfo(int task) {
    return MultitaskingSupported() ? hw_task_info(task) : nullptr;
}

int FindTaskByBook(const char *book, int *task, int *subtask) {
    return Place(task, subtask).look([&](int *found_task, int *found_subtask) {
        return is_empty(book) ? 0 : hw_task_findbybook(book, found_task, found_subtask);
    });
}

int FindTaskByAppName(const char *name) {
    if (is_empty(name) || !MultitaskingSupported()) return -1;
    return hw_task_findbyappname(name);
}

int SetTaskParameters(int task, const char *book, const char *title, const ibitmap *icon,
                      unsigned flags) {
    return MultitaskingSupported() ? hw_task_setparameters(task, book, title, icon, flags) : 0;
}

int NewSubtask(const char *name) {
    return MultitaskingSupported() ? hw_task_newsubtask(name) : -1;
}

void SwitchSubtask(int task, int subtask) {
    if (MultitaskingSupported()) hw_task_switchsubtask(task, subtask);
}

void SubtaskFinished(int subtask) {
    if (MultitaskingSupported()) hw_task_subtaskfinished(subtask);
}

int SetSubtaskInfo(int task, int subtask, const char *name, const char *book) {
    return MultitaskingSupported() ? hw_task_setsubtaskinfo(task, subtask, name, book) : 0;
}

int SetActiveTask(int task, int subtask) {
    tq_print_log2(LOG_INFO_LEVEL, "SetActiveTask(%d, %d)\n", task, subtask);
    return MultitaskingSupported() ? hw_task_foreground(task, subtask) : 0;
}

void GoToBackground() {
    if (MultitaskingSupported()) hw_task_background();
}

int CloseTask(int task, int subtask, int force) {
    if (!MultitaskingSupported()) return 0;
    hw_task_close(task, subtask, force);
    return 1;
}

icanvas *GetTaskFramebuffer(int task) {
    return MultitaskingSupported() ? hw_gettaskfb(task) : nullptr;
}

int GetTaskFramebufferInfo(int task, int *w, int *h, int *depth) {
    for (int *number : {w, h, depth})
        if (number) *number = 0;
    return MultitaskingSupported() ? hw_gettaskfbinfo(task, w, h, depth) : 0;
}

void ReleaseTaskFramebuffer(icanvas *canvas) {
    if (MultitaskingSupported()) hw_releasetaskfb(canvas);
}

int CopyActiveFb() {
    return MultitaskingSupported() ? hw_copyactivefb() : 0;
}
