// SPDX-License-Identifier: MIT
// Writing in a font of one's own while an application has selected another.
#pragma once

#include "internal.h"
#include "text/text.h"

namespace text {

// Selects a font in its own colour, and what was selected before again at the end of the scope.
class FontScope {
  public:
    explicit FontScope(const ifont *font)
        : font_(kvstate.current_font), color_(kvstate.current_color) {
        SetFont(font, -1);
    }
    ~FontScope() { restore_font(font_, color_); }
    FontScope(const FontScope &) = delete;
    FontScope &operator=(const FontScope &) = delete;

  private:
    ifont *font_;
    int color_;
};

} // namespace text
