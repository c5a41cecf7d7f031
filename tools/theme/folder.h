// SPDX-License-Identifier: MIT
// A theme as a folder of files that people edit:
//
//     parameters.txt
//     drawings/*.txt, descriptions of pictures
//     pictures/NAME.png, ^NAME.png, NAME:4.png, ^NAME:4.png; also .jpg .bmp .tif
//     fonts/FACE.ttf
//     translations/LANGUAGE.txt, any-language.txt
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "mistakes.h"
#include "resources.h"
#include "text.h"

namespace tool {

inline constexpr const char *parameter_file = "parameters.txt";
inline constexpr const char *picture_folder = "pictures", *font_folder = "fonts";
inline constexpr const char *drawing_folder = "drawings";
inline constexpr const char *translation_folder = "translations";
inline constexpr const char *any_language = "any-language"; // the file for "*"

// Whether a language has a file of its own under that name.
bool is_language(std::string_view code);

struct Theme {
    ThemeText text;
    std::vector<Resource> resources; // in the order of their names
};

// Reads and checks a folder; the theme is whole when nothing was added to the mistakes. Only what
// is drawn is in the scale already.
Theme read_folder(const std::filesystem::path &folder, int percent, Mistakes &mistakes);

// The two halves of read_folder().
ThemeText read_text(const std::filesystem::path &folder, Mistakes &mistakes);
std::vector<Resource> read_resources(const std::filesystem::path &folder, int percent,
                                     Mistakes &mistakes);

// Whether something else than a file is there: a pipe or a device would be waited for.
bool is_odd(const std::filesystem::path &file);
// All bytes of a file; throws std::runtime_error, also for what is larger than any theme.
std::string read_whole(const std::filesystem::path &file);
// The files of a folder but for hidden ones, by name; none when there is no such folder.
std::vector<std::filesystem::path> files_of(const std::filesystem::path &folder);

} // namespace tool
