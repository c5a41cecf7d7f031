// SPDX-License-Identifier: MIT
// The faces that are open, by name, and the fallback faces.
#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <string>
#include <utility>

#include "ground/log.h"
#include "internal.h"
#include "kelvane/hash.h"
#include "text/face.h"
#include "text/names.h"
#include "text/text.h"

namespace text {
namespace {

constexpr int face_buckets = 71;

ihash faces; // of Face, by resolved name; null while none is open
// Of the styles regular, bold and italic; opened once.
std::array<Face *, 3> fallbacks;

Style style_of(FT_Face face) {
    const bool italic = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
    const bool bold = (face->style_flags & FT_STYLE_FLAG_BOLD) != 0;
    if (bold) return italic ? Style::bold_italic : Style::bold;
    return italic ? Style::italic : Style::regular;
}

// Bold italic faces fall back to the bold one.
Style fallback_style(FT_Face face) {
    const Style style = style_of(face);
    return style == Style::bold_italic ? Style::bold : style;
}

Face *find_fallback(Style style) {
    Face *&fallback = fallbacks[static_cast<size_t>(style)];
    if (fallback) return fallback;
    Face *opened = acquire_face(default_font(style));
    // Opening it may have looked for its own fallback, and found itself.
    if (!fallback)
        fallback = opened;
    else
        release_face(opened);
    return fallback;
}

void add_to_table(Face &face) {
    if (!faces) faces = vhash_new(face_buckets, nullptr, nullptr);
    vhash_add(faces, face.name().c_str(), &face);
    if (vhash_find(faces, face.name().c_str()) != &face) throw std::bad_alloc();
    kvstate.fonthash = faces;
}

// The first font under a name: one in memory, or what its files have.
FacePtr open_first(const std::string &name) {
    if (FontBytes font = hooks.font_bytes(name); font.bytes)
        return open_font_bytes(std::move(font));
    for (const FontFile &file : font_files(name))
        if (FacePtr opened = open_font_file(file.path.c_str(), file.face_index)) return opened;
    return nullptr;
}

Face *open_face(const std::string &name) {
    FacePtr opened = open_first(name);
    if (!opened) return nullptr;
    auto face = std::make_unique<Face>(name, std::move(opened));
    add_to_table(*face);
    return face.release();
}

void choose_fallback(Face &face) {
    // The face is in the table by now, so a default font finds itself.
    if (Face *fallback = find_fallback(fallback_style(face.ft())))
        face.set_fallback(*fallback);
    else
        kv_warn("OpenFont", "cannot set zface\n");
}

void drop_table() {
    hash_destroy(faces);
    faces = nullptr;
    kvstate.fonthash = nullptr;
}

int add_references(const char *, void *face, void *sum) {
    *static_cast<int *>(sum) += static_cast<Face *>(face)->references;
    return 0;
}

// Fonts that applications have not closed.
int open_fonts() {
    int references = 0;
    hash_enumerate(faces, nullptr, add_references, &references);
    return references -
           static_cast<int>(fallbacks.size() - static_cast<size_t>(std::count(
                                                   fallbacks.begin(), fallbacks.end(), nullptr)));
}

} // namespace

Face *acquire_face(const std::string &name) {
    auto *face = static_cast<Face *>(vhash_find(faces, name.c_str()));
    if (face) {
        ++face->references;
        return face;
    }
    face = open_face(name);
    if (!face) return nullptr;
    ++face->references; // counts while its own fallback is opened
    try {
        choose_fallback(*face);
    } catch (...) {
        release_face(face);
        throw;
    }
    return face;
}

void release_face(Face *face) {
    if (!face || --face->references > 0) return;
    vhash_delete(faces, face->name().c_str());
    delete face;
}

void reset_faces() {
    if (!kvstate.ftlibrary || open_fonts() > 0) return;
    for (Face *&fallback : fallbacks) {
        release_face(fallback);
        fallback = nullptr;
    }
    drop_table();
    stop_freetype();
}

} // namespace text
