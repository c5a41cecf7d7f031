// SPDX-License-Identifier: MIT
#include "text/face.h"

#include <cstdlib>
#include FT_SIZES_H

#include "text/names.h"

namespace text {
namespace {

// Caches of a face. An application that zooms through more sizes than this fills them anew.
constexpr size_t most_caches = 32;
constexpr int farthest_size = 99999;

int nearest_strike(FT_Face face, int pixels) {
    int nearest = 0;
    int64_t distance = farthest_size;
    for (int i = 0; i < face->num_fixed_sizes; ++i) {
        const int64_t d = std::abs(int64_t{face->available_sizes[i].height} - pixels);
        if (d < distance) nearest = i, distance = d;
    }
    return nearest;
}

} // namespace

Face::Face(std::string name, FacePtr face) : name_(std::move(name)), face_(std::move(face)) {
    // Symbol fonts may have no Unicode table.
    if (!ft()->charmap && ft()->num_charmaps > 0) FT_Set_Charmap(ft(), ft()->charmaps[0]);
}

void Face::set_fallback(Face &fallback) {
    fallback_ = &fallback;
    for (std::unique_ptr<GlyphPage> &page : pages_) page.reset();
    caches_.clear();
}

GlyphRef Face::look_up(uint16_t c) {
    const FT_UInt own = FT_Get_Char_Index(ft(), c);
    const bool in_fallback = own == 0 && fallback_ != this;
    const FT_UInt index = in_fallback ? FT_Get_Char_Index(fallback_->ft(), c) : own;
    std::unique_ptr<GlyphPage> &page = pages_[c >> 8];
    if (!page) page = std::make_unique<GlyphPage>();
    return (*page)[c & 255] = GlyphRef(index, in_fallback);
}

bool Face::choose_size(int pixels) {
    FT_Size size = ft()->size;
    if (!size && FT_New_Size(ft(), &size) == 0) FT_Activate_Size(size);
    const bool is_chosen = ft()->size && try_size(pixels);
    check_memory();
    return is_chosen;
}

void Face::check_memory() try { check_freetype_memory(); } catch (...) {
    // What FreeType half made is in the size, and it would trip over that.
    if (ft()->size) FT_Done_Size(ft()->size);
    size_is_set_ = false;
    throw;
}

bool Face::try_size(int pixels) {
    if (!FT_IS_SCALABLE(ft()))
        return ft()->num_fixed_sizes > 0 && FT_Select_Size(ft(), nearest_strike(ft(), pixels)) == 0;
    if (pixels < 1 || pixels > largest_size) return false;
    return FT_Set_Pixel_Sizes(ft(), 0, static_cast<FT_UInt>(pixels)) == 0;
}

bool Face::set_size(int pixels) {
    if (pixels != pixels_ || !size_is_set_) {
        size_is_set_ = false;
        size_is_set_ = choose_size(pixels);
        pixels_ = pixels;
    }
    return size_is_set_;
}

SizeCache &Face::cache(int pixels, int strength, const SizeCache *kept) {
    for (const std::unique_ptr<SizeCache> &cache : caches_)
        if (cache->pixels() == pixels && cache->strength() == strength) return *cache;
    if (caches_.size() >= most_caches)
        caches_.erase(caches_.begin() + (caches_.front().get() == kept ? 1 : 0));
    caches_.push_back(std::make_unique<SizeCache>(*this, pixels, strength));
    return *caches_.back();
}

} // namespace text
