// SPDX-License-Identifier: MIT
// Changes handlers when a component opens and closes.
#include "modal/takeover.h"

#include <utility>

#include "runtime/interface_flags.h"
#include "runtime/orientation.h"

namespace modal {

void Takeover::take_input(kv_handler handler, int flags) {
    rate_ = key_rate();
    orientation_changes_ = orientation_changes().count;
    previous_ = kv_seteventhandler(handler);
    flags_ = set_interface_flags(flags);
    has_input_ = true;
}

void Takeover::give_input_back() {
    if (!std::exchange(has_input_, false)) return;
    clear_interface_flags(flags_);
    kv_restoreeventhandler(std::exchange(previous_, nullptr), rate_.first_ms, rate_.next_ms);
    repeat_orientation_change(orientation_changes_);
}

} // namespace modal
