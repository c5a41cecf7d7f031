// SPDX-License-Identifier: MIT
// From the grey rows that a codec hands out to a bitmap for the panel, a row at a time: a few rows
// are all that is ever held of a picture.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "image/load_settings.h"
#include "image/place.h"
#include "image/scale.h"
#include "raster/bitmap.h"
#include "raster/dither.h"

namespace image {

// What becomes of each grey.
using Curve = std::array<uint8_t, 256>;

// Brightness and contrast in percent.
Curve brightness_curve(int brightness, int contrast);
// The fixed curve of PNG files.
Curve png_curve();

// The one that leaves them.
Curve no_curve();

inline constexpr int no_dithering = 0;

// How many the panel shows.
int panel_levels();

// As many levels as the panel has when the theme asks for dithering, otherwise no_dithering.
int dithering_levels();

struct Finish {
    Curve curve;
    int frame_color; // 0x00RRGGBB or no_frame
    int levels;      // of dithering, or no_dithering
};

// The decoder writes a picture's rows one after the other into row() and confirms each by
// row_done(), which does not throw: a codec may jump out of its frames in between.
class Pipeline {
  public:
    // A picture of `source` in a bitmap of `wanted`. Throws std::bad_alloc, also when there is no
    // such bitmap or it is unreasonably large.
    Pipeline(Size source, Size wanted, Scaling scaling, const Finish &finish);
    // The same where it is known how the picture is placed.
    Pipeline(Size source, const Placement &place, const Finish &finish);

    // Room for the next row of the picture.
    uint8_t *row() { return source_row_.data(); }
    // False when nothing will be made from the next row, so that it may be left unset.
    bool row_is_used() const;
    void row_done() noexcept;

    // The bitmap, after the last row. Ends what was asked for one load.
    raster::BitmapPtr finish();

  private:
    // Rows of the drawn picture are numbered by n.
    uint8_t *target_row(int n) { return target_rows_[static_cast<size_t>(n) % 2].data(); }
    void make_row(int n, Sample sample);
    void put_dithered(int n, uint8_t *below);
    void put_row(int n);

    bool was_asked_for_one_load_ = false;
    Placement place_;
    int left_, width_; // of what is inside the bitmap
    raster::BitmapPtr bitmap_;
    Curve curve_;
    bool has_curve_, is_scaled_;
    std::optional<raster::Dither> dither_;
    Axis rows_axis_;
    RowScaler scaler_;
    std::vector<uint8_t> source_row_;
    // What is needed of the last two source rows, and the last two rows of the bitmap with what
    // stands on both sides of the picture: by the lowest bit of their number.
    std::array<RowScaler::Pairs, 2> picked_;
    std::array<std::vector<uint8_t>, 2> target_rows_;
    int rows_ = 0;    // of the picture that are done
    int first_, end_; // rows of the drawn picture that are inside the bitmap
    int next_;        // the first that is not made yet
};

} // namespace image
