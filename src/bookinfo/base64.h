// SPDX-License-Identifier: MIT
// Base64, in which text formats carry pictures.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace book {

// The bytes of a text; characters that are not of base64 are passed over. Empty when there are more
// bytes than the limit. Throws bad_alloc.
std::string from_base64(std::string_view text, size_t limit);

} // namespace book
