// SPDX-License-Identifier: MIT
// Scales, dithers and packs the rows of a picture as its codec delivers them.
#include "image/pipeline.h"

#include <algorithm>
#include <new>
#include <numeric>
#include <utility>

#include "image/limits.h"
#include "kelvane/theme.h"
#include "raster/bitmap_rows.h"
#include "raster/pixels.h"

namespace image {

namespace {

constexpr uint8_t white = 255;

uint8_t limited(int64_t grey) {
    return static_cast<uint8_t>(std::clamp<int64_t>(grey, 0, 255));
}

raster::BitmapPtr make_target(Size size) {
    raster::BitmapPtr bm;
    if (is_reasonable(size))
        bm = raster::make_bitmap(size.width, size.height, raster::native_depth());
    if (!bm) throw std::bad_alloc();
    return bm;
}

// What stands around the picture.
uint8_t surrounding(const Finish &finish) {
    if (finish.frame_color == no_frame) return finish.curve[white];
    return raster::grey_of(finish.frame_color);
}

// A row of the bitmap before the picture is in it; what fills its last byte is white.
std::vector<uint8_t> empty_row(const ibitmap &bm, uint8_t grey) {
    std::vector<uint8_t> row(size_t{bm.scanline} * 4, white);
    std::fill_n(row.begin(), bm.width, grey);
    return row;
}

} // namespace

Curve brightness_curve(int brightness, int contrast) {
    Curve curve;
    for (int p = 0; p < 256; ++p)
        curve[static_cast<size_t>(p)] =
            limited(int64_t{brightness} - 100 + (int64_t{p} - 128) * contrast / 100 + 128);
    return curve;
}

Curve png_curve() {
    Curve curve;
    for (int p = 0; p < 256; ++p) curve[static_cast<size_t>(p)] = limited(p * 127 / 100 - 24);
    return curve;
}

Curve no_curve() {
    Curve curve;
    std::iota(curve.begin(), curve.end(), uint8_t{0});
    return curve;
}

int panel_levels() {
    return 1 << raster::native_depth();
}

int dithering_levels() {
    return GetThemeInt("use_dithering", 0) != 0 ? panel_levels() : no_dithering;
}

Pipeline::Pipeline(Size source, Size wanted, Scaling scaling, const Finish &finish)
    : Pipeline(source, place(source, wanted, scaling, load_flags()), finish) {
    was_asked_for_one_load_ = scaling == Scaling::proportional;
}

Pipeline::Pipeline(Size source, const Placement &place, const Finish &finish)
    : place_(place), left_(std::max(0, place.x)),
      width_(std::min(place.x + place.drawn.width, place.bitmap.width) - left_),
      bitmap_(make_target(place_.bitmap)), curve_(finish.curve),
      rows_axis_(source.height, place_.drawn.height),
      scaler_(source.width, place_.drawn.width, left_ - place_.x, left_ - place_.x + width_) {
    if (finish.levels != no_dithering) dither_.emplace(finish.levels);
    has_curve_ = curve_ != no_curve();
    is_scaled_ = place.drawn.width != source.width || place.drawn.height != source.height;
    source_row_.resize(static_cast<size_t>(source.width) + RowScaler::row_slack);
    picked_.fill(scaler_.make_pairs());
    const std::vector<uint8_t> empty = empty_row(*bitmap_, surrounding(finish));
    for (size_t y = 0; y < bitmap_->height; ++y) raster::pack_row(empty.data(), *bitmap_, y);
    target_rows_.fill(empty);
    first_ = next_ = std::max(0, -place_.y);
    end_ = static_cast<int>(
        std::min<int64_t>(place_.drawn.height, int64_t{place_.bitmap.height} - place_.y));
}

bool Pipeline::row_is_used() const {
    if (next_ >= end_) return false;
    const Sample s = rows_axis_.at(next_);
    return s.first == rows_ || (s.first + 1 == rows_ && s.fraction != 0);
}

// Makes every row whose lower neighbour has just arrived.
void Pipeline::row_done() noexcept {
    if (is_scaled_ && row_is_used())
        scaler_.pick(source_row_.data(), picked_[static_cast<size_t>(rows_) % 2]);
    for (; next_ < end_; ++next_) {
        const Sample s = rows_axis_.at(next_);
        if (s.first + (s.fraction != 0 ? 1 : 0) > rows_) break;
        make_row(next_, s);
    }
    ++rows_;
}

// Of a picture in its own size it is the row that has just arrived.
void Pipeline::make_row(int n, Sample s) {
    uint8_t *drawn = target_row(n) + left_;
    const auto upper = static_cast<size_t>(s.first);
    if (is_scaled_)
        scaler_.blend(picked_[upper % 2], picked_[(upper + 1) % 2], s.fraction, drawn);
    else
        std::copy_n(source_row_.data() + (left_ - place_.x), width_, drawn);
    if (has_curve_)
        for (int x = 0; x < width_; ++x) drawn[x] = curve_[drawn[x]];
    if (!dither_) return put_row(n);
    // A row is finished when its errors are known to the one below.
    if (n > first_) put_dithered(n - 1, drawn);
    if (n + 1 == end_) put_dithered(n, nullptr);
}

void Pipeline::put_dithered(int n, uint8_t *below) {
    dither_->row(target_row(n) + left_, below, static_cast<size_t>(width_));
    put_row(n);
}

void Pipeline::put_row(int n) {
    const int y = place_.y + n;
    raster::pack_row(target_row(n), *bitmap_, static_cast<size_t>(y));
}

raster::BitmapPtr Pipeline::finish() {
    if (was_asked_for_one_load_) reset_load_flags();
    return std::move(bitmap_);
}

} // namespace image
