// SPDX-License-Identifier: MIT
// Paints areas of the framebuffer the way they appear on the emulated panel.
#pragma once

#include "hw_linux/device.h"
#include "hw_linux/display_mode.h"
#include "kelvane/canvas.h"

namespace hw {

// How the framebuffer lies in the drawing area.
struct PanelView {
    Zoom zoom;
    int turn;       // 0 upright, 1 by 90 degrees, 2 by 270, 3 by 180
    int shift_rows; // so many rows from its foot are shown above the others
};

struct Point {
    int64_t x, y;
};

// Where pixel (x, y) of the framebuffer lies on the panel, in panel pixels, before zooming. The
// turned cases leave the panel's first row or column free, and the last one falls off.
Point to_panel(const PanelView &view, const icanvas &canvas, Point pixel);
// The inverse of to_panel.
Point from_panel(const PanelView &view, const icanvas &canvas, Point panel);

// Paints an area of an 8-bit canvas of at most longest_side rows and columns. What lies outside
// the canvas or the pixel buffer is left out.
void eink_waveform(const PanelView &view, const icanvas &canvas, const irect &area,
                   const PixelBuffer &pixels);

} // namespace hw
