// SPDX-License-Identifier: MIT
// Changes handlers when a component opens and closes.
#include "modal/takeover.h"

#include <algorithm>
#include <array>
#include <utility>

#include "runtime/interface_flags.h"
#include "runtime/orientation.h"

namespace modal {
namespace {

constexpr int most_closed = 64; // by one call: callbacks may open what was closed again

// How to close what a handler belongs to.
struct Closer {
    kv_handler handler;
    void (*close)();
};
std::array<Closer, 16> closers; // more than there are kinds of components; the rest is empty

void remember(const Closer &closer) {
    const auto place = std::find_if(closers.begin(), closers.end() - 1, [&](const Closer &c) {
        return !c.handler || c.handler == closer.handler;
    });
    *place = closer;
}

// That of the component on top; null under a handler of the application.
const Closer *find_top() {
    const auto top = std::find_if(closers.begin(), closers.end(), [](const Closer &c) {
        return c.handler && c.handler == GetEventHandler();
    });
    return top == closers.end() ? nullptr : &*top;
}

void close_top() {
    if (const Closer *top = find_top()) top->close();
}

} // namespace

bool is_open() {
    return find_top() != nullptr;
}

void Takeover::take_input(kv_handler handler, int flags, void (*close)()) {
    remember({handler, close});
    own_ = handler;
    rate_ = key_rate();
    orientation_changes_ = orientation_changes().count;
    previous_ = kv_seteventhandler(handler);
    flags_ = set_interface_flags(flags);
    has_input_ = true;
}

void Takeover::close_above() const {
    if (!has_input_) return;
    const kv_handler own = own_; // a callback may move this record
    for (int i = 0; i < most_closed && GetEventHandler() != own; ++i) close_top();
}

void Takeover::give_input_back() {
    if (!std::exchange(has_input_, false)) return;
    clear_interface_flags(flags_);
    kv_restoreeventhandler(std::exchange(previous_, nullptr), rate_.first_ms, rate_.next_ms);
    repeat_orientation_change(orientation_changes_);
}

} // namespace modal
