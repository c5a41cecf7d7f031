// SPDX-License-Identifier: MIT
#include "text/size_cache.h"

#include <algorithm>
#include <new>

#include "text/face.h"

namespace text {
namespace {

// Glyph pictures and their tables of all faces together. A page of prose needs a tenth of it.
constexpr size_t most_glyph_bytes = 16 << 20;

// Never destroyed: applications may close fonts at exit.
std::vector<SizeCache *> &all_caches = *new std::vector<SizeCache *>;
size_t all_glyph_bytes = 0;

} // namespace

SizeCache::SizeCache(Face &face, int pixels, int strength)
    : face_(face), pixels_(pixels), strength_(strength) {
    all_caches.push_back(this);
}

SizeCache::~SizeCache() {
    drop_glyphs();
    std::erase(all_caches, this);
}

void SizeCache::drop_glyphs() {
    for (OfMode &mode : modes_) std::vector<std::unique_ptr<Glyph>>().swap(mode.glyphs);
    all_glyph_bytes -= glyph_bytes_;
    glyph_bytes_ = 0;
}

// Loads the glyph into the slot of the face that has it; null when that fails. Throws bad_alloc.
FT_Face SizeCache::load(Mode mode, uint16_t c) {
    const GlyphRef glyph = face_.find(c);
    Face &owner = face_.owner(glyph);
    if (!owner.set_size(pixels_)) return nullptr;
    const FT_Error error = FT_Load_Glyph(owner.ft(), glyph.index(), load_flags(mode));
    owner.check_memory();
    return error == 0 ? owner.ft() : nullptr;
}

uint8_t SizeCache::load_width(Mode mode, uint16_t c) {
    const FT_Face ft = load(mode, c);
    const int64_t width = ft ? (ft->glyph->advance.x + 2 * strength_ + 31) >> 6 : 0;
    of(mode).advances.set_width(c, static_cast<uint8_t>(width));
    return static_cast<uint8_t>(width);
}

int SizeCache::load_kerning(Mode mode, uint16_t first, uint16_t second) {
    FT_Vector kerning = {0, 0};
    const GlyphRef left = face_.find(first), right = face_.find(second);
    if (FT_HAS_KERNING(face_.ft()) && face_.has(left) && face_.has(right) &&
        face_.set_size(pixels_))
        FT_Get_Kerning(face_.ft(), left.index(), right.index(), FT_KERNING_DEFAULT, &kerning);
    // With the width of a character it is still a step.
    constexpr FT_Pos most = INT16_MAX - UINT8_MAX;
    const FT_Pos pixels = std::clamp<FT_Pos>(kerning.x >> 6, -most, most);
    of(mode).advances.set_kerning(first, second, static_cast<int16_t>(pixels));
    return static_cast<int>(pixels);
}

std::unique_ptr<Glyph> SizeCache::load_glyph(Mode mode, uint16_t c) {
    auto glyph = std::make_unique<Glyph>();
    const GlyphRef ref = face_.find(c);
    glyph->index = ref.index();
    try {
        if (const FT_Face ft = load(mode, c)) render(ft, mode, strength_, *glyph);
    } catch (const std::bad_alloc &) {
        face_.owner(ref).check_memory();
        throw;
    }
    face_.owner(ref).check_memory();
    if (all_glyph_bytes + glyph->bytes() > most_glyph_bytes)
        for (SizeCache *cache : all_caches) cache->drop_glyphs();
    return glyph;
}

const Glyph *SizeCache::glyph(Mode mode, uint16_t c) {
    std::vector<std::unique_ptr<Glyph>> &glyphs = of(mode).glyphs;
    const size_t own = face_.glyph_count();
    const GlyphRef ref = face_.find(c);
    const size_t place = face_.owner(ref).ft() == face_.ft() && ref.index() < own
                             ? ref.index()
                             : own + ref.index() % fallback_chains;
    if (!glyphs.empty())
        for (const Glyph *glyph = glyphs[place].get(); glyph != nullptr; glyph = glyph->next.get())
            if (glyph->index == ref.index()) return glyph;
    std::unique_ptr<Glyph> glyph = load_glyph(mode, c);
    const size_t table = glyphs.empty() ? (own + fallback_chains) * sizeof glyphs[0] : 0;
    if (glyphs.empty()) glyphs.resize(own + fallback_chains);
    glyph_bytes_ += glyph->bytes() + table;
    all_glyph_bytes += glyph->bytes() + table;
    glyph->next = std::move(glyphs[place]);
    glyphs[place] = std::move(glyph);
    return glyphs[place].get();
}

} // namespace text
