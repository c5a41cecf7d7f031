// SPDX-License-Identifier: MIT
// Reads the folder of a theme file by file, and says of each what is wrong.
#include "folder.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "theme/container.h"

namespace tool {
namespace fs = std::filesystem;

bool is_odd(const fs::path &file) {
    std::error_code error;
    return fs::exists(file, error) && !fs::is_regular_file(file, error);
}

std::string read_whole(const fs::path &file) {
    if (is_odd(file)) throw std::runtime_error(printable(file.string()) + " is no plain file");
    std::error_code error;
    if (const auto size = fs::file_size(file, error); !error && size > theme::largest_theme)
        throw std::system_error(EFBIG, std::generic_category(), file.string());
    std::ifstream in(file, std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(in), {}};
    if (!in.is_open() || in.bad())
        throw std::system_error(errno, std::generic_category(), file.string());
    return bytes;
}

std::vector<fs::path> files_of(const fs::path &folder) {
    std::vector<fs::path> files;
    if (!fs::exists(folder)) return files;
    for (const fs::directory_entry &entry : fs::directory_iterator(folder))
        if (!entry.path().filename().string().starts_with('.')) files.push_back(entry.path());
    std::ranges::sort(files);
    return files;
}

Theme read_folder(const fs::path &folder, int percent, Mistakes &mistakes) {
    constexpr std::array parts = {parameter_file, drawing_folder, picture_folder, font_folder,
                                  translation_folder};
    const bool is_theme = std::ranges::any_of(
        parts, [&folder](const char *part) { return fs::exists(folder / part); });
    if (!is_theme) {
        mistakes.add({folder}, "is no theme's folder; it needs the file parameters.txt or a folder "
                               "drawings, pictures, fonts or translations");
        return {};
    }
    return {read_text(folder, mistakes), read_resources(folder, percent, mistakes)};
}

} // namespace tool
