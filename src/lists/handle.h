// SPDX-License-Identifier: MIT
// What the handles of the public calls lead to.
#pragma once

#include <memory>

#include "ground/guard.h"

namespace lists {

// Works on what a handle leads to, which stays alive when a callback destroys the handle. Nothing
// for a null handle.
template <class Handle, class Work>
void with(const Handle *handle, Work work) {
    if (!handle) return;
    const auto kept = handle->widget;
    ground::guarded([&] { work(*kept); });
}

} // namespace lists
