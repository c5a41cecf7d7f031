// SPDX-License-Identifier: MIT
// The edge to C, which no exception crosses.
#pragma once

#include <type_traits>

namespace ground {

// What `work` returns, or what `rescue` returns when it throws anything at all. What was done until
// then stays.
template <class Work, class Rescue>
std::invoke_result_t<Work> guarded_or(Work work, Rescue rescue) noexcept {
    try {
        return work();
    } catch (...) {
        return rescue();
    }
}

// The same with a value instead of a rescue.
template <class Work>
std::invoke_result_t<Work> guarded(std::type_identity_t<std::invoke_result_t<Work>> otherwise,
                                   Work work) noexcept {
    return guarded_or(work, [&] { return otherwise; });
}

// Work without a result.
template <class Work>
void guarded(Work work) noexcept {
    guarded_or(work, [] {});
}

} // namespace ground
