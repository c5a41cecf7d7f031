// SPDX-License-Identifier: MIT
// Drawing on the screen while an application draws elsewhere.
#pragma once

#include "internal.h"
#include "kelvane/canvas.h"

namespace raster {

// The whole screen is drawn on while it lives, whatever canvas is current and whatever its clip.
// There is a screen, and it is not turned meanwhile.
class ScreenScope {
  public:
    ScreenScope() : canvas_(GetCanvas()), screen_(*kvstate.framebuffer) {
        SetCanvas(nullptr);
        SetClip(0, 0, screen_.width, screen_.height);
    }
    ~ScreenScope() {
        *kvstate.framebuffer = screen_;
        SetCanvas(canvas_);
    }
    ScreenScope(const ScreenScope &) = delete;
    ScreenScope &operator=(const ScreenScope &) = delete;

  private:
    icanvas *canvas_;
    icanvas screen_;
};

} // namespace raster
