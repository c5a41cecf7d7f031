// SPDX-License-Identifier: MIT
// The process of the task manager, which whoever needs one starts.
#pragma once

#include "hw_linux/tasks/place.h"

namespace hw::tasks {

// A connection to the manager that serves the place, after starting one when none does. Empty on
// failure.
Descriptor connect_to_manager(const Place &place);

} // namespace hw::tasks
