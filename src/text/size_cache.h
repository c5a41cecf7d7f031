// SPDX-License-Identifier: MIT
// What is remembered of a face at one pixel size and text strength, so that FreeType is asked once.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "text/glyph.h"

namespace text {

class Face;

// The kerning of pairs of characters, in pixels.
class KerningCache {
  public:
    static constexpr int16_t unknown = INT16_MIN;

    int16_t find(uint16_t first, uint16_t second) const {
        if (first >= 256 || second >= 256) return find_pair(key(first, second));
        const Page *page = pages_[first].get();
        return page != nullptr ? (*page)[second] : unknown;
    }
    void add(uint16_t first, uint16_t second, int16_t kerning);

  private:
    // Of the characters below 256 that follow one of them.
    using Page = std::array<int16_t, 256>;
    // All other pairs: a hash table with open addressing, which starts anew when it is full.
    struct Pair {
        uint32_t key; // 0: free
        int32_t kerning;
    };
    static constexpr size_t first_slots = 1024, most_slots = 65536;

    static uint32_t key(uint16_t first, uint16_t second) { return uint32_t{first} << 16 | second; }
    size_t slot_of(uint32_t key) const { return (key * 0x9E3779B1U >> 7) & (pairs_.size() - 1); }
    int16_t find_pair(uint32_t key) const {
        if (pairs_.empty()) return unknown;
        size_t slot = slot_of(key);
        for (; pairs_[slot].key != key; slot = (slot + 1) & (pairs_.size() - 1))
            if (pairs_[slot].key == 0) return unknown;
        return static_cast<int16_t>(pairs_[slot].kerning);
    }
    void add_pair(uint32_t key, int16_t kerning);
    void make_room();

    std::array<std::unique_ptr<Page>, 256> pages_;
    std::vector<Pair> pairs_; // a power of two, at most half of it used
    size_t pair_count_ = 0;
};

// Invariants: every cache is in the list by which drop_glyphs() finds it. A glyph stays until the
// next one is looked up.
class SizeCache {
  public:
    static constexpr uint8_t unknown_width = 255;

    SizeCache(Face &face, int pixels, int strength);
    ~SizeCache();
    SizeCache(const SizeCache &) = delete;
    SizeCache &operator=(const SizeCache &) = delete;

    int pixels() const { return pixels_; }
    int strength() const { return strength_; }
    Face &face() const { return face_; }

    // The advance of a character modulo 256; one of 255 is measured each time.
    uint8_t width(Mode mode, uint16_t c) {
        const WidthPage *page = of(mode).widths[c >> 8].get();
        const uint8_t width = page != nullptr ? (*page)[c & 255] : unknown_width;
        return width != unknown_width ? width : load_width(mode, c);
    }
    int kerning(uint16_t first, uint16_t second) {
        const int16_t found = kerning_.find(first, second);
        return found != KerningCache::unknown ? found : load_kerning(first, second);
    }
    // The picture of a character; null when it has none.
    const Glyph *glyph(Mode mode, uint16_t c);

    void drop_glyphs();

  private:
    using WidthPage = std::array<uint8_t, 256>;
    // Glyphs of the face by index, then those of the fallback face in this many chains.
    static constexpr size_t fallback_chains = 101;
    struct OfMode {
        std::array<std::unique_ptr<WidthPage>, 256> widths;
        std::vector<std::unique_ptr<Glyph>> glyphs; // empty until the first one is drawn
    };

    OfMode &of(Mode mode) { return modes_[static_cast<size_t>(mode)]; }
    uint8_t load_width(Mode mode, uint16_t c);
    int load_kerning(uint16_t first, uint16_t second);
    std::unique_ptr<Glyph> load_glyph(Mode mode, uint16_t c);
    FT_Face load(Mode mode, uint16_t c);

    Face &face_;
    const int pixels_, strength_;
    std::array<OfMode, 2> modes_;
    KerningCache kerning_;
    size_t glyph_bytes_ = 0;
};

} // namespace text
