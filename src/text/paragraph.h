// SPDX-License-Identifier: MIT
// A paragraph as FriBidi wants it, with the levels that it finds: how deep each character is in
// text of the other direction.
#pragma once

#include <cstdint>
#include <fribidi/fribidi.h>
#include <vector>

#include "text/bidi.h"

namespace text {

struct Paragraph {
    std::vector<FriBidiChar> text;
    std::vector<FriBidiCharType> types;
    std::vector<FriBidiLevel> levels;
    FriBidiLevel highest; // 0: no levels could be made

    Paragraph(const uint16_t *units, int len, FriBidiParType base);
    int size() const { return static_cast<int>(text.size()); }
};

FriBidiParType paragraph_type(Direction direction);

} // namespace text
