// SPDX-License-Identifier: MIT
// How much memory the system has to spare.
#pragma once

#include <cstdint>

namespace image {

// Free and cached memory in kB; 1028 when the system does not tell.
int64_t available_memory_kb();

} // namespace image
