// SPDX-License-Identifier: MIT
// An open font that closes itself, for whoever keeps one inside the library.
#pragma once

#include <memory>

#include "kelvane/text.h"

namespace text {

struct FontCloser {
    void operator()(ifont *font) const { CloseFont(font); }
};
using FontPtr = std::unique_ptr<ifont, FontCloser>;

} // namespace text
