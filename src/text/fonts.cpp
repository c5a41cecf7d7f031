// SPDX-License-Identifier: MIT
// Opening and closing fonts, and which one is current.
#include <algorithm>
#include <cstring>
#include <new>
#include <strings.h>
#include <utility>

#include "ground/fold.h"
#include "ground/guard.h"
#include "ground/log.h"
#include "ground/utf8.h"
#include "text/cjk.h"
#include "text/current.h"
#include "text/enumerate.h"
#include "text/names.h"

namespace text {
namespace {

constexpr int most_registered = 9; // codes 1 to 9
constexpr int most_strength = 640;

ifont *registered[most_registered];
int strength = 0;

Face *face_of(const ifont &font) {
    return static_cast<Face *>(font.fdata);
}

void set_metrics(ifont &font, Face &face) {
    if (face.set_size(font.size)) {
        const FT_Size_Metrics &metrics = face.ft()->size->metrics;
        font.height = static_cast<int>(metrics.height >> 6);
        font.baseline = static_cast<int>(metrics.ascender >> 6);
    } else {
        kv_warn("OpenFont", "OpenFont: cannot set char size %i for %s\n", font.size, font.name);
        font.height = static_cast<int>(
            std::clamp<int64_t>(int64_t{font.size} + font.size / 4, INT32_MIN, INT32_MAX));
        font.baseline = font.size;
    }
    font.linespacing = font.height;
}

void describe_face(ifont &font, Face &face) {
    const FT_Face ft = face.ft();
    static char unnamed[] = "";
    font.fdata = &face;
    font.family = ft->family_name ? ft->family_name : unnamed;
    font.isbold = (ft->style_flags & FT_STYLE_FLAG_BOLD) != 0;
    font.isitalic = (ft->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
    if (ft->charmap) font.charset = ft->charmap->encoding_id;
    set_metrics(font, face);
}

struct FontDeleter {
    void operator()(ifont *font) const { destroy(font); }
    static void destroy(ifont *font) {
        release_face(face_of(*font));
        std::free(font->name);
        delete font;
    }
};
using FontPtr = std::unique_ptr<ifont, FontDeleter>;

FontPtr make_font(const char *name, int size, int aa) {
    FontPtr font(new ifont{});
    font->name = strdup(name);
    if (!font->name) throw std::bad_alloc();
    font->size = size;
    font->aa = aa != 0 && kvstate.antialiasing != 0;
    return font;
}

// Not even the default font is there, by which any name would be replaced.
void tell_of_missing_fonts() {
    static bool is_told = false;
    if (!std::exchange(is_told, true))
        kv_warn(
            "OpenFont",
            "no font in %s: text is not drawn; \"kelvane-device FOLDER PROGRAM\" makes a folder "
            "with fonts and runs the program there\n",
            font_directory);
}

FontPtr open(const char *name, int size, int aa) {
    if (!library()) return nullptr;
    if (ground::compare_folded(name, "null") == 0) {
        FontPtr font = make_font(name, size, aa);
        font->family = font->name;
        return font;
    }
    const std::string resolved = resolved_name(name);
    FontPtr font = make_font(resolved.c_str(), size, aa);
    Face *face = acquire_face(resolved);
    if (!face) {
        kv_warn("OpenFont", "FT_New_Face: cannot open %s\n", resolved.c_str());
        if (!resolved.starts_with('/')) tell_of_missing_fonts();
        return nullptr;
    }
    describe_face(*font, *face);
    return font;
}

// The runtime record tells what is current, too.
void publish() {
    Face *face = current.cache ? &current.cache->face() : nullptr;
    kvstate.current_face = face ? face->ft() : nullptr;
    kvstate.current_zface = face ? face->fallback().ft() : nullptr;
    kvstate.current_aa = current.mode == Mode::antialiased;
    kvstate.cw_cache = kvstate.kerning_cache = kvstate.glyph_cache = current.cache;
}

void select(ifont *font) {
    ground::guarded([&] {
        SizeCache *former = current.cache;
        kvstate.current_font = font;
        current = {};
        if (font && font->fdata)
            current = {.cache = &face_of(*font)->cache(font->size, strength, former),
                       .mode = font->aa != 0 ? Mode::antialiased : Mode::mono,
                       .baseline = font->baseline};
    });
    publish();
}

} // namespace

Current current;
Hooks hooks;

ifont *registered_font(int number) {
    return number >= 1 && number <= most_registered ? registered[number - 1] : nullptr;
}

ifont *open_font(const char *name, int size, int aa) {
    return open(name, size, aa).release();
}

bool has_letters(const ifont &font, const char *utf8) {
    Face *const face = face_of(font);
    const char *const end = utf8 + std::strlen(utf8);
    while (face && utf8 < end) {
        const uint16_t c = utf8::next(utf8, end);
        if (c > ' ' && !is_cjk(c) && face->find(c).index() == 0) return false;
    }
    return true;
}

void restore_font(ifont *f, int color) {
    select(f);
    kvstate.current_color = color;
}

void reset() {
    select(nullptr);
    std::fill(std::begin(registered), std::end(registered), nullptr);
    strength = 0;
    reset_cjk();
    reset_enumeration();
    reset_faces();
}

} // namespace text

ifont *OpenFont(const char *name, int size, int aa) {
    return ground::guarded(
        nullptr, [&]() -> ifont * { return name ? text::open_font(name, size, aa) : nullptr; });
}

void CloseFont(ifont *f) {
    if (!f) return;
    if (kvstate.current_font == f) text::select(nullptr);
    std::replace(std::begin(text::registered), std::end(text::registered), f,
                 static_cast<ifont *>(nullptr));
    text::forget_font(f);
    text::FontDeleter::destroy(f);
}

void SetFont(const ifont *f, int color) {
    if (f) text::select(const_cast<ifont *>(f));
    const ifont *font = kvstate.current_font;
    if (color != -1)
        kvstate.current_color = color;
    else if (font && font->color != -1)
        kvstate.current_color = font->color;
}

ifont *GetFont() {
    return kvstate.current_font;
}

void RegisterFontList(ifont **fonts, int count) {
    std::fill(std::begin(text::registered), std::end(text::registered), nullptr);
    if (fonts && count > 0)
        std::copy_n(fonts, std::min(count, text::most_registered), text::registered);
}

void SetTextStrength(int n) {
    text::strength = std::clamp(n, 0, text::most_strength);
    if (kvstate.current_font) text::select(kvstate.current_font);
}
