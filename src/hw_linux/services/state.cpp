// SPDX-License-Identifier: MIT
// The one record of what the services remember.
#include "hw_linux/services/state.h"

#include <atomic>

namespace hw {

ServiceState &services() {
    static ServiceState state;
    return state;
}

void reset_services() {
    services() = {};
}

void set_storage_ready(bool ready) {
    std::atomic_ref(services().storage_ready) = ready;
}

} // namespace hw
