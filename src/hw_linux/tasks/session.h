// SPDX-License-Identifier: MIT
// This process among the tasks of KELVANE_TASKS=directory, as the rest of the device sees it.
// Without that variable nothing here does anything.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "hw_linux/tasks/client.h"
#include "kelvane/canvas.h"

namespace hw::tasks {

// Decided by the first question.
bool is_supported();
// Connected as far as possible; null when tasks are not supported.
Client *client();
// This process is a copy of one that uses the device.
bool is_copy();
// Where the tasks meet, from the root. Throws when it cannot be told.
std::string place_path();

// The pixels of the framebuffer, which others can read where there are tasks. Null on failure.
std::shared_ptr<uint8_t[]> make_framebuffer(size_t bytes);
// The framebuffer can be shown from now on; it becomes the active task's the first time.
void open_framebuffer();
void close_framebuffer();
void tell_geometry(const icanvas &canvas, int orientation);

// This task's framebuffer is the one that is shown, or it is alone.
bool is_in_front();
// It was shown.
void note_shown();
bool has_shown();
// Whether the active task is called so, by its application or for people, and was shown since it
// became active and since the last input that went to it from here.
bool is_shown(const char *name);

// The home key of the device makes the task that was started first the active one. False when it
// is.
bool go_home();
// Input of a script or a controller goes to the active task, or is lost when that takes none. False
// when that is this one.
bool forward_input(int type, int mod, int par1, int par2);
// The active task's framebuffer when it is not this one's; else null.
std::unique_ptr<ForeignFramebuffer> active_framebuffer();
std::unique_ptr<ForeignFramebuffer> framebuffer_of(int task);

// Becomes readable when something arrives; -1 without tasks.
int wake_descriptor();
// Something has arrived that is not handed on yet.
bool has_arrivals();
// Hands it on, and tells the application when it is to be shown, hidden or closed.
int check_messages();

} // namespace hw::tasks
