// SPDX-License-Identifier: MIT
// The message box, which waits at the device itself.
#include <algorithm>
#include <cstdio>
#include <utility>

#include "dialogs/input.h"
#include "dialogs/stack.h"
#include "ground/guard.h"
#include "hw.h"
#include "internal.h"

namespace dialogs {
namespace {

constexpr int step_ms = 50;

// Nothing serves a process without a screen on this device.
void print_unsent(const char *title, const char *text) {
    std::fprintf(stderr, "Message: '%s' '%s'\n", title ? title : "", text ? text : "");
    std::fprintf(stderr, "[%s]: ERROR: cant sent request\n", "Message");
}

// A key ends the wait, and so does a finger that was put down inside the box and is lifted
// anywhere.
class Ending {
  public:
    explicit Ending(const irect &box) : box_(box) {}
    bool ends(const RawEvent &event) {
        if (event.type == EVT_POINTERDOWN && is_inside(box_, event.par1, event.par2)) armed_ = true;
        return event.type == EVT_KEYPRESS || (event.type == EVT_POINTERUP && armed_);
    }

  private:
    irect box_;
    bool armed_ = false;
};

// Input that arrives early does not make the wait shorter.
void wait_at(const irect &box, int timeout_ms) {
    Ending ending(box);
    const int exiting = kvstate.exiting;
    const int64_t end = hw_boottime_ms() + int64_t{timeout_ms / step_ms} * step_ms;
    while (hw_boottime_ms() < end && kvstate.exiting == exiting) {
        RawEvent event;
        if (take_raw_event(event) && ending.ends(event)) return;
        rest_ms(std::min<int64_t>(step_ms, end - hw_boottime_ms()));
    }
}

void show_message(int flags, const char *text, int timeout_ms) {
    OpenBox box = make_box(Kind::message, flags, text, {});
    box.stays = (flags & NO_DISMISS) != 0;
    const irect place = box.layout.box;
    const unsigned id = open(std::move(box), nullptr);
    wait_at(place, timeout_ms);
    if (top_id() == id) close_top(Close::answered);
}

} // namespace
} // namespace dialogs

void Message(int icon, const char *title, const char *text, int timeout) {
    if (kvstate.isopen)
        ground::guarded([&] { dialogs::show_message(icon, text, timeout); });
    else
        dialogs::print_unsent(title, text);
}
