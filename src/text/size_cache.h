// SPDX-License-Identifier: MIT
// What is remembered of a face at one pixel size and text strength, so that FreeType is asked once.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "text/advance_cache.h"
#include "text/glyph.h"

namespace text {

class Face;

// Invariants: every cache is in the list by which drop_glyphs() finds it. A glyph stays until the
// next one is looked up.
class SizeCache {
  public:
    SizeCache(Face &face, int pixels, int strength);
    ~SizeCache();
    SizeCache(const SizeCache &) = delete;
    SizeCache &operator=(const SizeCache &) = delete;

    int pixels() const { return pixels_; }
    int strength() const { return strength_; }
    Face &face() const { return face_; }

    const AdvanceCache &advances(Mode mode) const { return of(mode).advances; }
    // The advance of a character modulo 256.
    uint8_t width(Mode mode, uint16_t c) {
        const uint8_t width = of(mode).advances.entry(c).width;
        return width != AdvanceEntry::unknown_width ? width : load_width(mode, c);
    }
    int kerning(Mode mode, uint16_t first, uint16_t second) {
        const int16_t found = of(mode).advances.find_kerning(first, second);
        return found != AdvanceCache::unknown ? found : load_kerning(mode, first, second);
    }
    // Lets advances() find a character whose width was asked for.
    void add_number(Mode mode, uint16_t c) { of(mode).advances.add_number(c); }
    // The picture of a character; null when it has none.
    const Glyph *glyph(Mode mode, uint16_t c);

    void drop_glyphs();

  private:
    // Glyphs of the face by index, then those of the fallback face in this many chains.
    static constexpr size_t fallback_chains = 101;
    struct OfMode {
        AdvanceCache advances;
        std::vector<std::unique_ptr<Glyph>> glyphs; // empty until the first one is drawn
    };

    OfMode &of(Mode mode) { return modes_[static_cast<size_t>(mode)]; }
    const OfMode &of(Mode mode) const { return modes_[static_cast<size_t>(mode)]; }
    uint8_t load_width(Mode mode, uint16_t c);
    int load_kerning(Mode mode, uint16_t first, uint16_t second);
    std::unique_ptr<Glyph> load_glyph(Mode mode, uint16_t c);
    FT_Face load(Mode mode, uint16_t c);

    Face &face_;
    const int pixels_, strength_;
    std::array<OfMode, 2> modes_;
    size_t glyph_bytes_ = 0;
};

} // namespace text
