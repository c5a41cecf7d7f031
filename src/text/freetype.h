// SPDX-License-Identifier: MIT
// FreeType and the files it opens.
#pragma once

#include <ft2build.h>
#include <memory>
#include FT_FREETYPE_H

#include "text/text.h"

namespace text {

// Keeps what a face in memory is read from as long as the face.
struct FaceCloser {
    FontBytes bytes;
    void operator()(FT_Face face) const { FT_Done_Face(face); }
};
using FacePtr = std::unique_ptr<FT_FaceRec_, FaceCloser>;

// FreeType, started at the first use; null, with a message, when it does not start.
FT_Library library();
void stop_freetype();

// A face of a file; null when the path is no plain file, or no font. A face of index -1 only tells
// how many there are.
FacePtr open_font_file(const char *path, int face_index);
// The first face of a file in memory; null when it is no font.
FacePtr open_font_bytes(FontBytes font);

// Throws bad_alloc when FreeType has run out of memory since the last call. What it has made since
// then may lack something, and is not to be kept.
void check_freetype_memory();

} // namespace text
