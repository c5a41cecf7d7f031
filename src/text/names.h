// SPDX-License-Identifier: MIT
// From the name of a font to the files it may be in.
#pragma once

#include <string>
#include <vector>

namespace text {

inline constexpr const char *font_directory = "./system/fonts";

enum class Style { regular, bold, italic, bold_italic };

// The configured font of a style, or the library's own where nothing is configured.
const char *default_font(Style style);

// The name itself, or the font that "default", "defaultb", "defaulti" or "defaultbi" stands for.
std::string resolved_name(const char *name);

// A file and the face in it.
struct FontFile {
    std::string path;
    int face_index;
};

// Where a resolved name may be, in the order in which to try.
std::vector<FontFile> font_files(const std::string &name);

} // namespace text
