// SPDX-License-Identifier: MIT
// Faces: what FreeType opened of a font file, shared by all fonts of the same name.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "text/freetype.h"
#include "text/size_cache.h"

namespace text {

inline constexpr int largest_size = 16384; // pixels

// A glyph of a face or of its fallback face.
class GlyphRef {
  public:
    GlyphRef() = default;
    GlyphRef(uint32_t index, bool in_fallback) : bits_(index << 1 | (in_fallback ? 1 : 0)) {}
    uint32_t index() const { return bits_ >> 1; }
    bool in_fallback() const { return (bits_ & 1) != 0; }
    bool is_known() const { return bits_ != UINT32_MAX; }

  private:
    uint32_t bits_ = UINT32_MAX;
};

class Face {
  public:
    Face(std::string name, FacePtr face);

    const std::string &name() const { return name_; }
    FT_Face ft() const { return face_.get(); }
    size_t glyph_count() const {
        return static_cast<size_t>(std::max(face_->num_glyphs, FT_Long{0}));
    }

    // Used for characters that this face lacks; itself when there is no other.
    Face &fallback() const { return *fallback_; }
    void set_fallback(Face &fallback);

    // Where a character's glyph is: here, or in the fallback face, there perhaps glyph 0.
    GlyphRef find(uint16_t c) {
        const GlyphPage *page = pages_[c >> 8].get();
        const GlyphRef glyph = page ? (*page)[c & 255] : GlyphRef();
        return glyph.is_known() ? glyph : look_up(c);
    }
    Face &owner(GlyphRef glyph) { return glyph.in_fallback() ? *fallback_ : *this; }
    bool has(GlyphRef glyph) const { return !glyph.in_fallback() && glyph.index() != 0; }
    bool has(uint16_t c) { return has(find(c)); }

    // Makes glyphs load at this size; a face without outlines takes its nearest one. Throws
    // bad_alloc.
    bool set_size(int pixels);

    // To be called when FreeType has loaded or drawn a glyph: throws bad_alloc when it ran out of
    // memory over that.
    void check_memory();

    // The cache of a size. Valid until another one is asked for that is not there yet, except that
    // `kept` stays.
    SizeCache &cache(int pixels, int strength, const SizeCache *kept);

    int references = 0; // fonts that use it, and the table of fallback faces

  private:
    using GlyphPage = std::array<GlyphRef, 256>;
    GlyphRef look_up(uint16_t c);
    bool choose_size(int pixels);
    bool try_size(int pixels);

    std::string name_;
    FacePtr face_;
    Face *fallback_ = this;
    int pixels_ = 0; // that set_size chose last
    bool size_is_set_ = false;
    std::array<std::unique_ptr<GlyphPage>, 256> pages_;
    std::vector<std::unique_ptr<SizeCache>> caches_;
};

// The face of a resolved name, opened when nobody has it open; null when it cannot be opened. The
// caller has a reference, which release_face() takes back. Throws bad_alloc.
Face *acquire_face(const std::string &name);
void release_face(Face *face);

// Lets go of the fallback faces and of FreeType, unless a font is still open.
void reset_faces();

} // namespace text
