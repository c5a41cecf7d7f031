// SPDX-License-Identifier: MIT
// A hash for names that anybody may have written: none can be prepared that meet in one slot, as
// they can for hash_of().
#pragma once

#include <cstdint>
#include <string_view>

namespace ground {

// Differs from process to process.
uint64_t seeded_hash(std::string_view name);

} // namespace ground
