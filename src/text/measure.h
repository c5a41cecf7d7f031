// SPDX-License-Identifier: MIT
// How wide texts are in the current font.
#pragma once

#include <cstddef>
#include <cstdint>

namespace text {

// The width of a line in the current font.
int64_t measure(const uint16_t *text, int len);

// Without a font a string is as wide as its bytes tell.
int width_without_face(size_t bytes);

} // namespace text
