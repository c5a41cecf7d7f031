// SPDX-License-Identifier: MIT
// Writing in other fonts while an application has selected one.
#pragma once

#include "internal.h"
#include "text/cjk.h"
#include "text/text.h"

namespace text {

// The current font and colour, restored at the end of the scope.
class FontScope {
  public:
    FontScope()
        : font_(kvstate.current_font), aside_(put_aside_for_cjk(nullptr)),
          color_(kvstate.current_color) {}
    // Selects a font in its own colour.
    explicit FontScope(const ifont *font) : FontScope() { SetFont(font, -1); }
    ~FontScope() {
        if (kvstate.current_font != font_) restore_font(font_, color_);
        kvstate.current_color = color_;
        put_aside_for_cjk(aside_);
    }
    FontScope(const FontScope &) = delete;
    FontScope &operator=(const FontScope &) = delete;

  private:
    ifont *font_, *aside_;
    int color_;
};

} // namespace text
