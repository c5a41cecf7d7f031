// SPDX-License-Identifier: MIT
// Copies areas of the screen and copies them back. Bitmaps would round the greys of smooth letters
// to those of the panel.
#include "modal/saved_area.h"

#include <cstring>
#include <new>
#include <utility>

#include "internal.h"
#include "raster/pixels.h"

namespace modal {
namespace {

size_t row_bytes(const icanvas &c, const raster::Area &area) {
    return static_cast<size_t>(area.w) * static_cast<size_t>(raster::bytes_per_pixel(c));
}

// Calls `copy` with the first byte of each row of the screen and where it is kept; once for all
// rows when they have no gaps, as large copies are faster.
template <class Copy>
void for_each_row(const icanvas &c, const raster::Area &area, uint8_t *kept, Copy copy) {
    const size_t bytes = row_bytes(c, area);
    if (bytes == static_cast<size_t>(c.scanline))
        return copy(raster::pixel_address(c, area.x, area.y), kept,
                    bytes * static_cast<size_t>(area.h));
    for (int y = area.y; y < area.y + area.h; ++y, kept += bytes)
        copy(raster::pixel_address(c, area.x, y), kept, bytes);
}

} // namespace

bool SavedArea::save(const irect &area, const irect &covered) {
    drop();
    const icanvas *screen = kvstate.framebuffer;
    if (!screen) return false;
    const raster::Bounds all{0, 0, screen->width - 1, screen->height - 1};
    area_ = raster::clip_area(all, area.x, area.y, area.w, area.h);
    if (area_.empty()) return false;
    cover_ = night::Cover(raster::clip_area(all, covered.x, covered.y, covered.w, covered.h));
    pixels_.reset(new (std::nothrow)
                      uint8_t[row_bytes(*screen, area_) * static_cast<size_t>(area_.h)]);
    if (!pixels_) return false;
    orientation_ = kvstate.orientation;
    for_each_row(*screen, area_, pixels_.get(),
                 [](const uint8_t *row, uint8_t *kept, size_t n) { std::memcpy(kept, row, n); });
    return true;
}

bool SavedArea::is_on_screen() const {
    const icanvas *screen = kvstate.framebuffer;
    if (!pixels_ || !screen || orientation_ != kvstate.orientation) return false;
    bool is_same = true;
    for_each_row(*screen, area_, pixels_.get(),
                 [&](const uint8_t *row, const uint8_t *kept, size_t n) {
                     is_same = is_same && std::memcmp(row, kept, n) == 0;
                 });
    return is_same;
}

bool SavedArea::restore() {
    cover_.drop();
    const auto pixels = std::exchange(pixels_, nullptr);
    const icanvas *screen = kvstate.framebuffer;
    if (!pixels || !screen || orientation_ != kvstate.orientation) return false;
    for_each_row(*screen, area_, pixels.get(),
                 [](uint8_t *row, const uint8_t *kept, size_t n) { std::memcpy(row, kept, n); });
    return true;
}

void SavedArea::drop() {
    cover_.stay();
    pixels_.reset();
}

} // namespace modal
